#include "platform/control.h"

#include <gtest/gtest.h>

#include "platform/user_input.h"
#include "tests/platform/message_log.h"

namespace platform {
namespace {

using test::MessageLog;
using Lines = std::vector<std::string>;

struct Controls : testing::Test {
  MessageLog log;
  Window* owner = createWindow(nullptr, test::logMessage, &log, {"", "", {0, 0, 500, 400}, windowVisible});

  Window* add(ControlKind kind, int id, uint32_t style = 0) {
    Window* control = createControl(owner, kind, id, {10, 10 * id, 80, 10}, "", style);
    log.lines.clear();
    return control;
  }
  ~Controls() override { destroyWindow(owner); }
};

TEST_F(Controls, SettersSendOnlyWhatPlatformsSend) {
  Window* edit = add(controlEdit, 1);
  setWindowText(edit, "12");
  setWindowText(edit, "12");
  EXPECT_EQ(log.lines, Lines{"command 1 event 768 value 0"});
  Window* check = add(controlCheckBox, 2);
  Window* list = add(controlComboBox, 3);
  Window* bar = add(controlTrackBar, 4);
  setControlValue(check, 5);
  const char* items[] = {"a", "b", "c"};
  setControlItems(list, items);
  EXPECT_EQ(controlValue(list), -1);
  setControlValue(list, 7);
  setControlRange(bar, -10, 20, 5);
  setControlValue(bar, 99);
  EXPECT_EQ(log.lines, Lines{});
  EXPECT_EQ(controlValue(check), 1);
  EXPECT_EQ(controlValue(list), 2);
  EXPECT_EQ(controlItem(list, 2), "c");
  EXPECT_EQ(controlItem(list, 3), "");
  EXPECT_EQ(controlValue(bar), 20);
  setControlRange(bar, -10, 5, 5);
  EXPECT_EQ(controlValue(bar), 5);
  Window* scroll = add(controlVerticalScrollBar, 5);
  setControlRange(scroll, 0, 3, 5);  // all of it fits
  setControlValue(scroll, 3);
  EXPECT_EQ(controlValue(scroll), 0);
}

TEST_F(Controls, OnlyWhatCanBeUsedReports) {
  Window* check = add(controlCheckBox, 1);
  Window* button = add(controlButton, 2);
  Window* track = add(controlTrackBar, 3);
  Window* list = add(controlListBox, 5);
  setControlItems(list, std::vector<const char*>{"a", "b"});
  user::doubleClick(list);  // nothing is chosen
  user::choose(list, 1);
  user::doubleClick(list);
  user::choose(list, 2);
  enableWindow(button, false);
  user::click(button);
  showWindow(check, false);
  user::click(check);
  enableWindow(owner, false);
  user::dragTo(track, 5);
  EXPECT_EQ(log.lines, (Lines{"command 5 event 1 value 1", "command 5 event 2 value 1"}));
}

}  // namespace
}  // namespace platform
