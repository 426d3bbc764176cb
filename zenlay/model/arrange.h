// Edits that move several objects at once: lengths, midpoints, layers, empty frames, cuts and duplicates. Each records
// undo into the current step (beginUndoStep is the caller's) and leaves the order valid. Frames are 0-based.
#pragma once

#include <span>
#include <vector>

namespace zenlay {

/// Gives one section `length` frames; the sections behind it follow. Cut short where another object is in the way. 0
/// when nothing changed.
int setSectionLength(int object, int length);
/// Gives the whole chain `length` frames, its midpoints keeping their share of it.
int setObjectLength(int object, int length);
/// Moves the midpoints of the chain so that its sections last equally long, to the frame.
void spaceMidpointsEvenly(int object);
/// Layers layer..99 rotate down by one: the last one's objects and record come to `layer`.
void insertLayer(int layer);
/// Deletes the layer's objects; layers below move up by one and the last gets an empty record.
void deleteLayer(int layer);
/// Moves every object of the current scene that starts at or after `frame` right by `count`; a chain moves whole, by
/// its head.
void insertEmptyFrames(int frame, int count);
/// Splits the objects at `first` and behind `last`; the new pieces.
std::vector<int> cutAtRange(std::span<const int> selection, int first, int last);
/// Copies the objects and pastes them at `frame` on the first run of layers, from their top layer down, that is free
/// there; the first pasted object, or -1 when there is none.
int duplicateObjects(std::span<const int> selection, int frame);
/// Gives the objects of a layer whose coordinates are linked one course of them.
void alignLinkedCoordinates(int layer);

}  // namespace zenlay
