// Sound between its samples: band-limited interpolation with a windowed sinc.
#pragma once

#include <cstdint>

namespace zenlay {

/// Places and steps within sound are counted in this part of a sample.
inline constexpr int64_t soundStep = 100000;
/// Most samples that a kernel takes on each side of its place.
inline constexpr int maxKernelReach = 1114;

/// Samples that the kernel takes on each side when every sample frame lies `step` behind the last one. Faster than
/// normal, it stretches with the step, so that what lies above the new half rate goes; beyond 32 times it stays.
int kernelReach(int64_t step);
/// The sample frame at `part` (0..soundStep - 1) behind the frame `at`. Reads kernelReach(step) - 1 frames before `at`
/// and kernelReach(step) behind it.
void interpolateSound(const int16_t* at, int channels, int64_t part, int64_t step, int16_t* to);

}  // namespace zenlay
