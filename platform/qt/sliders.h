// Controls with a position.
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSlider>

#include "platform/qt/native.h"

namespace platform::qt {

/// What a QAbstractSlider is about to do, as the owner is to hear it.
ScrollAction scrollActionOf(int sliderAction);

/// A slider whose actions go to the record, and whose changes end when the button or key is let go.
template <typename Base>
struct Scrolling : Base {
  using Base::Base;

  void follow(NativeWindow* shown) {
    native = shown;
    QObject::connect(this, &QAbstractSlider::actionTriggered, native, [this](int action) {
      if (action == QAbstractSlider::SliderNoAction) return;
      changing = true;
      dragged = action == QAbstractSlider::SliderMove;
      report(scrollActionOf(action));
    });
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    Base::mouseReleaseEvent(event);
    finish();
  }
  void keyReleaseEvent(QKeyEvent* event) override {
    Base::keyReleaseEvent(event);
    if (!event->isAutoRepeat()) finish();
  }

 private:
  void report(ScrollAction);
  void finish() {
    if (!changing) return;
    changing = false;
    if (dragged) report(scrollPosition);
    report(scrollEnd);
  }

  NativeWindow* native = nullptr;
  bool changing = false, dragged = false;
};

using TrackBar = Scrolling<QSlider>;
using ScrollBar = Scrolling<QScrollBar>;

/// Two arrows side by side. Held down, they step on, faster after a while.
struct SpinButton : QWidget {
  explicit SpinButton(QWidget* parent);
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent*) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  void mouseReleaseEvent(QMouseEvent*) override;
  void timerEvent(QTimerEvent*) override;

  NativeWindow* native = nullptr;

 private:
  void step();
  int direction = 0;  // of the arrow held down
  QBasicTimer repeat;
  QElapsedTimer held;
};

}  // namespace platform::qt
