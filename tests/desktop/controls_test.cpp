// Controls operated by Qt events report as they do on records alone.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSlider>

#include "platform/qt/qt_desktop.h"
#include "platform/user_input.h"
#include "tests/desktop/logged_window.h"

namespace platform {
namespace {

using test::Lines;

struct QtControls : test::LoggedWindow {
  QtControls() : LoggedWindow({"", "", {0, 0, 500, 300}}) {}
};

TEST_F(QtControls, Buttons) {
  Window* check = add(controlCheckBox, 1, {0, 0, 100, 16}, "Loop");
  Window* icon = add(controlIconButton, 2, {0, 20, 15, 15});
  Window* toggle = add(controlToggle, 3, {0, 40, 19, 19}, "B");
  Window* first = add(controlRadioButton, 4, {0, 60, 100, 18}, "", controlGroupStart);
  Window* second = add(controlRadioButton, 5, {0, 80, 100, 18});
  test::click(check, {5, 8});
  test::click(icon, {5, 8});
  test::click(toggle, {5, 8});
  test::click(first, {5, 8});
  test::click(second, {5, 8});
  test::click(second, {5, 8});
  EXPECT_EQ(log.lines, (Lines{"command 1 event 0 value 1", "command 2 event 0 value 0", "command 3 event 0 value 1",
                              "command 4 event 0 value 1", "command 5 event 0 value 1", "command 5 event 0 value 1"}));
  EXPECT_EQ(controlValue(first), 0);
  EXPECT_FALSE(static_cast<QAbstractButton*>(qt::widgetOf(first))->isChecked());
  EXPECT_TRUE(static_cast<QAbstractButton*>(qt::widgetOf(second))->isChecked());
  log.lines.clear();
  setControlValue(check, 0);
  EXPECT_FALSE(static_cast<QAbstractButton*>(qt::widgetOf(check))->isChecked());
  enableWindow(check, false);
  test::click(check, {5, 8});
  EXPECT_EQ(log.lines, Lines{});
  test::press(check, {5, 8}, Qt::RightButton);  // a menu of what lies around it opens all the same
  EXPECT_EQ(log.lines.size(), 1u);
}

TEST_F(QtControls, ATrackBarIsDraggedAndPaged) {
  Window* track = add(controlTrackBar, 7, {0, 0, 130, 25});
  setControlRange(track, 0, 100, 10);
  test::press(track, {110, 12});  // beside the thumb, which stands at the left
  test::release(track, {110, 12});
  EXPECT_EQ(log.lines, (Lines{"hscroll 3 of 7 to 10", "hscroll 8 of 7 to 10"}));
  log.lines.clear();
  setControlValue(track, 0);
  test::press(track, {4, 12});
  test::moveTo(track, {64, 12}, Qt::LeftButton);
  int middle = controlValue(track);
  EXPECT_NEAR(middle, 50, 2);
  test::moveTo(track, {400, 12}, Qt::LeftButton);
  test::release(track, {400, 12});
  std::string last = " of 7 to 100";
  EXPECT_EQ(log.lines, (Lines{"hscroll 5 of 7 to " + std::to_string(middle), "hscroll 5" + last, "hscroll 4" + last,
                              "hscroll 8" + last}));
  log.lines.clear();
  focusWindow(track);
  test::typeKey(Qt::Key_Left);
  EXPECT_EQ(log.lines, (Lines{"hscroll 0 of 7 to 99", "hscroll 8 of 7 to 99"}));
  log.lines.clear();
  setControlValue(track, 30);
  EXPECT_EQ(static_cast<QSlider*>(qt::widgetOf(track))->value(), 30);
  test::turnWheel(track, {4, 5}, 120);
  EXPECT_EQ(log.lines, Lines{"wheel 4,5 1"});
}

TEST_F(QtControls, SpinButtonsStep) {
  Window* spin = add(controlSpinButton, 8, {0, 0, 32, 18});
  setControlRange(spin, 0, 1, 1);
  test::click(spin, {25, 9});
  test::click(spin, {25, 9});
  test::click(spin, {5, 9});
  EXPECT_EQ(log.lines, (Lines{"hscroll 1 of 8 to 1", "hscroll 8 of 8 to 1", "hscroll 1 of 8 to 1",
                              "hscroll 8 of 8 to 1", "hscroll 0 of 8 to 0", "hscroll 8 of 8 to 0"}));
}

TEST_F(QtControls, ScrollBarsReachTheirLastPage) {
  Window* bar = add(controlVerticalScrollBar, 9, {480, 0, 13, 300});
  setControlRange(bar, 0, 99, 20);
  test::press(bar, {6, 200});
  test::release(bar, {6, 200});
  EXPECT_EQ(log.lines, (Lines{"vscroll 3 of 9 to 20", "vscroll 8 of 9 to 20"}));
  test::press(bar, {6, 100});
  test::moveTo(bar, {6, 290}, Qt::LeftButton);
  test::release(bar, {6, 290});
  EXPECT_EQ(controlValue(bar), 80);
}

TEST_F(QtControls, TextIsTypedInAnyLanguage) {
  Window* edit = add(controlEdit, 10, {0, 0, 80, 20});
  Window* number = add(controlEdit, 11, {0, 30, 80, 20}, "7", controlNumber);
  focusWindow(edit);
  test::settle();
  log.lines.clear();
  test::typeText("ab");
  QInputMethodEvent composed("", {});
  composed.setCommitString("字");
  QCoreApplication::sendEvent(qt::widgetOf(edit), &composed);
  EXPECT_EQ(windowText(edit), "ab字");
  EXPECT_EQ(log.lines, Lines(3, "command 10 event 768 value 0"));
  EXPECT_TRUE(qt::widgetOf(edit)->inputMethodQuery(Qt::ImEnabled).toBool());
  EXPECT_FALSE(qt::widgetOf(number)->testAttribute(Qt::WA_InputMethodEnabled));
  auto* line = static_cast<QLineEdit*>(qt::widgetOf(edit));
  line->setCursorPosition(1);
  setWindowText(edit, "abcd");
  EXPECT_EQ(line->text(), "abcd");
  EXPECT_EQ(line->cursorPosition(), 1);
  selectText(edit, 1, -1);
  EXPECT_EQ(line->selectedText(), "bcd");
}

TEST_F(QtControls, TextOfSeveralLines) {
  Window* box = add(controlEdit, 14, {0, 0, 200, 92}, "one", controlMultiLine);
  focusWindow(box);
  test::settle();
  log.lines.clear();
  selectText(box, 3, 3);
  test::typeKey(Qt::Key_Return, {}, "\r");
  test::typeText("b");
  EXPECT_EQ(windowText(box), "one\nb");
  EXPECT_EQ(log.lines, Lines(2, "command 14 event 768 value 0"));
  setWindowText(box, "x\ny\nz");
  EXPECT_EQ(log.lines.size(), 3u);
  EXPECT_EQ(static_cast<QPlainTextEdit*>(qt::widgetOf(box))->toPlainText(), "x\ny\nz");
}

TEST_F(QtControls, KeysGoNowhereWhileTheWindowIsHeldBack) {
  Window* edit = add(controlEdit, 10, {0, 0, 80, 20});
  focusWindow(edit);
  test::settle();
  enableWindow(window, false);
  test::typeText("a");
  test::click(edit, {3, 3});
  EXPECT_EQ(windowText(edit), "");
  enableWindow(window, true);
  test::typeText("a");
  EXPECT_EQ(windowText(edit), "a");
}

TEST_F(QtControls, KeysOfATextBoxReachItsHookFirst) {
  static int taken;
  taken = 0;
  Window* edit = add(controlEdit, 10, {0, 0, 80, 20});
  setControlHook(
      edit,
      [](Window*, uint32_t message, intptr_t first, intptr_t, void*) -> intptr_t {
        return message == messageKeyDown && first == 'X' ? ++taken : 0;
      },
      nullptr);
  focusWindow(edit);
  test::settle();
  test::typeText("axb");
  EXPECT_EQ(windowText(edit), "ab");
  EXPECT_EQ(taken, 1);
}

TEST_F(QtControls, ListsAreChosenFrom) {
  Window* combo = add(controlComboBox, 12, {0, 0, 100, 20});
  Window* list = add(controlListBox, 13, {0, 40, 100, 100});
  const char* items[] = {"a", "b", "c"};
  setControlItems(combo, items);
  setControlItems(list, items);
  setControlValue(combo, 0);
  focusWindow(combo);
  test::settle();
  log.lines.clear();
  test::typeKey(Qt::Key_Down);
  EXPECT_EQ(log.lines, Lines{"command 12 event 1 value 1"});
  setControlValue(combo, -1);
  EXPECT_EQ(static_cast<QComboBox*>(qt::widgetOf(combo))->currentIndex(), -1);
  focusWindow(list);
  log.lines.clear();
  test::typeKey(Qt::Key_Down);
  test::typeKey(Qt::Key_Down);
  EXPECT_EQ(log.lines, (Lines{"command 13 event 1 value 0", "command 13 event 1 value 1"}));
}

TEST_F(QtControls, TheOwnerGetsWhatControlsLeave) {
  Window* label = add(controlLabel, 20, {30, 40, 100, 20}, "Text");
  Window* button = add(controlButton, 21, {30, 70, 100, 20}, "Text");
  test::press(label, {1, 2});
  test::release(label, {1, 2});
  test::press(button, {1, 2}, Qt::RightButton);
  EXPECT_EQ(log.lines, (Lines{"down 31,42 left", "up 31,42", "rdown 31,72 right"}));
}

/// As many controls as the largest window of rows has: 64 tracks of seven and 48 checks of four.
TEST_F(QtControls, HundredsAreLaidOutInTime) {
  constexpr ControlKind trackKinds[] = {controlTrackBar, controlSpinButton, controlEdit,    controlButton,
                                        controlEdit,     controlSpinButton, controlTrackBar};
  constexpr ControlKind checkKinds[] = {controlCheckBox, controlLabel, controlButton, controlComboBox};
  std::vector<Window*> controls;
  double start = test::threadTime();
  for (int i = 0; i < 64 * 7; i++)
    controls.push_back(createControl(window, trackKinds[i % 7], i, {70 * (i % 7), 25 * (i / 7), 68, 20}, "",
                                     controlHidden | controlFlat | controlNumber));
  for (int i = 0; i < 48 * 4; i++)
    controls.push_back(
        createControl(window, checkKinds[i % 4], i, {120 * (i % 4), 21 * (i / 4), 110, 18}, "", controlHidden));
  double made = test::threadTime() - start;
  test::settle();
  setClientSize(window, {500, 1700});
  test::settle();
  start = test::threadTime();
  for (size_t i = 0; i < controls.size(); i++) {
    setWindowPlace(controls[i], {70 * static_cast<int>(i % 7), 18 * static_cast<int>(i / 7), 68, 18});
    setWindowText(controls[i], "12.5");
    setControlRange(controls[i], 0, 200, 10);
    setControlValue(controls[i], 50);
    showWindow(controls[i], true, false);
  }
  double placed = test::threadTime() - start;
  test::settle();
  double shown = test::threadTime() - start;
  std::printf("640 controls made in %.1f ms, laid out in %.1f ms, shown after %.1f ms\n", made, placed, shown);
  EXPECT_LT(shown, 300);  // ms; over ten times the usual figure, for builds that check themselves
}

}  // namespace
}  // namespace platform
