#include "zenlay/media/sound_samples.h"

#include <algorithm>

namespace zenlay {

namespace {

constexpr int gainBits = 12;

int16_t saturate(int64_t value) { return static_cast<int16_t>(std::clamp<int64_t>(value, INT16_MIN, INT16_MAX)); }

}  // namespace

void plainAddSamples(int16_t* to, const int16_t* from, int n, int32_t evenGain, int32_t oddGain) {
  const int32_t gains[] = {evenGain, oddGain};
  for (int i = 0; i < n; i++) to[i] = saturate(to[i] + (from[i] * gains[i & 1] >> gainBits));
}

void plainScaleSamples(int16_t* samples, int n, int32_t gain) {
  for (int i = 0; i < n; i++) samples[i] = static_cast<int16_t>(samples[i] * gain >> gainBits);
}

void amplifySamples(int16_t* samples, int n, int32_t gain) {
  for (int i = 0; i < n; i++) samples[i] = saturate(int64_t{samples[i]} * gain >> gainBits);
}

}  // namespace zenlay
