#include "zenlay/render/audio_mix.h"

#include <algorithm>
#include <vector>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/binding.h"
#include "zenlay/render/live_objects.h"
#include "zenlay/render/time_control.h"
#include "zenlay/render/work_memory.h"

namespace zenlay {

namespace {

/// State of the mix running at one nesting depth.
struct MixLevel {
  EffectProcessInfo info;
  AudioBlock block;
  int32_t layerTime[layersPerScene];
  std::vector<int16_t> samples;  // of the object being run
};
constinit MixLevel mixLevels[maxMixes]{};
constinit int runningMixes = 0;

/// The time that a time control lets flow, and how fast.
struct TimeFlow {
  int32_t time;   // hundredths of a frame
  int32_t speed;  // 100000 = normal
};

/// The controls' time around a frame, in hundredths of a frame.
struct ControlledTimes {
  int control;
  FrameRange chain;
  int32_t at(int frame) const { return controlledTime(objects + sectionAt(control, frame), frame, 0, false); }
  int32_t step(int frame) const { return at(frame + 1) - at(frame); }
};

constexpr int flowFrames = 30;

/// How fast the time passes between `frame` and the next. It is rounded from frame to frame, to hundredths or to parts
/// of the control's length: the speed is taken over as many frames on both sides as show no other speed for all their
/// rounding. So an even flow keeps one speed, and one that changes is followed without falling behind.
int32_t evenedSpeed(const ControlledTimes& times, int frame) {
  constexpr int64_t unit = normalTimeSpeed / 100;
  const int64_t rounding = (times.chain.last - times.chain.first) / 100 + 1;
  int64_t slowest = 0, fastest = INT64_MAX, speed = 0;
  int reach = std::min({flowFrames, frame - times.chain.first, times.chain.last - frame - 1});
  for (int k = 0; k <= reach; k++) {
    const int64_t way = int64_t{times.at(frame + 1 + k)} - times.at(frame - k), frames = 2 * k + 1;
    slowest = std::max(slowest, (way - rounding) * unit / frames);
    fastest = std::min(fastest, (way + rounding) * unit / frames);
    if (slowest > fastest) break;
    speed = std::clamp(way * unit / frames, slowest, fastest);
  }
  return static_cast<int32_t>(speed);
}

/// A leap of the time between `frame` and the next, where it passes forwards before and behind: a cut.
bool leaps(const ControlledTimes& times, int frame) {
  if (frame <= times.chain.first || frame + 2 > times.chain.last) return false;
  const int32_t before = times.step(frame - 1), behind = times.step(frame + 1), step = times.step(frame);
  const int32_t usual = 2 * std::max(before, behind) + (times.chain.last - times.chain.first) / 50 + 4;
  return before > 0 && behind > 0 && (step < 0 || step > usual);
}

TimeFlow flowOf(int control, int frame) {
  const ControlledTimes times{control, chainRange(control)};
  const int32_t time = times.at(frame);
  if (times.chain.first == times.chain.last) return {time, normalTimeSpeed};
  frame = std::min(frame, times.chain.last - 1);  // after which the last speed stays
  if (leaps(times, frame)) frame--;
  return {time, times.step(frame) < 0 ? 0 : evenedSpeed(times, frame)};
}

/// Audio effects only; the pictures' pipeline tells the others.
void broadcastAudioEvent(int32_t code, EffectProcessInfo* info) {
  for (int i = 0; i < effectCount; i++)
    if (effectList[i]->flag & effectAudio) sendEvent(effectList[i], code, 0, info);
}

/// Binds the slot and calls its effect. The definition may be running already, in an outer scene.
int runAudioSlot(ObjectRecord* object, int slot, EffectProcessInfo* info) {
  EffectDefinition* d = slotEffect(object, slot);
  if (!d->proc) return 1;
  bool inside = isBuiltIn(d) && d->flag & effectRunning;
  EffectDefinition outer;
  if (inside) outer = *d;
  SlotBinding binding;
  bindSlot(object, slot, &binding, info);
  d->flag |= effectRunning;
  int result = d->proc(d, info);
  d->flag = binding.flag;
  unbindSlot(object, slot, &binding);
  if (inside) *d = outer;
  return result;
}

void runObject(MixLevel* level, ObjectRecord* object) {
  EffectProcessInfo* info = &level->info;
  const EffectDefinition* first = slotEffect(object, 0);
  if (!first) return;
  FrameRange chain = chainRange(indexOf(object));
  level->block.start = chain.first;
  level->block.end = chain.last;
  info->currentObject = object;
  FrameProcessInfo host = info->host;
  bool ownSound = first->flag & effectMedia;
  if (!ownSound) std::fill(level->samples.begin(), level->samples.end(), int16_t{0});
  for (int slot = 0; slot < maxSlots; slot++) {
    const EffectDefinition* d = slotEffect(object, slot);
    if (!d) break;
    // The effect that plays the sound stands at the end like a drawing effect and cannot be left out.
    if (!slotIsEnabled(object, slot) && !(d->flag & effectDrawing)) {
      if (d->flag & effectMedia) break;
      continue;
    }
    // A host's filter knows one buffer only.
    info->host.audio = isBuiltIn(d) || !ownSound ? host.audio : level->samples.data();
    if (runAudioSlot(object, slot, info) != 1) break;
  }
  info->host = host;
}

void runLayers(MixLevel* level, int scene, int sceneFrame) {
  const LayerRecord* sceneLayers = layerTable + scene * layersPerScene;
  int limit = scene == currentScene ? layersInUse : layersPerScene;
  TimeFlow scenes{sceneFrame * 100, normalTimeSpeed}, flow = scenes;
  int flowEnd = 0;
  for (int layer = 0; layer < limit; layer++) {
    if (layer == flowEnd) flow = scenes;
    if (sceneLayers[layer].flags & layerHidden) continue;
    ObjectRecord* object = liveObject(scene, layer, flow.time / 100);
    TimeFlow own = flow;
    ObjectRecord* control = flow.time == scenes.time ? object : liveObject(scene, layer, sceneFrame);
    if (control && slotEffect(control, 0) == &timeControl && slotIsEnabled(control, 0)) {
      flow = flowOf(indexOf(control), sceneFrame);
      flowEnd = governedEnd(control, layer);
    }
    if (!object || !(object->flags & objectAudio)) continue;
    level->layerTime[layer] = level->block.time = own.time;
    level->block.speed = own.speed;
    runObject(level, object);
  }
}

void prepare(MixLevel* level, const FrameProcessInfo& host, int depth) {
  level->samples.resize(static_cast<size_t>(host.sampleCount) * static_cast<size_t>(host.channelCount));
  level->block = {};
  level->block.samples = level->samples.data();
  level->block.rate = environment.clip.audioRate;
  level->block.frame = host.frameNumber;
  EffectProcessInfo& info = level->info;
  info = {};
  info.host = host;
  info.depth = depth;
  info.num = 1;
  info.rate = environment.clip.rate;
  info.scale = environment.clip.scale;
  info.maxWidth = environment.workW;
  info.maxHeight = environment.workH;
  std::fill_n(level->layerTime, layersPerScene, 0);
  info.layerTime = level->layerTime;
  info.audio = &level->block;
}

/// For the object that plays the scene, null for the host. 1 when the mix was made.
int mix(const FrameProcessInfo& host, int scene, const ObjectRecord* player) {
  bool hasSound = host.audio && host.sampleCount > 0 && host.channelCount > 0 &&
                  environment.clip.flags & fileHasAudio && environment.clip.audioRate > 0;
  bool hasFrames = scene >= 0 && scene < maxScenes && sceneLength(scene) > 0;
  if (!hasSound || !hasFrames || runningMixes >= maxMixes) return 0;
  int depth = runningMixes++;
  MixLevel* level = &mixLevels[depth];
  prepare(level, host, depth);
  if (player) enterPlayer(makeObjectRef(indexOf(player), 0));
  broadcastAudioEvent(eventSceneBegin, &level->info);
  runLayers(level, scene, host.frameNumber);
  broadcastAudioEvent(eventSceneEnd, &level->info);
  if (player) leavePlayer();
  runningMixes--;
  return 1;
}

}  // namespace

void mixSceneSound(const FrameProcessInfo& host, int scene) { mix(host, scene, nullptr); }

int mixScene(EffectProcessInfo* info, int scene, int frame, int16_t* samples, int count) {
  FrameProcessInfo host = info->host;
  host.frameNumber = frame;
  host.frameCount = scene >= 0 && scene < maxScenes ? sceneLength(scene) : 0;
  host.audio = samples;
  host.sampleCount = count;
  return mix(host, scene, info->currentObject);
}

void freeSoundBuffers() {
  for (MixLevel& level : mixLevels) level = {};
}

}  // namespace zenlay
