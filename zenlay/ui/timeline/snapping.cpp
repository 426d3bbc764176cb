#include "zenlay/ui/timeline/snapping.h"

#include <cstdlib>

#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/beat_grid.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

struct SnapSearch {
  int frame;
  bool ignoreSelected;
  int best;
  int distance;
};

/// The first of several candidates as near wins.
void offer(SnapSearch& search, int candidate) {
  int distance = std::abs(candidate - search.frame);
  if (distance < search.distance) search.best = candidate, search.distance = distance;
}

/// Starts and ends of a layer's objects rise along its order, so only those around the frame matter, the lower first.
void searchLayer(SnapSearch& search, int layer) {
  auto counts = [&](int entry) { return !search.ignoreSelected || !isSelected(indexOf(layerOrder[entry])); };
  const LayerRange& all = layerRanges[layer];
  int above = entriesMeeting(search.frame, search.frame, layer).end;
  for (int i = above - 1; i >= all.first && search.frame - layerOrder[i]->end - 1 < search.distance; i--) {
    if (!counts(i)) continue;
    offer(search, layerOrder[i]->start);
    offer(search, layerOrder[i]->end + 1);
    break;
  }
  for (int i = above; i <= all.last && layerOrder[i]->start - search.frame < search.distance; i++) {
    if (!counts(i)) continue;
    offer(search, layerOrder[i]->start);
    break;
  }
}

int snapTarget(int frame, int layer, bool ignoreSelected) {
  SnapSearch search{frame, ignoreSelected, timelineView.cursorFrame, std::abs(timelineView.cursorFrame - frame)};
  for (int l = layer - 1; l >= 0; l--) searchLayer(search, l);
  for (int l = layer + 1; l < layersInUse; l++) searchLayer(search, l);
  offer(search, 0);
  if (timelineView.sceneLength > 1 || sceneObjectCount > 0) offer(search, timelineView.sceneLength);  // an empty one: 0
  if (BeatLines lines = beatLines(); lines != beatLinesNone) offer(search, nearestBeat(frame, lines == beatLinesBars));
  return search.best;
}

}  // namespace

bool snapToTarget(int& frame, int layer, bool ignoreSelected) {
  if (!preferences.object_snap) return false;
  int target = snapTarget(frame, layer, ignoreSelected);
  if (std::abs(xOfFrame(target) - xOfFrame(frame)) >= snapReach) return false;
  frame = target;
  return true;
}

int snapFrame(int frame, int layer, bool ignoreSelected) {
  snapToTarget(frame, layer, ignoreSelected);
  return frame;
}

}  // namespace zenlay
