// Still pictures: BMP, PNG, JPEG and whatever else FFmpeg's picture decoders read.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace platform {

/// Straight-alpha BGRA, 32 bits, bottom-up rows without padding.
struct Picture {
  int width = 0, height = 0;
  std::vector<uint8_t> pixels;
};

/// False when the file is no picture, is damaged, or has a side longer than `maxSide`. `picture` may be null: then only
/// decodability is tested.
bool decodePicture(std::string_view path, Picture* picture, int maxSide = 32767);

}  // namespace platform
