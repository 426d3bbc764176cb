// Edits that move several objects at once: lengths, midpoints, splits, layers, empty frames, duplicates and linked
// coordinates. Each records undo into the current step (beginUndoStep is the caller's) and leaves the order valid; one
// that fails leaves the model as it was. Frames are 0-based. Objects of other scenes are not edited, and a scene is not
// made longer.
#pragma once

#include <span>
#include <vector>

namespace zenlay {

/// Gives one section `length` frames (1 or more); the sections behind it follow. Cut short where another object is in
/// the way. The new length, or 0 when nothing changed.
int setSectionLength(int object, int length);
/// Gives the whole chain `length` frames, its midpoints keeping their share of it and every section one frame at least.
/// Cut short likewise. The new length, or 0 when nothing changed.
int setObjectLength(int object, int length);
/// Moves the midpoints of the chain so that its sections last equally long, to the frame. 0 when nothing changed.
int spaceMidpointsEvenly(int object);

/// splitObject for every object of the selection that the frame lies inside; the second objects. With divide_group on,
/// the selected members of a group that lie behind the cut get a group of their own, provided one of them was cut: the
/// new pieces and the members that start at the frame or later. A piece alone behind the cut gets no group. What stands
/// before the cut keeps its number.
std::vector<int> splitObjects(std::span<const int> selection, int frame);
/// Splits the objects at `first` and behind `last`; the new pieces.
std::vector<int> cutAtRange(std::span<const int> selection, int first, int last);

/// Layers layer..99 rotate down by one: the last one's objects and record come to `layer`.
void insertLayer(int layer);
/// Deletes the layer's objects; layers below move up by one and the last gets an empty record.
void deleteLayer(int layer);
/// Moves every object of the current scene that starts at or after `frame` right by `count`; a chain moves whole, by
/// its head. 0 when nothing moved.
int insertEmptyFrames(int frame, int count);
/// Copies the objects and pastes them, in their order, at `frame` on the first run of layers, from their top layer
/// down, that is free there; the first pasted object, or -1 when there is none. What the clipboard held is replaced.
int duplicateObjects(std::span<const int> selection, int frame);

// Linked coordinates. On a layer with layerCoordinateLink, objects with a picture that touch (one starts where the
// other ends) share one course of X, Y and Z of their drawing effects: where the first one's movement ends the second
// one's starts, and a still coordinate has that one value for its whole object. Movements without such a point are
// left alone: random and repetitive movement at both ends, movement by an amount at its end.

/// Aligns the layer's objects of the current scene from the earliest on: the later follow the earlier.
void alignLinkedCoordinates(int layer);
/// After an edit of one object on such a layer: its neighbours follow it in both directions, as far as something
/// changes. Elsewhere nothing happens. `recordsUndo` is off while a drag goes on whose start was recorded by
/// recordLinkedCoordinates.
void followLinkedCoordinates(int object, bool recordsUndo);
/// Records undo of everything that followLinkedCoordinates may change.
void recordLinkedCoordinates(int object);

}  // namespace zenlay
