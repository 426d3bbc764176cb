// Track values changed by the user: typed, dragged in the box, by track bar or spin button.
#include <algorithm>
#include <climits>

#include "zenlay/model/objects.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/value.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay::settings {
namespace {

using namespace platform;

/// One of the two values of a row.
struct Side {
  int row = -1;
  bool end = false;
  TrackLine& track() const { return state.tracks[row]; }
  TrackRowState& value() const { return end ? track().end : track().start; }
};

template <class Is>
Side findSide(Is is) {
  for (int k = 0; k < state.trackRows; k++) {
    if (is(state.tracks[k].start)) return {k, false};
    if (is(state.tracks[k].end)) return {k, true};
  }
  return {};
}

Side sideOfBox(Window* box) {
  return findSide([box](const TrackRowState& side) { return side.box == box; });
}

void showSide(TrackRowState& side) {
  setWindowText(side.box, formatValue(side.value, side.scale).c_str());
  setControlValue(side.spin, side.value);
  setControlValue(side.bar, side.value / side.multiplier);
}

intptr_t changeOf(Side side) { return side.row | (side.end ? changedEnd : changedStart); }

/// Stores the value, with that of an end that follows its start, and tells the timeline. `typed`: the user's own text
/// stays in the box.
void change(Side side, int64_t wanted, bool typed = false) {
  TrackLine& row = side.track();
  TrackRowState& value = side.value();
  int32_t before = value.value;
  value.value = static_cast<int32_t>(std::clamp<int64_t>(wanted, value.minimum, value.maximum));
  if (!side.end && row.mode == 0) row.end.value = value.value;
  {
    Updating updating;
    if (!typed || value.value != wanted) {
      setWindowText(value.box, formatValue(value.value, value.scale).c_str());
      if (typed) selectText(value.box, INT_MAX, INT_MAX);  // the user goes on behind the limit
    }
    setControlValue(value.spin, value.value);
    setControlValue(value.bar, value.value / value.multiplier);
    if (row.mode == 0) showSide(row.end);
  }
  if (typed || value.value != before) sendCommand(commandApplySettings, changeOf(side));
}

int dragStep(const TrackRowState& value) { return value.scale < 2 || mouseState() & mouseShift ? 1 : value.scale; }

void beginDrag(Window* box, Point at) {
  endSettingsEdit();
  state.drag = {box, at.x, false};
  captureMouse(box);
  setCursorShape(box, cursorSizeHorizontal);
}

void moveDrag(Point at) {
  int distance = at.x - state.drag.x;
  if (distance == 0) return;
  state.drag.x = at.x;
  state.drag.moved = true;
  Side side = sideOfBox(state.drag.box);
  if (side.row >= 0) change(side, side.value().value + int64_t{distance} * dragStep(side.value()));
}

void endDrag() {
  ValueDrag done = state.drag;
  state.drag = {};
  if (mouseCapture() == done.box) releaseMouse();
  setCursorShape(done.box, cursorArrow);
  endSettingsEdit();
  if (done.moved) return;
  focusWindow(done.box);
  selectText(done.box, 0, -1);
}

/// Whether the box is being dragged; a drag whose capture was taken away is over.
bool dragging(Window* box) {
  if (state.drag.box && mouseCapture() != state.drag.box) {
    setCursorShape(state.drag.box, cursorArrow);
    state.drag = {};
  }
  return box && state.drag.box == box;
}

}  // namespace

void showTrackValues(TrackLine& row) {
  showSide(row.start);
  showSide(row.end);
  for (Window* control : {row.end.box, row.end.spin, row.end.bar}) enableWindow(control, row.mode != 0);
}

bool isValueBox(Window* window) {
  int id = controlId(window);
  return windowOwner(window) == state.window && id >= idStartBox && id < idEndBox + maxTracks;
}

bool boxEvent(Window* box, int event) {
  if (!isValueBox(box)) return false;
  Side side = sideOfBox(box);
  if (side.row < 0 || state.updating) return true;
  TrackRowState& value = side.value();
  if (event == controlTextChanged && focusedWindow() == box) {
    const char* text = windowText(box).c_str();
    change(side, *text ? parseValue(text, value.scale) : value.fallback, true);
  } else if (event == controlGotFocus) {
    state.entry = {box, value.value, undoSteps()};
  } else if (event == controlLostFocus) {
    Updating updating;
    showSide(value);
    endSettingsEdit();
  }
  return true;
}

void scrolled(Window* bar, ScrollAction action) {
  if (action == scrollEnd) {
    endSettingsEdit();
    return;
  }
  Side side = findSide([bar](const TrackRowState& s) { return s.bar == bar || s.spin == bar; });
  if (side.row < 0 || state.updating) return;
  TrackRowState& value = side.value();
  int64_t position = int64_t{controlValue(bar)} * (bar == value.bar ? value.multiplier : 1);
  if (position != value.value) change(side, position);
}

intptr_t valueBoxHook(Window* box, uint32_t message, intptr_t first, intptr_t second, void*) {
  switch (message) {
    case messageLeftDown:
      beginDrag(box, unpackPoint(second));
      return 1;
    case messageMouseMove:
      if (!dragging(box)) return 0;
      moveDrag(unpackPoint(second));
      return 1;
    case messageLeftUp:
      if (!dragging(box)) return 0;
      endDrag();
      return 1;
    case messageMouseWheel:
      return sendMessage(state.window, message, first, second);
    default:
      return 0;
  }
}

bool dragKey(int key) {
  if (!dragging(state.drag.box) || (key != keyLeft && key != keyRight)) return false;
  state.drag.moved = true;
  Side side = sideOfBox(state.drag.box);
  if (side.row >= 0) change(side, side.value().value + int64_t{key == keyLeft ? -1 : 1} * dragStep(side.value()));
  return true;
}

void stepBox(Window* box, int direction) {
  Side side = sideOfBox(box);
  if (side.row < 0) return;
  change(side, side.value().value + int64_t{direction} * dragStep(side.value()));
  selectText(box, 0, -1);
}

void restoreBox(Window* box) {
  Side side = sideOfBox(box);
  if (side.row < 0 || state.entry.box != box || side.value().value == state.entry.value) return;
  bool oneStep = state.lastObject == currentObject && state.lastParameter == changeOf(side);
  if (oneStep && undoSteps() == state.entry.steps + 1)
    sendCommand(commandUndo);
  else
    change(side, state.entry.value);
}

/// Tab goes from a start box to its end box, then down to the next row, around at the foot; disabled boxes are passed.
Window* nextBox(Window* box, bool backward) {
  Side side = sideOfBox(box);
  int count = 2 * state.trackRows, at = side.row < 0 ? (backward ? 0 : count - 1) : 2 * side.row + side.end;
  for (int step = 1; step <= count; step++) {
    int i = (at + (backward ? count - step : step)) % count;
    TrackLine& row = state.tracks[i / 2];
    Window* candidate = i % 2 ? row.end.box : row.start.box;
    if (windowShown(candidate) && windowEnabled(candidate)) return candidate;
  }
  return nullptr;
}

}  // namespace zenlay::settings
