// The timeline's live view state; every scene keeps a copy of it in its record.
#pragma once

#include <cstdint>

namespace zenlay {

/// Horizontal scale per zoom level, in 1/10000 pixel per frame.
inline constexpr int32_t zoomTable[] = {20,   30,    40,    50,    75,    100,   150,   200,   300,
                                        400,  500,   750,   1000,  1500,  2000,  3000,  4000,  5000,
                                        7500, 10000, 15000, 20000, 30000, 40000, 50000, 75000, 100000};
inline constexpr int zoomLevels = 27;
inline constexpr int initialZoomLevel = 14;
static_assert(sizeof(zoomTable) / sizeof(zoomTable[0]) == zoomLevels);

struct TimelineView {
  int32_t zoomLevel;
  int32_t zoom;  // zoomTable[zoomLevel]
  int32_t leftFrame;
  int32_t topLayer;
  int32_t cursorFrame;
  int32_t playbackFrame;  // -1 when none
  int32_t sceneLength;    // live length of the current scene, frames
};

extern TimelineView timelineView;

void resetTimelineView();
/// Clamps the level into the table.
void setZoomLevel(int level);

}  // namespace zenlay
