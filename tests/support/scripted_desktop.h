// A desktop without a screen that answers boxes, menus and dialogs as a test says, and remembers what was asked.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/backend.h"
#include "platform/user_input.h"

namespace platform::test {

struct ShownBox {
  std::string text, caption;
  uint32_t style;
};

/// Serves while it lives; one at a time. A box without a prepared answer gets boxOk, a menu 0, a dialog is cancelled.
struct ScriptedDesktop {
  ScriptedDesktop();
  ~ScriptedDesktop();

  std::vector<ShownBox> boxes;
  std::deque<int> boxAnswers;
  /// Looks at the menu that opens, top level and all, and chooses: the id, or 0.
  std::deque<std::function<int(const Menu*)>> menus;
  /// Works in the dialog that opens. One that is still open afterwards is cancelled.
  std::deque<std::function<void(Window* dialog)>> dialogs;
};

/// The texts of a menu, one entry an element: "[x] " before a checked one, "(…)" around a disabled one, "-" for a
/// separator, "Submenu/Entry" for what a submenu holds.
std::vector<std::string> menuLines(const Menu*);

}  // namespace platform::test
