// Sums of samples by weight, in vectors chosen for the processor at run time: the same bits on every one.
#pragma once

#include <cstddef>

namespace cinora {

inline constexpr int sumLanes = 16;  // partial sums, so that the order of additions is the same everywhere

/// Samples and the weights of each, which lie between two rows: before + part * (behind - before).
struct WeightedStretch {
  const float *samples, *before, *behind;
  float part;
};

/// `channels` sums of each stretch, sum c over samples[c * plane + i] for i < length, a multiple of sumLanes.
void weightedSums(const WeightedStretch* stretches, int count, int length, int channels, size_t plane, float* sums);

}  // namespace cinora
