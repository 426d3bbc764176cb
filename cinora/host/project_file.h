// The host's project files (.cnp).
//
// All numbers are little-endian. The file is the eight bytes "CINORA", 0x1A, 0x0A, then blocks up to the end:
//
//   offset  size  field
//   0       4     kind: "CLIP", "FLTR" or "END."
//   4       4     length n of the contents in bytes
//   8       4     CRC-32 of the contents (IEEE, as in zip and PNG)
//   12      n     contents
//
// CLIP, the first block: version (1), width, height, rate, scale, audio rate, audio channels, frame count, current
// frame, first and last selected frame (11 x i32), then the name of the clip up to the block's end.
// FLTR, one a filter that has something to save: length of the filter's name (u32), the name, the filter's data.
// END., empty: what comes without it is a torn file. Blocks of other kinds are passed over.
#pragma once

#include <string>
#include <vector>

#include "cinora/host/edit.h"

namespace cinora {

struct FilterBlock {
  std::string name;  // HostFilterRecord::name
  std::string data;
};

struct ProjectFile {
  std::string clipName;
  ClipFormat format;
  int32_t frameCount = 0, currentFrame = 0, selectionFirst = 0, selectionLast = 0;
  std::vector<FilterBlock> filters;
};

std::string encodeProject(const ProjectFile&);
/// Empty when `bytes` were decoded, otherwise why not. Nothing is allocated beyond the size of `bytes`.
std::string decodeProject(std::string_view bytes, ProjectFile*);

/// Empty on success, otherwise the reason. The file is replaced as a whole or not at all.
std::string writeProject(const std::string& path, const ProjectFile&);
std::string readProject(const std::string& path, ProjectFile*);

}  // namespace cinora
