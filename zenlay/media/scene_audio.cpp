// "Scene (audio)": the sound of another scene of the project, mixed frame by frame at the project's rate and resampled
// when it is played at another speed than its own.
#include <algorithm>
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/sound_resampling.h"
#include "zenlay/media/sound_time.h"

namespace zenlay {

namespace {

enum SceneAudioTrack { trackPosition, trackSpeed };
enum SceneAudioCheck { checkLoop, checkSynchronize, checkSelect };

struct SceneAudioData {
  int32_t scene;  // 1..50; others are silent
};
static_assert(sizeof(SceneAudioData) == 4);

constexpr int64_t maxFrameSamples = 1 << 22;
constexpr int history = 2 * maxKernelReach;  // samples kept when the next frame is mixed

/// What a stream is of. Frames of the scene, `last` exclusive; without `loop` they are the whole scene.
struct StreamSource {
  int32_t scene, channels, first, last;
  bool loop;
  bool operator==(const StreamSource&) const = default;
};

/// The scene's sound in the order it is played, as far as the next block may need it. Samples are counted onward from
/// lap to lap. They stand behind the record: the history and one frame.
struct SceneStream {
  BlockSequence sequence;
  StreamSource source;  // scene 0: none
  int64_t place;        // behind the last block, in soundSteps
  int64_t first;        // the sample at the front
  int32_t count;        // samples there are
  int32_t frame;        // the next to be mixed
};

/// The frame's first sample, at the project's rate.
int64_t frameSample(const EffectProcessInfo* info, int64_t frame) {
  return frame * info->scale * info->audio->rate / info->rate;
}
int64_t frameAt(const EffectProcessInfo* info, int64_t sample) {
  int64_t frame = sample * info->rate / (int64_t{info->scale} * info->audio->rate);
  while (frameSample(info, frame + 1) <= sample) frame++;
  while (frameSample(info, frame) > sample) frame--;
  return frame;
}

struct SceneReader {
  EffectDefinition* effect;
  EffectProcessInfo* info;
  SceneStream* stream;
  int16_t* samples;
  int32_t length;  // frames of the scene
  SoundKernel kernel = {};

  int16_t* at(int64_t sample) const { return samples + (sample - stream->first) * stream->source.channels; }

  /// Behind both ends of the scene there is silence.
  void mixNext() {
    const StreamSource& source = stream->source;
    int count = static_cast<int>(frameSample(info, int64_t{stream->frame} + 1) - frameSample(info, stream->frame));
    int kept = std::min(stream->count, history);
    memmove(samples, samples + static_cast<ptrdiff_t>(stream->count - kept) * source.channels,
            static_cast<size_t>(kept) * source.channels * sizeof(int16_t));
    stream->first += stream->count - kept;
    stream->count = kept + count;
    int16_t* place = samples + static_cast<ptrdiff_t>(kept) * source.channels;
    std::fill_n(place, static_cast<size_t>(count) * source.channels, int16_t{0});
    if (stream->frame >= 0 && stream->frame < length)
      effect->services->mixScene(info, source.scene, stream->frame, place, count);
    stream->frame++;
    if (source.loop && stream->frame >= source.last) stream->frame = source.first;
  }

  /// The frame that holds the sample is the next to be mixed.
  void seek(int64_t sample) {
    const StreamSource& source = stream->source;
    int64_t inScene = sample;
    if (source.loop) inScene = wrapSample(sample, frameSample(info, source.first), frameSample(info, source.last));
    int64_t frame = frameAt(info, inScene);
    stream->frame = static_cast<int32_t>(frame);
    stream->first = sample - (inScene - frameSample(info, frame));
    stream->count = 0;
  }

  /// Brings the samples from..to into the stream; no more than a kernel takes.
  void reach(int64_t from, int64_t to) {
    bool behind = from > stream->first + stream->count;
    if (stream->count == 0 || from < stream->first || behind) seek(from);
    while (stream->first + stream->count <= to) mixNext();
  }

