// The head of the window: buttons, labels, the strip of the chain's sections, and the commands that move along it.
#include <algorithm>
#include <string>

#include "platform/canvas.h"
#include "platform/icons.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/paint.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace settings {

using namespace platform;

namespace {

constexpr int pressLeft = 133, pressRight = 354, pressBottom = 32;

/// x of a frame within the strip.
int stripX(const FrameRange& chain, int frame) {
  int64_t length = std::max<int64_t>(int64_t{chain.last} - chain.first, 1);
  double x = static_cast<double>(int64_t{frame} - chain.first) * sectionStrip.width / static_cast<double>(length);
  return static_cast<int>(x + 0.5) + sectionStrip.x;
}

int cursorX() {
  if (!hasObject()) return noCursor;
  FrameRange chain = chainRange(currentObject);
  int frame = timelineView.cursorFrame;
  return frame < chain.first || frame > chain.last ? noCursor : stripX(chain, frame);
}

void xorCursor(Canvas* canvas, int x) {
  if (x == noCursor) return;
  xorLine(canvas, {x, sectionStrip.y}, {x, sectionStrip.y + sectionStrip.height}, 0xFFFFFF);
}

void paintSections(Canvas* canvas) {
  FrameRange chain = chainRange(currentObject);
  const ObjectRecord& object = objects[currentObject];
  bool grey = object.scene != 0 && scenes[object.scene].flags & sceneHasAlpha;
  const ColorTriple& colors = objectColors(object.flags, grey);
  int top = sectionStrip.y, bottom = top + sectionStrip.height;
  Color line = systemColor(colorText);
  for (int section : sectionsOf(currentObject)) {
    bool last = nextSection(section) < 0;
    int left = stripX(chain, objects[section].start), right = stripX(chain, objects[section].end + !last);
    fillRect(canvas, {left, top, right - left, sectionStrip.height},
             section == currentObject ? colors.bright : colors.dark);
  }
  for (int section : sectionsOf(currentObject)) {
    int x = stripX(chain, objects[section].start);
    drawLine(canvas, {x, top}, {x, bottom}, line);
  }
  int x = stripX(chain, chain.last);
  drawLine(canvas, {x, top}, {x, bottom}, line);
}

void setCursor(Point at) {
  FrameRange chain = chainRange(currentObject);
  int64_t length = std::max(chain.last - chain.first, 1);
  setCursorInChain(chain.first +
                   (int64_t{at.x - sectionStrip.x} * length + sectionStrip.width / 2) / sectionStrip.width);
}

}  // namespace

std::string frameLabel(int frame) {
  if (preferences.config_time_type != 1) return std::to_string(frame + 1);
  std::string text = timeText(frame);
  if (text.starts_with("00:")) return text.substr(3);
  return text[0] == '0' ? text.substr(1) : text;
}

void paintStrip(Canvas* canvas) {
  if (hasObject()) paintSections(canvas);
  state.cursorDrawn = cursorX();
  xorCursor(canvas, state.cursorDrawn);
}

void drawStrip() {
  Canvas* canvas = windowCanvas(state.window);
  Rect around{sectionStrip.x - 1, 0, sectionStrip.width + 3, sectionStrip.y + sectionStrip.height + 1};
  fillRect(canvas, around, systemColor(colorFace));
  paintStrip(canvas);
}

void showHeader() {
  const ObjectRecord& object = objects[currentObject];
  bool media = object.flags & objectDrawn;
  bool picture = media && !(object.flags & objectAudio);
  show(state.camera, picture);
  show(state.clip, picture);
  show(state.source, media);
  show(state.add, takesEffects(currentObject));
  for (Window* control : {state.startLabel, state.jumpStart, state.jumpEnd, state.endLabel}) show(control, true);
  setControlIcon(state.camera, object.flags & objectCameraTarget ? iconCameraOn : iconCameraOff);
  setControlIcon(state.clip, object.flags & objectClipAbove ? iconClipOn : iconClipOff);
  setWindowText(state.startLabel, frameLabel(object.start).c_str());
  setWindowText(state.endLabel, frameLabel(object.end).c_str());
  setWindowText(state.window, objectDisplayName(currentObject));
  drawStrip();
}

void setCursorInChain(int64_t frame) {
  FrameRange chain = chainRange(currentObject);
  int cursor = static_cast<int>(std::clamp<int64_t>(frame, chain.first, chain.last));
  int section = sectionAt(currentObject, cursor);
  if (section != currentObject) sendCommand(commandSelectSection, section);
  sendCommand(commandSetCursor, cursor);
}

bool inStrip(Point at) { return at.x > pressLeft && at.x < pressRight && at.y < pressBottom; }

void pressStrip(Point at) {
  if (!hasObject() || !inStrip(at)) return;
  state.stripDragged = true;
  captureMouse(state.window);
  setCursor(at);
}

void dragStrip(Point at, bool down) {
  if (!state.stripDragged) return;
  if (!down || !hasObject() || mouseCapture() != state.window) {
    state.stripDragged = false;
    if (mouseCapture() == state.window) releaseMouse();
    return;
  }
  setCursor(at);
}

}  // namespace settings

using namespace settings;

bool takesEffects(int object) {
  uint32_t flags = objects[object].flags;
  return !(flags & objectControl) || flags & objectFilterEffect || objects[object].slots[0].effect != effectTimeControl;
}

void refreshSettingsHeader() {
  if (state.window && hasObject()) showHeader();
}

void moveSettingsCursor() {
  int x = cursorX();
  if (!state.window || x == state.cursorDrawn) return;
  platform::Canvas* canvas = platform::windowCanvas(state.window);
  xorCursor(canvas, state.cursorDrawn);
  xorCursor(canvas, x);
  state.cursorDrawn = x;
}

int selectSection(int object) {
  if (!inUse(object) || !hasObject() || headOf(object) != headOf(currentObject)) return 0;
  showObject(object);
  redrawChain(object);
  return 1;
}

int jumpToStart(int frame) {
  int before = hasObject() ? previousSection(currentObject) : -1;
  if (before >= 0 && timelineView.cursorFrame == frame) {
    selectSection(before);
    frame = objects[before].start;
  }
  moveCursor(frame);
  return 1;
}

int jumpToEnd(int frame) {
  int next = hasObject() ? nextSection(currentObject) : -1;
  if (next >= 0 && timelineView.cursorFrame == frame) {
    selectSection(next);
    frame = objects[next].end;
  }
  moveCursor(frame);
  return 1;
}

}  // namespace zenlay
