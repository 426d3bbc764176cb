#include "platform/dialog.h"

#include <gtest/gtest.h>

#include "platform/user_input.h"
#include "tests/support/scripted_desktop.h"

namespace platform {
namespace {

constexpr DialogItem items[] = {
    {controlLabel, 0, {4, 4, 40, 8}, "Name"},
    {controlEdit, 171, {48, 4, 80, 12}},
    {controlButton, dialogOk, {20, 24, 40, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {64, 24, 40, 14}, "Cancel"},
};
constexpr DialogTable table{"Layer Name", {132, 44}, items};

struct Answer {
  std::string text = "old";
  bool refuse = false;
};

intptr_t procedure(Window* dialog, uint32_t message, intptr_t first, intptr_t, void* user) {
  auto* answer = static_cast<Answer*>(user);
  if (message == messageDialogOpened) setWindowText(controlOf(dialog, 171), answer->text.c_str());
  if (message == messageCommand && commandId(first) == dialogOk) {
    if (answer->refuse) return 1;
    answer->text = windowText(controlOf(dialog, 171));
  }
  return 0;
}

struct Dialogs : testing::Test {
  test::ScriptedDesktop desktop;
  Window* owner = createWindow(nullptr, nullptr, nullptr, {"", "", {100, 100, 600, 400}, windowVisible});
  Window* tool = createWindow(owner, nullptr, nullptr, {"", "", {800, 100, 100, 100}, windowVisible | windowTool});
  Answer answer;

  template <typename Work>
  int run(Work work, const DialogTable& shown = table, DialogPlace place = {}) {
    desktop.dialogs.push_back(work);
    return runDialog(shown, owner, place, procedure, &answer);
  }
  ~Dialogs() override { destroyWindow(owner); }
};

TEST_F(Dialogs, ConfirmAndCancel) {
  struct Row {
    const char* what;
    void (*work)(Window*);
    bool refuse;
    int result;
    const char* text;
  };
  const Row rows[] = {
      {"OK", [](Window* d) { user::click(controlOf(d, dialogOk)); }, false, dialogOk, "new"},
      {"Enter", [](Window*) { user::press(keyEnter); }, false, dialogOk, "new"},
      {"Cancel", [](Window* d) { user::click(controlOf(d, dialogCancel)); }, false, dialogCancel, "old"},
      {"Escape", [](Window*) { user::press(keyEscape); }, false, dialogCancel, "old"},
      {"close", [](Window* d) { user::close(d); }, false, dialogCancel, "old"},
      {"nothing", [](Window*) {}, false, dialogCancel, "old"},
      {"refused", [](Window* d) { user::click(controlOf(d, dialogOk)); }, true, dialogCancel, "old"},
      {"number", [](Window* d) { endDialog(d, 42); }, false, 42, "old"},
      {"Enter on Cancel",
       [](Window* d) {
         focusWindow(controlOf(d, dialogCancel));
         user::press(keyEnter);
       },
       false, dialogCancel, "old"},
      {"OK disabled",
       [](Window* d) {
         enableWindow(controlOf(d, dialogOk), false);
         user::press(keyEnter);
       },
       false, dialogCancel, "old"},
  };
  for (const Row& row : rows) {
    answer = {"old", row.refuse};
    int result = run([&](Window* dialog) {
      EXPECT_EQ(windowText(controlOf(dialog, 171)), "old");
      user::type(controlOf(dialog, 171), "new");
      row.work(dialog);
    });
    EXPECT_EQ(result, row.result) << row.what;
    EXPECT_EQ(answer.text, row.text) << row.what;
  }
}

TEST_F(Dialogs, HoldTheOtherWindowsBack) {
  enableWindow(owner, true);
  Window* off = createWindow(owner, nullptr, nullptr, {"", "", {}, windowVisible});
  focusWindow(tool);
  enableWindow(off, false);
  run([&](Window* dialog) {
    EXPECT_EQ(activeWindow(), dialog);
    EXPECT_EQ(focusedWindow(), controlOf(dialog, 171));
    EXPECT_FALSE(windowEnabled(owner));
    EXPECT_FALSE(windowEnabled(tool));
    desktop.dialogs.push_back([&](Window* inner) {
      EXPECT_FALSE(windowEnabled(dialog));
      endDialog(inner, 1);
    });
    runDialog(table, dialog, {}, nullptr, nullptr);
    EXPECT_TRUE(windowEnabled(dialog));
    EXPECT_EQ(focusedWindow(), controlOf(dialog, 171));
    EXPECT_FALSE(windowEnabled(owner));
  });
  EXPECT_TRUE(windowEnabled(owner));
  EXPECT_TRUE(windowEnabled(tool));
  EXPECT_FALSE(windowEnabled(off));
  EXPECT_EQ(activeWindow(), tool);
}

TEST_F(Dialogs, StandWhereAskedAndOnTheScreen) {
  // 132 x 44 units of 6 / 4 and 13 / 8 pixels: 198 x 71.
  user::moveCursor({400, 300});
  run([&](Window* d) { EXPECT_EQ(windowPlace(d), (Rect{301, 265, 198, 71})); });
  run(
      [&](Window* d) {
        EXPECT_EQ(windowPlace(d), (Rect{341, 240, 198, 71}));
      },
      table, {DialogPlace::atCursor, {40, -25}});
  run([&](Window* d) { EXPECT_EQ(windowPlace(d), (Rect{7, 9, 198, 71})); }, table, {DialogPlace::at, {7, 9}});
  user::moveCursor({1919, 0});
  run([&](Window* d) { EXPECT_EQ(windowPlace(d), (Rect{1722, 0, 198, 71})); }, table, {DialogPlace::atCursor, {}});
}

}  // namespace
}  // namespace platform
