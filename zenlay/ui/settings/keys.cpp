// Keys pressed in the window: value boxes, the cursor, undo; everything else is the host's.
#include <algorithm>
#include <vector>

#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/selection.h"

namespace zenlay {
namespace settings {
namespace {

using namespace platform;

bool onList(Window* focus) { return controlKind(focus) == controlComboBox; }
bool onText(Window* focus) { return controlKind(focus) == controlEdit; }

bool onButton(Window* focus) {
  ControlKind kind = controlKind(focus);
  return kind == controlButton || kind == controlToggle || kind == controlIconButton || kind == controlCheckBox;
}

bool isModifier(int key) { return key == platform::keyShift || key == platform::keyCtrl || key == platform::keyAlt; }

void goToBox(Window* from) {
  if (Window* next = nextBox(from, keyIsDown(platform::keyShift))) {
    focusWindow(next);
    selectText(next, 0, -1);
  }
}

/// What can be operated besides the value boxes, from the top down.
std::vector<Window*> buttonsAndLists() {
  std::vector<Window*> all{state.camera, state.clip, state.jumpStart, state.jumpEnd, state.source, state.add};
  for (int slot = 0; slot < state.usedSlots; slot++) {
    const SlotLine& head = state.slots[slot];
    all.insert(all.end(), {head.fold, head.handles, head.enable});
    const EffectDefinition* d = effectOf(slot);
    const EffectSlot& place = objects[currentObject].slots[slot];
    for (int t = 0; t < d->track_count; t++) all.push_back(state.tracks[place.firstTrack + t].name);
    for (int c = 0; c < d->check_count; c++) {
      const CheckLine& row = state.checks[place.firstCheck + c];
      all.insert(all.end(), {row.box, row.button, row.list, row.toggle});
    }
  }
  std::erase_if(all, [](Window* control) { return !windowShown(control) || !windowEnabled(control); });
  return all;
}

void goToButton(Window* from) {
  if (!hasObject()) return;
  const std::vector<Window*> all = buttonsAndLists();
  const size_t count = all.size(), at = std::find(all.begin(), all.end(), from) - all.begin();
  if (count == 0) return;
  const bool backward = keyIsDown(platform::keyShift), outside = at == count;
  const size_t next = backward ? (outside ? count : at) + count - 1 : outside ? 0 : at + 1;
  focusWindow(all[next % count]);
}

/// A key in a value box; 1 = taken.
int boxKey(Window* box, int key) {
  switch (key) {
    case keyEscape:
      restoreBox(box);
      [[fallthrough]];
    case keyEnter:
      focusWindow(state.window);
      return 1;
    case keyTab:
      keyIsDown(platform::keyCtrl) ? goToButton(nullptr) : goToBox(box);
      return 1;
    case keyUp:
    case keyDown:
      stepBox(box, key == keyUp ? 1 : -1);
      return 1;
    default:
      return 0;
  }
}

constexpr int keyDropDown = keyF1 + 3;  // F4

/// What a list does with keys by itself.
bool isListKey(int key) {
  return key == keyUp || key == keyDown || key == keyHome || key == keyEnd || key == keyPageUp || key == keyPageDown ||
         key == keyDropDown;
}

void tellHost(int key, bool down) {
  uint32_t message = !down ? messageKeyUp : keyIsDown(platform::keyAlt) ? messageSystemKeyDown : messageKeyDown;
  postMessage(environment.hostMainWindow, message, key, 0);
}

/// A key with the focus outside text boxes; 1 = taken.
int plainKey(Window* focus, int key) {
  const bool ctrl = keyIsDown(platform::keyCtrl), onWindow = focus == state.window;
  if (key == keyTab)
    onWindow && !ctrl ? goToBox(nullptr) : goToButton(focus);
  else if (key == keyEscape && !onWindow)
    focusWindow(state.window);
  else if (key == 'Z' && ctrl && !keyIsDown(platform::keyShift) && !keyIsDown(platform::keyAlt))
    postMessage(environment.timelineWindow, platform::messageCommand, commandUndo, 0);
  else if (key != keyLeft && key != keyRight)
    return 0;
  else if (hasObject())
    setCursorInChain(int64_t{timelineView.cursorFrame} + (key == keyLeft ? -1 : 1));
  return 1;
}

void releaseCtrl(Window* focus) {
  if (onList(focus) && !selection().empty())
    sendMessage(environment.timelineWindow, messageKeyUp, platform::keyCtrl, 0);
}

KeyTarget press(Window* focus, int key) {
  if (key == keyEscape && colorPickPending()) {
    endColorPick();
    return keyHere;
  }
  if (onText(focus)) return isValueBox(focus) && boxKey(focus, key) ? keyHere : keyElsewhere;
  if (onList(focus) && isListKey(key)) return keyElsewhere;
  if (onButton(focus) && (key == keySpace || key == keyEnter)) return keyElsewhere;
  return plainKey(focus, key) ? keyHere : keyToHost;
}

}  // namespace
}  // namespace settings

using namespace settings;

int settingsKey(int key, bool down) {
  platform::Window* focus = platform::focusedWindow();
  if (key < 0 || key > 255) return 0;
  if (down && dragKey(key)) return 1;
  if (!state.window || platform::topLevelWindow(focus) != state.window) return 0;
  if (isModifier(key)) {
    if (key == platform::keyCtrl && !down) releaseCtrl(focus);
    return 0;
  }
  if (down) state.pressed[key] = press(focus, key);
  if (state.pressed[key] == keyToHost) tellHost(key, down);
  return state.pressed[key] != keyElsewhere;
}

}  // namespace zenlay
