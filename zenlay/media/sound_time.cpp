#include "zenlay/media/sound_time.h"

#include <algorithm>
#include <cstdlib>

#include "zenlay/media/playback_time.h"

namespace zenlay {

namespace {

constexpr int64_t speedPerTrack = normalTimeSpeed / normalSpeed;
constexpr int64_t maxSample = int64_t{1} << 52;

int64_t limited(__int128 value) { return static_cast<int64_t>(std::clamp<__int128>(value, -maxSample, maxSample)); }

/// The values of the section that holds the record's time.
ObjectData sectionOf(const EffectServiceTable* services, const EffectProcessInfo* info, ObjectRef ref) {
  ObjectData data{};
  services->getObjectData(ref, &data);
  for (ObjectRef next = ref; data.lastFrame <= info->absoluteFrame && (next = services->nextSection(next));) {
    ObjectData after;
    if (!services->getObjectData(next, &after) || after.firstFrame > info->absoluteFrame) break;
    data = after;
  }
  return data;
}

/// The speed at which the position's values pass in the section: from its first value to its last.
int32_t speedThrough(const ObjectData& section, const EffectProcessInfo* info, const PositionUnit& unit) {
  int64_t frames = section.lastFrame - section.firstFrame;
  if (frames <= 0) return 0;
  __int128 way = int64_t{section.endValues[playPosition]} - section.startValues[playPosition];
  __int128 above = way * unit.part * info->rate * normalTimeSpeed, below = __int128{unit.whole} * info->scale * frames;
  return static_cast<int32_t>(std::clamp<__int128>((2 * above + below) / (2 * below), 0, INT32_MAX));
}

}  // namespace

SoundTime soundTimeOf(EffectDefinition* effect, EffectProcessInfo* info, ObjectRef player, const PositionUnit& unit) {
  const EffectServiceTable* services = effect->services;
  ObjectData section = sectionOf(services, info, player);
  SoundTime time{};
  if (!section.startValues || info->rate <= 0 || info->scale <= 0) return time;
  bool moving = moves(section.modes[playPosition]);
  time.loop = section.checks[playLoop] != 0;
  time.ranged = time.loop && moving;
  time.rangeFirst = time.position = section.startValues[playPosition];
  time.rangeLast = section.endValues[playPosition];
  if (moving && !time.loop) {
    time.speed = speedThrough(section, info, unit);
    int64_t elapsed = (int64_t{info->absoluteFrame} - section.firstFrame) * 100 + info->subFrame;
    time.played = elapsed * time.speed;
  } else {
    int32_t values[2] = {time.position, normalSpeed};
    services->getTrackValues(player, std::min(info->absoluteFrame, section.lastFrame), info->subFrame, values, 0);
    time.speed = static_cast<int32_t>(values[playSpeed] * speedPerTrack);
    int64_t beyond = (int64_t{info->absoluteFrame} - section.lastFrame - 1) * 100 + info->subFrame;
    int64_t ended = std::max<int64_t>(beyond, 0);  // since the followed object's end, where its speed stays
    time.played = (services->trackIntegralOf(player, info, playSpeed) + ended * values[playSpeed]) * speedPerTrack;
  }
  int64_t flowing = int64_t{time.speed} * info->audio->speed / normalTimeSpeed;
  time.speed = static_cast<int32_t>(std::clamp<int64_t>(flowing, 0, INT32_MAX));
  return time;
}

int64_t soundSample(const SoundTime& time, const EffectProcessInfo* info, const PositionUnit& unit, int64_t rate) {
  constexpr int64_t playedUnit = int64_t{normalTimeSpeed} * 100;
  __int128 seconds = __int128{time.played} * info->scale * unit.whole +
                     (__int128{time.position} - unit.origin) * unit.part * playedUnit * info->rate;
  return limited(seconds * rate / (__int128{playedUnit} * info->rate * unit.whole));
}

int64_t positionSample(int32_t value, const PositionUnit& unit, int64_t rate) {
  return limited((__int128{value} - unit.origin) * unit.part * rate / unit.whole);
}

void continueSound(EffectDefinition* effect, EditHandle edit, bool framesOfFilm) {
  HostFileInfo clip{};
  bool moving = moves(effect->track_modes[playPosition]);
  if (moving || !effect->host_functions->getFileInfo(edit, &clip) || clip.rate <= 0 || clip.scale <= 0) return;
  EffectProcessInfo info{};
  AudioBlock block{};
  block.speed = normalTimeSpeed;
  info.audio = &block;
  info.absoluteFrame = effect->frame_begin;
  info.rate = clip.rate;
  info.scale = clip.scale;
  PositionUnit unit = framesOfFilm ? PositionUnit{1, clip.scale, clip.rate} : hundredthsOfASecond;
  SoundTime time = soundTimeOf(effect, &info, effect->object_ref, unit);
  int64_t halves = soundSample(time, &info, unit, 2 * unit.whole) / unit.part;
  int32_t position = static_cast<int32_t>(unit.origin + (halves + 1) / 2);
  position = std::clamp(position, effect->track_min[playPosition], effect->track_max[playPosition]);
  effect->track_begin_values[playPosition] = effect->track_end_values[playPosition] = position;
}

bool hasStrayed(const AudioBlock& block, int64_t next, int64_t timed, int64_t second, int64_t lap) {
  if (block.speed == normalTimeSpeed) return false;
  int64_t off = std::abs(next - timed);
  if (lap > 0) off = std::min(off % lap, lap - off % lap);
  return off > second / 10;
}

int64_t wrapSample(int64_t sample, int64_t first, int64_t last) {
  int64_t length = last - first, rest = (sample - first) % length;
  return first + (rest < 0 ? rest + length : rest);
}

}  // namespace zenlay
