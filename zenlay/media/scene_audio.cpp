// "Scene (audio)": the sound of another scene of the project. Its sound is made frame by frame at the project's rate;
// at another speed than its own the samples between are interpolated.
#include <algorithm>
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/sound_time.h"

namespace zenlay {

namespace {

enum SceneAudioTrack { trackPosition, trackSpeed };
enum SceneAudioCheck { checkLoop, checkSynchronize, checkSelect };

struct SceneAudioData {
  int32_t scene;  // 1..50; others are silent
};
static_assert(sizeof(SceneAudioData) == 4);

constexpr int64_t stepOne = normalTimeSpeed;  // places within a sample
constexpr int64_t maxFrameSamples = 1 << 22;
constexpr int nestings = 4;  // a scene may play itself

/// A stretch of the scene's sound: whole frames, behind them what the next frame is interpolated from.
struct SceneWindow {
  BlockSequence sequence;
  int64_t next;   // place behind the last block, in steps
  int64_t first;  // sample of the scene that stands at the front
  int32_t count;  // samples there are
  int32_t frame;  // the next frame to be mixed
  int32_t scene;  // that the samples are of; 0 = none
  int32_t channels;
};

/// Of the frame's first sample, at the project's rate.
int64_t frameSample(const EffectProcessInfo* info, int64_t frame) {
  return frame * info->scale * info->audio->rate / info->rate;
}
int64_t frameAt(const EffectProcessInfo* info, int64_t sample) {
  int64_t frame = sample * info->rate / (int64_t{info->scale} * info->audio->rate);
  while (frameSample(info, frame + 1) <= sample) frame++;
  return frame;
}

/// What reads the scene; `samples` stands behind the window and holds a frame and two sample frames more.
struct SceneReader {
  EffectDefinition* effect;
  EffectProcessInfo* info;
  SceneWindow* window;
  int16_t* samples;
  int scene, channels;
  int64_t length;  // samples of the whole scene

  bool mixNext() {
    int64_t first = frameSample(info, window->frame);
    int count = static_cast<int>(frameSample(info, int64_t{window->frame} + 1) - first);
    int kept = std::min(window->count, 1);
    memmove(samples, samples + static_cast<ptrdiff_t>(window->count - kept) * channels,
            static_cast<size_t>(kept * channels) * sizeof(int16_t));
    int16_t* place = samples + static_cast<ptrdiff_t>(kept) * channels;
    std::fill_n(place, static_cast<size_t>(count) * channels, int16_t{0});
    window->first = first - kept;
    window->count = kept + count;
    return effect->services->mixScene(info, scene, window->frame++, place, count) != 0;
  }

  /// Brings the sample and the one behind it into the window; the end of the scene counts as silence.
  bool reach(int64_t sample) {
    if (sample < window->first || sample > window->first + window->count) {
      window->count = 0;
      window->frame = static_cast<int32_t>(frameAt(info, sample));
      if (!mixNext()) return false;
    }
    int64_t needed = std::min(sample + 1, length - 1);
    while (window->first + window->count <= needed)
      if (!mixNext()) return false;
    return true;
  }

  int at(int64_t sample, int channel) const {
    return sample < length ? samples[(sample - window->first) * channels + channel] : 0;
  }

  /// One sample frame at a place between samples.
  void interpolate(int64_t place, int16_t* to) const {
    int64_t sample = place / stepOne, part = place % stepOne;
    for (int c = 0; c < channels; c++) {
      int64_t here = at(sample, c), step = at(sample + 1, c) - here;
      to[c] = static_cast<int16_t>(here + step * part / stepOne);
    }
  }
};

struct PlaceRange {
  int64_t first, last;  // steps, `last` exclusive
  bool loop;
};

/// The sample frames from `place` on that can be copied as they stand, at most `count`; 0 when they have to be made.
int copyRun(SceneReader& reader, int64_t place, int64_t step, const PlaceRange& range, int count, int16_t* to) {
  if (step != stepOne || place % stepOne != 0) return 0;
  const SceneWindow& window = *reader.window;
  int64_t sample = place / stepOne;
  int64_t end = std::min({window.first + window.count, range.last / stepOne, reader.length});
  int run = static_cast<int>(std::clamp<int64_t>(end - sample, 0, count));
  memcpy(to, reader.samples + (sample - window.first) * reader.channels,
         static_cast<size_t>(run) * reader.channels * sizeof(int16_t));
  return run;
}

/// The place behind the block.
int64_t readScene(SceneReader& reader, int64_t place, int64_t step, const PlaceRange& range) {
  int count = reader.info->host.sampleCount;
  int16_t* to = reader.info->audio->samples;
  for (int done = 0, run; done < count; done += run, place += run * step) {
    if (range.loop) place = wrapSample(place, range.first, range.last);
    int16_t* at = to + static_cast<ptrdiff_t>(done) * reader.channels;
    int64_t sample = place / stepOne;
    run = 1;
    if (place < range.first || place >= range.last || sample >= reader.length || !reader.reach(sample)) {
      std::fill_n(at, reader.channels, int16_t{0});
    } else if (int copied = copyRun(reader, place, step, range, count - done, at)) {
      run = copied;
    } else {
      reader.interpolate(place, at);
    }
  }
  return place;
}

int processSceneAudio(EffectDefinition* effect, EffectProcessInfo* info) {
  const EffectServiceTable* services = effect->services;
  const AudioBlock& block = *info->audio;
  ObjectRef followed =
      effect->check[checkSynchronize] ? services->companion(effect->object_ref, sceneMedia.name) : ObjectRef{0};
  ObjectData data{};
  if (!followed || !services->getObjectData(followed, &data) || !data.extraData) followed = 0;
  int scene = followed ? *static_cast<const int32_t*>(data.extraData) : extraData<SceneAudioData>(effect).scene;
  if (scene < 1 || services->sceneLength(scene) <= 0 || info->rate <= 0 || info->scale <= 0) return 0;

  PositionUnit unit{1, info->scale, info->rate};
  SoundTime time = soundTimeOf(effect, info, followed ? followed : effect->object_ref, unit);
  int64_t capacity = frameSample(info, 1) + 3;
  if (time.speed < minSoundSpeed || capacity > maxFrameSamples) return 0;
  int channels = info->host.channelCount;
  size_t size = sizeof(SceneWindow) + static_cast<size_t>(capacity) * channels * sizeof(int16_t);
  size = (size + alignof(SceneWindow) - 1) / alignof(SceneWindow) * alignof(SceneWindow);
  bool created = false;
  auto* memory = static_cast<uint8_t*>(services->workMemory(effect->object_ref, size * nestings, &created));
  if (!memory) return 0;
  auto* window = reinterpret_cast<SceneWindow*>(memory + size * (info->depth % nestings));
  SceneReader reader{effect,
                     info,
                     window,
                     reinterpret_cast<int16_t*>(window + 1),
                     scene,
                     channels,
                     frameSample(info, services->sceneLength(scene))};

  PlaceRange range{0, reader.length * stepOne, time.loop};
  if (time.ranged) {
    range.first = positionSample(time.rangeFirst, unit, block.rate) * stepOne;
    range.last = positionSample(time.rangeLast, unit, block.rate) * stepOne;
  }
  if (range.last <= range.first) return 0;
  bool follows = continues(&window->sequence, block) && window->scene == scene && window->channels == channels;
  if (!follows) {
    window->next = soundSample(time, info, unit, block.rate) * stepOne;
    window->count = 0;
    window->first = -1;
    window->scene = scene;
    window->channels = channels;
  }
  window->next = readScene(reader, window->next, time.speed, range);
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
