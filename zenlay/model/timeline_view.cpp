#include "zenlay/model/timeline_view.h"

#include <algorithm>

namespace zenlay {

constinit TimelineView timelineView;

void resetTimelineView() { timelineView = {}; }

void setZoomLevel(int level) {
  timelineView.zoomLevel = std::clamp(level, 0, zoomLevels - 1);
  timelineView.zoom = zoomTable[timelineView.zoomLevel];
}

}  // namespace zenlay
