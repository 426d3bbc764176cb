#include "cinora/sound/resampling_filter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace cinora {
namespace {

constexpr int crossings = 32;        // of the sinc on each side
constexpr int fineness = 512;        // entries of the kernel's table a crossing
constexpr double beta = 9;           // of the window: what is stopped is 90 dB down
constexpr double passedBand = 0.96;  // of the lower rate's, where the filter's edge lies
constexpr int minPhases = 256, anyPhases = 512, maxPhases = 1024;
constexpr double nearPhase = 1e-5;  // of a phase: so near, its weights do

using Kernel = std::array<float, crossings * fineness + 2>;

const Kernel& kernel() {
  static const Kernel made = [] {
    Kernel table{};
    for (int i = 0; i < crossings * fineness; i++) {
      double x = static_cast<double>(i) / fineness, u = x / crossings, angle = std::numbers::pi * x;
      double window = std::cyl_bessel_i(0.0, beta * std::sqrt(1 - u * u)) / std::cyl_bessel_i(0.0, beta);
      table[i] = static_cast<float>(window * (i == 0 ? 1.0 : std::sin(angle) / angle));
    }
    return table;
  }();
  return made;
}

float kernelAt(double x) {
  double entry = std::abs(x) * fineness;
  if (entry >= crossings * fineness) return 0;
  int at = static_cast<int>(entry);
  float weight = static_cast<float>(entry - at);
  return kernel()[at] + weight * (kernel()[at + 1] - kernel()[at]);
}

/// Enough for the places that the rates really have, where they are few.
int phasesFor(int64_t out, double band) {
  if (out <= maxPhases)
    return static_cast<int>(out * std::max<int64_t>(1, static_cast<int64_t>(minPhases * band) / out));
  return std::max(16, static_cast<int>(anyPhases * band));
}

}  // namespace

ResamplingFilter::ResamplingFilter(int phases, double band)
    : phases_(phases),
      band_(band),
      reach_((static_cast<int>(std::ceil(crossings / band)) + sumLanes / 2 - 1) / (sumLanes / 2) * (sumLanes / 2)) {
  int taps = 2 * reach_;
  weights_.resize(static_cast<size_t>(phases + 1) * taps);
  for (int phase = 0; phase <= phases; phase++) {
    float* row = &weights_[static_cast<size_t>(phase) * taps];
    double sum = 0;
    for (int i = 0; i < taps; i++) {
      row[i] = kernelAt(band * (i - reach_ + 1 - static_cast<double>(phase) / phases));
      sum += row[i];
    }
    for (int i = 0; i < taps; i++) row[i] = static_cast<float>(row[i] / sum);
  }
}

std::shared_ptr<const ResamplingFilter> ResamplingFilter::forRates(int64_t in, int64_t out) {
  static std::vector<std::weak_ptr<const ResamplingFilter>> made;
  double band = passedBand * std::min(1.0, static_cast<double>(out) / static_cast<double>(in));
  int phases = phasesFor(out, band);
  std::erase_if(made, [](auto& filter) { return filter.expired(); });
  for (const auto& known : made)
    if (auto filter = known.lock(); filter->phases_ == phases && filter->band_ == band) return filter;
  auto filter = std::make_shared<const ResamplingFilter>(phases, band);
  made.push_back(filter);
  return filter;
}

ResamplingPlace ResamplingPlace::between(double first, double last, int count) {
  constexpr int64_t of = int64_t{1} << 32;
  auto split = [](double value, int64_t& whole, int64_t& part) {
    double floor = std::floor(value);
    whole = static_cast<int64_t>(floor);
    part = static_cast<int64_t>((value - floor) * static_cast<double>(of));
  };
  ResamplingPlace place{0, 0, of, 0, 0};
  split(first, place.whole, place.part);
  split((last - first) / count, place.wholeStep, place.partStep);
  return place;
}

void ResamplingFilter::around(const ResamplingPlace& at, const float* samples, WeightedStretch& stretch) const {
  double place = static_cast<double>(at.part) / static_cast<double>(at.of) * phases_ + nearPhase / 2;
  int phase = static_cast<int>(place), taps = 2 * reach_;
  double part = place - phase;
  stretch.samples = samples;
  stretch.before = &weights_[static_cast<size_t>(phase) * taps];
  stretch.behind = stretch.before + taps;
  stretch.part = part < nearPhase ? 0 : static_cast<float>(part);
}

}  // namespace cinora
