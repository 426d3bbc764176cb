#include <algorithm>
#include <cstdlib>

#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/input/input.h"
#include "zenlay/ui/project/clip.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

using platform::Point;

namespace {

constexpr int wheelPixels = 100;

int gaugeLevel(int x) { return (x - 3) / 2; }

/// The cursor goes to the frame at x and the view with it.
void setCursorFromX(int x) {
  int frame = clampedFrameAtX(x), limit = frameAtX(timelineView.clientWidth - sceneEndRoom);
  if (frame < timelineView.leftFrame)
    setLeftFrame(frame);
  else if (frame > limit)
    setLeftFrame(timelineView.leftFrame + frame - limit);
  moveCursor(frame);
}

void selectLayer(int layer) {
  std::vector<int> list;
  for (int i = layerRanges[layer].first; i <= layerRanges[layer].last; i++) list.push_back(indexOf(layerOrder[i]));
  selectWhole(list);
  redrawTimeline();
}

int pressSceneButton(Point at) {
  if (!environment.projectOpen) return 0;
  int scene = chooseScene(platform::clientToScreen(environment.timelineWindow, at), currentScene, true, nullptr);
  if (scene < 0 || scene >= maxScenes || scene == currentScene) return 0;
  enterScene(scene);
  return 1;
}

int pressHeader(Point at, intptr_t state) {
  if (at.y >= rowsBottom()) return 0;
  if (at.y >= rowsTop) {
    int layer = layerAtY(at.y);
    if (state & platform::mouseCtrl) {
      selectLayer(layer);
      return 0;
    }
    redrawTimeline();
    return commands::toggleLayer(layer, layerHidden);
  }
  if (at.y < gaugeTop) return pressSceneButton(at);
  beginDrag(dragGauge);
  setTimelineZoom(gaugeLevel(at.x));
  return 0;
}

int pressEmpty(Point at, intptr_t state) {
  if (state & platform::mouseCtrl) {
    beginDrag(dragRange);
    redrawTimeline();
    return 0;
  }
  beginDrag(dragCursor);
  setCursorFromX(at.x);
  return 1;
}

DragMode modeOfPress(int object, int x, intptr_t state) {
  if (state & platform::mouseCtrl || selection().size() != 1 || !isSelected(object)) return dragObjects;
  ObjectEdge edge = edgeAt(object, x);
  return edge == edgeStart ? dragStart : edge == edgeEnd ? dragEnd : dragObjects;
}

int pressObject(int object, Point at, intptr_t state) {
  dropUnselectable();
  bool takesOver = selection().empty() && currentObject >= 0 && object != currentObject;
  if (takesOver) makeCurrent(object);
  bool alreadySelected = isSelected(object);
  addToSelection(object);
  if (layers[objects[object].layer].flags & layerLocked) return takesOver;

  DragMode mode = modeOfPress(object, at.x, state);
  beginDrag(mode);
  drag.grabbed = object;
  drag.grabFrame = drag.pressFrame;
  drag.shiftAtPress = state & platform::mouseShift;
  drag.alreadySelected = alreadySelected;
  if (mode != dragObjects)
    takeEdges(object, mode);
  else if (!alreadySelected)
    selectGroup(object);

  bool extends = (state & platform::mouseCtrl) && (state & platform::mouseShift) && selection().size() >= 2 &&
                 onTimeline(rangeAnchor);
  if (extends)
    selectRange(rangeAnchor, object);
  else
    rangeAnchor = object;
  redrawObjects(selection());
  return takesOver;
}

void extendRubberBand(Point at) {
  auto [firstFrame, lastFrame] = std::minmax({drag.pressFrame, frameAtX(at.x)});
  auto [firstLayer, lastLayer] = std::minmax({drag.pressLayer, layerAtY(at.y)});
  for (int layer = firstLayer; layer <= lastLayer; layer++) selectMeeting(firstFrame, lastFrame, layer);
  redrawTimeline();
}

void panTo(Point at) {
  int64_t frames = (int64_t{drag.press.x} - at.x) * 10000 / timelineView.zoom;
  setLeftFrame(static_cast<int>(std::clamp<int64_t>(drag.pressLeftFrame + frames, 0, INT32_MAX)));
  setTopLayer(drag.pressTopLayer + (drag.press.y - at.y) / timelineView.layerHeight);
}

int dragTo(Point at, intptr_t state) {
  drag.last = at;
  switch (timelineView.dragMode) {
    case dragObjects:
    case dragStart:
    case dragEnd:
      dragObjectsTo(at, state);
      break;
    case dragCursor:
      setCursorFromX(at.x);
      return 1;
    case dragGauge:
      setTimelineZoom(gaugeLevel(at.x));
      break;
    case dragRange:
      extendRubberBand(at);
      break;
    case dragView:
      panTo(at);
      break;
    case dragNone:
      refreshCursorShape();
  }
  return 0;
}

platform::CursorShape shapeAt(Point at) {
  DragMode mode = timelineView.dragMode;
  if (mode == dragStart || mode == dragEnd) return platform::cursorSizeHorizontal;
  int object = mode == dragNone ? objectUnder(at) : -1;
  if (object < 0 || platform::mouseState() & platform::mouseCtrl || !selection().empty() ||
      layers[objects[object].layer].flags & layerLocked)
    return platform::cursorArrow;
  return edgeAt(object, at.x) == edgeNone ? platform::cursorArrow : platform::cursorSizeHorizontal;
}

}  // namespace

