// Files that become objects.
#pragma once

namespace zenlay {

/// Gives a media effect of the object its file, and an object of one section the length of a film or sound. False when
/// the effect takes no file or the path is too long for it.
bool setSourceFile(int object, int slot, const char* path);

}  // namespace zenlay