  /// The next sample frames at that speed, made to measure or copied as they stand.
  void read(int64_t step, int16_t* to, int count) {
    const int channels = stream->source.channels, taken = kernelReach(step);
    for (int done = 0, run; done < count; done += run, stream->place += run * step) {
      int64_t sample = stream->place / soundStep, part = stream->place % soundStep;
      int16_t* out = to + static_cast<ptrdiff_t>(done) * channels;
      if (step == soundStep && part == 0) {
        reach(sample, sample);
        run = static_cast<int>(std::min<int64_t>(stream->first + stream->count - sample, count - done));
        memcpy(out, at(sample), static_cast<size_t>(run) * channels * sizeof(int16_t));
      } else {
        reach(sample - taken + 1, sample + taken);
        run = 1;
        aimKernel(&kernel, part, step);
        interpolateSound(kernel, at(sample), channels, out);
      }
    }
  }
};

/// The place at which the block begins as the time says. What was played before is a whole number of steps, as it is
/// when the blocks follow each other.
int64_t timedPlace(const SoundTime& time, const EffectProcessInfo* info, const PositionUnit& unit) {
  SoundTime played = time;
  played.position = unit.origin;
  int64_t way = soundSample(played, info, unit, info->audio->rate * soundStep);
  return positionSample(time.position, unit, info->audio->rate) * soundStep + way / time.speed * time.speed;
}

int silence(const EffectProcessInfo* info) {
  std::fill_n(info->audio->samples, static_cast<size_t>(info->host.sampleCount) * info->host.channelCount, int16_t{0});
  return 1;
}

/// Work memory for the stream and its samples; null when there is none.
SceneStream* streamOf(EffectDefinition* effect, const EffectProcessInfo* info) {
  size_t samples = static_cast<size_t>(history + frameSample(info, 1) + 1) * info->host.channelCount;
  bool created = false;
  return static_cast<SceneStream*>(
      effect->services->workMemory(effect->object_ref, sizeof(SceneStream) + samples * sizeof(int16_t), &created));
}

int processSceneAudio(EffectDefinition* effect, EffectProcessInfo* info) {
  const EffectServiceTable* services = effect->services;
  const AudioBlock& block = *info->audio;
  ObjectRef followed =
      effect->check[checkSynchronize] ? services->companion(effect->object_ref, sceneMedia.name) : ObjectRef{0};
  ObjectData data{};
  if (!followed || !services->getObjectData(followed, &data) || !data.extraData) followed = 0;
  int scene = followed ? *static_cast<const int32_t*>(data.extraData) : extraData<SceneAudioData>(effect).scene;
  if (scene < 1 || info->rate <= 0 || info->scale <= 0 || frameSample(info, 1) > maxFrameSamples) return silence(info);

  PositionUnit unit{1, info->scale, info->rate};
  SoundTime time = soundTimeOf(effect, info, followed ? followed : effect->object_ref, unit);
  const int32_t length = services->sceneLength(scene);
  StreamSource source{scene, info->host.channelCount, 0, length, time.loop};
  if (time.ranged) {
    source.first = time.rangeFirst - unit.origin;
    source.last = time.rangeLast - unit.origin;
  }
  int64_t lap = frameSample(info, source.last) - frameSample(info, source.first);
  if (time.speed < minSoundSpeed || lap <= 0) return silence(info);
  SceneStream* stream = streamOf(effect, info);
  if (!stream) return 0;
  int64_t timed = timedPlace(time, info, unit);
  bool follows = continues(&stream->sequence, block) && stream->source == source;
  if (!follows || hasStrayed(block, stream->place, timed, block.rate * soundStep, time.loop ? lap * soundStep : 0)) {
    stream->source = source;
    stream->place = timed;
    stream->count = 0;
  }
  SceneReader{effect, info, stream, reinterpret_cast<int16_t*>(stream + 1), length}.read(time.speed, block.samples,
                                                                                         info->host.sampleCount);
  return 1;
}

constexpr ExtraControl controls[] = {
    {checkSelect, extraScene, offsetof(SceneAudioData, scene)},
};

int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle edit,
                  EffectDefinition* effect) {
  if (!isObjectEvent(message, wparam, lparam, objectDivided))
    return operateControls(effect, controls, std::size(controls), message, wparam, lparam);
  continueSound(effect, edit, true);
  return 1;
}

constexpr TrackColumns tracks({
    {"Playback position", 1, 1, 800000, 0, 1, 800000},
    {"vPlay", 1000, 100, 20000, 10, 100, 8000},
});
constexpr CheckColumns checks({
    {"Loop playback", 0},
    {"Sync with the scene", 1},
    {"Scene Selection", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(SceneAudioData::scene), "scene"},
};
constexpr SceneAudioData defaults = {1};

}  // namespace

constinit EffectDefinition sceneAudioMedia = defineEffect({
    .flag = effectMedia | effectAudio,
    .name = "Scene (audio)",
    .tracks = tracks,
    .checks = checks,
    .proc = processSceneAudio,
    .window_proc = handleMessage,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(SceneAudioData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
