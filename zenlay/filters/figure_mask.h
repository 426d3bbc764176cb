// What "Mask" and "Sub-filter" share: a figure placed over the picture.
#pragma once

#include "zenlay/effects/effect_definition.h"
#include "zenlay/effects/figure_list.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

/// How a scene used as the figure plays.
enum FigureSceneBit : int32_t { figureSceneFits = 0x1, figureSceneBackwards = 0x2 };

struct FigureMask {
  int32_t type;    // index into figureList
  char name[256];  // a figure picture, "*" and a path, or ":" and a scene number; empty for built-in figures
  int32_t mode;    // FigureSceneBit
};
static_assert(sizeof(FigureMask) == 264);

inline constexpr ExdataField figureMaskFields[] = {
    {exdataInteger, sizeof(FigureMask::type), "type"},
    {exdataString, sizeof(FigureMask::name), "name"},
    {exdataInteger, sizeof(FigureMask::mode), "mode"},
};

enum FigureMaskTrack { maskX, maskY, maskRotation, maskSize, maskAspect, maskBlur };
/// Positions in tenths of a pixel, rotation in hundredths of a degree, size and blur in pixels.
inline constexpr TrackColumns figureMaskTracks({
    {"X", 0, -40000, 40000, 10, -20000, 20000, 1},
    {"Y", 0, -40000, 40000, 10, -20000, 20000, -1},
    angleTrack("Rotation"),
    {"Size", 100, 0, 4000, 1, 0, 1000},
    aspectTrack(),
    {"Blur", 0, 0, 1000, 1, 0, 300},
});

}  // namespace zenlay
