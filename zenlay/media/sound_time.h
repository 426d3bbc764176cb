// From timeline time to a place in a sound: position, speed, looping. Shared by the players of files and of scenes.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

/// How "Playback position" counts: seconds = (value - origin) * part / whole.
struct PositionUnit {
  int32_t origin;
  int64_t part, whole;
};

/// Where a block begins and how its source runs on.
struct SoundTime {
  int64_t played;    // of the source since the object began: 1/100000 of hundredths of a project frame
  int32_t speed;     // 100000 = normal, the time control's included
  int32_t position;  // value that the object began with
  bool loop;
  bool ranged;                    // looping runs between the two values below
  int32_t rangeFirst, rangeLast;  // not over the whole source
};

inline constexpr PositionUnit hundredthsOfASecond = {0, 1, 100};
inline constexpr int minSoundSpeed = 10000;  // below is silence

/// Of an object with the tracks "Playback position" and "vPlay" and the check "Loop playback" in front: `player`, slot
/// 0 of the playing object or of the one it follows.
SoundTime soundTimeOf(EffectDefinition*, EffectProcessInfo*, ObjectRef player, const PositionUnit&);
/// trunc((seconds played + seconds of the position) * rate).
int64_t soundSample(const SoundTime&, const EffectProcessInfo*, const PositionUnit&, int64_t rate);
/// trunc(seconds of a position value * rate).
int64_t positionSample(int32_t value, const PositionUnit&, int64_t rate);
/// For objectDivided: the still position of the bound section becomes the place that it begins with, so that the new
/// object goes on where the old one ended. `framesOfFilm`: the position counts frames of the film, not hundredths of a
/// second.
void continueSound(EffectDefinition*, EditHandle, bool framesOfFilm);
/// Whether playback that went on to `next` is more than a tenth of a second off the place `timed` that the time asks
/// for: a time control's flow is an average. `lap`: length of what is looped, or 0.
bool hasStrayed(const AudioBlock&, int64_t next, int64_t timed, int64_t second, int64_t lap);
/// The place inside first..last - 1 by whole lengths; the range is not empty.
int64_t wrapSample(int64_t sample, int64_t first, int64_t last);

}  // namespace zenlay
