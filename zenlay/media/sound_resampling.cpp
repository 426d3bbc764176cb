#include "zenlay/media/sound_resampling.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace zenlay {

namespace {

// A sinc under a Kaiser window, kept as a table between whose entries is interpolated (J. O. Smith and P. Gossett, "A
// flexible sampling-rate conversion method", ICASSP 1984).
constexpr int crossings = 32;    // of zero, on each side
constexpr int entries = 512;     // a crossing: interpolating between them is wrong by less than a sample's last bit
constexpr double beta = 8.0;     // stops by 80 dB
constexpr double passed = 0.92;  // of the half rate: the middle of the slope that ends there
constexpr int64_t maxStretch = 32;
static_assert(crossings * maxStretch / passed < maxKernelReach);

/// Modified Bessel function of the first kind, order 0, by its power series.
double bessel0(double x) {
  double sum = 1, term = 1;
  for (int k = 1; term > sum * 1e-12; k++) {
    term *= (x / (2 * k)) * (x / (2 * k));
    sum += term;
  }
  return sum;
}

/// The right half of the kernel, and zeros for what the last sample lies beyond it.
const float* kernelTable() {
  static const std::vector<float> table = [] {
    std::vector<float> made((crossings + 1) * entries + 2);
    for (int i = 0; i < crossings * entries; i++) {
      double x = static_cast<double>(i) / entries, angle = std::numbers::pi * x;
      double window = bessel0(beta * std::sqrt(1 - (x / crossings) * (x / crossings))) / bessel0(beta);
      made[i] = static_cast<float>(i ? std::sin(angle) / angle * window : 1);
    }
    return made;
  }();
  return table.data();
}

/// Crossings a sample.
double densityAt(int64_t step) {
  return passed * soundStep / static_cast<double>(std::clamp(step, soundStep, maxStretch * soundStep));
}

/// Fills one side, from the sample next to the place on.
void weigh(float* weights, int direction, int count, double distance, double density) {
  const float* table = kernelTable();
  for (int i = 0; i < count; i++, weights += direction) {
    const double place = (distance + i) * density;
    const int entry = static_cast<int>(place);
    *weights = table[entry] + (table[entry + 1] - table[entry]) * static_cast<float>(place - entry);
  }
}

int16_t rounded(float value) {
  return static_cast<int16_t>(std::clamp<long>(std::lround(value), INT16_MIN, INT16_MAX));
}

}  // namespace

int kernelReach(int64_t step) { return static_cast<int>(crossings / densityAt(step)) + 1; }

void aimKernel(SoundKernel* kernel, int64_t part, int64_t step) {
  if (kernel->part == part && kernel->step == step) return;
  kernel->part = part;
  kernel->step = step;
  kernel->reach = kernelReach(step);
  const double density = densityAt(step) * entries, behind = static_cast<double>(part) / soundStep;
  weigh(kernel->weights + kernel->reach - 1, -1, kernel->reach, behind, density);
  weigh(kernel->weights + kernel->reach, 1, kernel->reach, 1 - behind, density);
  double sum = 0;
  for (int i = 0; i < 2 * kernel->reach; i++) sum += kernel->weights[i];
  for (int i = 0; i < 2 * kernel->reach; i++) kernel->weights[i] /= static_cast<float>(sum);
}

void interpolateSound(const SoundKernel& kernel, const int16_t* at, int channels, int16_t* to) {
  const float* weights = kernel.weights;
  const int16_t* from = at - static_cast<ptrdiff_t>(kernel.reach - 1) * channels;
  if (channels == 2) {
    float even[2] = {}, odd[2] = {};
    for (int i = 0; i < 2 * kernel.reach; i += 2, from += 4)
      for (int c = 0; c < 2; c++) {
        even[c] += weights[i] * from[c];
        odd[c] += weights[i + 1] * from[2 + c];
      }
    for (int c = 0; c < 2; c++) to[c] = rounded(even[c] + odd[c]);
    return;
  }
  for (int c = 0; c < channels; c++) {
    float value = 0;
    for (int i = 0; i < 2 * kernel.reach; i++) value += weights[i] * from[static_cast<ptrdiff_t>(i) * channels + c];
    to[c] = rounded(value);
  }
}

}  // namespace zenlay