void refreshCursorShape() {
  platform::Window* window = environment.timelineWindow;
  platform::setCursorShape(window, shapeAt(platform::screenToClient(window, platform::cursorPosition())));
}

int endPendingDrag(intptr_t state) {
  return timelineView.dragMode == dragNone ? 0 : endDrag(state & platform::mouseCtrl);
}

int timelinePressed(Point at, intptr_t state) {
  const int ended = endPendingDrag(state);
  notePress(at);
  if (timelineView.sceneLength < 1) return ended;
  if (at.x < headerWidth) return pressHeader(at, state) | ended;
  if (state & platform::mouseAlt) {
    beginDrag(dragView);
    return ended;
  }
  int object = objectUnder(at);
  return (object < 0 ? pressEmpty(at, state) : pressObject(object, at, state)) | ended;
}

int timelineMiddlePressed(Point at) {
  if (timelineView.dragMode != dragNone || timelineView.sceneLength < 1 || at.x < headerWidth) return 0;
  notePress(at);
  beginDrag(dragView, platform::mouseMiddle);
  return 0;
}

int timelineMoved(Point at, intptr_t state) {
  if (timelineView.dragMode == dragNone || state & drag.button) return dragTo(at, state);
  int redraw = endPendingDrag(state);  // the release was lost
  refreshCursorShape();
  return redraw;
}

int timelineTicked() {
  const DragMode mode = timelineView.dragMode;
  const intptr_t state = platform::mouseState();
  bool outside = drag.last.x < headerWidth || drag.last.x >= timelineView.clientWidth;
  if (mode != dragCursor) outside |= drag.last.y < rowsTop || drag.last.y >= rowsBottom();
  if (mode == dragNone || !outside) return 0;
  if (mode == dragRange) scrollViewTowards(drag.last);
  const int cursor = timelineView.cursorFrame;
  return timelineMoved(drag.last, state) && (mode != dragCursor || timelineView.cursorFrame != cursor);
}

void followView(intptr_t state) {
  if (movesObjects(timelineView.dragMode) || timelineView.dragMode == dragRange) dragTo(drag.last, state);
}

int timelineReleased(intptr_t button, intptr_t state) {
  int redraw = drag.button == button ? endPendingDrag(state) : 0;
  refreshCursorShape();
  return redraw;
}

int timelineDoubleClicked(Point at, intptr_t state) {
  const int ended = endPendingDrag(state);
  int object = timelineView.sceneLength < 1 ? -1 : objectHolding(at);
  if (object < 0) return timelinePressed(at, state) | ended;
  makeCurrent(object);
  return 1;
}

int timelineWheel(int notches, intptr_t state) {
  if (notches == 0) return 0;
  if (state & platform::mouseCtrl)
    setTimelineZoom(timelineView.zoomLevel + notches);
  else if (state & platform::mouseAlt)
    setTopLayer(timelineView.topLayer - notches);
  else
    setLeftFrame(timelineView.leftFrame - notches * framesIn(wheelPixels));
  followView(state);
  return 0;
}

}  // namespace zenlay
