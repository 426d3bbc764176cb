// Sound between its samples: band-limited interpolation at any place.
//
// A sample at place t is the sum of the samples around it weighted by a sinc under a Kaiser window (J. O. Smith,
// Digital Audio Resampling). It depends on nothing but its place, so that sound can be resampled from anywhere on, at a
// rate that changes whenever it likes.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "cinora/sound/weighted_sums.h"

namespace cinora {

/// A place in the file's samples, and the steps by which it goes on. Exact: whole + part / of.
struct ResamplingPlace {
  int64_t whole, part, of;
  int64_t wholeStep, partStep;

  /// n * in / out from sample n on.
  static ResamplingPlace atSample(int64_t n, int64_t in, int64_t out) {
    return {n * in / out, n * in % out, out, in / out, in % out};
  }
  /// `count` even steps from one place to another.
  static ResamplingPlace between(double first, double last, int count);

  void advance() {
    whole += wholeStep;
    part += partStep;
    if (part >= of) {
      part -= of;
      whole++;
    }
  }
  int64_t wholeAfter(int64_t steps) const { return whole + wholeStep * steps + (part + partStep * steps) / of; }
};

class ResamplingFilter {
 public:
  /// For reading `in` samples in the time of `out` (no common divisor); falling rates are limited to their band.
  /// Filters of the same weights are shared.
  static std::shared_ptr<const ResamplingFilter> forRates(int64_t in, int64_t out);

  ResamplingFilter(int phases, double band);

  /// Samples it needs before and behind a place: the one at the place is number `reach() - 1` of `2 * reach()`.
  int reach() const { return reach_; }
  /// The 2 * reach() samples around a place, the first of which are given, and their weights.
  void around(const ResamplingPlace&, const float* samples, WeightedStretch&) const;

 private:
  int phases_;   // places between two samples that have weights of their own; others lie between two of them
  double band_;  // of the file's that is kept
  int reach_;    // 2 * reach is a multiple of sumLanes
  std::vector<float> weights_;  // [phases + 1][2 * reach]
};

}  // namespace cinora
