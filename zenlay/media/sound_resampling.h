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

/// The weights of one place between two samples.
struct SoundKernel {
  int64_t part = -1, step;  // the place, in soundSteps behind a sample, and the step that it is made for
  int reach;
  float weights[2 * maxKernelReach];
};
/// Nothing to do where the kernel is aimed already. part: 0..soundStep - 1.
void aimKernel(SoundKernel*, int64_t part, int64_t step);
/// The sample frame at the kernel's place behind the frame `at`. Reads reach - 1 frames before it and reach behind.
void interpolateSound(const SoundKernel&, const int16_t* at, int channels, int16_t* to);

}  // namespace zenlay
