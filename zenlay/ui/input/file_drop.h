// Files dropped on the timeline.
#pragma once

namespace zenlay {

/// Places what the file holds at the frame and layer: an object file, an alias, or the media objects that its extension
/// stands for. One undo step. 1 when something was created.
int placeFile(const char* path, int frame, int layer);
/// Gives a media effect of the object its file, and an object of one section the length of a film or sound. False when
/// the effect takes no file or the path is too long for it.
bool setSourceFile(int object, int slot, const char* path);

}  // namespace zenlay
