// Blend-copies of a 1920 x 1080 picture against a memcpy that moves as many bytes as the blend reads and writes, both
// on two threads.
#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "bench/workers.h"
#include "zenlay/render/blend.h"

namespace {

using zenlay::FramePixel;
using zenlay::ObjectPixel;

constexpr int width = 1920, height = 1080;

/// Copies `bytes` / 2, so that `bytes` are read or written, on the workers.
std::function<void()> copyOf(size_t bytes) {
  const size_t half = bytes / 2;
  auto from = std::make_shared<std::vector<uint8_t>>(half, uint8_t{1});
  auto to = std::make_shared<std::vector<uint8_t>>(half);
  return [from, to, half] {
    zenlay::overRows(bench::workerHost(), height, [&](int first, int last) {
      const size_t begin = half * first / height, end = half * last / height;
      std::memcpy(to->data() + begin, from->data() + begin, end - begin);
    });
    benchmark::ClobberMemory();
  };
}

struct Pictures {
  std::vector<ObjectPixel> object{size_t{width} * height}, objectTarget{object.size()};
  std::vector<FramePixel> opaque{object.size()}, frame{object.size()};

  Pictures() {
    std::mt19937 random(1);
    const auto value = [&random](int low, int high) {
      return static_cast<int16_t>(low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1)));
    };
    for (size_t i = 0; i < object.size(); ++i) {
      object[i] = {value(0, 4096), value(-2048, 2048), value(-2048, 2048), value(1, 4095)};
      objectTarget[i] = {value(0, 4096), value(-2048, 2048), value(-2048, 2048), value(1, 4095)};
      opaque[i] = {value(0, 4096), value(-2048, 2048), value(-2048, 2048)};
      frame[i] = {value(0, 4096), value(-2048, 2048), value(-2048, 2048)};
    }
  }
};

template <class Destination, class Source>
void addCopy(const std::string& name, double bar, std::vector<Destination>* to, const std::vector<Source>& from,
             int mode, int transparency) {
  uint32_t flags = zenlay::blendFlags(mode);
  if (sizeof(Source) == sizeof(ObjectPixel)) flags |= zenlay::blendSourceAlpha;
  if (sizeof(Destination) == sizeof(ObjectPixel)) flags |= zenlay::blendDestinationAlpha;
  const auto blend = [=, &from] {
    zenlay::blendCopy(bench::workerHost(), {to->data(), width, height, width * int{sizeof(Destination)}}, 0, 0,
                      {from.data(), 0, 0, width, height, width * int{sizeof(Source)}}, transparency, flags);
    benchmark::ClobberMemory();
  };
  bench::addRatio(name, bar, blend, copyOf(size_t{width} * height * (sizeof(Source) + 2 * sizeof(Destination))));
}

}  // namespace

int main(int argc, char** argv) {
  static Pictures pictures;
  const char* name = zenlay::blendModeList;
  for (int mode = 0; mode < zenlay::userBlendModes; ++mode, name += std::strlen(name) + 1) {
    std::string row = name;
    std::replace(row.begin(), row.end(), ' ', '_');
    const double bar = mode == zenlay::blendNormal ? 2.0 : 6.0;
    addCopy(row + "/object_onto_frame", bar, &pictures.frame, pictures.object, mode, 0);
    addCopy(row + "/object_onto_object", 6.0, &pictures.objectTarget, pictures.object, mode, 0);
  }
  addCopy("Normal/frame_onto_frame_half", 2.0, &pictures.frame, pictures.opaque, zenlay::blendNormal, 2048);
  return bench::runRatios(argc, argv);
}
