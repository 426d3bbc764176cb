// The object clipboard: whole object records, each followed by its extra data, back to back in copy order. It keeps
// what was copied, whatever becomes of the objects and whichever scene is shown.
#pragma once

namespace zenlay {

inline constexpr int clipboardGrowth = 0x40000;  // bytes

/// The area stays reserved.
void clearClipboard();
int clipboardEntries();
/// Appends one entry. 1, or 0 when the area cannot grow: the clipboard is then empty. A free record counts as copied.
int copyToClipboard(int object);
/// Every section of the object's chain, head first.
int copyChainToClipboard(int object);
/// Pastes into the current scene at the frame (0-based) and layer, or at the first later frame where every entry fits;
/// a block that would pass the last layer is moved up. Entries keep their places relative to each other, by home layer
/// when they come from other scenes; one that overlaps another entry is left out. Chains and groups are new each time.
/// When the model cannot take all, what was pasted until then stays. Records creation undo into the current step and
/// tells the effects (objectPasted). The pasted object with the smallest start (then layer), or -1. `first` and `last`,
/// either may be null, take the frames covered; they keep their values when nothing was pasted.
int pasteClipboard(int frame, int layer, int* first, int* last);
/// Gives the area back.
void freeClipboard();

}  // namespace zenlay
