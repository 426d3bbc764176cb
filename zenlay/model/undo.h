// The undo history. Requests while it is disabled are ignored.
#pragma once

namespace zenlay {

/// For recordUndo, before the change: the whole object with its extra data, that of every section of its chain (or'ed
/// with another kind), its creation (undone by deleting it), its flags, layer and frames alone, a layer's record, or
/// the creation of a scene (undone by emptying its record).
enum UndoKind : int {
  undoSnapshot = 0,
  undoChain = 0x1,
  undoCreated = 0x2,
  undoPosition = 0x8,
  undoLayer = 0x10,
  undoNewScene = 0x20
};

void beginUndoStep();
void recordUndo(int target, int kind);
/// While a batch is open only creation records are taken.
void beginUndoBatch();
void endUndoBatch();
void undo();
/// Steps that undo puts back, those without records included; 0 while the history is empty or disabled.
int undoSteps();
void resetUndo();
/// Gives the area back, too.
void freeUndo();
/// Bit of recordUndo's target with undoLayer, or'ed with the layer's index.
inline constexpr int undoLayerTarget = 0x1000000;
/// Called when the name pool was compacted, with the new offset (or -1) of every name that layer records refer to.
void moveUndoNames(int (*newOffset)(int oldOffset));

}  // namespace zenlay
