// Moving the selected objects: snapping, limits, and what stands in their way.
#include <algorithm>
#include <climits>
#include <optional>

#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/snapping.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

struct Shift {
  int frames, layers;
};

void snapShift(Shift& shift) {
  const ObjectRecord& o = objects[drag.grabbed];
  int layer = o.layer + shift.layers;
  int start = o.start + shift.frames, behind = o.end + 1 + shift.frames;
  if (snapToTarget(start, layer, true))
    shift.frames = start - o.start;
  else if (snapToTarget(behind, layer, true))
    shift.frames = behind - o.end - 1;
}

/// Every selected object stays on layers 0..99 and begins at frame 0 or later.
void limitShift(Shift& shift) {
  int top = layersPerScene - 1, bottom = 0, earliest = INT_MAX;
  for (int object : selection()) {
    top = std::min(top, objects[object].layer);
    bottom = std::max(bottom, objects[object].layer);
    earliest = std::min(earliest, objects[object].start);
  }
  shift.layers = std::clamp(shift.layers, -top, layersPerScene - 1 - bottom);
  shift.frames = std::max(shift.frames, -earliest);
}

/// An object outside the selection where this one would come to lie, or null.
const ObjectRecord* obstacleOf(const ObjectRecord& o, const Shift& shift) {
  EntryRange there = entriesMeeting(o.start + shift.frames, o.end + shift.frames, o.layer + shift.layers);
  for (int i = there.begin; i < there.end; i++)
    if (!isSelected(indexOf(layerOrder[i]))) return layerOrder[i];
  return nullptr;
}

/// Whether objects moved aside are still where the user looks.
bool leavesView(const Shift& shift) {
  const ObjectRecord& first = objects[selection().front()];
  return first.end + shift.frames < timelineView.leftFrame || first.start + shift.frames > timelineView.rightFrame;
}

/// Pushes the selection aside until nothing overlaps, in the direction that the first collision decides. As frames only
/// ever change that way, going round until everything has been free once finds the nearest place. False: give up.
bool avoidObstacles(Shift& shift) {
  std::span<const int> list = selection();
  std::optional<bool> before;
  size_t free = 0;
  for (size_t i = 0; free < list.size(); i = (i + 1) % list.size()) {
    const ObjectRecord& o = objects[list[i]];
    const ObjectRecord* obstacle = obstacleOf(o, shift);
    if (!obstacle) {
      free++;
      continue;
    }
    if (!before) {
      int64_t centre = int64_t{o.start} + o.end + 2 * int64_t{shift.frames};
      before = centre < int64_t{obstacle->start} + obstacle->end;
    }
    shift.frames = *before ? obstacle->start - 1 - o.end : obstacle->end + 1 - o.start;
    if (leavesView(shift)) return false;
    free = 0;
  }
  for (int object : list)
    if (objects[object].start + shift.frames < 0) return false;
  return true;
}

void apply(const Shift& shift) {
  bool touched[layersPerScene] = {};
  for (int object : selection()) {
    ObjectRecord& o = objects[object];
    touched[o.layer] = true;
    o.start += shift.frames;
    o.end += shift.frames;
    o.layer += shift.layers;
    o.homeLayer = o.layer;
    touched[o.layer] = true;
  }
  rebuildOrder();
  redrawLayers(touched);
  redrawObjects(selection());
}

}  // namespace

bool moveSelection(int frames, int layersDown, bool snaps, bool vertical) {
  if (selection().empty()) return false;
  const ObjectRecord& grabbed = objects[drag.grabbed];
  Shift shift{frames, layersDown};
  if (snaps) snapShift(shift);
  if (vertical && grabbed.layer + shift.layers != drag.pressLayer) shift.frames = drag.pressFrame - drag.grabFrame;
  limitShift(shift);
  if ((shift.frames == 0 && shift.layers == 0) || !avoidObstacles(shift)) return false;
  if (shift.frames == 0 && shift.layers == 0) return false;
  recordDragUndo(selection());
  apply(shift);
  drag.grabFrame += shift.frames;
  return true;
}

}  // namespace zenlay
