#include "cinora/desktop/preview.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>

#include "platform/geometry.h"
#include "platform/qt/native.h"
#include "zenlay/host/host_interface.h"

namespace cinora::desktop {
namespace {

constexpr double zoomSteps[] = {0.0625, 0.125, 0.25, 0.5, 0.75, 1, 1.5, 2, 3, 4, 6, 8, 12, 16};
constexpr double crispFrom = 2;  // zoom from which pixels are squares
constexpr int notch = 120;
constexpr int margin = 8;  // around a fitted picture
constexpr QColor surround(0x17, 0x19, 0x1C);

}  // namespace

Preview::Preview(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAccessibleName("Preview");
}

void Preview::setPicture(const QImage& picture) {
  picture_ = picture;
  scaled_ = {};
  update();
}

void Preview::setMoving(bool moving) {
  moving_ = moving;
  scaled_ = {};
  update();
}

double Preview::scale() const {
  if (zoom_ > 0) return zoom_;
  if (picture_.isNull()) return 1;
  double ratio = devicePixelRatioF();
  double width = std::max(1.0, (this->width() - 2 * margin) * ratio),
         height = std::max(1.0, (this->height() - 2 * margin) * ratio);
  return std::min({width / picture_.width(), height / picture_.height(), 4.0});
}

QRectF Preview::pictureRect() const {
  double ratio = devicePixelRatioF();
  QSizeF size = picture_.size().toSizeF() * scale() / ratio;
  QPointF centre = QPointF(width() / 2.0, height() / 2.0) + (zoom_ > 0 ? offset_ : QPointF());
  QPointF corner = centre - QPointF(size.width() / 2, size.height() / 2);
  // On whole screen pixels, so that 100 % is exact.
  return {QPointF(std::round(corner.x() * ratio) / ratio, std::round(corner.y() * ratio) / ratio), size};
}

QPoint Preview::pictureAt(QPointF at) const {
  QRectF rect = pictureRect();
  double unit = scale() / devicePixelRatioF();
  return {static_cast<int>(std::floor((at.x() - rect.x()) / unit)),
          static_cast<int>(std::floor((at.y() - rect.y()) / unit))};
}

/// The widget's centre stays over the picture.
void Preview::limitOffset() {
  QSizeF size = picture_.size().toSizeF() * scale() / devicePixelRatioF();
  offset_ = {std::clamp(offset_.x(), -size.width() / 2, size.width() / 2),
             std::clamp(offset_.y(), -size.height() / 2, size.height() / 2)};
}

void Preview::setZoom(double zoom) {
  zoom_ = std::clamp(zoom, 0.0, *std::rbegin(zoomSteps));
  if (zoom_ == 0) offset_ = {};
  limitOffset();
  scaled_ = {};
  update();
  if (zoomChanged) zoomChanged();
}

void Preview::zoomBy(int steps, QPointF about) {
  if (picture_.isNull() || !steps) return;
  double before = scale(), after = before;
  for (int i = 0; i < std::abs(steps); i++) {
    auto* step = steps > 0 ? std::upper_bound(std::begin(zoomSteps), std::end(zoomSteps), after * 1.001)
                           : std::lower_bound(std::begin(zoomSteps), std::end(zoomSteps), after * 0.999);
    if (steps > 0 ? step == std::end(zoomSteps) : step == std::begin(zoomSteps)) break;
    after = steps > 0 ? *step : *(step - 1);
  }
  if (after == before) return;
  QPointF centre(width() / 2.0, height() / 2.0), from = about - centre;
  offset_ = from - (from - (zoom_ > 0 ? offset_ : QPointF())) * (after / before);
  setZoom(after);
}

void Preview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), surround);
  if (picture_.isNull()) return;
  QRectF target = pictureRect();
  double scale = this->scale();
  if (scale < 1 && !moving_) {
    QSize size = (picture_.size().toSizeF() * scale).toSize().expandedTo({1, 1});
    if (scaled_.size() != size) scaled_ = picture_.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(target, scaled_);
  } else {
    painter.setRenderHint(QPainter::SmoothPixmapTransform, scale < crispFrom && scale != 1);
    painter.drawImage(target, picture_);
  }
}

bool Preview::sendMouse(uint32_t message, const QMouseEvent* event) {
  if (!sendMessage || picture_.isNull()) return false;
  QPoint at = pictureAt(event->position());
  return sendMessage(message, platform::qt::stateOf(event->modifiers(), event->buttons()),
                     platform::packPoint({at.x(), at.y()}));
}

void Preview::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) {
    panning_ = zoom_ > 0;
    grabbed_ = event->position() - offset_;
    if (panning_) setCursor(Qt::ClosedHandCursor);
  } else if (event->button() == Qt::LeftButton) {
    sendMouse(zenlay::messageImageMouseDown, event);
  } else if (event->button() == Qt::RightButton) {
    sendMouse(zenlay::messageImageRightDown, event);
  }
}

void Preview::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) {
    panning_ = false;
    unsetCursor();
  } else if (event->button() == Qt::LeftButton) {
    sendMouse(zenlay::messageImageMouseUp, event);
  } else if (event->button() == Qt::RightButton) {
    sendMouse(zenlay::messageImageRightUp, event);
  }
}

void Preview::mouseMoveEvent(QMouseEvent* event) {
  if (!panning_) {
    sendMouse(zenlay::messageImageMouseMove, event);
    return;
  }
  offset_ = event->position() - grabbed_;
  limitOffset();
  update();
}

void Preview::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton)
    sendMouse(zenlay::messageImageDoubleClick, event);
  else
    mousePressEvent(event);
}

void Preview::wheelEvent(QWheelEvent* event) {
  wheelTurned_ += event->angleDelta().y();
  int notches = wheelTurned_ / notch;
  wheelTurned_ -= notches * notch;
  if (!notches) return;
  QPoint at = pictureAt(event->position());
  intptr_t state = platform::qt::stateOf(event->modifiers(), event->buttons()) | intptr_t{notches} << 16;
  bool taken = sendMessage && !picture_.isNull() &&
               sendMessage(zenlay::messageImageWheel, state, platform::packPoint({at.x(), at.y()}));
  if (!taken) zoomBy(notches, event->position());
}

bool Preview::sendKey(uint32_t message, const QKeyEvent* event) {
  int key = platform::qt::virtualKey(static_cast<Qt::Key>(event->key()), event->modifiers(), event->nativeScanCode());
  return key && sendMessage && sendMessage(message, key, event->isAutoRepeat());
}

/// A plug-in that moves something by the arrow keys has them before the shortcuts that step through the film.
bool Preview::event(QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride) return QWidget::event(event);
  keyTaken_ = sendKey(zenlay::messageImageKeyDown, static_cast<QKeyEvent*>(event));
  event->setAccepted(*keyTaken_);
  return *keyTaken_;
}

void Preview::keyPressEvent(QKeyEvent* event) {
  bool taken = keyTaken_ ? *keyTaken_ : sendKey(zenlay::messageImageKeyDown, event);
  keyTaken_.reset();
  if (!taken) QWidget::keyPressEvent(event);
}

void Preview::keyReleaseEvent(QKeyEvent* event) {
  if (event->isAutoRepeat() || !sendKey(zenlay::messageImageKeyUp, event)) QWidget::keyReleaseEvent(event);
}

}  // namespace cinora::desktop
