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

/// The right half of the kernel and two zeros behind it.
const float* kernel() {
  static const std::vector<float> table = [] {
    std::vector<float> made(crossings * entries + 2);
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

}  // namespace

int kernelReach(int64_t step) { return static_cast<int>(crossings / densityAt(step)) + 1; }

void interpolateSound(const int16_t* at, int channels, int64_t part, int64_t step, int16_t* to) {
  const float* table = kernel();
  const int reach = kernelReach(step);
  const double density = densityAt(step) * entries, offset = static_cast<double>(part) / soundStep;
  const int16_t* first = at - static_cast<ptrdiff_t>(reach - 1) * channels;
  float weights[2 * maxKernelReach];
  double sum = 0;
  for (int i = 0; i < 2 * reach; i++) {
    double distance = std::min(std::abs(i - (reach - 1) - offset) * density, double{crossings * entries});
    int entry = static_cast<int>(distance);
    weights[i] = table[entry] + (table[entry + 1] - table[entry]) * static_cast<float>(distance - entry);
    sum += weights[i];
  }
  for (int c = 0; c < channels; c++) {
    double value = 0;
    for (int i = 0; i < 2 * reach; i++) value += double{weights[i]} * first[static_cast<ptrdiff_t>(i) * channels + c];
    to[c] = static_cast<int16_t>(std::clamp<long>(std::lround(value / sum), INT16_MIN, INT16_MAX));
  }
}

}  // namespace zenlay
