// Dialogs, boxes and menus that wait for the user: the user comes by a timer.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

#include "platform/dialog.h"
#include "platform/menu.h"
#include "platform/qt/qt_desktop.h"
#include "platform/user_input.h"
#include "tests/platform/message_log.h"
#include "tests/support/qt/events.h"

namespace platform {
namespace {

constexpr DialogItem items[] = {
    {controlLabel, 0, {4, 6, 40, 10}, "Name"},
    {controlEdit, 171, {48, 4, 80, 14}},
    {controlButton, dialogOk, {20, 26, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {74, 26, 50, 14}, "Cancel"},
};
constexpr DialogTable table{"Layer Name", {132, 46}, items};
constexpr DialogTable bareList{"", {60, 80}, std::span(items).subspan(1, 1), false};

/// What the user does once something waits for him.
void later(std::function<void()> act) { QTimer::singleShot(0, qApp, std::move(act)); }

struct QtDialogs : testing::Test {
  test::MessageLog log;
  Window* owner = createWindow(nullptr, test::logMessage, &log, {"", "", {50, 50, 600, 400}});
  Window* tool = createWindow(owner, test::logMessage, &log, {"", "", {660, 50, 90, 90}, windowTool});
  std::string text;

  QtDialogs() {
    showWindow(tool, true, false);
    test::showActive(owner);
  }
  ~QtDialogs() override {
    destroyWindow(owner);
    test::settle();
  }
  int run(std::function<void(Window*)> act, const DialogTable& shown = table, DialogPlace place = {}) {
    static std::function<void(Window*)> acting;
    acting = std::move(act);
    return runDialog(
        shown, owner, place,
        [](Window* dialog, uint32_t message, intptr_t first, intptr_t, void* user) -> intptr_t {
          if (message == messageDialogOpened)
            later([dialog] {
              QWidget* edit = qt::widgetOf(controlOf(dialog, 171));
              EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == edit; }, 2000));
              acting(dialog);
            });
          if (message == messageCommand && commandId(first) == dialogOk)
            *static_cast<std::string*>(user) = windowText(controlOf(dialog, 171));
          return 0;
        },
        &text);
  }
};

TEST_F(QtDialogs, KeysAndButtonsEndThem) {
  EXPECT_EQ(run([&](Window* dialog) {
              QWidget* widget = qt::widgetOf(dialog);
              EXPECT_TRUE(widget->isModal());
              EXPECT_FALSE(windowEnabled(owner));
              EXPECT_FALSE(windowEnabled(tool));
              log.lines.clear();
              test::click(owner, {5, 5});
              EXPECT_EQ(log.lines, std::vector<std::string>{});
              test::typeText("ab");
              test::typeKey(Qt::Key_Return);
            }),
            dialogOk);
  EXPECT_EQ(text, "ab");
  EXPECT_TRUE(windowEnabled(owner));
  EXPECT_EQ(activeWindow(), owner);
  text.clear();
  EXPECT_EQ(run([&](Window*) { test::typeKey(Qt::Key_Escape); }), dialogCancel);
  EXPECT_EQ(run([&](Window* dialog) { qt::widgetOf(dialog)->close(); }), dialogCancel);
  EXPECT_EQ(run([&](Window* dialog) { test::click(controlOf(dialog, dialogCancel), {5, 5}); }), dialogCancel);
  EXPECT_EQ(text, "");
  EXPECT_EQ(run([&](Window* dialog) { test::click(controlOf(dialog, dialogOk), {5, 5}); }), dialogOk);
  EXPECT_EQ(run([&](Window*) { destroyWindow(owner); }), dialogCancel);
}

