// Commands that select objects or make another one current.
#include "zenlay/ui/timeline/selection.h"

#include "platform/window.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::commands {
namespace {

/// Adds whole chains. A selection lasts as long as Ctrl is held, so without it there is none to make.
int selectWhere(bool (*wanted)(FrameRange)) {
  if (!platform::keyIsDown(platform::keyCtrl)) return 0;
  for (int e = 0; e < sceneObjectCount; e++) {
    int object = indexOf(layerOrder[e]);
    if (headOf(object) == object && wanted(chainRange(object))) selectChain(object);
  }
  redrawTimeline();
  return 0;
}

int showObjectAtCursor() {
  const bool fromBelow = platform::keyIsDown(platform::keyShift);
  for (int i = 0; i < layersPerScene; i++) {
    int object = objectAt(timelineView.cursorFrame, fromBelow ? layersPerScene - 1 - i : i);
    if (object < 0 || object == currentObject) continue;
    showObject(object);
    redrawTimeline();
    return 1;
  }
  return 0;
}

/// The neighbour of the current object on its layer, round the end.
int neighbour(int step) {
  const LayerRange range = layerRanges[objects[currentObject].layer];
  for (int e = range.first; e <= range.last; e++) {
    if (indexOf(layerOrder[e]) != currentObject) continue;
    int next = e + step;
    if (next > range.last) next = range.first;
    if (next < range.first) next = range.last;
    return indexOf(layerOrder[next]);
  }
  return currentObject;
}

int showNeighbour(int step) {
  showObject(neighbour(step));
  moveCursor(objects[currentObject].start);
  centreCursor();
  revealObject(currentObject);
  redrawTimeline();
  return 1;
}

constexpr Row rows[] = {
    {commandObjectAtCursor, [](const Call&) { return showObjectAtCursor(); }, needsCurrent},
    {commandNextObject, [](const Call&) { return showNeighbour(1); }, needsCurrent},
    {commandPreviousObject, [](const Call&) { return showNeighbour(-1); }, needsCurrent},
    {commandSelectAll, [](const Call&) { return selectWhere([](FrameRange) { return true; }); }, needsProject},
    {commandSelectAfterCursor,
     [](const Call&) { return selectWhere([](FrameRange r) { return r.first >= timelineView.cursorFrame; }); },
     needsProject},
    {commandSelectBeforeCursor,
     [](const Call&) { return selectWhere([](FrameRange r) { return r.last <= timelineView.cursorFrame; }); },
     needsProject},
};

}  // namespace

const std::span<const Row> selectionCommands = rows;

}  // namespace zenlay::commands
