#include <algorithm>

#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/effect_commands.h"
#include "zenlay/ui/commands/commands.h"
#include "zenlay/ui/input/input.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

bool stepPosted;  // a held key's next step is waiting
bool ctrlUnseen;  // Ctrl was held when the keys began to go elsewhere

bool hasTarget() { return !selection().empty() || onTimeline(currentObject); }

struct KeyCommand {
  int key;
  bool ctrl;
  int command;
  bool (*applies)();
};
constexpr KeyCommand keyCommands[] = {
    {'C', true, commandCopy, hasTarget},
    {'V', true, commandPaste, [] { return clipboardEntries() > 0; }},
    {platform::keyDelete, false, commandDelete, hasTarget},
    {'Z', true, commandUndo, [] { return undoSteps() > 0; }},
};

/// What a held key repeats faster than it can be done is dropped.
int stepCursor(int frames, bool repeats) {
  if (!repeats) return timelineStepped(frames);
  if (!stepPosted) platform::postMessage(environment.timelineWindow, messageCursorStep, frames, 0);
  stepPosted = true;
  return 0;
}

int moveByKey(int frames, bool repeats) {
  if (!movesObjects(timelineView.dragMode)) return stepCursor(frames, repeats);
  return static_cast<int>(platform::sendMessage(environment.timelineWindow, messageNudge, frames, 0));
}

bool effectsTake(uint32_t message, int key) {
  return onTimeline(currentObject) && offerKey(currentObject, message, key);
}

/// Ends a range selection and the selection, but not what is being dragged.
void ctrlReleased() {
  ctrlUnseen = false;
  if (timelineView.dragMode == dragRange) endDrag(true);
  if (movesObjects(timelineView.dragMode) || selection().empty()) return;
  redrawObjects(selection());
  clearSelection();
}

}  // namespace

void keysGoElsewhere() { ctrlUnseen |= platform::keyIsDown(platform::keyCtrl); }

void noteCtrl(intptr_t mouseState) {
  if (ctrlUnseen && !(mouseState & platform::mouseCtrl)) ctrlReleased();
}

void keepSelectionWithoutCtrl() { ctrlUnseen = false; }

int timelineStepped(int frames) {
  stepPosted = false;
  if (timelineView.sceneLength < 1) return 0;
  moveCursor(timelineView.cursorFrame + frames);
  return 1;
}

int timelineNudged(int frames) {
  nudgeDrag(frames, platform::keyIsDown(platform::keyShift));
  return 0;
}

int timelineKeyDown(uint32_t message, int key, bool repeats) {
  if (effectsTake(message, key)) return 0;
  switch (key) {
    case platform::keyLeft:
    case platform::keyRight:
      return moveByKey(key == platform::keyLeft ? -1 : 1, repeats);
    case platform::keyUp:
    case platform::keyDown:
      setTopLayer(timelineView.topLayer + (key == platform::keyUp ? -1 : 1));
      followView(platform::mouseState());
      return 0;
    case platform::keyShift:
    case platform::keyCtrl:
      refreshCursorShape();
      return 0;
    case platform::keyEscape:
      if (timelineView.dragMode != dragNone) return takeDragBack();
      break;
  }
  bool ctrl = platform::keyIsDown(platform::keyCtrl);
  for (const KeyCommand& row : keyCommands) {
    if (row.key != key || (row.ctrl && !ctrl)) continue;
    return movesObjects(timelineView.dragMode) || !row.applies() ? 0 : runCommand(row.command, 0);
  }
  platform::sendMessage(environment.hostMainWindow, message, key, repeats);
  return 0;
}

int timelineKeyUp(int key) {
  if (key == platform::keyCtrl) ctrlReleased();
  if (key == platform::keyCtrl || key == platform::keyShift) refreshCursorShape();
  return 0;
}

}  // namespace zenlay
