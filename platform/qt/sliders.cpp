#include "platform/qt/sliders.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTimerEvent>

#include "platform/user_input.h"

namespace platform::qt {

namespace {

constexpr int repeatDelay = 300, repeatInterval = 40;  // ms

/// How far one step goes after the arrow has been held that long.
struct Pace {
  int after;  // ms
  int step;
};
constexpr Pace paces[] = {{5000, 20}, {2000, 5}, {0, 1}};

}  // namespace

ScrollAction scrollActionOf(int sliderAction) {
  switch (sliderAction) {
    case QAbstractSlider::SliderSingleStepAdd:
      return scrollLineForward;
    case QAbstractSlider::SliderSingleStepSub:
      return scrollLineBack;
    case QAbstractSlider::SliderPageStepAdd:
      return scrollPageForward;
    case QAbstractSlider::SliderPageStepSub:
      return scrollPageBack;
    case QAbstractSlider::SliderToMinimum:
      return scrollToStart;
    case QAbstractSlider::SliderToMaximum:
      return scrollToEnd;
    default:
      return scrollTrack;
  }
}

template <typename Base>
void Scrolling<Base>::report(ScrollAction action) {
  user::scroll(native->window, action, this->sliderPosition());
}
template struct Scrolling<QSlider>;
template struct Scrolling<QScrollBar>;

SpinButton::SpinButton(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_Hover); }

void SpinButton::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  direction = event->position().x() < width() / 2.0 ? -1 : 1;
  held.start();
  repeat.start(repeatDelay, this);
  step();
}

void SpinButton::mouseReleaseEvent(QMouseEvent*) {
  if (!direction) return;
  direction = 0;
  repeat.stop();
  update();
  user::scroll(native->window, scrollEnd, controlValue(native->window));
}

void SpinButton::timerEvent(QTimerEvent* event) {
  if (event->timerId() != repeat.timerId()) return;
  repeat.start(repeatInterval, this);
  step();
}

void SpinButton::step() {
  int stride = 1;
  for (const Pace& pace : paces)
    if (held.hasExpired(pace.after)) {
      stride = pace.step;
      break;
    }
  update();
  Window* window = native->window;
  int64_t next = int64_t{controlValue(window)} + direction * stride;
  ScrollAction action = direction < 0 ? scrollLineBack : scrollLineForward;
  user::scroll(window, action, static_cast<int>(std::clamp<int64_t>(next, INT_MIN, INT_MAX)));
}

void SpinButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor ink = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
  int half = width() / 2;
  QPoint pointer = mapFromGlobal(QCursor::pos());
  for (int side : {-1, 1}) {
    QRectF face = QRectF(side < 0 ? 0 : half, 0, half, height()).adjusted(0.5, 0.5, -0.5, -0.5);
    QColor colour = palette().color(QPalette::Button);
    if (isEnabled() && direction == side)
      colour = palette().color(QPalette::Highlight);
    else if (isEnabled() && underMouse() && face.contains(pointer))
      colour = palette().color(QPalette::Midlight);
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.setBrush(colour);
    painter.drawRoundedRect(face, 2.5, 2.5);
    QPointF middle = face.center();
    double tip = 2 * side;
    const QPointF arrow[] = {middle + QPointF(tip, 0), middle + QPointF(-tip, -3.5), middle + QPointF(-tip, 3.5)};
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawPolygon(arrow, 3);
  }
}

}  // namespace platform::qt
