// What shows the windows: a table of callbacks that a desktop fills in. A null entry leaves the record as the only
// truth. The core calls an entry after the record has changed; a desktop in turn tells what happened to its windows by
// the functions below and what the user does by those of user_input.h.
#pragma once

#include "platform/canvas.h"
#include "platform/control.h"
#include "platform/dialog.h"
#include "platform/menu.h"

namespace platform {

/// 8-bit coverage: rows of `width` bytes.
struct CoverageMask {
  int width = 0, height = 0;
  int left = 0, top = 0;  // of the mask from the point drawn at
  std::vector<uint8_t> rows;
};

/// Entries about a window are called only for windows that the backend made something of: createWindow, createControl.
struct DesktopBackend {
  /// Ends when the user has answered; a BoxResult.
  int (*messageBox)(Window* owner, const char* text, const char* caption, uint32_t style);

  /// Set the record's `native`.
  void (*createWindow)(Window*);
  void (*createControl)(Window*);
  /// Of the window and what it contains, maybe while one of them is handling a message.
  void (*destroyWindow)(Window*);
  void (*show)(Window*, bool activate);  // shows or hides as the record says
  void (*enable)(Window*);
  void (*setText)(Window*);
  void (*setPlace)(Window*);  // outer rectangle
  void (*setClientSize)(Window*);
  void (*refreshPlace)(Window*);  // reportPlace if the window may have moved along with what it stands in
  void (*invalidate)(Window*);
  void (*focus)(Window*);
  void (*capture)(Window*);  // null: let go
  void (*setCursor)(Window*);
  void (*startTimer)(Window*, int id, int milliseconds);
  void (*stopTimer)(Window*, int id);

  void (*setValue)(Window* control);
  void (*setRange)(Window* control);
  void (*setItems)(Window* control);
  void (*setIcon)(Window* control);
  void (*setMuted)(Window* control);
  void (*setSwatch)(Window* control);
  void (*setTip)(Window* control);
  void (*selectText)(Window* control);
  void (*setDropWidth)(Window* control);

  int (*showMenu)(const Menu*, Window* owner, Point screen);  // the id chosen, or 0
  void (*runModal)(Window* dialog);                           // until endModal
  void (*endModal)(Window* dialog);
  Size (*dialogUnits)();  // mean width and height of a character

  Point (*cursorPosition)();
  intptr_t (*screenButtons)();
  Window* (*windowAt)(Point screen);
  int (*screenPixel)(Point screen);
  Rect (*virtualScreen)();
  bool (*onAnyMonitor)(Rect);

  /// The window's drawing surface, made when first asked for.
  Canvas* (*windowCanvas)(Window*);
  /// The window's canvas was drawn on, for the first time since takeTouched.
  void (*canvasTouched)(Window*);
  CoverageMask (*renderText)(const char* text, TextFont, double scale);
  Size (*textSize)(const char* text, TextFont);
  /// `size` in device pixels.
  CoverageMask (*renderIcon)(const char* icon, Size size);

  /// From any thread: runPostedMessages is wanted.
  void (*wake)();
};
void setDesktopBackend(const DesktopBackend*);
const DesktopBackend& desktopBackend();

/// Where the desktop has put the window. Sends messageSized when the client size changed.
void reportPlace(Window*, Rect outer, Rect clientOnScreen);
/// The focus went to the window, or out of the program (null).
void reportFocus(Window*);
/// The desktop took the capture away.
void reportCaptureLost();
/// A desktop's own canvas over pixels it keeps, `scale` device pixels a logical one; releaseCanvas frees the record.
Canvas* wrapCanvas(Window*, uint32_t* pixels, Size device, double scale);
/// Gives such a canvas other pixels; without a clip.
void rewrapCanvas(Canvas*, uint32_t* pixels, Size device, double scale);
/// What was drawn on since the last call, in device pixels; maybe empty.
Rect takeTouched(Canvas*);
void setSystemColor(SystemColor, Color);
/// Text and icons rendered so far are forgotten: fonts or scale have changed.
void forgetMasks();
/// Whether a mouse message to a control is its owner's affair.
bool goesToOwner(ControlKind, uint32_t message);
/// What a key pressed in a dialog's window or control does by itself: Enter, Escape. False when it does nothing.
bool dialogKey(Window*, int key);

}  // namespace platform
