#include "platform/dialog.h"

#include <algorithm>

#include "platform/backend.h"
#include "platform/window_record.h"

namespace platform {

namespace {

struct Dialog {
  const DialogTable* table;
  DialogProcedure procedure;
  void* user;
  bool ended = false;
  int result = dialogCancel;
};

void press(Window* dialog, int id) {
  Window* button = controlOf(dialog, id);
  sendMessage(dialog, messageCommand, id | controlClicked << 16, reinterpret_cast<intptr_t>(button));
}

intptr_t dialogWindow(Window* window, uint32_t message, intptr_t first, intptr_t second, void* user) {
  auto* dialog = static_cast<Dialog*>(user);
  if (dialog->procedure && dialog->procedure(window, message, first, second, dialog->user) == 1) return 1;
  if (!windowLives(window)) return 0;
  int id = commandId(first);
  if (message == messageCommand && commandEvent(first) == controlClicked && (id == dialogOk || id == dialogCancel))
    endDialog(window, id);
  bool leavesList = message == messageActivated && first == 0 && !dialog->table->frame && !dialog->ended;
  if (message == messageClose || leavesList) press(window, dialogCancel);
  return 0;
}

bool takesFocus(Window* control) {
  switch (controlKind(control)) {
    case controlLabel:
    case controlGroupBox:
    case controlSeparator:
    case controlSpinButton:
      return false;
    case controlRadioButton:  // of a group the chosen one
      if (controlValue(control) == 0) return false;
      [[fallthrough]];
    default:
      return windowShown(control) && windowEnabled(control);
  }
}

void focusFirst(Window* dialog) {
  auto found = std::find_if(dialog->children.begin(), dialog->children.end(), takesFocus);
  if (found == dialog->children.end()) return focusWindow(dialog);
  focusWindow(*found);
  if (controlKind(*found) == controlEdit) selectText(*found, 0, -1);
}

void placeDialog(Window* window, Window* owner, const DialogPlace& place) {
  Rect outer = windowPlace(window), screen = virtualScreen();
  Point centre = cursorPosition();
  if (place.kind == DialogPlace::overOwner && windowLives(owner)) {
    Rect below = windowPlace(owner);
    centre = {below.x + below.width / 2, below.y + below.height / 2};
  }
  Point corner{centre.x - outer.width / 2, centre.y - outer.height / 2};
  if (place.kind == DialogPlace::at) corner = {0, 0};
  if (place.kind != DialogPlace::overOwner) corner = {corner.x + place.offset.x, corner.y + place.offset.y};
  outer.x = std::max(std::min(corner.x, screen.x + screen.width - outer.width), screen.x);
  outer.y = std::max(std::min(corner.y, screen.y + screen.height - outer.height), screen.y);
  setWindowPlace(window, outer);
}

Window* createDialog(const DialogTable& table, Window* owner, const DialogPlace& place, Dialog* dialog) {
  uint32_t style = windowDialog;
  if (!table.frame) style |= windowFrameless;
  if (place.kind != DialogPlace::overOwner) style |= windowTopmost;
  Window* window = createWindow(owner, dialogWindow, dialog, {"Dialog", table.title, {}, style});
  setClientSize(window, sizeOf(dialogPixels({0, 0, table.size.width, table.size.height})));
  for (const DialogItem& item : table.items)
    createControl(window, item.kind, item.id, dialogPixels(item.place), item.text, item.style);
  placeDialog(window, owner, place);
  return window;
}

}  // namespace

Rect dialogPixels(Rect units) {
  Size unit = desktopBackend().dialogUnits ? desktopBackend().dialogUnits() : Size{6, 13};
  int x = units.x * unit.width / 4, y = units.y * unit.height / 8;
  return {x, y, (units.x + units.width) * unit.width / 4 - x, (units.y + units.height) * unit.height / 8 - y};
}

ModalState enterModal(Window* dialog) {
  ModalState state{{}, activeWindow()};
  for (Window* window : topLevelWindows()) {
    if (window == dialog || !windowEnabled(window)) continue;
    enableWindow(window, false);
    state.disabled.push_back(window);
  }
  return state;
}

void leaveModal(const ModalState& state) {
  for (Window* window : state.disabled) enableWindow(window, true);
  focusWindow(state.active);
}

int runDialog(const DialogTable& table, Window* owner, DialogPlace place, DialogProcedure procedure, void* user) {
  Dialog dialog{&table, procedure, user};
  Window* window = createDialog(table, owner, place, &dialog);
  Window* focus = focusedWindow();
  ModalState modal = enterModal(window);
  if (sendMessage(window, messageDialogOpened, 0, 0) != 1 && !dialog.ended) focusFirst(window);
  if (!dialog.ended) {
    showWindow(window, true);
    if (desktopBackend().runModal) desktopBackend().runModal(window);
    if (!dialog.ended) press(window, dialogCancel);
  }
  leaveModal(modal);
  focusWindow(focus);
  destroyWindow(window);
  return dialog.result;
}

void endDialog(Window* window, int result) {
  if (!windowLives(window) || window->procedure != dialogWindow) return;
  auto* dialog = static_cast<Dialog*>(window->user);
  dialog->ended = true;
  dialog->result = result;
  if (desktopBackend().endModal) desktopBackend().endModal(window);
}

bool dialogKey(Window* window, int key) {
  Window* dialog = topLevelWindow(window);
  if (!dialog || dialog->procedure != dialogWindow || (key != keyEnter && key != keyEscape)) return false;
  if (key == keyEscape) return press(dialog, dialogCancel), true;
  if (ControlRecord* c = controlRecord(window); c && (c->style & controlMultiLine)) return false;
  Window* button = controlKind(window) == controlButton && window != dialog ? window : nullptr;
  for (Window* child : dialog->children)
    if (!button && controlRecord(child) && (controlRecord(child)->style & controlDefault)) button = child;
  if (!button || windowEnabled(button)) press(dialog, button ? controlId(button) : dialogOk);
  return true;
}

}  // namespace platform
