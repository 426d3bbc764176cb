// "Standard playback": adds the object's sound to the output with its volume and balance.
#include <algorithm>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/media/sound_samples.h"

namespace zenlay {

namespace {

enum PlaybackTrack { trackVolume, trackBalance };
constexpr int full = 1000;  // of both tracks

int proc(EffectDefinition* effect, EffectProcessInfo* info) {
  const FrameProcessInfo& host = info->host;
  int gain = effect->track[trackVolume] * soundOne / full, balance = effect->track[trackBalance];
  int left = gain, right = gain;
  if (host.channelCount == 2) {
    left = gain * (full - std::max(balance, 0)) / full;
    right = gain * (full + std::min(balance, 0)) / full;
  }
  addSamples(host.audio, info->audio->samples, host.sampleCount * host.channelCount, left, right);
  return 1;
}

constexpr TrackColumns tracks({
    {"Volume", full, 0, 5 * full, 10, 0, 5 * full},
    {"Left-Right", 0, -full, full, 10, -full, full},
});

}  // namespace

constinit EffectDefinition standardPlayback = defineEffect({
    .flag = effectDrawing | effectNotListed | effectAudio,
    .name = "Standard playback",
    .tracks = tracks,
    .proc = proc,
});

}  // namespace zenlay
