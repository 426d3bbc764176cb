// Qt's events become the platform's messages.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <functional>
#include <set>

#include "platform/qt/native.h"
#include "platform/qt/qt_desktop.h"
#include "platform/user_input.h"
#include "tests/desktop/logged_window.h"

namespace platform {
namespace {

using test::Lines;

struct Events : test::LoggedWindow {
  Events() : LoggedWindow({"Test", "Test", {10, 10, 300, 200}, windowResizable | windowAcceptsFiles}) {}
};

TEST_F(Events, Mouse) {
  test::press(window, {5, 6}, Qt::LeftButton, Qt::ShiftModifier);
  test::moveTo(window, {-7, 400}, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_EQ(mouseState(), mouseLeft | mouseCtrl);
  test::release(window, {-7, 400});
  test::doubleClick(window, {1, 2});
  test::click(window, {3, 4}, Qt::RightButton);
  test::click(window, {3, 4}, Qt::MiddleButton, Qt::AltModifier);
  EXPECT_EQ(log.lines,
            (Lines{"down 5,6 left shift", "move -7,400 left ctrl", "up -7,400", "down 1,2 left", "up 1,2",
                   "twice 1,2 left", "up 1,2", "rdown 3,4 right", "rup 3,4", "mdown 3,4 middle alt", "mup 3,4 alt"}));
}

TEST_F(Events, WheelTurnsAddUpToNotches) {
  test::turnWheel(window, {9, 9}, 120, Qt::ControlModifier);
  test::turnWheel(window, {9, 9}, -240);
  EXPECT_EQ(log.lines, (Lines{"wheel 9,9 ctrl 1", "wheel 9,9 -2"}));
  log.lines.clear();
  for (int i = 0; i < 5; i++) test::turnWheel(window, {9, 9}, 50);
  EXPECT_EQ(log.lines, (Lines{"wheel 9,9 1", "wheel 9,9 1"}));
  test::turnWheel(window, {9, 9}, -119);
  EXPECT_EQ(log.lines.size(), 2u);
}

TEST_F(Events, KeysGoThroughHooksToTheWindow) {
  static std::vector<int> hooked;
  hooked.clear();
  HookHandle* hook = installKeyHook([](int key, bool down) {
    if (down) hooked.push_back(key);
    return key == 'Q' ? 1 : 0;
  });
  test::typeKey(Qt::Key_Q, {}, "q");
  test::typeKey(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_FALSE(keyIsDown(static_cast<Key>('Z')));
  test::typeKey(Qt::Key_Backtab, Qt::ShiftModifier);
  removeKeyHook(hook);
  EXPECT_EQ(hooked, (std::vector<int>{'Q', 'Z', keyTab}));
  EXPECT_EQ(log.lines, (Lines{"key 90", "up 90", "key 9", "up 9"}));
  log.lines.clear();
  QWidget* widget = qt::widgetOf(window);
  test::sendKey(widget, QEvent::KeyPress, Qt::Key_Left, Qt::AltModifier);
  test::sendKey(widget, QEvent::KeyRelease, Qt::Key_Left, {});
  test::sendKey(widget, QEvent::KeyPress, Qt::Key_Right);
  test::sendKey(widget, QEvent::KeyRelease, Qt::Key_Right, {}, "", true);  // part of the repetition
  QTest::qSleep(5);
  test::sendKey(widget, QEvent::KeyPress, Qt::Key_Right, {}, "", true);
  test::sendKey(widget, QEvent::KeyPress, Qt::Key_Right, {}, "", true);  // waited: another stands behind it
  test::sendKey(widget, QEvent::KeyRelease, Qt::Key_Right);
  EXPECT_EQ(log.lines, (Lines{"syskey 37", "up 37", "key 39", "key 39 again", "up 39"}));
}

TEST_F(Events, KeysAreThoseOfTheWindowBeforeShortcuts) {
  QWidget* widget = qt::widgetOf(window);
  QKeyEvent space(QEvent::ShortcutOverride, Qt::Key_Space, {}, " ");
  space.ignore();
  QApplication::sendEvent(widget, &space);
  EXPECT_TRUE(space.isAccepted());
  QKeyEvent menu(QEvent::ShortcutOverride, Qt::Key_F, Qt::AltModifier, "f");
  menu.ignore();
  QApplication::sendEvent(widget, &menu);
  EXPECT_FALSE(menu.isAccepted());
}

TEST(Keys, Numbers) {
  struct Row {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    quint32 scanCode;
    int number;
  };
  const Row rows[] = {
      {Qt::Key_A, {}, 38, 'A'},
      {Qt::Key_7, {}, 16, '7'},
      {Qt::Key_Ampersand, Qt::ShiftModifier, 16, '7'},
      {Qt::Key_Ampersand, {}, 10, '1'},             // a layout with digits above
      {static_cast<Qt::Key>(0x0424), {}, 38, 'A'},  // Cyrillic on the key of A
      {Qt::Key_Asterisk, Qt::ShiftModifier, 0, '8'},
      {Qt::Key_5, Qt::KeypadModifier, 84, keyNumpad0 + 5},
      {Qt::Key_Plus, Qt::KeypadModifier, 86, keyAdd},
      {Qt::Key_Enter, Qt::KeypadModifier, 104, keyEnter},
      {Qt::Key_QuoteDbl, Qt::ShiftModifier, 48, keyQuote},
      {Qt::Key_Backslash, {}, 51, keyBackslash},
      {Qt::Key_Period, {}, 60, keyPeriod},
      {Qt::Key_F12, {}, 96, keyF12},
      {Qt::Key_Left, Qt::KeypadModifier, 83, keyLeft},
      {Qt::Key_AltGr, {}, 108, keyAlt},
      {Qt::Key_VolumeUp, {}, 123, 0},
  };
  for (const Row& row : rows) EXPECT_EQ(qt::virtualKey(row.key, row.modifiers, row.scanCode), row.number) << row.key;
}

TEST_F(Events, SizesCloseAndFiles) {
  setClientSize(window, {320, 150});
  test::settle();
  EXPECT_EQ(log.lines, (Lines{"sized 320,150", "paint"}));
  EXPECT_EQ(qt::widgetOf(window)->size(), QSize(320, 150));
  log.lines.clear();
  qt::widgetOf(window)->close();
  EXPECT_EQ(log.lines, Lines{"close"});
  EXPECT_TRUE(windowShown(window));
  log.lines.clear();
  Window* box = add(controlEdit, 5, {20, 30, 60, 20});
  EXPECT_TRUE(test::dropFiles(box, {1, 1}, {"/tmp/a b%20c.png"}));
  EXPECT_EQ(log.lines, Lines{"dropped 21,31 /tmp/a b%20c.png"});
  Window* other = createWindow(nullptr, nullptr, nullptr, {"", "", {0, 0, 50, 50}});
  EXPECT_FALSE(test::dropFiles(other, {1, 1}, {"/tmp/x"}));
  destroyWindow(other);
}

TEST_F(Events, TheUserSizesWithinWhatTheWindowAllows) {
  log.widest = 310;
  qt::widgetOf(window)->windowHandle()->resize(400, 222);  // as by a window manager
  test::settle();
  EXPECT_EQ(clientSize(window), (Size{400, 222}));
  EXPECT_TRUE(QTest::qWaitFor([&] { return log.lines.back() == "exit size"; }, 2000));
  EXPECT_EQ(windowPlace(window).width, 310);
  auto has = [&](const char* line) { return std::count(log.lines.begin(), log.lines.end(), line); };
  EXPECT_EQ(has("enter size"), 1);
  EXPECT_EQ(has("exit size"), 1);
}

TEST_F(Events, CaptureAndCursor) {
  captureMouse(window);
  EXPECT_EQ(QWidget::mouseGrabber(), qt::widgetOf(window));
  Window* edit = add(controlEdit, 5, {20, 30, 60, 20});
  test::moveTo(edit, {1, 1}, Qt::LeftButton);
  EXPECT_EQ(log.lines, Lines{"move 21,31 left"});
  captureMouse(edit);
  EXPECT_EQ(log.lines.back(), "capture lost");
  releaseMouse();
  EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
  captureMouse(edit);
  destroyWindow(edit);
  EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
  setCursorShape(window, cursorSizeHorizontal);
  EXPECT_EQ(qt::widgetOf(window)->cursor().shape(), Qt::SizeHorCursor);
}

TEST_F(Events, TimersAndPostedMessages) {
  startTimer(window, 3, 5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return log.lines.size() >= 2; }, 2000));
  stopTimer(window, 3);
  EXPECT_EQ(log.lines.back(), "timer 3");
  log.lines.clear();
  postMessage(window, 1000, 0, 0);
  EXPECT_EQ(log.lines, Lines{});
  EXPECT_TRUE(QTest::qWaitFor([&] { return !log.lines.empty(); }, 2000));
  EXPECT_EQ(log.lines, Lines{"message 1000"});
}

TEST_F(Events, FocusFollowsQt) {
  Window* tool = createWindow(window, test::logMessage, log.named("tool "), {"", "", {400, 10, 80, 80}, windowTool});
  Window* edit = createControl(tool, controlEdit, 4, {5, 5, 60, 20}, "");
  showWindow(tool, true, false);
  EXPECT_EQ(activeWindow(), window);
  qt::widgetOf(edit)->activateWindow();
  qt::widgetOf(edit)->setFocus();
  test::settle();
  EXPECT_EQ(focusedWindow(), edit);
  EXPECT_EQ(activeWindow(), tool);
  EXPECT_EQ(std::count(log.lines.begin(), log.lines.end(), "tool command 4 event 256 value 0"), 1);
  focusWindow(window);
  test::settle();
  EXPECT_TRUE(qt::widgetOf(window)->hasFocus());
  EXPECT_EQ(std::count(log.lines.begin(), log.lines.end(), "tool command 4 event 512 value 0"), 1);
}

intptr_t goOnInput(Window* window, uint32_t message, intptr_t, intptr_t, void*) {
  static const std::set<uint32_t> input = {messageLeftDown, messageCommand, messageHorizontalScroll,
                                           messageKeyDown,  messageClose,   messageMouseWheel,
                                           messageRightUp,  messageTimer,   messageFilesDropped};
  if (input.count(message)) destroyWindow(window);
  return 0;
}

TEST(Windows, MayGoInTheirOwnEvents) {
  auto open = [] {
    Window* made = createWindow(nullptr, goOnInput, nullptr, {"", "", {0, 0, 200, 100}, windowAcceptsFiles});
    test::showActive(made);
    return made;
  };
  const struct {
    ControlKind kind;
    Point at;
  } rows[] = {{controlButton, {5, 5}}, {controlTrackBar, {120, 12}}, {controlSpinButton, {100, 9}}};
  for (const auto& row : rows) {
    Window* owner = open();
    test::click(createControl(owner, row.kind, 1, {0, 0, 130, 20}, ""), row.at);
    EXPECT_FALSE(windowLives(owner)) << row.kind;
  }
  const std::function<void(Window*)> inputs[] = {
      [](Window* window) {
        test::doubleClick(window, {150, 90});
      },
      [](Window* window) {
        test::click(window, {150, 90}, Qt::RightButton);
      },
      [](Window* window) {
        test::turnWheel(window, {9, 9}, 120);
      },
      [](Window* window) {
        test::dropFiles(window, {9, 9}, {"/a.png"});
      },
      [](Window* window) { qt::widgetOf(window)->close(); },
      [](Window* window) {
        captureMouse(window);
        startTimer(window, 1, 0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !windowLives(window); }, 2000));
        EXPECT_EQ(mouseCapture(), nullptr);
      },
  };
  for (const auto& input : inputs) {
    Window* window = open();
    input(window);
    EXPECT_FALSE(windowLives(window)) << &input - inputs;
  }
  Window* keyed = open();
  test::typeKey(Qt::Key_A);
  Window* written = open();
  focusWindow(createControl(written, controlEdit, 1, {0, 0, 50, 20}, ""));
  test::settle();
  test::typeText("x");
  for (Window* window : {keyed, written}) EXPECT_FALSE(windowLives(window));
  test::settle();
}

