// The edit cursor, the playback marker and what follows them: view, title, current object.
#include <algorithm>
#include <cstdio>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/handles.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/paint.h"
#include "zenlay/ui/timeline/redraw.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

namespace {

/// Playback does not take the view away from under what the mouse holds.
bool viewIsHeld() { return environment.playing && timelineView.dragMode != dragNone; }

void scrollAfter(int frame) {
  if (!preferences.auto_scroll || viewIsHeld()) return;
  if (frame < timelineView.leftFrame)
    setLeftFrame(frame - (timelineView.rightFrame - timelineView.leftFrame));
  else if (frame > timelineView.rightFrame)
    setLeftFrame(frame - 1);
}

void placeMarker(int frame) {
  timelineView.playbackFrame = frame;
  noteCursorMoved();
}

/// A marker may be left from before the cursor was told to go along.
void endPlayback() {
  setPlaybackFrame(-1);
  environment.playing = false;
  if (!preferences.sync_play_cursor) return;
  platform::postMessage(environment.timelineWindow, messageCommand, commandSetCursor, timelineView.cursorFrame);
  followCursor();
}

void showPlaybackFrame(int frame) {
  if (timelineView.sceneLength < 1) return;
  if (preferences.sync_play_cursor) {
    if (timelineView.playbackFrame >= 0) placeMarker(-1);
    setCursorFrame(frame);
    return;
  }
  setPlaybackFrame(frame);
  scrollAfter(frame);
}

}  // namespace

void makeCurrent(int object) {
  const int shown[] = {currentObject, object};
  showObject(object);
  redrawObjects(shown);
}

void followCursor() {
  if (!preferences.config_move || movesObjects(timelineView.dragMode) || !onTimeline(currentObject)) return;
  int object = objectAt(timelineView.cursorFrame, objects[currentObject].layer);
  if (object >= 0 && object != currentObject) makeCurrent(object);
}

void setCursorFrame(int frame) {
  timelineView.cursorFrame = std::clamp(frame, 0, std::max(timelineView.sceneLength - 1, 0));
  noteCursorMoved();
  moveSettingsCursor();
  updateTitle();
  followCursor();
  if (timelineView.playbackFrame < 0) scrollAfter(timelineView.cursorFrame);
}

void moveCursor(int frame) {
  frame = std::clamp(frame, 0, std::max(timelineView.sceneLength - 1, 0));
  setCursorFrame(environment.hostFunctions->setCurrentFrame(environment.edit, frame));
}

void setPlaybackFrame(int frame) {
  if (frame < 0 && timelineView.playbackFrame < 0) return;
  placeMarker(std::max(frame, -1));
  if (frame >= 0 || viewIsHeld()) return;
  setLeftFrame(timelineView.savedLeftFrame);
  centreCursor();
}

void updateTitle() {
  char title[96] = "Zenlay";
  if (timelineView.sceneLength > 0)
    snprintf(title, sizeof title, "Zenlay [%s] [%d/%d]", timeText(timelineView.cursorFrame).c_str(),
             timelineView.cursorFrame + 1, timelineView.sceneLength);
  platform::setWindowText(environment.timelineWindow, title);
}

void playbackNotification(int frame, uint32_t flags) {
  if (flags & playbackHideAids) {
    imageAidsHidden = true;
    return;
  }
  if (!(flags & (playbackStart | playbackEnd))) imageAidsHidden = false;
  if (flags & playbackStart) {
    timelineView.savedLeftFrame = timelineView.leftFrame;
    environment.playing = true;
  }
  if (flags & playbackEnd) endPlayback();
  if (flags & playbackFrameShown) showPlaybackFrame(frame);
  flushTimeline();  // a message may be waiting in a menu or dialog meanwhile
}

}  // namespace zenlay
