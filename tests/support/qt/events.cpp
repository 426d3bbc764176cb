#include "tests/support/qt/events.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QTest>
#include <QUrl>
#include <QWheelEvent>

#include "platform/qt/qt_desktop.h"

namespace platform::test {

namespace {

void sendMouse(Window* window, QEvent::Type type, Point at, Qt::MouseButton button, Qt::MouseButtons buttons,
               Qt::KeyboardModifiers modifiers) {
  QWidget* widget = qt::widgetOf(window);
  if (QWidget* holder = QWidget::mouseGrabber(); holder && widget) {
    QPoint moved = holder->mapFromGlobal(widget->mapToGlobal(QPoint(at.x, at.y)));
    at = {moved.x(), moved.y()};
    widget = holder;
  }
  if (!widget) return;
  QPointF local(at.x, at.y);
  QMouseEvent event(type, local, widget->mapToGlobal(local), button, buttons, modifiers);
  QApplication::sendEvent(widget, &event);
}

}  // namespace

void settle() {
  for (int i = 0; i < 3; i++) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

void showActive(Window* window) {
  showWindow(window, true);
  EXPECT_TRUE(QTest::qWaitForWindowActive(qt::widgetOf(window)->window()));
  settle();
}

void press(Window* window, Point at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
  sendMouse(window, QEvent::MouseButtonPress, at, button, button, modifiers);
}
void moveTo(Window* window, Point at, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) {
  sendMouse(window, QEvent::MouseMove, at, Qt::NoButton, buttons, modifiers);
}
void release(Window* window, Point at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
  sendMouse(window, QEvent::MouseButtonRelease, at, button, {}, modifiers);
}
void click(Window* window, Point at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
  press(window, at, button, modifiers);
  release(window, at, button, modifiers);
}
void doubleClick(Window* window, Point at) {
  click(window, at);
  sendMouse(window, QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton, {});
  release(window, at);
}

void turnWheel(Window* window, Point at, int angle, Qt::KeyboardModifiers modifiers) {
  QWidget* widget = qt::widgetOf(window);
  if (!widget) return;
  QPointF local(at.x, at.y);
  QWheelEvent event(local, widget->mapToGlobal(local), {}, {0, angle}, {}, modifiers, Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &event);
}

void sendKey(QWidget* widget, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const char* text,
             bool repeats) {
  if (!widget) return;
  QKeyEvent event(type, key, modifiers, text, repeats);
  QApplication::sendEvent(widget, &event);
}

void typeKey(int key, Qt::KeyboardModifiers modifiers, const char* text) {
  sendKey(QApplication::focusWidget(), QEvent::KeyPress, key, modifiers, text);
  sendKey(QApplication::focusWidget(), QEvent::KeyRelease, key, modifiers, text);
}

void typeText(const char* ascii) {
  for (; *ascii; ascii++) typeKey(toupper(*ascii), {}, std::string(1, *ascii).c_str());
}

bool dropFiles(Window* window, Point at, const std::vector<std::string>& paths) {
  QMimeData data;
  QList<QUrl> urls;
  for (const std::string& path : paths) urls.append(QUrl::fromLocalFile(QString::fromStdString(path)));
  data.setUrls(urls);
  QWidget* widget = qt::widgetOf(window);
  QPoint point(at.x, at.y);
  for (; widget && !widget->acceptDrops(); widget = widget->parentWidget()) point = widget->mapToParent(point);
  if (!widget) return false;
  QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(widget, &enter);
  if (!enter.isAccepted()) return false;
  QDropEvent drop(point, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(widget, &drop);
  return drop.isAccepted();
}

void savePicture(const QImage& image, const std::string& name) {
  QDir().mkpath(SOURCE_DIR "/out/screenshots");
  EXPECT_TRUE(image.save(QString::fromStdString(SOURCE_DIR "/out/screenshots/" + name + ".png"))) << name;
}

QImage picture(Window* window) { return qt::widgetOf(window)->grab().toImage().convertToFormat(QImage::Format_RGB32); }

}  // namespace platform::test
