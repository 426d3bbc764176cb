// What the user does to the timeline window. Points are client pixels, `state` holds MouseState bits; 1 asks the host
// to redraw its frame.
#pragma once

#include "platform/window.h"

namespace zenlay {

int timelinePressed(platform::Point, intptr_t state);
int timelineMoved(platform::Point, intptr_t state);
/// As by a release; nothing when there is no drag.
int endPendingDrag(intptr_t state);
/// `button`: MouseState bit.
int timelineReleased(intptr_t button, intptr_t state);
int timelineMiddlePressed(platform::Point);
/// dragTimer: the mouse may be resting outside the view.
int timelineTicked();
/// The view moved under the mouse: what it drags goes along.
void followView(intptr_t state);
int timelineDoubleClicked(platform::Point, intptr_t state);
int timelineWheel(int notches, intptr_t state);
/// The context menus.
int timelineRightPressed(platform::Point, intptr_t state);

int timelineKeyDown(uint32_t message, int key, bool repeats);
int timelineKeyUp(int key);
/// Another window has the keyboard, or a menu: only the mouse tells that Ctrl was released there.
void keysGoElsewhere();
/// From every message of the mouse.
void noteCtrl(intptr_t state);
/// What is selected stays although Ctrl was let go of, until the next click.
void keepSelectionWithoutCtrl();
/// messageNudge and the repeated step of the cursor that a held key had asked for.
int timelineNudged(int frames);
int timelineStepped(int frames);
inline constexpr uint32_t messageCursorStep = 0x8001;  // first: frames

int filesDropped(const platform::DroppedFiles&);

void refreshCursorShape();

}  // namespace zenlay
