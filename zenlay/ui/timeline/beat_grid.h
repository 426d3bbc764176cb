// The beat grid of the timeline: where beats and bars begin, in frames of the scene.
#pragma once

#include <cstdint>

namespace zenlay {

inline constexpr int tempoUnit = 10000;  // of grid_tempo per beat a minute

/// What the zoom lets be shown: fewer than one line in 8 pixels.
enum BeatLines { beatLinesNone, beatLinesBars, beatLinesBeats };
BeatLines beatLines();

/// Of the beat that frame lies in; 0 begins at the reference frame.
int64_t beatIndex(int frame);
int64_t barIndex(int frame);
/// Whether beat `index` begins a bar.
bool beginsBar(int64_t index);

/// The beginning of a beat (of a bar) nearest to the frame, the earlier one when two are as near.
int nearestBeat(int frame, bool bars);

}  // namespace zenlay
