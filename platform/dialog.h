// Dialogs from static tables. Places are in dialog units: a quarter of the mean width and an eighth of the height of a
// character of the desktop's font, so that a dialog grows with the text.
#pragma once

#include <span>
#include <vector>

#include "platform/control.h"

namespace platform {

struct DialogItem {
  ControlKind kind;
  int id;
  Rect place;
  const char* text = "";
  uint32_t style = 0;  // ControlStyle
};

struct DialogTable {
  const char* title;
  Size size;
  std::span<const DialogItem> items;
  bool frame = true;  // false: a bare list, cancelled when it loses the focus
};

/// Ids of the buttons that close a dialog by themselves unless the procedure takes their messageCommand. Enter presses
/// the default button, or else stands for dialogOk; Escape and the frame's close button stand for dialogCancel.
inline constexpr int dialogOk = 1, dialogCancel = 2;

/// First messageDialogOpened: 1 = it has set the focus, otherwise the first control that takes it gets it. 1 = taken.
using DialogProcedure = intptr_t (*)(Window* dialog, uint32_t message, intptr_t first, intptr_t second, void* user);
inline constexpr uint32_t messageDialogOpened = 0x110;

struct DialogPlace {
  enum Kind { overOwner, atCursor, at } kind = overOwner;
  Point offset{};  // atCursor: of the dialog's centre from the cursor; at: the top-left corner, screen pixels
};

/// The number given to endDialog. While it is open the program's other windows are disabled; the window that was active
/// is activated again afterwards. Without a desktop the dialog is answered at once by dialogCancel.
int runDialog(const DialogTable&, Window* owner, DialogPlace, DialogProcedure, void* user);
void endDialog(Window* dialog, int result);
/// Dialog units in pixels.
Rect dialogPixels(Rect units);

/// Disables every other top-level window of the program, for what runs its own dialog, and undoes just that.
struct ModalState {
  std::vector<Window*> disabled;
  Window* active;
};
ModalState enterModal(Window* dialog);
void leaveModal(const ModalState&);

}  // namespace platform
