// Pictures and a two-threaded function table for the tests of drawing.
#pragma once

#include <thread>
#include <vector>

#include "zenlay/effects/effect_services.h"
#include "zenlay/render/draw.h"

namespace zenlay::test {

inline const HostFunctionTable* twoThreads() {
  static const HostFunctionTable table = [] {
    HostFunctionTable t{};
    t.runOnThreads = [](ThreadWork work, void* first, void* second) -> int32_t {
      std::thread other(work, 1, 2, first, second);
      work(0, 2, first, second);
      other.join();
      return 1;
    };
    return t;
  }();
  return &table;
}

template <class Pixel>
struct Picture {
  int width, height;
  std::vector<Pixel> pixels;

  Picture(int w, int h, Pixel fill = {}) : width(w), height(h), pixels(static_cast<size_t>(w) * h, fill) {}
  Pixel& at(int x, int y) { return pixels[static_cast<size_t>(y) * width + x]; }
  int lineBytes() const { return width * static_cast<int>(sizeof(Pixel)); }
  ImageTarget target() { return {pixels.data(), width, height, lineBytes()}; }
  ImageRegion region() const { return {pixels.data(), 0, 0, width, height, lineBytes()}; }
};
using ObjectPicture = Picture<ObjectPixel>;
using FramePicture = Picture<FramePixel>;

}  // namespace zenlay::test
