// What a user does to windows and controls: records follow and messages go out. A desktop calls these from its events,
// tests in place of a user. What cannot be done, to a hidden or disabled window say, does nothing.
#pragma once

#include <span>
#include <string>

#include "platform/control.h"

namespace platform::user {

/// One of the mouse messages, at a point in the window's client pixels: to the window that has the capture, to the
/// control's hook, to the window, or to the control's owner. `state`: MouseState bits after the event. A button pressed
/// on a plain window gives it the focus. The procedure's answer.
intptr_t mouse(Window*, uint32_t message, Point, intptr_t state = 0);
/// `notches` away from the user.
intptr_t wheel(Window*, Point, int notches, intptr_t state = 0);
/// messageMouseMove and button messages of a drag with the left button, which begins and ends with a press.
void drag(Window*, std::span<const Point> path, intptr_t state = 0);

/// To the focused window, through the key hooks, the control's hook and the dialog's own keys. True when one of those
/// took it or a plain window got it; otherwise it is the focused control's to act on.
bool key(int key, bool down, bool repeats = false);
/// Pressed and released with the modifiers of `state` held.
void press(int key, intptr_t state = 0);
/// The Shift, Ctrl and Alt of `state` are held, the others are not; nothing is sent.
void holdModifiers(intptr_t state);
/// All keys and buttons are up: the focus left the program.
void releaseAll();

/// Buttons, check boxes, radio buttons, toggles.
void click(Window* control);
/// The whole text of an edit box.
void type(Window* edit, const char* text);
/// An entry of a combo or list box.
void choose(Window* list, int index);
/// On the entry chosen of a list box.
void doubleClick(Window* list);
/// Moves a track bar, spin button or scroll bar and tells the owner; the caller ends a change by scrollEnd.
void scroll(Window* bar, ScrollAction, int position);
/// As dragged from one place to another: scrollTrack, scrollPosition and scrollEnd.
void dragTo(Window* bar, int position);

/// Gives a top-level window another client size by its lower right corner, messageSizing and all.
void resize(Window*, Size client);
void close(Window*);
/// To the window, or the nearest owner that accepts files.
void dropFiles(Window*, Point, std::span<const std::string> paths);
void moveCursor(Point screen);
/// messageTimer now if that timer runs.
void timer(Window*, int id);

}  // namespace platform::user
