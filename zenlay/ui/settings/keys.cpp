// Keys pressed in the window: value boxes, the cursor, undo; everything else is the host's.
#include <algorithm>

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

bool isModifier(int key) { return key == platform::keyShift || key == platform::keyCtrl || key == platform::keyAlt; }

int boxKey(Window* box, int key) {
  if (key == keyEnter) {
    focusWindow(state.window);
    return 1;
  }
  if (key != keyTab) return 0;
  if (Window* next = nextBox(box, keyIsDown(platform::keyShift))) {
    focusWindow(next);
    selectText(next, 0, -1);
  }
  return 1;
}

/// What a list does with keys by itself.
bool isListKey(int key) {
  return key == keyUp || key == keyDown || key == keyHome || key == keyEnd || key == keyPageUp || key == keyPageDown ||
         key == keyF1 + 3;
}

void stepCursor(int key) {
  FrameRange chain = chainRange(currentObject);
  int frame = timelineView.cursorFrame + (key == keyLeft ? -1 : 1);
  sendCommand(commandSetCursor, std::clamp(frame, chain.first, chain.last));
}

void tellHost(int key, bool down) {
  uint32_t message = !down ? messageKeyUp : keyIsDown(platform::keyAlt) ? messageSystemKeyDown : messageKeyDown;
  postMessage(environment.hostMainWindow, message, key, 0);
}

/// A key with the focus outside text boxes; 1 = taken.
int plainKey(int key) {
  if (key == keyTab) return boxKey(nullptr, key);
  if (key == 'Z' && keyIsDown(platform::keyCtrl))
    postMessage(environment.timelineWindow, platform::messageCommand, commandUndo, 0);
  else if (key != keyLeft && key != keyRight)
    return 0;
  else if (hasObject())
    stepCursor(key);
  return 1;
}

void releaseCtrl(Window* focus) {
  if (onList(focus) && !selection().empty())
    sendMessage(environment.timelineWindow, messageKeyUp, platform::keyCtrl, 0);
}

/// Where the press of a key went; its release goes there too.
enum KeyTarget : uint8_t { keyElsewhere, keyHere, keyToHost };
KeyTarget pressed[256];

KeyTarget press(Window* focus, int key) {
  if (onText(focus)) return isValueBox(focus) && boxKey(focus, key) ? keyHere : keyElsewhere;
  if (onList(focus) && isListKey(key)) return keyElsewhere;
  return plainKey(key) ? keyHere : keyToHost;
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
  if (down) pressed[key] = press(focus, key);
  if (pressed[key] == keyToHost) tellHost(key, down);
  return pressed[key] != keyElsewhere;
}

}  // namespace zenlay
