// Arithmetic on signed 16-bit samples: gains are 12-bit fixed point (4096 = 1.0), shifts arithmetic, sums saturated.
// Results are the same on every processor.
#pragma once

#include <cstdint>

namespace zenlay {

inline constexpr int soundOne = 4096;

/// to[i] = saturate(to[i] + (from[i] * gain >> 12)); even samples take `evenGain`, odd ones `oddGain`, each 0..20480.
void addSamples(int16_t* to, const int16_t* from, int n, int32_t evenGain, int32_t oddGain);
/// samples[i] = samples[i] * gain >> 12, gain 0..4096.
void scaleSamples(int16_t* samples, int n, int32_t gain);
/// The same with any gain that is not negative, saturated.
void amplifySamples(int16_t* samples, int n, int32_t gain);

/// The definition of those with a vector version.
void plainAddSamples(int16_t* to, const int16_t* from, int n, int32_t evenGain, int32_t oddGain);
void plainScaleSamples(int16_t* samples, int n, int32_t gain);

}  // namespace zenlay
