#include "zenlay/ui/timeline/beat_grid.h"

#include <algorithm>
#include <cmath>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/timeline_view.h"

namespace zenlay {
namespace {

constexpr double lineSpacing = 8;  // pixels

/// Beats in so many frames. The quotient comes last, so that whole numbers of beats are met exactly.
double beatsIn(double frames) {
  const GridSettings& grid = preferences.grid;
  return frames * (static_cast<double>(grid.grid_tempo) * environment.clip.scale) /
         (double{tempoUnit} * environment.clip.rate * 60);
}

double framesOf(double beats) {
  return beats * (double{tempoUnit} * environment.clip.rate * 60) /
         (static_cast<double>(preferences.grid.grid_tempo) * environment.clip.scale);
}

int64_t beatOrBar(int frame, bool bars) { return bars ? barIndex(frame) : beatIndex(frame); }

/// First frame of that beat or bar.
int64_t beginning(int64_t index, bool bars) {
  double beats = static_cast<double>(index) * (bars ? preferences.grid.grid_time : 1);
  int64_t frame = static_cast<int64_t>(std::ceil(framesOf(beats))) + preferences.grid.grid_base - 1;
  frame = std::clamp<int64_t>(frame, INT32_MIN / 2, INT32_MAX / 2);
  if (beatOrBar(static_cast<int>(frame) - 1, bars) >= index) return frame - 1;  // rounded up too far
  return frame + (beatOrBar(static_cast<int>(frame), bars) < index);
}

}  // namespace

BeatLines beatLines() {
  const GridSettings& grid = preferences.grid;
  if (!grid.grid || grid.grid_tempo < 1 || environment.clip.rate < 1 || environment.clip.scale < 1)
    return beatLinesNone;
  double beats = beatsIn(lineSpacing * 10000 / timelineView.zoom);
  if (beats < 1) return beatLinesBeats;
  return grid.grid_time > 0 && beats < grid.grid_time ? beatLinesBars : beatLinesNone;
}

int64_t beatIndex(int frame) {
  return static_cast<int64_t>(std::floor(beatsIn(static_cast<double>(frame) + 1 - preferences.grid.grid_base)));
}

int64_t barIndex(int frame) {
  int64_t beat = beatIndex(frame), perBar = std::max(preferences.grid.grid_time, 1);
  return beat >= 0 ? beat / perBar : -((perBar - 1 - beat) / perBar);
}

bool beginsBar(int64_t index) { return preferences.grid.grid_time != 0 && index % preferences.grid.grid_time == 0; }

int nearestBeat(int frame, bool bars) {
  int64_t index = beatOrBar(frame, bars);
  int64_t before = beginning(index, bars), after = beginning(index + 1, bars);
  return static_cast<int>(frame - before <= after - frame ? before : after);
}

}  // namespace zenlay
