// "Audio delay": a single echo. The ring keeps the dry sound, so that each sound is repeated once.
#include <algorithm>
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/media/sound_samples.h"

namespace zenlay {

namespace {

enum AudioDelayTrack { trackStrength, trackDelay };
constexpr int full = 1000;  // of the strength

constexpr int ringFrames = 65536;
constexpr int ringChannels = 2;  // of more, the first two

struct EchoState {
  BlockSequence sequence;
  int32_t index;     // where the next sample frame goes
  int32_t channels;  // sample frames lie in the ring as many samples apart, at most ringChannels
  int16_t ring[ringFrames * ringChannels];
};

/// Mono and stereo: in runs that neither end of the delay wraps in. Each run goes into the ring before the echo is read
/// from it; it may be longer than the delay, but must leave what it will read.
void echoRuns(EchoState* state, int16_t* samples, int count, int delay, int gain) {
  int channels = state->channels;
  for (int done = 0; done < count;) {
    int from = (state->index - delay) & (ringFrames - 1);
    int run = std::min({count - done, ringFrames - state->index, ringFrames - from});
    if (delay > 0) run = std::min(run, ringFrames - delay);
    int16_t* block = samples + static_cast<ptrdiff_t>(done) * channels;
    memcpy(state->ring + static_cast<ptrdiff_t>(state->index) * channels, block,
           static_cast<size_t>(run) * static_cast<size_t>(channels) * sizeof(int16_t));
    addSamples(block, state->ring + static_cast<ptrdiff_t>(from) * channels, run * channels, gain, gain);
    state->index = (state->index + run) & (ringFrames - 1);
    done += run;
  }
}

/// More than two channels: the first two, sample frame by sample frame.
void echoFrames(EchoState* state, int16_t* samples, int count, int stride, int delay, int gain) {
  for (int i = 0; i < count; i++, samples += stride) {
    int16_t* ring = state->ring + static_cast<ptrdiff_t>(state->index) * ringChannels;
    memcpy(ring, samples, ringChannels * sizeof(int16_t));
    int from = (state->index - delay) & (ringFrames - 1);
    addSamples(samples, state->ring + static_cast<ptrdiff_t>(from) * ringChannels, ringChannels, gain, gain);
    state->index = (state->index + 1) & (ringFrames - 1);
  }
}

int proc(EffectDefinition* effect, EffectProcessInfo* info) {
  const FrameProcessInfo& host = info->host;
  int16_t* samples = effect->flag & effectFilter ? info->audio->samples : host.audio;
  bool created = false;
  void* memory = effect->services->workMemory(effect->object_ref, sizeof(EchoState), &created);
  if (!memory) return 1;
  EchoState* state = static_cast<EchoState*>(memory);
  int channels = std::min(host.channelCount, ringChannels);
  bool follows = continues(&state->sequence, *info->audio);
  if (created || !follows || state->channels != channels) {
    state->index = 0;
    state->channels = channels;
    memset(state->ring, 0, sizeof state->ring);
  }
  int gain = effect->track[trackStrength] * soundOne / full;
  int delay = static_cast<int>(int64_t{effect->track[trackDelay]} * info->audio->rate / 1000) & (ringFrames - 1);
  if (host.channelCount <= ringChannels)
    echoRuns(state, samples, host.sampleCount, delay, gain);
  else
    echoFrames(state, samples, host.sampleCount, host.channelCount, delay, gain);
  return 1;
}

constexpr TrackColumns tracks({
    {"Strength", 500, 0, full, 10, 0, full},
    {"Delay (ms)", 100, 0, 1000, 1, 0, 1000},
});

}  // namespace

constinit EffectDefinition audioDelayEffect = defineEffect({
    .flag = effectFilter | effectAudio,
    .name = "Audio delay",
    .tracks = tracks,
    .proc = proc,
});

constinit EffectDefinition audioDelayObject = defineEffect({
    .flag = effectAudio,
    .name = "Audio delay",
    .tracks = tracks,
    .proc = proc,
});

}  // namespace zenlay
