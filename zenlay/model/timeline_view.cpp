#include "zenlay/model/timeline_view.h"

#include <algorithm>

namespace zenlay {

TimelineView timelineView{initialZoomLevel, zoomTable[initialZoomLevel], 0, 0, 0, -1, 0};

void resetTimelineView() { timelineView = {initialZoomLevel, zoomTable[initialZoomLevel], 0, 0, 0, -1, 0}; }

void setZoomLevel(int level) {
  timelineView.zoomLevel = std::clamp(level, 0, zoomLevels - 1);
  timelineView.zoom = zoomTable[timelineView.zoomLevel];
}

}  // namespace zenlay
