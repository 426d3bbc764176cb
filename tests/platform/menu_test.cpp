#include "platform/menu.h"

#include <gtest/gtest.h>

#include "tests/support/scripted_desktop.h"

namespace platform {
namespace {

using Lines = std::vector<std::string>;

constexpr MenuRow rows[] = {
    menuBegin("New"), menuBegin("Camera"), {"Target", 9},      menuEnd,   {"", 100}, menuEnd,
    menuSeparator,    {"Undo", 1010},      menuBegin("Empty"), {"", 100}, menuEnd,   {"Grid", 1013},
};

TEST(Menus, AreBuiltAndChangedById) {
  Menu* menu = createMenu(rows);
  EXPECT_EQ(test::menuLines(menu),
            (Lines{"New", "New/Camera", "New/Camera/Target", "New/", "-", "Undo", "Empty", "Empty/", "Grid"}));
  Menu* added = findSubmenu(menu, "New");
  EXPECT_EQ(findSubmenu(menu, "Camera"), nullptr);  // one level only
  Menu* camera = findSubmenu(added, "Camera");
  addMenuItem(addSubmenu(added, "Basic", camera), "Blur", 2003);
  addMenuItem(added, "Shape", 2004, camera);
  addMenuItem(added, "Last", 1010);
  addMenuSeparator(camera);
  removeMenuItem(menu, 100);  // takes the submenu that held nothing else
  setMenuText(menu, 1013, "Grid [2]");
  checkMenuItem(menu, 1013, true);
  enableMenuItem(menu, 1010, false);
  EXPECT_EQ(test::menuLines(menu),
            (Lines{"New", "New/Basic", "New/Basic/Blur", "New/Shape", "New/Camera", "New/Camera/Target", "New/Camera/-",
                   "(New/Last)", "-", "(Undo)", "[x] Grid [2]"}));
  EXPECT_TRUE(hasMenuItem(menu, 9));
  EXPECT_FALSE(hasMenuItem(menu, 100));
  EXPECT_EQ(showMenu(menu, nullptr, {}), 0);  // nobody there to choose
  destroyMenu(menu);
}

}  // namespace
}  // namespace platform
