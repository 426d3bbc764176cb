#include "zenlay/ui/timeline/layout.h"

#include <algorithm>
#include <cstdlib>

#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/timeline_view.h"

namespace zenlay {
namespace {

constexpr double zoomUnit = 0.0001;  // pixels per frame
constexpr double farAway = 1 << 29;

int saturated(double value) { return static_cast<int>(std::clamp(value, -farAway, farAway)); }

}  // namespace

int xOfFrame(int frame) {
  double pixels = (static_cast<double>(frame) - timelineView.leftFrame) * timelineView.zoom + 5000;
  return saturated(pixels * zoomUnit + headerWidth);
}

int frameAtX(int x) {
  return saturated((static_cast<double>(x) - headerWidth) * 10000 / timelineView.zoom + timelineView.leftFrame);
}

int framesIn(int pixels) { return saturated(std::max(pixels, 0) * 10000.0 / timelineView.zoom); }

int layerAtY(int y) {
  int layer = (y - rowsTop) / timelineView.layerHeight + timelineView.topLayer;
  return std::clamp(layer, 0, layersPerScene - 1);
}

int visibleLayerAtY(int y) {
  int last = timelineView.topLayer + std::max(timelineView.visibleRows, 1) - 1;
  return std::clamp(layerAtY(y), timelineView.topLayer, std::min(last, layersPerScene - 1));
}

int rowTop(int layer) { return rowsTop + (layer - timelineView.topLayer) * timelineView.layerHeight; }

bool layerVisible(int layer) {
  int row = layer - timelineView.topLayer;
  return layer >= 0 && layer < layersPerScene && row >= 0 && row < timelineView.visibleRows;
}

int rowsBottom() { return rowsTop + timelineView.visibleRows * timelineView.layerHeight; }

PixelSpan spanOf(int object) {
  int first = xOfFrame(objects[object].start);
  return {first, std::max(xOfFrame(objects[object].end + 1) - 1, first)};
}

int objectUnder(platform::Point at) {
  if (at.x < headerWidth || at.y < rowsTop || at.y >= rowsBottom()) return -1;
  int layer = layerAtY(at.y);
  int reach = hitReach + 1;  // rounding included
  EntryRange near = entriesMeeting(frameAtX(at.x - reach) - 1, frameAtX(at.x + reach) + 1, layer);
  int best = -1, bestOutside = hitReach + 1;
  for (int i = near.begin; i < near.end; i++) {
    int object = indexOf(layerOrder[i]);
    int start = xOfFrame(objects[object].start), last = xOfFrame(objects[object].end + 1) - 1;
    int outside = std::max(start - at.x, at.x - last);
    if (outside < bestOutside) best = object, bestOutside = outside;
  }
  return best;
}

int objectHolding(platform::Point at) {
  if (at.x < headerWidth || at.y < rowsTop || at.y >= rowsBottom()) return -1;
  return objectAt(frameAtX(at.x), layerAtY(at.y));
}

ObjectEdge edgeAt(int object, int x) {
  int start = xOfFrame(objects[object].start), behind = xOfFrame(objects[object].end + 1);
  if (std::abs(x - start) < edgeReach && 2 * x < start + behind) return edgeStart;
  return std::abs(x - behind) < edgeReach ? edgeEnd : edgeNone;
}

}  // namespace zenlay
