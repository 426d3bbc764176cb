// Keys pressed in the window: value boxes, the cursor, undo; everything else is the host's.
#include <algorithm>

#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/command_ids.h"
#include "zenlay/ui/selection.h"
#include "zenlay/ui/settings_state.h"
#include "zenlay/ui/settings_window.h"

namespace zenlay {
namespace settings {
namespace {

using namespace platform;

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

int plainKey(Window* focus, int key, bool down) {
  bool list = controlId(focus) != 0 && controlKind(focus) == controlComboBox;
  if (isModifier(key)) {
    if (key == platform::keyCtrl && !down && list && !selection().empty())
      sendMessage(environment.timelineWindow, messageKeyUp, platform::keyCtrl, 0);
    return 0;
  }
  if (list && isListKey(key)) return 0;
  bool ours = key == keyTab || key == keyLeft || key == keyRight || (key == 'Z' && keyIsDown(platform::keyCtrl));
  if (!ours)
    tellHost(key, down);
  else if (!down)
    return 1;
  else if (key == 'Z')
    postMessage(environment.timelineWindow, platform::messageCommand, commandUndo, 0);
  else if (key == keyTab)
    return boxKey(nullptr, key);
  else if (hasObject())
    stepCursor(key);
  return 1;
}

}  // namespace
}  // namespace settings

using namespace settings;

int settingsKey(int key, bool down) {
  platform::Window* focus = platform::focusedWindow();
  if (!state.window || platform::topLevelWindow(focus) != state.window) return 0;
  if (down && dragKey(key)) return 1;
  bool text = platform::windowOwner(focus) && platform::controlId(focus) != 0 &&
              platform::controlKind(focus) == platform::controlEdit;
  if (text) return down && isValueBox(focus) ? boxKey(focus, key) : 0;
  return plainKey(focus, key, down);
}

}  // namespace zenlay
