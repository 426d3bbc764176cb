#include "zenlay/ui/timeline/drag.h"

#include <algorithm>

#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/redraw.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

DragState drag;

namespace {

constexpr int dragInterval = 50;  // milliseconds

void scrollFramesTo(int frame) {
  if (frame < timelineView.leftFrame)
    setLeftFrame(frame);
  else if (frame > timelineView.rightFrame)
    setLeftFrame(timelineView.leftFrame + frame - timelineView.rightFrame);
}

void scrollRowsTo(int y) {
  int beyond = y < rowsTop ? y - rowsTop : std::max(y - rowsBottom() + 1, 0);
  drag.overflow = beyond == 0 ? 0 : drag.overflow + beyond;
  int height = timelineView.layerHeight;
  if (drag.overflow > height) {
    drag.overflow -= height;
    setTopLayer(timelineView.topLayer + 1);
  } else if (drag.overflow < -height) {
    drag.overflow += height;
    setTopLayer(timelineView.topLayer - 1);
  }
}

/// Whether the settings window shows a section of something selected.
bool showsSelected() {
  if (!onTimeline(currentObject)) return false;
  const std::vector<int> sections = sectionsOf(currentObject);
  return std::any_of(sections.begin(), sections.end(), isSelected);
}

void applyDrag(int frames, int layersDown, bool snaps, bool shift) {
  bool changed =
      timelineView.dragMode == dragObjects ? moveSelection(frames, layersDown, snaps, shift) : moveEdges(frames, snaps);
  if (changed && showsSelected()) refreshSettings();
}

/// False, after letting go, when the objects or the scene went by something else than the mouse.
bool stillHolds() {
  bool holds = movesObjects(timelineView.dragMode) && drag.scene == currentScene && onTimeline(drag.grabbed);
  if (!holds) abandonDrag();
  return holds;
}

/// Releases the mouse and ends the mode; the capture's loss then finds nothing to end.
void letGo() {
  if (timelineView.dragMode == dragRange) redrawTimeline();
  timelineView.dragMode = dragNone;
  drag.edges.clear();
  platform::stopTimer(environment.timelineWindow, dragTimer);
  if (platform::mouseCapture() == environment.timelineWindow) platform::releaseMouse();
}

void deselect() {
  redrawObjects(selection());
  clearSelection();
}

void extendToSelection() {
  int last = -1;
  for (int object : selection()) last = std::max(last, chainRange(object).last);
  extendScene(last);
}

/// The step is still the newest one.
void undoDrag() {
  if (!drag.changed || undoSteps() != drag.undoSteps) return;
  const int current = currentObject;
  undo();
  if (current < 0) showObject(-1);  // undo had shown what it put back
}

}  // namespace

void notePress(platform::Point at) {
  drag.press = drag.last = at;
  drag.pressFrame = frameAtX(at.x);
  drag.pressLayer = layerAtY(at.y);
  drag.pressWithin = {at.x - xOfFrame(drag.pressFrame), at.y - rowTop(drag.pressLayer)};
  drag.pressLeftFrame = timelineView.leftFrame;
  drag.pressTopLayer = timelineView.topLayer;
  drag.pressZoomLevel = timelineView.zoomLevel;
  drag.pressCursor = timelineView.cursorFrame;
  drag.pressSelection.assign(selection().begin(), selection().end());
}

void beginDrag(DragMode mode, intptr_t button) {
  platform::captureMouse(environment.timelineWindow);
  timelineView.dragMode = mode;
  drag.button = button;
  drag.scene = currentScene;
  drag.edges.clear();
  drag.overflow = 0;
  drag.moved = drag.changed = false;
  if (mode != dragGauge && mode != dragView) platform::startTimer(environment.timelineWindow, dragTimer, dragInterval);
}

platform::Point pressInView() {
  return {xOfFrame(drag.pressFrame) + drag.pressWithin.x, rowTop(drag.pressLayer) + drag.pressWithin.y};
}

void scrollViewTowards(platform::Point at) {
  scrollFramesTo(frameAtX(at.x));
  scrollRowsTo(at.y);
}

void dragObjectsTo(platform::Point at, intptr_t mouseState) {
  if (!stillHolds()) return;
  scrollViewTowards(at);
  drag.moved |= at != drag.press;
  if (!drag.moved) return;
  applyDrag(frameAtX(at.x) - drag.grabFrame, visibleLayerAtY(at.y) - objects[drag.grabbed].layer, true,
            mouseState & platform::mouseShift);
}

void nudgeDrag(int frames, bool shift) {
  if (!stillHolds()) return;
  drag.moved = true;
  applyDrag(frames, 0, false, shift);
}

void recordDragUndo(std::span<const int> list) {
  if (drag.changed) return;
  drag.changed = true;
  endSettingsEdit();
  beginUndoStep();
  for (int object : list) recordUndo(object, undoPosition);
  drag.undoSteps = undoSteps();
}

int endDrag(bool keepSelection) {
  DragMode mode = timelineView.dragMode;
  if (movesObjects(mode) && !stillHolds()) return 0;
  letGo();
  if (movesObjects(mode)) {
    if (keepSelection && !drag.moved && drag.alreadySelected) removeChainFromSelection(drag.grabbed);
    if (drag.changed) extendToSelection();
    if (mode != dragObjects && drag.changed && showsSelected()) refreshSettings();
    redrawChain(drag.grabbed);
    keepSelection &= mode == dragObjects;
  } else if (mode == dragRange || drag.button != platform::mouseLeft) {
    keepSelection = true;
  }
  if (!keepSelection) deselect();
  return movesObjects(mode);
}

int takeDragBack() {
  DragMode mode = timelineView.dragMode;
  if (movesObjects(mode) && !stillHolds()) return 0;
  letGo();
  deselect();
  undoDrag();
  const bool keepSelection = !movesObjects(mode) || platform::keyIsDown(platform::keyCtrl);
  if (keepSelection)
    for (int object : drag.pressSelection) addToSelection(object);
  if (mode == dragCursor) moveCursor(drag.pressCursor);
  setTimelineZoom(drag.pressZoomLevel);
  setLeftFrame(drag.pressLeftFrame);
  setTopLayer(drag.pressTopLayer);
  redrawTimeline();
  return mode == dragCursor || drag.changed;
}

void abandonDrag() {
  if (timelineView.dragMode == dragNone) return;
  bool releases = movesObjects(timelineView.dragMode) && !platform::keyIsDown(platform::keyCtrl);
  letGo();
  if (releases) clearSelection();
  redrawTimeline();
}

void forgetDragged(int object) {
  if (timelineView.dragMode == dragNone) return;
  std::erase(drag.pressSelection, object);
  if (!movesObjects(timelineView.dragMode)) return;
  bool involved = object == drag.grabbed || isSelected(object);
  for (const EdgePair& pair : drag.edges) involved |= object == pair.object || object == pair.partner;
  if (involved) abandonDrag();
}

ObjectEdge draggedEdgeOf(int object) {
  if (timelineView.dragMode != dragStart && timelineView.dragMode != dragEnd) return edgeNone;
  ObjectEdge own = timelineView.dragMode == dragStart ? edgeStart : edgeEnd;
  for (const EdgePair& pair : drag.edges) {
    if (pair.object == object) return own;
    if (pair.partner == object) return own == edgeStart ? edgeEnd : edgeStart;
  }
  return edgeNone;
}

}  // namespace zenlay
