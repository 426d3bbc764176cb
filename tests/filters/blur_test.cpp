#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "tests/render/drawing_pictures.h"
#include "zenlay/filters/box_blur.h"

namespace zenlay {
namespace {

using test::FramePicture;
using test::ObjectPicture;
using test::twoThreads;

template <class P>
P noisy(int width, int height, int seed) {
  P picture(width, height);
  std::mt19937 random(seed);
  for (auto& p : picture.pixels) {
    p.y = static_cast<int16_t>(random() % 8193);
    p.cb = static_cast<int16_t>(random() % 4096 - 2048);
    p.cr = static_cast<int16_t>(random() % 4096 - 2048);
    if constexpr (requires { p.a; }) p.a = random() % 3 ? static_cast<int16_t>(random() % 4097) : 0;
  }
  return picture;
}

template <class P>
void expectPlainBits(int width, int height, int rx, int ry, BoxEdge edge) {
  P from = noisy<P>(width, height, width + rx);
  int grow = edge == boxGrow ? 2 : 0;
  P fast(width + grow * rx, height + grow * ry), plain = fast;
  bool alpha = sizeof(from.pixels[0]) == sizeof(ObjectPixel);
  boxRound(twoThreads(), fast.target(), from.target(), rx, ry, edge, alpha);
  boxRoundPlain(plain.target(), from.target(), rx, ry, edge, alpha);
  ASSERT_EQ(memcmp(fast.pixels.data(), plain.pixels.data(), fast.pixels.size() * sizeof fast.pixels[0]), 0)
      << width << 'x' << height << ' ' << rx << ',' << ry << " edge " << edge << " alpha " << alpha;
}

TEST(BoxBlur, RoundsGiveTheBitsOfThePlainDefinition) {
  for (auto [width, height] : {std::pair{1, 1}, {3, 5}, {17, 70}, {64, 64}, {101, 130}}) {
    for (auto [rx, ry] : {std::pair{0, 0}, {1, 0}, {0, 1}, {2, 3}, {40, 7}, {150, 200}}) {
      for (BoxEdge edge : {boxKeep, boxGrow}) {
        expectPlainBits<ObjectPicture>(width, height, rx, ry, edge);
        if (edge == boxKeep) expectPlainBits<FramePicture>(width, height, rx, ry, edge);
      }
    }
  }
}

}  // namespace
}  // namespace zenlay
