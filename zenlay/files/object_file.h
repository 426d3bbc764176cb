// Object files (.zlo): timeline objects as text.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "zenlay/model/records.h"

namespace zenlay {

struct ObjectFileHeader {
  uint32_t flags;  // SceneFlag
  char name[maxName];
  int32_t width, height, rate, scale, audioRate, audioChannels, length;
};

/// Every object of the current scene in layerOrder. 1 on success; 0 with a message otherwise.
int writeObjectFile(const char* path);
/// The largest end frame among the objects created (0 when none), or -1 with a message when the file cannot be opened.
int readObjectFile(const char* path, int frameOffset, int layerOffset);
/// False, after a message, for a file that holds neither a header nor objects.
bool checkObjectFile(const char* path);
/// 1 when the file starts with "[zenlay]"; the header then holds its values or the read defaults. Otherwise 0 and the
/// read defaults.
int readObjectFileHeader(const char* path, ObjectFileHeader*);

}  // namespace zenlay
