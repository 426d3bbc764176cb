// Windows: targets of messages with a place, a title and a state. What is asked of a window is answered from its
// record; a desktop backend (backend.h), when there is one, shows it and tells what the user does to it. Without one
// every window still works as a message target. All calls on the user-interface thread, except where said otherwise.
#pragma once

#include <cstdint>
#include <string>

#include "platform/geometry.h"

namespace platform {

/// A handle stays harmless after its window is gone: messages to it, and to null, are dropped and give 0.
struct Window;
using WindowProcedure = intptr_t (*)(Window*, uint32_t message, intptr_t first, intptr_t second, void* user);

/// Messages beyond those of the program that owns the window. Points are in client pixels.
enum WindowMessage : uint32_t {
  messageSized = 0x005,      // second: the new client size as a point
  messageActivated = 0x006,  // to a top-level window: first: 1 the focus came into it, 0 it left; second: the other one
  messagePaint = 0x00F,      // the canvas was made anew or the colours changed: draw everything, and only that
  messageClose = 0x010,      // the user wants it closed; nothing happens by itself
  messageKeyDown = 0x100,    // to the focused window: first: Key; second: 1 when the key repeats by itself
  messageKeyUp = 0x101,
  messageSystemKeyDown = 0x104,     // with Alt held
  messageCommand = 0x111,           // first: id | ControlEvent << 16; second: the control, null from a menu
  messageTimer = 0x113,             // first: the timer's id
  messageHorizontalScroll = 0x114,  // from a track bar, spin button or scroll bar: first: ScrollAction; second: it
  messageVerticalScroll = 0x115,
  messageMouseMove = 0x200,  // all mouse messages: first: MouseState bits; second: the point
  messageLeftDown = 0x201,
  messageLeftUp = 0x202,
  messageLeftDoubleClick = 0x203,  // instead of the second messageLeftDown
  messageRightDown = 0x204,
  messageRightUp = 0x205,
  messageMiddleDown = 0x207,
  messageMiddleUp = 0x208,
  messageMouseWheel = 0x20A,   // first: MouseState bits | notches << 16, positive away from the user; 1 = taken
  messageSizing = 0x214,       // second: Rect* of the outer rectangle the user drags to; may be changed
  messageCaptureLost = 0x215,  // second: the Window* that has the capture now, or null; also after releaseMouse
  messageEnterSizeMove = 0x231,
  messageExitSizeMove = 0x232,
  messageFilesDropped = 0x233,  // second: const DroppedFiles*
  messageMouseLeave = 0x2A3,
};

enum MouseState : intptr_t {
  mouseLeft = 0x1,
  mouseRight = 0x2,
  mouseShift = 0x4,
  mouseCtrl = 0x8,
  mouseMiddle = 0x10,
  mouseAlt = 0x20,
};
inline int wheelNotches(intptr_t first) { return static_cast<int>(first >> 16); }

struct DroppedFiles {
  Point at;
  const std::string* paths;
  int count;
};

/// Keys by their virtual-key numbers; letters and digits are their ASCII capitals.
enum Key : int {
  keyBackspace = 0x08,
  keyTab = 0x09,
  keyEnter = 0x0D,
  keyShift = 0x10,
  keyCtrl = 0x11,
  keyAlt = 0x12,
  keyEscape = 0x1B,
  keySpace = 0x20,
  keyPageUp,
  keyPageDown,
  keyEnd,
  keyHome,
  keyLeft,
  keyUp,
  keyRight,
  keyDown,
  keyInsert = 0x2D,
  keyDelete = 0x2E,
  keyNumpad0 = 0x60,
  keyMultiply = 0x6A,
  keyAdd,
  keySubtract = 0x6D,
  keyDecimal,
  keyDivide,
  keyF1 = 0x70,  // and so on to keyF24
  keyF5 = 0x74,
  keyF12 = 0x7B,
  keyF24 = 0x87,
  keySemicolon = 0xBA,
  keyPlus,
  keyComma,
  keyMinus,
  keyPeriod,
  keySlash,
  keyBackquote,
  keyOpenBracket = 0xDB,
  keyBackslash,
  keyCloseBracket,
  keyQuote,
};

enum WindowStyle : uint32_t {
  windowChild = 0x1,  // inside its owner; places are in the owner's client pixels
  windowTool = 0x2,   // a small frame; a desktop may dock it
  windowDialog = 0x4,
  windowVisible = 0x8,
  windowAcceptsFiles = 0x10,
  windowTopmost = 0x20,
  windowResizable = 0x40,
  windowFrameless = 0x80,
};
struct WindowOptions {
  const char* className = "";  // a stable name, under which a desktop remembers where it stood
  const char* title = "";
  Rect place{};        // outer rectangle in screen pixels; of a child in its owner's client pixels
  uint32_t style = 0;  // WindowStyle
};

Window* createWindow(Window* owner, WindowProcedure, void* user, const WindowOptions& = {});
void destroyWindow(Window*);  // and the windows it owns
Window* windowOwner(Window*);
/// Whether the window has not been destroyed.
bool windowLives(Window*);
uint32_t windowStyle(Window*);
const char* windowClassName(Window*);
/// The window itself unless it is a child or a control: then that of its owner.
Window* topLevelWindow(Window*);

intptr_t sendMessage(Window*, uint32_t message, intptr_t first, intptr_t second);
/// From any thread. Delivered by the next runPostedMessages; dropped when the window goes first.
void postMessage(Window*, uint32_t message, intptr_t first, intptr_t second);
/// Delivers what was posted before the call; what is posted meanwhile waits for the next one.
void runPostedMessages();

/// Hiding takes focus and capture away.
void showWindow(Window*, bool shown, bool activate = true);
bool windowShown(Window*);
/// A disabled window, and what it contains, gets no mouse and key messages and loses the focus.
void enableWindow(Window*, bool enabled);
bool windowEnabled(Window*);
/// Title, or a control's text. UTF-8.
void setWindowText(Window*, const char* text);
const std::string& windowText(Window*);
/// Outer rectangle; of a child in its owner's client pixels. Sends messageSized when the client size changes.
void setWindowPlace(Window*, Rect);
Rect windowPlace(Window*);
Size clientSize(Window*);
void setClientSize(Window*, Size);
Point clientToScreen(Window*, Point);
Point screenToClient(Window*, Point);
/// messagePaint follows when the desktop next comes round to it.
void invalidateWindow(Window*);

/// Nothing happens while the window is disabled. Activates its top-level window too.
void focusWindow(Window*);
Window* focusedWindow();
/// The top-level window that has the focus; null when it is another program's.
Window* activeWindow();
/// All mouse messages go to the window until it lets go. The window that had the capture gets messageCaptureLost.
void captureMouse(Window*);
void releaseMouse();
Window* mouseCapture();

enum CursorShape { cursorArrow, cursorSizeHorizontal, cursorSizeVertical, cursorSizeAll, cursorHand, cursorCross };
void setCursorShape(Window*, CursorShape);
Point cursorPosition();  // screen
/// Of the keyboard and the mouse as they are now.
intptr_t mouseState();
bool keyIsDown(Key);
/// MouseState bits of the buttons held now, whichever program's window they were pressed in.
intptr_t screenButtons();

/// messageTimer every `milliseconds` until stopped; the same id again restarts it. Without a desktop no time passes.
void startTimer(Window*, int id, int milliseconds);
void stopTimer(Window*, int id);

Window* windowAt(Point screen);  // of this program, or null
/// 0xRRGGBB of the pixel shown there, -1 when it cannot be read.
int screenPixel(Point screen);
/// All monitors together.
Rect virtualScreen();
bool onAnyMonitor(Rect);

enum BoxResult : int { boxOk = 1, boxCancel, boxAbort, boxRetry, boxIgnore, boxYes, boxNo };
/// The button of such a box that refuses, which also closing it and Escape stand for: the only button of one with OK.
BoxResult refusalOf(uint32_t style);
/// `style` as the platform numbers it: buttons in bits 0..3, icon in bits 4..7. Without a desktop the text goes to
/// standard error as one line `caption: text`, and a question is answered by its refusing button.
int messageBox(Window* owner, const char* text, const char* caption, uint32_t style);

/// Sees every key of the program's windows first. 1 = the key was taken.
using KeyHook = int (*)(int key, bool down);
struct HookHandle;
HookHandle* installKeyHook(KeyHook);
void removeKeyHook(HookHandle*);
/// For whoever receives keys: asks the hooks, the last installed first, until one takes the key.
bool runKeyHooks(int key, bool down);

}  // namespace platform
