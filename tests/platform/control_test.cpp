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
}

TEST_F(Controls, ScrollBarsKeepTheirPage) {
  Window* bar = add(controlVerticalScrollBar, 1);
  setControlRange(bar, 0, 99, 5);
  setControlValue(bar, 99);
  EXPECT_EQ(controlValue(bar), 95);
  setControlRange(bar, 0, 3, 5);  // all of it fits
  EXPECT_EQ(controlValue(bar), 0);
}

TEST_F(Controls, ReportWhatTheUserDoes) {
  Window* check = add(controlCheckBox, 1);
  Window* button = add(controlButton, 2);
  Window* track = add(controlTrackBar, 3);
  Window* vertical = add(controlVerticalScrollBar, 4);
  Window* list = add(controlListBox, 5);
  Window* edit = add(controlEdit, 6);
  setControlItems(list, std::vector<const char*>{"a", "b"});
  user::click(check);
  user::click(check);
  user::click(button);
  user::dragTo(track, 30);
  user::scroll(vertical, scrollLineForward, 1);
  user::choose(list, 1);
  user::doubleClick(list);
  user::choose(list, 2);
  user::type(edit, "new");
  EXPECT_EQ(log.lines, (Lines{"command 1 event 0 value 1", "command 1 event 0 value 0", "command 2 event 0 value 0",
                              "hscroll 5 of 3 to 30", "hscroll 4 of 3 to 30", "hscroll 8 of 3 to 30",
                              "vscroll 1 of 4 to 1", "command 5 event 1 value 1", "command 5 event 2 value 1",
                              "command 6 event 256 value 0", "command 6 event 768 value 0"}));
  log.lines.clear();
  enableWindow(button, false);
  user::click(button);
  showWindow(check, false);
  user::click(check);
  enableWindow(owner, false);
  user::dragTo(track, 5);
  EXPECT_EQ(log.lines, Lines{});
}

TEST_F(Controls, RadioButtonsExcludeEachOtherInGroups) {
  Window* buttons[5];
  for (int i = 0; i < 5; i++)
    buttons[i] = add(controlRadioButton, i + 1, i == 0 || i == 2 ? uint32_t{controlGroupStart} : 0);
  auto states = [&] {
    std::string text;
    for (Window* b : buttons) text += controlValue(b) ? '1' : '0';
    return text;
  };
  user::click(buttons[0]);
  user::click(buttons[4]);
  EXPECT_EQ(states(), "10001");
  user::click(buttons[1]);
  user::click(buttons[1]);
  setControlValue(buttons[3], 1);
  EXPECT_EQ(states(), "01010");
}

intptr_t takeLeft(Window*, uint32_t message, intptr_t first, intptr_t, void* user) {
  static_cast<std::vector<intptr_t>*>(user)->push_back(message == messageKeyDown ? first : message);
  return message == messageLeftDown || first == keyTab;
}

TEST_F(Controls, HooksSeeInputFirstAndTheOwnerSeesTheRest) {
  std::vector<intptr_t> seen;
  Window* button = add(controlButton, 1);
  Window* edit = add(controlEdit, 2);
  setControlHook(button, takeLeft, &seen);
  setControlHook(edit, takeLeft, &seen);
  user::mouse(button, messageLeftDown, {3, 4}, mouseLeft);
  user::mouse(button, messageRightDown, {3, 4}, mouseRight);
  user::wheel(button, {3, 4}, 1);
  user::mouse(edit, messageRightDown, {3, 4}, mouseRight);
  EXPECT_EQ(seen, (std::vector<intptr_t>{messageLeftDown, messageRightDown, messageMouseWheel, messageRightDown}));
  EXPECT_EQ(log.lines, (Lines{"rdown 13,14 right", "wheel 13,14 1"}));
  seen.clear();
  focusWindow(edit);
  EXPECT_TRUE(user::key(keyTab, true));
  EXPECT_FALSE(user::key('A', true));  // the box's own
  EXPECT_EQ(seen, (std::vector<intptr_t>{keyTab, 'A'}));
  user::releaseAll();
}

}  // namespace
}  // namespace platform
