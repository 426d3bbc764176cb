// A user's events, as Qt would deliver them to a window's or control's widget. Points are in its pixels.
#pragma once

#include <QEvent>
#include <QImage>
#include <QWidget>
#include <string>
#include <vector>

#include "platform/control.h"

namespace platform::test {

/// Handles what is queued: posted messages, painting, deletions.
void settle();
/// Shows and activates it, and waits until that is so.
void showActive(Window*);

void press(Window*, Point, Qt::MouseButton = Qt::LeftButton, Qt::KeyboardModifiers = {});
void moveTo(Window*, Point, Qt::MouseButtons = {}, Qt::KeyboardModifiers = {});
void release(Window*, Point, Qt::MouseButton = Qt::LeftButton, Qt::KeyboardModifiers = {});
void click(Window*, Point, Qt::MouseButton = Qt::LeftButton, Qt::KeyboardModifiers = {});
void doubleClick(Window*, Point);
/// In eighths of a degree: 120 is a notch away from the user.
void turnWheel(Window*, Point, int angle, Qt::KeyboardModifiers = {});
/// To whatever has the focus: pressed and released.
void typeKey(int qtKey, Qt::KeyboardModifiers = {}, const char* text = "");
void sendKey(QWidget*, QEvent::Type, int qtKey, Qt::KeyboardModifiers = {}, const char* text = "",
             bool repeats = false);
void typeText(const char* ascii);
/// False when the window does not take them.
bool dropFiles(Window*, Point, const std::vector<std::string>& paths);

/// What the widget shows.
QImage picture(Window*);
/// As out/screenshots/<name>.png of the tree.
void savePicture(const QImage&, const std::string& name);

}  // namespace platform::test