TEST_F(QtDialogs, TabGoesRound) {
  run([&](Window* dialog) {
    std::vector<int> ids;
    for (int i = 0; i < 4; i++) {
      ids.push_back(controlId(focusedWindow()));
      test::typeKey(Qt::Key_Tab);
    }
    EXPECT_EQ(ids, (std::vector<int>{171, dialogOk, dialogCancel, 171}));
    test::typeKey(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(controlId(focusedWindow()), 171);
    endDialog(dialog, 9);
  });
}

TEST_F(QtDialogs, GrowWithTheFont) {
  run([&](Window* dialog) {
    Rect all = dialogPixels({0, 0, 132, 46});
    EXPECT_EQ(clientSize(dialog), (Size{all.width, all.height}));
    EXPECT_EQ(qt::widgetOf(dialog)->size(), QSize(all.width, all.height));
    auto* ok = static_cast<QPushButton*>(qt::widgetOf(controlOf(dialog, dialogOk)));
    EXPECT_LT(ok->fontMetrics().height(), ok->height());
    test::savePicture(test::picture(dialog), "dialog");
    endDialog(dialog, 0);
  });
}

TEST_F(QtDialogs, BareListClosesAtAClickElsewhere) {
  EXPECT_EQ(run(
                [&](Window* dialog) {
                  EXPECT_EQ(QApplication::activePopupWidget(), qt::widgetOf(dialog));
                  test::press(dialog, {-40, -40});  // a popup sees clicks outside of it
                },
                bareList),
            dialogCancel);
}

TEST_F(QtDialogs, Boxes) {
  struct Row {
    uint32_t style;
    const char* button;  // null: Escape
    int answer;
    QMessageBox::Icon icon;
  };
  const Row rows[] = {
      {0x42010, "OK", boxOk, QMessageBox::Critical},   {0x21, "Cancel", boxCancel, QMessageBox::Question},
      {0x33, "No", boxNo, QMessageBox::Warning},       {0x104, "default", boxNo, QMessageBox::NoIcon},
      {0x4, "default", boxYes, QMessageBox::NoIcon},   {0x4, nullptr, boxNo, QMessageBox::NoIcon},
      {0x3, nullptr, boxCancel, QMessageBox::NoIcon},  {0x40, nullptr, boxOk, QMessageBox::Information},
      {0x2, "Ignore", boxIgnore, QMessageBox::NoIcon},
  };
  for (const Row& row : rows) {
    later([&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->text(), "Overwrite <b>?");
      EXPECT_EQ(box->icon(), row.icon);
      test::savePicture(box->grab().toImage(), "box_" + std::to_string(row.style));
      if (!row.button) return test::sendKey(box, QEvent::KeyPress, Qt::Key_Escape);
      if (!strcmp(row.button, "default")) return box->defaultButton()->click();
      for (QAbstractButton* button : box->buttons())
        if (button->text().remove('&') == row.button) return button->click();
      ADD_FAILURE() << row.button;
      box->reject();
    });
    EXPECT_EQ(messageBox(owner, "Overwrite <b>?", "Zenlay", row.style), row.answer) << row.style;
    EXPECT_EQ(focusedWindow(), owner);
  }
}

constexpr MenuRow rows[] = {{"Cut & paste", 5}, menuSeparator, menuBegin("More"), {"Grid", 6}, menuEnd, {"Undo", 7}};

TEST_F(QtDialogs, Menus) {
  Menu* menu = createMenu(rows);
  checkMenuItem(menu, 6, true);
  enableMenuItem(menu, 7, false);
  auto choose = [&](std::function<void(QMenu*)> act) {
    later([act] {
      auto* shown = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      ASSERT_NE(shown, nullptr);
      act(shown);
    });
    return showMenu(menu, owner, {100, 100});
  };
  EXPECT_EQ(choose([](QMenu* shown) {
              test::savePicture(shown->grab().toImage(), "menu");
              EXPECT_EQ(shown->actions().size(), 4);
              EXPECT_EQ(shown->actions()[0]->text(), "Cut && paste");
              EXPECT_TRUE(shown->actions()[1]->isSeparator());
              EXPECT_TRUE(shown->actions()[2]->menu()->actions()[0]->isChecked());
              EXPECT_FALSE(shown->actions()[3]->isEnabled());
              test::sendKey(shown, QEvent::KeyPress, Qt::Key_Down);
              test::sendKey(shown, QEvent::KeyPress, Qt::Key_Return);
            }),
            5);
  EXPECT_EQ(choose([](QMenu* shown) {
              shown->setActiveAction(shown->actions()[2]);
              test::sendKey(shown, QEvent::KeyPress, Qt::Key_Right);
              QWidget* submenu = shown->actions()[2]->menu();
              test::sendKey(submenu, QEvent::KeyPress, Qt::Key_Return);
            }),
            6);
  EXPECT_EQ(choose([](QMenu* shown) { test::sendKey(shown, QEvent::KeyPress, Qt::Key_Escape); }), 0);
  EXPECT_EQ(choose([&](QMenu*) {
              destroyWindow(owner);
              later([] {
                if (QWidget* open = QApplication::activePopupWidget()) open->close();
              });
            }),
            0);
  destroyMenu(menu);
}

}  // namespace
}  // namespace platform
