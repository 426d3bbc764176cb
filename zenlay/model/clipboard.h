// The object clipboard: whole object records with their extra data, back to back in copy order.
#pragma once

#include <span>

namespace zenlay {

/// The area stays reserved.
void clearClipboard();
int clipboardEntries();
/// 1, or 0 when the area cannot grow (the clipboard is then empty). A free record counts as copied.
int copyToClipboard(int object);
int copyChainToClipboard(int object);
/// Pastes at the frame (0-based) and layer, or at the first later place where every entry fits. Records creation undo
/// into the current step. The pasted object with the smallest start (then layer), or -1. `first` and `last`, either
/// may be null, take the frames covered.
int pasteClipboard(int frame, int layer, int* first, int* last);
/// Gives the area back.
void freeClipboard();

}  // namespace zenlay
