// Rotated and scaled drawing of a full-frame picture beside OpenCV's warpAffine.
#include <memory>
#include <vector>

#include "bench/ratio.h"
#include "bench/workers.h"
#include "zenlay/render/draw.h"

#ifdef HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using namespace zenlay;

constexpr int width = 1920, height = 1080;

std::vector<ObjectPixel> picture(bool varyingAlpha) {
  std::vector<ObjectPixel> pixels(width * height);
  uint32_t seed = 1;
  for (ObjectPixel& p : pixels) {
    seed = seed * 1664525 + 1013904223;
    p = {static_cast<int16_t>(seed >> 20), static_cast<int16_t>((seed >> 8 & 2047) - 1024),
         static_cast<int16_t>((seed >> 4 & 2047) - 1024),
         static_cast<int16_t>(varyingAlpha ? seed >> 19 & 4095 : 4096)};
  }
  return pixels;
}

#ifdef HAVE_OPENCV
void addDraw(const char* name, double degrees, double scale, bool varyingAlpha) {
  static std::vector<FramePixel> frame(width * height);
  auto source = std::make_shared<std::vector<ObjectPixel>>(picture(varyingAlpha));
  auto ours = [=] {
    resetProjection(width, height);
    const ImageTarget target{frame.data(), width, height, width * static_cast<int>(sizeof(FramePixel))};
    const ImageRegion region{source->data(), 0, 0, width, height, width * static_cast<int>(sizeof(ObjectPixel))};
    ImagePlacement at{};
    at.rz = static_cast<int32_t>(degrees * 65536 / 360);
    at.zoom = static_cast<int32_t>(scale * 65536);
    at.cx = width * 2048;
    at.cy = height * 2048;
    int32_t corners[8];
    drawImageInSpace(bench::workerHost(), &target, region, at, nullptr, blendSourceAlpha, corners);
  };
  auto reference = [=] {
    static cv::Mat out(height, width, CV_16SC4);
    const cv::Mat in(height, width, CV_16SC4, source->data());
    const cv::Mat matrix = cv::getRotationMatrix2D({width / 2.0f, height / 2.0f}, -degrees, scale);
    cv::warpAffine(in, out, matrix, out.size(), cv::INTER_LINEAR, cv::BORDER_CONSTANT);
  };
  bench::addRatio(name, 1.5, ours, reference);
}
#endif

}  // namespace

int main(int argc, char** argv) {
#ifdef HAVE_OPENCV
  cv::setNumThreads(bench::workerCount);
  addDraw("draw 17 degrees x 1.2, opaque", 17, 1.2, false);
  addDraw("draw 17 degrees x 1.2, alpha", 17, 1.2, true);
  addDraw("draw 40 degrees x 0.8, alpha", 40, 0.8, true);
  addDraw("draw 17 degrees x 0.3, alpha", 17, 0.3, true);
#endif
  return bench::runRatios(argc, argv);
}
