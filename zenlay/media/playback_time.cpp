#include "zenlay/media/playback_time.h"

#include <algorithm>

namespace zenlay {

constinit int lastVideoFrame = 0;

namespace {

constexpr int64_t maxPlayed = int64_t{1} << 40;

int64_t wrapInto(int64_t frame, int64_t first, int64_t last) {
  int64_t length = last - first + 1;
  int64_t rest = (frame - first) % length;
  return first + (rest < 0 ? rest + length : rest);
}

bool beginsBackward(EffectDefinition* effect) {
  const EffectServiceTable* services = effect->services;
  ObjectData head;
  if (services->getObjectData(services->chainHead(effect->object_ref), &head)) return head.startValues[playSpeed] < 0;
  return effect->track_begin_values[playSpeed] < 0;
}

PlaybackTime timeOf(EffectDefinition* effect, EffectProcessInfo* info, const HostFileInfo& video, int32_t position,
                    int32_t loop) {
  PlaybackTime time{};
  time.moving = moves(effect->track_modes[playPosition]);
  time.loop = loop != 0;
  time.position = position;
  time.sectionStart = effect->track_begin_values[playPosition];
  time.sectionEnd = effect->track_end_values[playPosition];
  time.frameCount = video.frameCount;
  if (!time.moving || time.loop) {
    time.played = effect->services->trackIntegral(effect, info, playSpeed);
    time.backward = beginsBackward(effect);
    time.rate = info->rate;
    time.scale = info->scale;
    time.videoRate = video.rate;
    time.videoScale = video.scale;
  }
  return time;
}

/// 0-based frames between which a moving position loops.
struct LoopRange {
  int64_t low, high;
};
LoopRange loopRange(const PlaybackTime& time, int64_t last) {
  const int64_t a = std::clamp<int64_t>(int64_t{time.sectionStart} - 1, 0, last);
  const int64_t b = std::clamp<int64_t>(int64_t{time.sectionEnd} - 1, 0, last);
  return {std::min(a, b), std::max(a, b)};
}

/// Where a moving position stands. Only a straight movement at an even pace lies between two frames.
int64_t movingHundredths(const EffectDefinition* effect, const EffectProcessInfo* info) {
  constexpr int64_t unit = 100;
  constexpr int32_t even = 1;  // mode word
  const int64_t from = effect->track_begin_values[playPosition], to = effect->track_end_values[playPosition];
  const int64_t length = int64_t{effect->frame_end} - effect->frame_begin;
  if (effect->track_modes[playPosition] != even || length < 1) return (int64_t{effect->track[playPosition]} - 1) * unit;
  const int64_t at = (int64_t{info->absoluteFrame} - effect->frame_begin) * unit + info->subFrame;
  return (from - 1) * unit + (to - from) * std::clamp<int64_t>(at, 0, length * unit) / length;
}

}  // namespace

int64_t playedFrames(const PlaybackTime& time) {
  if (time.rate <= 0 || time.scale <= 0 || time.videoRate <= 0 || time.videoScale <= 0) return 0;
  constexpr int64_t speedUnit = normalSpeed * 100;  // tenths of a percent x hundredths of a frame
  constexpr int64_t correction = 20;                // 1 / 0.05
  __int128 above = static_cast<__int128>(time.played) * time.scale * time.videoRate;
  __int128 below = static_cast<__int128>(speedUnit) * time.rate * time.videoScale;
  __int128 frames = (above * correction + (above < 0 ? -below : below)) / (below * correction);
  return static_cast<int64_t>(std::clamp<__int128>(frames, -maxPlayed, maxPlayed));
}

int playbackFrame(const PlaybackTime& time) {
  int64_t last = std::max(time.frameCount, 1) - 1;
  if (time.moving && !time.loop) return static_cast<int>(std::clamp<int64_t>(int64_t{time.position} - 1, 0, last));

  int64_t offset = playedFrames(time);
  if (time.loop && time.moving) {
    const auto [low, high] = loopRange(time, last);
    return static_cast<int>(wrapInto((time.backward ? high : low) + offset, low, high));
  }
  int64_t position = int64_t{time.position} - 1;
  int64_t frame = (time.backward ? last - position : position) + offset;
  return static_cast<int>(time.loop ? wrapInto(frame, 0, last) : std::clamp<int64_t>(frame, 0, last));
}

int playbackFrameOf(EffectDefinition* effect, EffectProcessInfo* info, const HostFileInfo& video) {
  return playbackFrame(timeOf(effect, info, video, effect->track[playPosition], effect->check[playLoop]));
}

int64_t playbackHundredths(EffectDefinition* effect, EffectProcessInfo* info, int sceneLength) {
  constexpr int64_t unit = 100;
  HostFileInfo scene{};
  scene.frameCount = sceneLength;
  const PlaybackTime time = timeOf(effect, info, scene, effect->track[playPosition], effect->check[playLoop]);
  const int64_t last = std::max(sceneLength, 1) - 1;
  if (time.moving && !time.loop) return std::clamp<int64_t>(movingHundredths(effect, info), 0, last * unit);

  const int64_t played = time.played / normalSpeed;
  if (!time.moving) {
    const int64_t position = int64_t{time.position} - 1, from = (time.backward ? last - position : position) * unit;
    return time.loop ? wrapInto(from + played, 0, last * unit + unit - 1)
                     : std::clamp<int64_t>(from + played, 0, last * unit);
  }
  const auto [low, high] = loopRange(time, last);
  return wrapInto((time.backward ? high : low) * unit + played, low * unit, high * unit + unit - 1);
}

void continuePlayback(EffectDefinition* effect, EditHandle edit, const HostFileInfo& video) {
  HostFileInfo clip{};
  if (moves(effect->track_modes[playPosition]) || video.rate <= 0 || video.frameCount <= 0) return;
  if (!effect->host_functions->getFileInfo(edit, &clip)) return;
  EffectProcessInfo info{};
  info.absoluteFrame = effect->frame_begin;
  info.rate = clip.rate;
  info.scale = clip.scale;
  int32_t& position = effect->track_begin_values[playPosition];
  PlaybackTime time = timeOf(effect, &info, video, position, effect->check_values[playLoop]);
  int frame = playbackFrame(time);
  position = time.backward ? video.frameCount - frame : frame + 1;
  effect->track_end_values[playPosition] = position;
}

}  // namespace zenlay
