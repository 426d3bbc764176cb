#include "cinora/desktop/seek_bar.h"

#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

namespace cinora::desktop {
namespace {

constexpr double edge = 9;  // room for the knob at both ends
constexpr double grooveHeight = 6, knobWidth = 9;

}  // namespace

SeekBar::SeekBar(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAccessibleName("Position in the film");
}

void SeekBar::setState(const State& state) {
  if (state == state_) return;
  state_ = state;
  update();
}

double SeekBar::xOf(int frame) const {
  double room = std::max(1.0, width() - 2 * edge);
  return state_.frames > 1 ? edge + room * frame / (state_.frames - 1) : edge;
}

int SeekBar::frameAt(double x) const {
  double room = std::max(1.0, width() - 2 * edge);
  int last = std::max(0, state_.frames - 1);
  return static_cast<int>(std::clamp(std::lround((x - edge) / room * last), 0L, long{last}));
}

void SeekBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  double top = (height() - grooveHeight) / 2;
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawRoundedRect(QRectF(edge, top, width() - 2 * edge, grooveHeight), 3, 3);
  if (state_.frames < 1) return;
  bool whole = state_.first == 0 && state_.last == state_.frames - 1;
  if (!whole && state_.last >= state_.first) {
    QRectF range(xOf(state_.first), top, std::max(2.0, xOf(state_.last) - xOf(state_.first)), grooveHeight);
    painter.setBrush(palette().color(QPalette::Highlight));
    painter.drawRoundedRect(range, 2, 2);
  } else {
    QColor played = palette().color(QPalette::Light);
    painter.setBrush(played);
    painter.drawRoundedRect(QRectF(edge, top, xOf(state_.frame) - edge, grooveHeight), 3, 3);
  }
  painter.setBrush(palette().color(QPalette::Text));
  painter.drawRoundedRect(QRectF(xOf(state_.frame) - knobWidth / 2, 1.5, knobWidth, height() - 3), 3, 3);
}

void SeekBar::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && state_.frames > 0 && sought) sought(frameAt(event->position().x()));
}

void SeekBar::mouseMoveEvent(QMouseEvent* event) {
  if (state_.frames < 1) return;
  int frame = frameAt(event->position().x());
  if (event->buttons() & Qt::LeftButton) {
    if (frame != state_.frame && sought) sought(frame);
  } else if (describe) {
    QToolTip::showText(event->globalPosition().toPoint(), describe(frame), this);
  }
}

}  // namespace cinora::desktop
