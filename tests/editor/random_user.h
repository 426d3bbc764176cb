// A user who does anything at any moment, with the events that a window system would deliver: mouse, wheel, keys,
// menus, dropped files, and answers to whatever asks. The same seed does the same things to the same windows.
#pragma once

#include <QPointer>
#include <QWindow>
#include <deque>
#include <random>
#include <set>

#include "tests/editor/editor_stage.h"

namespace cinora::test {

class RandomUser {
 public:
  RandomUser(EditorStage&, uint32_t seed);

  /// One event for whatever may have it: a menu that is open, else a dialog, else the windows.
  void act();
  /// Only leaves what is open: menus, dialogs, a drag.
  void leave();
  /// Nothing is open and no button is down.
  bool idle() const;
  void openFilm();
  /// A dialog that does not let itself be left, by its title.
  std::string stuck() const { return stuck_; }
  /// What was done last, one line each.
  std::string recently() const;
  /// What was done, by kind; a menu's entry, the kind of a dialog.
  const std::set<std::string>& done() const { return done_; }

 private:
  int below(int n) { return static_cast<int>(random_() % static_cast<uint32_t>(n)); }
  void note(const std::string& kind, const std::string& detail = "");
  Qt::KeyboardModifiers someModifiers();
  std::string someFile();
  QWidget* somePlace();
  QPoint somePoint(const QWidget*);
  /// Of a point in the widget; inside the window, which a full screen may have cut off.
  QPoint onWindow(const QWidget*, QPoint) const;

  void actFreely();
  void press();
  void move();
  void release();
  void click(QWidget*, Qt::MouseButton, bool twice);
  void turnWheel();
  void pressKey();
  void typeValue(QWidget* among);
  void dropFile();
  void triggerAction();
  void resize();

  void actOnPopup(QWidget*);
  void chooseEntry(class QMenu*);
  void answer(QWidget* dialog);
  void fumble(QWidget* dialog);
  void end(QWidget* dialog);

  EditorStage& stage_;
  std::mt19937 random_;
  std::deque<std::string> log_;
  std::set<std::string> done_;
  QPointer<QWindow> pressedOn_;
  Qt::MouseButton held_ = Qt::NoButton;
  QPoint mouse_;
  QPointer<QWidget> asking_;  // the dialog dealt with
  int patience_ = 0;          // things still to be done there before it is left
  std::string stuck_;
};

}  // namespace cinora::test
