#include "platform/user_input.h"

#include <algorithm>
#include <bitset>

#include "platform/backend.h"
#include "platform/window_record.h"

namespace platform {

namespace {

struct InputState {
  std::bitset<256> keys;
  intptr_t mouse = 0;  // MouseState bits
  Point cursor{};      // screen
};
InputState input;

constexpr intptr_t modifierBits = mouseShift | mouseCtrl | mouseAlt;

struct Modifier {
  intptr_t bit;
  Key key;
};
constexpr Modifier modifiers[] = {{mouseShift, keyShift}, {mouseCtrl, keyCtrl}, {mouseAlt, keyAlt}};

void noteState(intptr_t state) {
  input.mouse = state;
  for (const Modifier& m : modifiers) input.keys.set(m.key, state & m.bit);
}

/// Shown and enabled, and whatever contains it.
bool usable(const Window* window) {
  if (!window) return false;
  for (; window; window = window->style & windowChild ? window->owner : nullptr)
    if (!window->lives || !window->enabled || !window->shown) return false;
  return true;
}

bool isButtonDown(uint32_t message) {
  return message == messageLeftDown || message == messageRightDown || message == messageMiddleDown ||
         message == messageLeftDoubleClick;
}

intptr_t report(Window* control, ControlEvent event) {
  return sendMessage(control->owner, messageCommand, control->control->id | event << 16,
                     reinterpret_cast<intptr_t>(control));
}

}  // namespace

bool goesToOwner(ControlKind kind, uint32_t message) {
  switch (kind) {
    case controlLabel:
    case controlGroupBox:
    case controlSeparator:
      return true;
    case controlEdit:
    case controlListBox:
      return false;
    default:
      return message == messageMouseWheel || message == messageRightDown || message == messageRightUp;
  }
}

intptr_t mouseState() { return input.mouse; }
intptr_t screenButtons() {
  if (desktopBackend().screenButtons) return desktopBackend().screenButtons();
  return input.mouse & (mouseLeft | mouseRight | mouseMiddle);
}
bool keyIsDown(Key key) { return key >= 0 && key < 256 && input.keys[key]; }
Point cursorPosition() { return desktopBackend().cursorPosition ? desktopBackend().cursorPosition() : input.cursor; }

namespace user {

intptr_t mouse(Window* window, uint32_t message, Point at, intptr_t state) {
  bool packed = message == messageMouseWheel;
  noteState(packed ? state & 0xFFFF : state);
  if (Window* captured = mouseCapture(); captured && captured != window) {
    at = screenToClient(captured, clientToScreen(window, at));
    window = captured;
  }
  input.cursor = clientToScreen(window, at);
  while (window->control && !window->enabled && goesToOwner(window->control->kind, message)) {
    at = {at.x + window->place.x, at.y + window->place.y};
    window = window->owner;
  }
  if (!usable(window)) return 0;
  while (ControlRecord* c = controlRecord(window)) {
    if (c->hook && c->hook(window, message, state, packPoint(at), c->hookUser) == 1) return 1;
    if (!windowLives(window) || !goesToOwner(c->kind, message)) return 0;
    at = {at.x + window->place.x, at.y + window->place.y};
    window = window->owner;
  }
  if (isButtonDown(message)) focusWindow(window);
  return sendMessage(window, message, state, packPoint(at));
}

intptr_t wheel(Window* window, Point at, int notches, intptr_t state) {
  return mouse(window, messageMouseWheel, at, (state & 0xFFFF) | static_cast<intptr_t>(notches) * 0x10000);
}

void drag(Window* window, std::span<const Point> path, intptr_t state) {
  if (path.empty()) return;
  mouse(window, messageMouseMove, path.front(), state);
  mouse(window, messageLeftDown, path.front(), state | mouseLeft);
  for (Point at : path.subspan(1)) mouse(window, messageMouseMove, at, state | mouseLeft);
  mouse(window, messageLeftUp, path.back(), state);
}

bool key(int key, bool down, bool repeats) {
  if (key < 0 || key > 255) return false;
  input.keys.set(key, down);
  for (const Modifier& m : modifiers)
    if (m.key == key) input.mouse = down ? input.mouse | m.bit : input.mouse & ~m.bit;
  if (runKeyHooks(key, down)) return true;
  Window* window = focusedWindow();
  if (!usable(window)) return false;
  uint32_t message = !down ? messageKeyUp : input.keys[keyAlt] ? messageSystemKeyDown : messageKeyDown;
  if (ControlRecord* c = controlRecord(window)) {
    if (c->hook && c->hook(window, message, key, repeats, c->hookUser) == 1) return true;
    return down && windowLives(window) && dialogKey(window, key);
  }
  intptr_t answer = sendMessage(window, message, key, repeats);
  if (answer != 1 && down && windowLives(window)) dialogKey(window, key);
  return true;
}

void press(int which, intptr_t state) {
  for (const Modifier& m : modifiers)
    if (state & m.bit) key(m.key, true);
  key(which, true);
  key(which, false);
  for (const Modifier& m : modifiers)
    if (state & m.bit) key(m.key, false);
}

void holdModifiers(intptr_t state) { noteState((input.mouse & ~modifierBits) | (state & modifierBits)); }

void releaseAll() {
  input.keys.reset();
  input.mouse = 0;
}

void click(Window* control) {
  ControlRecord* c = controlRecord(control);
  if (!c || !usable(control)) return;
  if (c->kind == controlCheckBox || c->kind == controlToggle) setControlValue(control, !c->value);
  if (c->kind == controlRadioButton) setControlValue(control, 1);
  report(control, controlClicked);
}

void type(Window* edit, const char* text) {
  ControlRecord* c = controlRecord(edit);
  if (!c || c->kind != controlEdit || !usable(edit)) return;
  focusWindow(edit);
  setWindowText(edit, text);
}

void choose(Window* list, int index) {
  ControlRecord* c = controlRecord(list);
  if (!c || !usable(list) || index < 0 || index >= controlItemCount(list)) return;
  setControlValue(list, index);
  report(list, controlSelectionChanged);
}

void doubleClick(Window* list) {
  if (controlRecord(list) && usable(list) && controlValue(list) >= 0) report(list, controlDoubleClicked);
}

void scroll(Window* bar, ScrollAction action, int position) {
  ControlRecord* c = controlRecord(bar);
  if (!c || !usable(bar)) return;
  setControlValue(bar, position);
  uint32_t message = c->kind == controlVerticalScrollBar ? messageVerticalScroll : messageHorizontalScroll;
  sendMessage(bar->owner, message, action, reinterpret_cast<intptr_t>(bar));
}

void dragTo(Window* bar, int position) {
  for (ScrollAction action : {scrollTrack, scrollPosition, scrollEnd}) scroll(bar, action, position);
}

void resize(Window* window, Size client) {
  if (!usable(window) || window->control) return;
  sendMessage(window, messageEnterSizeMove, 0, 0);
  Rect outer = windowPlace(window);
  outer.width += client.width - clientSize(window).width;
  outer.height += client.height - clientSize(window).height;
  sendMessage(window, messageSizing, 0, reinterpret_cast<intptr_t>(&outer));
  setWindowPlace(window, outer);
  sendMessage(window, messageExitSizeMove, 0, 0);
}

void close(Window* window) {
  if (usable(window)) sendMessage(window, messageClose, 0, 0);
}

void dropFiles(Window* window, Point at, std::span<const std::string> paths) {
  if (!usable(window) || paths.empty()) return;
  while (window && !(window->style & windowAcceptsFiles)) {
    at = {at.x + window->place.x, at.y + window->place.y};
    window = window->style & windowChild ? window->owner : nullptr;
  }
  DroppedFiles files{at, paths.data(), static_cast<int>(paths.size())};
  sendMessage(window, messageFilesDropped, 0, reinterpret_cast<intptr_t>(&files));
}

void moveCursor(Point screen) { input.cursor = screen; }

void timer(Window* window, int id) {
  if (windowLives(window) && window->timers.count(id)) sendMessage(window, messageTimer, id, 0);
}

}  // namespace user

}  // namespace platform
