// Sums of samples by weight, in vectors chosen for the processor at run time: the same bits on every one.
#pragma once

#include <cstddef>

namespace cinora {

inline constexpr int sumLanes = 16;  // partial sums, so that the order of additions is the same everywhere

/// The weights between two rows of them: before + part * (behind - before).
struct WeightRow {
  const float *before, *behind;
  float part;
};

/// sums[c] = sum of samples[c * stride + i] * weight[i] for i < count, a multiple of sumLanes.
void weightedSums(const float* samples, size_t stride, int channels, const WeightRow&, int count, float* sums);

}  // namespace cinora
