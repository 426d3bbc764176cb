// Ten thousand random events against windows that react by changing, opening and destroying windows.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>
#include <random>

#include "platform/canvas.h"
#include "platform/dialog.h"
#include "platform/menu.h"
#include "platform/qt/qt_desktop.h"
#include "platform/user_input.h"
#include "tests/support/qt/events.h"

namespace platform {
namespace {

constexpr int kindCount = controlVerticalScrollBar + 1;
constexpr DialogItem items[] = {{controlEdit, 5, {4, 4, 60, 12}}, {controlButton, dialogOk, {4, 20, 40, 14}, "OK"}};
constexpr DialogTable table{"Random", {80, 40}, items};
constexpr MenuRow rows[] = {{"One", 1}, menuBegin("More"), {"Two", 2}, menuEnd};

struct Driver {
  std::mt19937 random{20261};
  std::vector<Window*> windows;  // alive or not
  int depth = 0;                 // of dialogs and menus that wait
  int handled = 0, waited = 0, opened = 0;

  int below(int n) { return static_cast<int>(random() % n); }
  Window* any() { return windows.empty() ? nullptr : windows[below(static_cast<int>(windows.size()))]; }
  void open();
  void react(Window*);
  void act();
  void wait();
};

intptr_t handle(Window* window, uint32_t message, intptr_t, intptr_t, void* user) {
  auto* driver = static_cast<Driver*>(user);
  driver->handled++;
  if (message == messagePaint) {
    fillRect(windowCanvas(window), {0, 0, 400, 300}, systemColor(colorFace));
    return 0;
  }
  if (driver->below(12) == 0) driver->react(window);
  return 0;
}

void Driver::open() {
  opened++;
  uint32_t style = windowVisible;
  if (below(2)) style |= windowTool;
  if (below(2)) style |= windowResizable;
  Window* owner = windows.empty() || below(2) ? nullptr : any();
  Window* window = createWindow(owner, handle, this, {"Random", "Random", {below(300), below(300), 300, 200}, style});
  windows.push_back(window);
  const char* texts[] = {"a", "b", "c"};
  for (int kind = 0; kind < kindCount; kind++) {
    Window* control = createControl(window, static_cast<ControlKind>(kind), kind,
                                    {5 + kind % 4 * 70, 5 + kind / 4 * 40, 60, 20}, "1", 0);
    setControlItems(control, texts);
    windows.push_back(control);
  }
}

/// What a program might do while it handles a message.
void Driver::react(Window* window) {
  switch (below(12)) {
    case 0:
      return destroyWindow(below(3) ? window : any());
    case 1:
      return focusWindow(any());
    case 2:
      return showWindow(any(), below(3) > 0, below(2));
    case 3:
      return enableWindow(any(), below(4) > 0);
    case 4:
      return captureMouse(window);
    case 5:
      return releaseMouse();
    case 6:
      return setWindowPlace(window, {below(200), below(200), 100 + below(300), 80 + below(200)});
    case 7:
      return setControlValue(any(), below(100));
    case 8:
      return setWindowText(any(), below(2) ? "12" : "");
    case 9:
      return postMessage(any(), 2000, 0, 0);
    case 10:
      return invalidateWindow(window);
    default:
      if (depth < 2) wait();
  }
}

/// Opens something that waits for the user, who soon goes on.
void Driver::wait() {
  depth++;
  waited++;
  QTimer user;
  int acts = 0;
  user.callOnTimeout([&] {
    if (acts++ < 5) return act();
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    for (Window* dialog : windows) endDialog(dialog, dialogCancel);
  });
  user.start(0);
  if (below(2)) {
    Menu* menu = createMenu(rows);
    showMenu(menu, any(), {below(300), below(300)});
    destroyMenu(menu);
  } else {
    runDialog(
        table, any(), {},
        [](Window* dialog, uint32_t message, intptr_t, intptr_t, void* driver) -> intptr_t {
          if (message == messageDialogOpened) static_cast<Driver*>(driver)->windows.push_back(dialog);
          return 0;
        },
        this);
  }
  depth--;
}

void Driver::act() {
  static constexpr int keys[] = {Qt::Key_A,      Qt::Key_Left,  Qt::Key_Down, Qt::Key_Tab,   Qt::Key_Return,
                                 Qt::Key_Escape, Qt::Key_Space, Qt::Key_5,    Qt::Key_Delete};
  Window* window = any();
  Point at{below(320) - 10, below(220) - 10};
  switch (below(7)) {
    case 0:
      return test::click(window, at, below(4) ? Qt::LeftButton : Qt::MiddleButton);
    case 1:
      test::press(window, at);
      test::moveTo(window, {at.x + below(50), at.y}, Qt::LeftButton);
      return test::release(window, at);
    case 2:
      return test::turnWheel(window, at, below(2) ? 120 : -240);
    case 3:
      return test::typeKey(keys[below(std::size(keys))], below(4) ? Qt::NoModifier : Qt::ShiftModifier);
    case 4:
      test::dropFiles(window, at, {"/a.png"});
      return;
    case 5:
      if (QWidget* widget = qt::widgetOf(window); widget && widget->isWindow()) widget->close();
      return;
    default:
      return test::doubleClick(window, at);
  }
}

TEST(Random, EventsAndReactionsLeaveSoundWindows) {
  Driver driver;
  for (int i = 0; i < 10000; i++) {
    bool alive = std::any_of(driver.windows.begin(), driver.windows.end(),
                             [](Window* w) { return windowShown(w) && windowEnabled(w) && topLevelWindow(w) == w; });
    if (!alive) {
      for (Window* window : driver.windows) destroyWindow(window);
      driver.windows.clear();
      driver.open();
    }
    if (driver.below(200) == 0 && driver.windows.size() < 200) driver.open();
    driver.act();
    if (i % 20 == 0) test::settle();
    if (i % 100) continue;
    EXPECT_TRUE(!focusedWindow() || windowLives(focusedWindow()));
    EXPECT_TRUE(!mouseCapture() || windowLives(mouseCapture()));
    EXPECT_EQ(driver.depth, 0);
    for (Window* window : driver.windows) {
      QWidget* widget = qt::widgetOf(window);
      EXPECT_EQ(widget != nullptr, windowLives(window));
      bool child = windowStyle(window) & windowChild;
      EXPECT_TRUE(!widget || !child || widget->isEnabledTo(widget->parentWidget()) == windowEnabled(window));
    }
  }
  EXPECT_GT(driver.handled, 5000);
  EXPECT_GT(driver.waited, 10);  // how many depends on the time events take
  EXPECT_GT(driver.opened, 10);
  for (Window* window : driver.windows) destroyWindow(window);
  test::settle();
}

}  // namespace
}  // namespace platform
