// The timeline's live view state. Every scene keeps a copy of zoom level, left frame, top layer and cursor in its
// record. Frames are 0-based and of the current scene; pixels are of the timeline window's client area.
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

/// What the mouse is doing.
enum DragMode : int32_t { dragNone, dragObjects, dragStart, dragEnd, dragCursor, dragGauge, dragRange, dragView };
inline bool movesObjects(DragMode mode) { return mode >= dragObjects && mode <= dragEnd; }

struct TimelineView {
  int32_t zoomLevel = initialZoomLevel;
  int32_t zoom = zoomTable[initialZoomLevel];
  int32_t leftFrame = 0;
  int32_t rightFrame = 0;  // leftFrame and the frames that fit into the object area
  int32_t topLayer = 0;
  int32_t visibleRows = 5;
  int32_t clientWidth = 627;  // without the vertical scroll bar
  int32_t clientHeight = 197;
  int32_t layerHeight = 31;
  int32_t markHeight = 4;  // of the section marks above an object
  int32_t cursorFrame = 0;
  int32_t playbackFrame = -1;  // -1 when none
  int32_t savedLeftFrame = 0;  // when playback began
  DragMode dragMode = dragNone;
  int32_t sceneLength = 0;  // live length of the current scene, frames
};

extern TimelineView timelineView;

void resetTimelineView();
/// Clamps the level into the table.
void setZoomLevel(int level);

}  // namespace zenlay
