// "Monaural": mixes both channels into one.
#include <algorithm>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/media/sound_samples.h"

namespace zenlay {

namespace {

enum MonauralTrack { trackRatio };
constexpr int full = 1000;  // -1000 left .. 1000 right

int proc(EffectDefinition* effect, EffectProcessInfo* info) {
  if (info->host.channelCount != 2) return 1;
  int ratio = effect->track[trackRatio];
  // Two weights that add up to 2; even ones give (L + R) >> 1.
  int left = soundOne, right = soundOne;
  if (ratio < 0) {
    right = (ratio + full) * soundOne / full;
    left = 2 * soundOne - right;
  } else if (ratio > 0) {
    left = (full - ratio) * soundOne / full;
    right = 2 * soundOne - left;
  }
  int16_t* sample = info->audio->samples;
  for (int i = 0; i < info->host.sampleCount; i++, sample += 2)
    sample[0] = sample[1] = static_cast<int16_t>((sample[0] * left + sample[1] * right) >> 13);
  return 1;
}

constexpr TrackColumns tracks({
    {"Ratio", 0, -full, full, 10, -full, full},
});

}  // namespace

constinit EffectDefinition monauralEffect = defineEffect({
    .flag = effectFilter | effectAudio,
    .name = "Monaural",
    .tracks = tracks,
    .proc = proc,
});

}  // namespace zenlay
