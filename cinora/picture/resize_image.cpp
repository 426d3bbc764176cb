#include "cinora/picture/resize_image.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace cinora {
namespace {

using zenlay::FramePixel;

constexpr int weightBits = 14;
constexpr int weightOne = 1 << weightBits;

/// What one pixel takes from the source: `count` pixels from `first`, their weights summing to weightOne.
struct Taps {
  int first, count;
  size_t weights;  // index of the first weight
};

struct Kernel {
  std::vector<Taps> taps;  // one a destination pixel
  std::vector<int> weights;
};

Kernel triangleKernel(int sourceSize, int size) {
  Kernel kernel;
  double step = static_cast<double>(sourceSize) / size;
  double reach = std::max(1.0, step);
  for (int i = 0; i < size; i++) {
    double centre = (i + 0.5) * step - 0.5;
    int first = static_cast<int>(std::ceil(centre - reach)), last = static_cast<int>(std::floor(centre + reach));
    int from = std::clamp(first, 0, sourceSize - 1), to = std::clamp(last, 0, sourceSize - 1);
    std::vector<double> shares(to - from + 1);
    double sum = 0;
    for (int k = first; k <= last; k++) {
      double share = std::max(0.0, 1 - std::abs(k - centre) / reach);
      shares[std::clamp(k, from, to) - from] += share;
      sum += share;
    }
    Taps taps{from, to - from + 1, kernel.weights.size()};
    int left = weightOne, largest = 0;
    for (int k = 0; k < taps.count; k++) {
      int weight = static_cast<int>(std::lround(shares[k] / sum * weightOne));
      kernel.weights.push_back(weight);
      left -= weight;
      if (shares[k] > shares[largest]) largest = k;
    }
    kernel.weights[taps.weights + largest] += left;
    kernel.taps.push_back(taps);
  }
  return kernel;
}

/// Sum of `count` pixels that lie `stride` apart.
FramePixel weighted(const FramePixel* pixels, int stride, const int* weights, int count) {
  int y = weightOne / 2, cb = weightOne / 2, cr = weightOne / 2;
  for (int k = 0; k < count; k++, pixels += stride) {
    y += pixels->y * weights[k];
    cb += pixels->cb * weights[k];
    cr += pixels->cr * weights[k];
  }
  return {static_cast<int16_t>(y >> weightBits), static_cast<int16_t>(cb >> weightBits),
          static_cast<int16_t>(cr >> weightBits)};
}

}  // namespace

void resizeFrame(WorkerPool& pool, FramePixel* destination, int rowPixels, int width, int height,
                 const FrameArea& source) {
  if (width < 1 || height < 1 || source.width < 1 || source.height < 1) return;
  Kernel across = triangleKernel(source.width, width), down = triangleKernel(source.height, height);
  std::vector<FramePixel> narrowed(static_cast<size_t>(width) * source.height);
  pool.forRows(source.height, [&](int first, int last) {
    for (int row = first; row < last; row++) {
      const FramePixel* from = source.rows + static_cast<size_t>(row) * source.rowPixels;
      FramePixel* to = &narrowed[static_cast<size_t>(row) * width];
      for (int x = 0; x < width; x++) {
        const Taps& taps = across.taps[x];
        to[x] = weighted(from + taps.first, 1, &across.weights[taps.weights], taps.count);
      }
    }
  });
  pool.forRows(height, [&](int first, int last) {
    for (int row = first; row < last; row++) {
      const Taps& taps = down.taps[row];
      const FramePixel* from = &narrowed[static_cast<size_t>(taps.first) * width];
      FramePixel* to = destination + static_cast<size_t>(row) * rowPixels;
      for (int x = 0; x < width; x++) to[x] = weighted(from + x, width, &down.weights[taps.weights], taps.count);
    }
  });
}

}  // namespace cinora
