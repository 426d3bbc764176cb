// Still pictures: BMP, PNG, JPEG and whatever else FFmpeg's picture decoders read. Recognised by content, by extension
// only where a format has no mark of its own. Orientation tags are ignored; of an animation the first picture counts.
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

/// False when the file is no picture, is damaged, has a side longer than `maxSide`, or promises far more pixels than
/// its bytes can hold (told from its header, before memory is taken). A picture whose data ends early counts as damaged
/// unless its decoder can fill the rest. `picture` may be null: then only decodability is tested.
bool decodePicture(std::string_view path, Picture* picture, int maxSide = 32767);

}  // namespace platform