TEST_F(Events, WindowsStandInFramesOfTheHost) {
  static QWidget* dock;
  QWidget host;
  host.resize(600, 400);
  host.show();
  dock = &host;
  static std::string title;
  qt::setFrameMaker([](Window* w, QWidget* surface) -> std::optional<qt::WindowFrame> {
    if (std::string(windowClassName(w)) != "Docked") return {};
    surface->setParent(dock);
    surface->move(100, 50);
    return qt::WindowFrame{[surface](bool shown, bool) { surface->setVisible(shown); },
                           [](const QString& text) { title = text.toStdString(); },
                           {}};
  });
  Window* docked = createWindow(nullptr, test::logMessage, &log, {"Docked", "a", {0, 0, 200, 80}, windowTool});
  qt::setFrameMaker({});
  showWindow(docked, true);
  test::settle();
  setWindowText(docked, "b");
  EXPECT_EQ(title, "b");
  EXPECT_EQ(clientSize(docked), (Size{200, 80}));
  QPoint corner = host.mapToGlobal(QPoint(100, 50));
  EXPECT_EQ(clientToScreen(docked, {0, 0}), (Point{corner.x(), corner.y()}));
  host.move(host.pos() + QPoint(30, 20));
  EXPECT_EQ(clientToScreen(docked, {0, 0}), (Point{corner.x() + 30, corner.y() + 20}));
  Window* main = createWindow(nullptr, nullptr, nullptr);
  qt::attachWidget(main, &host);
  EXPECT_EQ(qt::windowOf(&host), main);
  EXPECT_EQ(qt::windowOf(qt::widgetOf(docked)), docked);
  EXPECT_TRUE(windowShown(main));
  destroyWindow(main);
  EXPECT_TRUE(host.isVisible());
  destroyWindow(docked);
  test::settle();
  EXPECT_TRUE(host.findChildren<QWidget*>().isEmpty());
}

}  // namespace
}  // namespace platform
