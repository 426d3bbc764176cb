#include "zenlay/ui/timeline/drag.h"

#include <algorithm>

#include "platform/window.h"
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

void applyDrag(int frames, int layersDown, bool snaps, bool shift) {
  bool changed =
      timelineView.dragMode == dragObjects ? moveSelection(frames, layersDown, snaps, shift) : moveEdges(frames, snaps);
  if (changed && onTimeline(currentObject) && isSelected(currentObject)) refreshSettings();
}

/// The objects may have gone, or the scene, by something else than the mouse.
bool dragIsSound() {
  bool sound = movesObjects(timelineView.dragMode) && drag.scene == currentScene && onTimeline(drag.grabbed);
  if (!sound) abandonDrag();
  return sound;
}

/// Releases the mouse and ends the mode; the capture's loss then finds nothing to end.
void letGo() {
  timelineView.dragMode = dragNone;
  drag.edges.clear();
  if (platform::mouseCapture() == environment.timelineWindow) platform::releaseMouse();
  hideRubberBand();
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

}  // namespace

void beginDrag(DragMode mode, platform::Point at) {
  platform::captureMouse(environment.timelineWindow);
  timelineView.dragMode = mode;
  drag.press = drag.last = at;
  drag.pressLeftFrame = timelineView.leftFrame;
  drag.pressTopLayer = timelineView.topLayer;
  drag.moved = drag.changed = false;
  drag.overflow = 0;
  drag.scene = currentScene;
  drag.edges.clear();
}

void dragObjectsTo(platform::Point at, intptr_t mouseState) {
  drag.last = at;
  if (!dragIsSound()) return;
  scrollFramesTo(frameAtX(at.x));
  scrollRowsTo(at.y);
  drag.moved |= at != drag.press;
  if (!drag.moved) return;
  applyDrag(frameAtX(at.x) - drag.grabFrame, visibleLayerAtY(at.y) - objects[drag.grabbed].layer, true,
            mouseState & platform::mouseShift);
}

void nudgeDrag(int frames, bool shift) {
  if (!dragIsSound()) return;
  drag.moved = true;
  applyDrag(frames, 0, false, shift);
}

int endDrag(bool keepSelection) {
  DragMode mode = timelineView.dragMode;
  if (movesObjects(mode) && !dragIsSound()) return 0;
  letGo();
  if (!movesObjects(mode)) {
    if (mode == dragCursor) deselect();
    return 0;
  }
  if (keepSelection && !drag.moved && drag.alreadySelected) removeChainFromSelection(drag.grabbed);
  if (drag.changed) extendToSelection();
  if (mode != dragObjects && drag.changed && isSelected(currentObject)) refreshSettings();
  redrawChain(drag.grabbed);
  if (!keepSelection || mode != dragObjects) deselect();
  return 1;
}

void abandonDrag() {
  if (timelineView.dragMode == dragNone) return;
  letGo();
  redrawTimeline();
}

void forgetDragged(int object) {
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
