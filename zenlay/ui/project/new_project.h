// Creating a project: the host opens a clip whose name says its format.
#pragma once

#include <cstdint>
#include <string>

namespace zenlay {

struct ClipFormat {
  int32_t width, height;  // pixels
  int32_t rate, scale;    // frames per second = rate / scale
  int32_t audioRate;
  int32_t audioChannels = 2;  // 1 or 2
};

/// "29.97" gives 2997 / 100, "30000/1001" both numbers; decimals that 32 bits can't hold are cut off. False without a
/// leading digit or for values of 0 or beyond 32 bits.
bool parseFrameRate(const char* text, int32_t* rate, int32_t* scale);
/// "%dx%d_%dfps_%dHz.zenlay", or with "%d-%dfps" when the scale is not 1 and "Hz_1ch" in mono.
std::string clipName(const ClipFormat&);
/// Asks the host to open the clip; true when a project is then open. A frame rate that the host didn't take is told.
bool createProject(const ClipFormat&);

}  // namespace zenlay
