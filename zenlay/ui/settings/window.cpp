#include "zenlay/ui/settings/window.h"

#include <algorithm>

#include "zenlay/effects/service_hooks.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/settings/state.h"

namespace zenlay {
namespace settings {

using namespace platform;

namespace {

constexpr int fullHeight = 2662;

void pushed(int id) {
  if (id >= idTrackName && id < idTrackName + maxTracks)
    openMovementMenu(id - idTrackName);
  else if (id >= idEnable && id < idHandles + maxSlots)
    slotClicked(id);
  else if (id >= idPushButton && id < idPushButton + maxChecks)
    sendCommand(commandPushButton, id - idPushButton);
  else
    runSettingsItem(id);
}

void controlCommand(int id, int event, Window* control) {
  if (id >= idCustom && id < idCustomEnd)
    sendCommand(id, event);
  else if (id == idCheckBox)
    checkClicked(control);
  else if (id >= idDropDown && id < idDropDown + maxChecks) {
    if (event == controlSelectionChanged) sendCommand(commandDropDownChanged, id - idDropDown);
  } else if (!boxEvent(control, event) && event == controlClicked)
    pushed(id);
}

/// 1 = taken. A window that is not active leaves the wheel to what scrolls around it.
int turnWheel(intptr_t first) {
  if (activeWindow() != state.window || !hasObject()) return 0;
  int frame = timelineView.cursorFrame - wheelNotches(first);
  sendCommand(commandSetCursor, std::clamp(frame, 0, std::max(timelineView.sceneLength - 1, 0)));
  return 1;
}

void paintAll() {
  Canvas* canvas = windowCanvas(state.window);
  Size size = clientSize(state.window);
  fillRect(canvas, {0, 0, size.width, size.height}, systemColor(colorFace));
  drawStrip();
}

intptr_t passSizeMove(uint32_t message, intptr_t first, intptr_t second) {
  SizeMoveNotice notice{state.window, message, first, second};
  return sendMessage(environment.hostMainWindow, platform::messageCommand, hostSizeMove,
                     reinterpret_cast<intptr_t>(&notice));
}

void command(intptr_t first, intptr_t second) {
  if (first == settingsMovement)
    editMovementParameter(static_cast<int>(second));
  else if (!state.updating)
    controlCommand(commandId(first), commandEvent(first), reinterpret_cast<Window*>(second));
}

/// What the user does to the window itself. 1 = taken.
intptr_t input(uint32_t message, intptr_t first, intptr_t second) {
  switch (message) {
    case messageLeftDown:
    case messageLeftDoubleClick:
      pressStrip(unpackPoint(second));
      return 0;
    case messageMouseMove:
    case messageLeftUp:
      dragStrip(unpackPoint(second), first & mouseLeft);
      return 0;
    case messageRightUp:
      openContextMenu(unpackPoint(second));
      return 0;
    case messageMouseWheel:
      return turnWheel(first);
    case messageFilesDropped:
      filesDropped(*reinterpret_cast<const DroppedFiles*>(second));
      return 0;
    default:
      return 0;
  }
}

intptr_t procedure(Window*, uint32_t message, intptr_t first, intptr_t second, void*) {
  switch (message) {
    case platform::messageCommand:
      command(first, second);
      return 0;
    case messageHorizontalScroll:
      scrolled(reinterpret_cast<Window*>(second), scrollAction(first));
      return 0;
    case messagePaint:
      paintAll();
      return 0;
    case messageActivated:
      if (!first) pickScreenColor();
      return 0;
    case messageTimer:
      pickScreenColor();
      return 0;
    case messageSizing:
    case messageEnterSizeMove:
    case messageExitSizeMove:
      return passSizeMove(message, first, second);
    default:
      return input(message, first, second);
  }
}

/// Its preferred place, moved onto a monitor: at least the head is to be seen.
Rect firstPlace() {
  const Rect screen = virtualScreen();
  constexpr int head = sectionStrip.y + sectionStrip.height;
  Rect place{preferences.config_x, preferences.config_y, windowWidth, head};
  if (!onAnyMonitor(place)) {
    place.x = std::clamp(place.x, screen.x, std::max(screen.x + screen.width - windowWidth, screen.x));
    place.y = std::clamp(place.y, screen.y, std::max(screen.y + screen.height - windowWidth, screen.y));
  }
  if (!onAnyMonitor(place)) place.x = place.y = 0;  // in a corner that no monitor fills
  place.height = fullHeight;
  return place;
}

WindowHandle controlOfRef(ObjectRef ref, int kind, int index) {
  return settingsControl(objectOfRef(ref), slotOfRef(ref), kind, index);
}

int setTrackRange(ObjectRef ref, int track, int minimum, int maximum, int denominator) {
  return setSettingsTrackRange(objectOfRef(ref), slotOfRef(ref), track, minimum, maximum, denominator);
}

int chooseEffectScene(ObjectRef, int current, int* options) {
  return chooseScene(cursorPosition(), current, false, options);
}

int askEffectNumbers(ObjectRef, NumberItem* items, int count) {
  return askNumbers({items, static_cast<size_t>(count)});
}

void installServices() {
  serviceHooks.getSettingsControl = controlOfRef;
  serviceHooks.setTrackRange = setTrackRange;
  serviceHooks.chooseColour = chooseEffectColor;
  serviceHooks.pickColour = pickEffectColor;
  serviceHooks.chooseScene = chooseEffectScene;
  serviceHooks.askNumbers = askEffectNumbers;
}

void removeServices() {
  serviceHooks.getSettingsControl = nullptr;
  serviceHooks.setTrackRange = nullptr;
  serviceHooks.chooseColour = nullptr;
  serviceHooks.pickColour = nullptr;
  serviceHooks.chooseScene = nullptr;
  serviceHooks.askNumbers = nullptr;
}

}  // namespace

intptr_t sendCommand(int id, intptr_t parameter) {
  return sendMessage(environment.timelineWindow, platform::messageCommand, id, parameter);
}

intptr_t sendHostCommand(int id) { return sendMessage(environment.timelineWindow, messageHostCommand, id, 0); }

}  // namespace settings

using namespace settings;

void createSettingsWindow() {
  if (state.window) return;
  platform::Window* window = platform::createWindow(
      environment.timelineWindow, procedure, nullptr,
      {"ExtendedFilterClass", "ExtendedFilter", firstPlace(), platform::windowTool | platform::windowAcceptsFiles});
  state = {};
  createControls(window);
  installServices();
}

void destroySettingsWindow() {
  if (!state.window) return;
  removeServices();
  platform::destroyWindow(state.window);
  state = {};
}

platform::Window* settingsWindow() { return state.window; }

void enableSettings(bool enabled) {
  state.saving = !enabled;
  if (!state.window) return;
  platform::enableWindow(state.window, enabled);
  platform::showWindow(state.window, enabled && hasObject(), false);
}

}  // namespace zenlay
