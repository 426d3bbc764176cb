// Child controls: windows that the desktop draws and operates. They report to their owner by messageCommand or, those
// with a position, by messageHorizontalScroll (messageVerticalScroll of the vertical scroll bar). What the mouse does
// to labels, frames and separators, the right button and the wheel reach the owner (but text and list boxes keep them).
#pragma once

#include <span>
#include <string>

#include "platform/window.h"

namespace platform {

enum ControlKind {
  controlLabel,
  controlButton,
  controlToggle,      // a button that stays down
  controlIconButton,  // shows an icon (setControlIcon) and no frame until pointed at
  controlCheckBox,
  controlRadioButton,  // exclusive among its neighbours from one controlGroupStart to the next
  controlGroupBox,     // a frame with a title
  controlSeparator,    // an etched horizontal line
  controlEdit,
  controlComboBox,
  controlListBox,
  controlTrackBar,    // horizontal
  controlSpinButton,  // horizontal pair of arrows
  controlHorizontalScrollBar,
  controlVerticalScrollBar,
};

enum ControlStyle : uint32_t {
  controlHidden = 0x1,
  controlRightAligned = 0x2,
  controlCentred = 0x4,
  controlNumber = 0x8,       // of an edit box: no input method
  controlFlat = 0x10,        // an edit box on the face colour, without frame
  controlSunken = 0x20,      // static edge
  controlGroupStart = 0x40,  // of radio buttons
  controlDefault = 0x80,     // the button Enter presses
  controlMultiLine = 0x100,  // of an edit box: Enter begins a line, lines end in \n
};

/// High half of messageCommand's first parameter.
enum ControlEvent : int {
  controlClicked = 0,           // buttons and check boxes; a menu's choice
  controlSelectionChanged = 1,  // combo and list boxes
  controlDoubleClicked = 2,
  controlGotFocus = 0x100,  // edit and combo boxes
  controlLostFocus = 0x200,
  controlTextChanged = 0x300,  // edit boxes, also by setWindowText
};
inline int commandId(intptr_t first) { return static_cast<int>(first & 0xFFFF); }
inline int commandEvent(intptr_t first) { return static_cast<int>(first >> 16) & 0xFFFF; }

enum ScrollAction : int {
  scrollLineBack,
  scrollLineForward,
  scrollPageBack,
  scrollPageForward,
  scrollPosition,  // released
  scrollTrack,     // being dragged
  scrollToStart,
  scrollToEnd,
  scrollEnd,  // the change is over
};
/// Of messageHorizontalScroll and messageVerticalScroll; the position is the control's value already.
inline ScrollAction scrollAction(intptr_t first) { return static_cast<ScrollAction>(first); }

Window* createControl(Window* owner, ControlKind, int id, Rect place, const char* text, uint32_t style = 0);
ControlKind controlKind(Window*);
int controlId(Window*);
/// The owner's control of that id, or null.
Window* controlOf(Window* owner, int id);

/// Check state 0 or 1, list selection (-1 none), or position within the range. Setting it sends nothing; a radio button
/// set to 1 clears its neighbours.
int controlValue(Window*);
void setControlValue(Window*, int value);
/// Of track bars, spin buttons and scroll bars; `page` is what a click beside the thumb moves by and, of a scroll bar,
/// the thumb's length: its last position is maximum - page + 1.
void setControlRange(Window*, int minimum, int maximum, int page);
/// Of combo and list boxes. UTF-8. Nothing is selected afterwards.
void setControlItems(Window*, std::span<const char* const> items);
int controlItemCount(Window*);
std::string controlItem(Window*, int index);
/// A name of icons.h; instead of the text.
void setControlIcon(Window*, const char* icon);
const std::string& controlIcon(Window*);
void setControlTip(Window*, const char* text);
/// Draws the text in colorGreyText, though the control works.
void setControlMuted(Window*, bool muted);
/// A square of that colour, 0xRRGGBB, before a label's text; -1 takes it away.
void setControlSwatch(Window* label, int color);
int controlSwatch(Window* label);
/// Of an edit box, in characters; last = -1 is the end of the text.
void selectText(Window*, int first, int last);
/// Of a combo box: how wide its list opens; 0 the box's own width.
void setDropWidth(Window*, int width);

/// Sees a control's mouse and key messages first, in the control's pixels; 1 = taken, the control does not see it.
void setControlHook(Window* control, WindowProcedure, void* user);

}  // namespace platform
