// Films made by the ffmpeg command, whose pictures carry their numbers, and a reader of them.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include "cinora/media/media_reader.h"
#include "tests/support/scratch_folder.h"

namespace cinora::test {

using ::test::ScratchFolder;
using zenlay::FramePixel;

inline constexpr int blocks = 10, blockSize = 16;  // a block per bit of the frame number, lowest first

inline bool ffmpeg(const std::string& arguments) {
  return std::system(("ffmpeg -v error -nostdin -y -threads 2 " + arguments).c_str()) == 0;
}

/// A film whose pictures carry their numbers.
inline std::string numbered(int frames, int rate = 25) {
  return "-f lavfi -i \"color=s=160x32:r=" + std::to_string(rate) + ":d=" + std::to_string(double(frames) / rate) +
         ",format=yuv420p,geq=lum='if(bitand(N,pow(2,floor(X/16))),235,16)':cb=128:cr=128\" ";
}

class Film {
 public:
  bool open(const std::string& path, bool alpha = false) {
    bool opened = reader.open(path, alpha, error);
    rows.resize(size_t(reader.info().width) * reader.info().height);
    return opened;
  }
  /// The number that the picture shown at `frame` carries; -1 when nothing is read.
  int numberAt(int frame) {
    if (!reader.readVideo(frame, rows.data(), reader.info().width)) return -1;
    int number = 0;
    for (int bit = 0; bit < blocks; bit++)
      if (rows[size_t(16) * reader.info().width + bit * blockSize + blockSize / 2].y > 2048) number |= 1 << bit;
    return number;
  }
  std::array<int, 4> bgraAt(int frame, int x, int y) {
    const uint8_t* bitmap = reader.readBgra(frame);
    if (!bitmap) return {-1, -1, -1, -1};
    const MediaInfo& i = reader.info();
    size_t bytes = i.bits / 8, stride = (i.width * bytes + 3) / 4 * 4;
    const uint8_t* at = bitmap + (i.height - 1 - y) * stride + x * bytes;
    return {at[0], at[1], at[2], bytes == 4 ? at[3] : -1};
  }
  MediaReader reader;
  std::string error;
  std::vector<FramePixel> rows;
};

struct Format {
  const char *name, *options;
};

}  // namespace cinora::test
