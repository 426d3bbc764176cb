// Blur of a full-frame object image beside two runs of OpenCV's boxFilter over as many pixels a window.
#include <memory>
#include <vector>

#include "bench/ratio.h"
#include "bench/workers.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"

#ifdef HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using namespace zenlay;

constexpr int width = 1920, height = 1080, maxWidth = 3840, maxHeight = 2160;

/// The object image is made anew from its last state each time: only its size is set back.
struct BlurJob {
  std::vector<ObjectPixel> a, b;
  EffectProcessInfo info{};
  EffectDefinition effect = blurEffect;
  int32_t tracks[3], checks[1];

  BlurJob(int range, int light, bool fixedSize) : tracks{range, 0, light}, checks{fixedSize} {
    info.bufferLine = maxWidth + 8;
    info.maxWidth = maxWidth;
    info.maxHeight = maxHeight;
    a.resize(static_cast<size_t>(info.bufferLine) * maxHeight);
    b.resize(a.size());
    uint32_t seed = 1;
    for (ObjectPixel& p : a) {
      seed = seed * 1664525 + 1013904223;
      p = {static_cast<int16_t>(seed >> 20), static_cast<int16_t>((seed >> 8 & 2047) - 1024),
           static_cast<int16_t>((seed >> 4 & 2047) - 1024), static_cast<int16_t>(seed >> 19 & 4095)};
    }
    info.objectImage = a.data();
    info.workImage = b.data();
    effect.track = tracks;
    effect.check = checks;
    effect.host_functions = bench::workerHost();
  }
  void run() {
    info.objectWidth = width;
    info.objectHeight = height;
    effect.proc(&effect, &info);
  }
};

#ifdef HAVE_OPENCV
void addBlur(const char* name, double bar, int range, int light, bool fixedSize) {
  auto job = std::make_shared<BlurJob>(range, light, fixedSize);
  bench::addRatio(
      name, bar, [=] { job->run(); },
      [=] {
        static cv::Mat in(height, width, CV_16SC4, cv::Scalar(1000, 100, -100, 2000)), between, out;
        cv::boxFilter(in, between, -1, {41, 41});
        cv::boxFilter(between, out, -1, {41, 41});
      });
}
#endif

}  // namespace

int main(int argc, char** argv) {
#ifdef HAVE_OPENCV
  cv::setNumThreads(bench::workerCount);
  addBlur("blur range 20", 1.5, 20, 0, false);
  addBlur("blur range 20, fixed size", 1.5, 20, 0, true);
  addBlur("blur range 200", 1.5 * 1.3, 200, 0, false);
  addBlur("blur range 200, fixed size", 1.5 * 1.3, 200, 0, true);
  addBlur("blur range 20, light 32", 0, 20, 32, false);
#endif
  return bench::runRatios(argc, argv);
}
