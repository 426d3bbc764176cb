#include "zenlay/ui/input/window_procedure.h"

#include "platform/control.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/commands/commands.h"
#include "zenlay/ui/image/editing.h"
#include "zenlay/ui/input/input.h"
#include "zenlay/ui/menus/menus.h"
#include "zenlay/ui/project/clip.h"
#include "zenlay/ui/project/describe.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/redraw.h"
#include "zenlay/ui/timeline/scroll.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

void setUp() {
  readPreferences();
  setZoomLevel(preferences.zoom);
  createTimelineControls();
  createMenus();
  createSettingsWindow();
  registerShortcuts();
  updateTitle();
}

void keepWindowPlaces() {
  platform::Rect timeline = platform::windowPlace(environment.timelineWindow);
  preferences.w = timeline.width;
  preferences.h = timeline.height;
  platform::Rect settings = platform::windowPlace(settingsWindow());
  preferences.config_x = settings.x;
  preferences.config_y = settings.y;
}

void windDown() {
  abandonDrag();
  preferences.zoom = timelineView.zoomLevel;
  if (environment.timelineWindow) keepWindowPlaces();
  writePreferences();
  destroySettingsWindow();
  destroyMenus();
  forgetTimelineControls();
}

/// What comes from the host beside its windows' own messages.
int hostMessage(uint32_t message, intptr_t first, intptr_t second, EditHandle edit) {
  switch (message) {
    case messageWindowSetUp:
      setUp();
      return 0;
    case messageWindowClose:
      windDown();
      return 0;
    case messageFileOpen:
      adoptClip(edit);
      return 0;
    case messageFileClose:
      dropClip();
      return 0;
    case messageClipChanged:
      readClip(edit);
      return 0;
    case messageUpdate:
      followHost(edit);
      return 0;
    case messageCommand:
      return runCommand(static_cast<int>(first), second);
    case messageHostCommand:
      return runHostCommand(static_cast<int>(first), second);
    case messageQuery:
      return answerQuery(first, reinterpret_cast<QueryRequest*>(second));
    default:
      return message >= messageImageMouseDown && message <= messageImageWheel ? imageMessage(message, first, second)
                                                                              : 0;
  }
}

bool fromMouse(uint32_t message) {
  return message >= platform::messageMouseMove && message <= platform::messageMouseWheel;
}

int userInput(uint32_t message, intptr_t first, intptr_t second) {
  platform::Point at = platform::unpackPoint(second);
  if (fromMouse(message)) noteCtrl(first);
  switch (message) {
    case platform::messageMouseMove:
      return timelineMoved(at, first);
    case platform::messageLeftDown:
      return timelinePressed(at, first);
    case platform::messageLeftUp:
      return timelineReleased(platform::mouseLeft, first);
    case platform::messageMiddleDown:
      return timelineMiddlePressed(at);
    case platform::messageMiddleUp:
      return timelineReleased(platform::mouseMiddle, first);
    case platform::messageTimer:
      return first == dragTimer ? timelineTicked() : 0;
    case platform::messageLeftDoubleClick:
      return timelineDoubleClicked(at, first);
    case platform::messageRightDown:
      return timelineRightPressed(at, first);
    case platform::messageMouseWheel:
      return timelineWheel(platform::wheelNotches(first), first & 0xFFFF);
    case platform::messageKeyDown:
    case platform::messageSystemKeyDown:
      return timelineKeyDown(message, static_cast<int>(first), second != 0);
    case platform::messageKeyUp:
      return timelineKeyUp(static_cast<int>(first));
    case messageNudge:
      return timelineNudged(static_cast<int>(first));
    case messageCursorStep:
      return timelineStepped(static_cast<int>(first));
    case platform::messageFilesDropped:
      return filesDropped(*reinterpret_cast<const platform::DroppedFiles*>(second));
    default:
      return 0;
  }
}

/// True when the message was the window's own affair.
bool windowMessage(uint32_t message, intptr_t first, intptr_t second) {
  switch (message) {
    case platform::messagePaint:
      paintTimeline();
      return true;
    case platform::messageSized:
      layOutTimeline();
      return true;
    case platform::messageSizing:
      limitTimelineSize(reinterpret_cast<platform::Rect*>(second));
      return true;
    case platform::messageActivated:
      if (first) return true;
      keysGoElsewhere();
      pickScreenColor();
      return true;
    case platform::messageHorizontalScroll:
    case platform::messageVerticalScroll:
      scrollTimeline(platform::scrollAction(first), reinterpret_cast<platform::Window*>(second));
      return true;
    default:
      return false;
  }
}

/// While the host saves, the mouse and the keys do nothing but end what they had begun.
int refuseInput(uint32_t message, intptr_t first) {
  if (message == platform::messageKeyUp) return timelineKeyUp(static_cast<int>(first));
  if (message == platform::messageLeftUp || message == platform::messageMiddleUp) endPendingDrag(0);
  return 0;
}

bool isInput(uint32_t message) {
  return (message >= platform::messageKeyDown && message <= platform::messageSystemKeyDown) || fromMouse(message) ||
         message == platform::messageTimer || message == messageNudge || message == messageCursorStep ||
         message == platform::messageFilesDropped;
}

int answer(uint32_t message, intptr_t first, intptr_t second, EditHandle edit) {
  if (windowMessage(message, first, second)) return 0;
  if (message == platform::messageCaptureLost) return endDrag(platform::keyIsDown(platform::keyCtrl));
  if (!isInput(message)) return hostMessage(message, first, second, edit);
  return environment.saving ? refuseInput(message, first) : userInput(message, first, second);
}

}  // namespace

int timelineWindowProcedure(WindowHandle, uint32_t message, intptr_t first, intptr_t second, EditHandle edit,
                            HostFilterRecord*) {
  if (edit) environment.edit = edit;
  // Of its own release of the mouse, in the middle of what goes on.
  if (message == platform::messageCaptureLost && timelineView.dragMode == dragNone) return 0;
  beginTimelineMessage();
  int result = answer(message, first, second, edit);
  endTimelineMessage();
  return result;
}

}  // namespace zenlay
