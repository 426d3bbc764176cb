// Files that become objects.
#pragma once

#include "platform/window.h"

namespace zenlay {

/// Gives a media effect of the object its file, and an object of one section the length of a film or sound. False when
/// the effect takes no file or the path is too long for it.
bool setSourceFile(int object, int slot, const char* path);

/// Of several files dropped at once the first is taken; the user is told of the others.
void tellOfFurtherFiles(const platform::DroppedFiles&);

}  // namespace zenlay
