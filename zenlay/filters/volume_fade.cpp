// "Volume fade": fades the sound in and out. The gain is constant for a block.
#include <algorithm>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/media/sound_samples.h"

namespace zenlay {

namespace {

enum VolumeFadeTrack { trackIn, trackOut };

/// The gain `frames` after the beginning, or before the end, of a fade of that length (hundredths of a second).
int fadeGain(const EffectProcessInfo* info, int length, int frames) {
  int64_t fade = info->scale > 0 ? int64_t{length} * info->rate / (int64_t{info->scale} * 100) : 0;
  if (frames >= fade) return soundOne;
  return static_cast<int>(std::min<int64_t>((int64_t{frames} + 1) * soundOne / (fade + 1), soundOne));
}

int proc(EffectDefinition* effect, EffectProcessInfo* info) {
  const AudioBlock& block = *info->audio;
  int gain = std::min(fadeGain(info, effect->track[trackIn], info->absoluteFrame - block.start),
                      fadeGain(info, effect->track[trackOut], block.end - info->absoluteFrame));
  if (gain >= soundOne) return 1;
  if (gain < 1) return 0;
  scaleSamples(block.samples, info->host.sampleCount * info->host.channelCount, gain);
  return 1;
}

// Hundredths of a second.
constexpr TrackColumns tracks({
    {"In", 50, 0, 1000, 100, 0, 1000},
    {"Out", 50, 0, 1000, 100, 0, 1000},
});

}  // namespace

constinit EffectDefinition volumeFadeEffect = defineEffect({
    .flag = effectFilter | effectAudio,
    .name = "Volume fade",
    .tracks = tracks,
    .proc = proc,
});

}  // namespace zenlay
