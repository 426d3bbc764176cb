// Sound between its samples: band-limited interpolation at any place.
//
// A sample at place t is the sum of the samples around it weighted by a sinc under a Kaiser window (J. O. Smith,
// Digital Audio Resampling). It depends on nothing but its place, so that sound can be resampled from anywhere on, at a
// rate that changes whenever it likes.
#pragma once

#include <memory>
#include <vector>

#include "cinora/weighted_sums.h"

namespace cinora {

class ResamplingFilter {
 public:
  /// For reading `in` samples in the time of `out` (no common divisor); falling rates are limited to their band.
  /// Filters of the same weights are shared.
  static std::shared_ptr<const ResamplingFilter> forRates(int64_t in, int64_t out);

  ResamplingFilter(int phases, double band);

  /// Samples it needs before and behind a place: the one at the place is number `reach() - 1` of `2 * reach()`.
  int reach() const { return reach_; }
  /// The weights of the 2 * reach() samples around a place `fraction` (0..1, below 1) behind a sample.
  WeightRow weights(double fraction) const;

 private:
  int phases_;   // places between two samples that have weights of their own; others lie between two of them
  double band_;  // of the file's that is kept
  int reach_;    // 2 * reach is a multiple of sumLanes
  std::vector<float> weights_;  // [phases + 1][2 * reach]
};

}  // namespace cinora
