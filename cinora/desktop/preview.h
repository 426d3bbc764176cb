// The film's picture: fitted into the window or at a zoom, with the mouse and the keys going to the plug-ins.
#pragma once

#include <QImage>
#include <QWidget>
#include <functional>
#include <optional>

namespace cinora::desktop {

class Preview : public QWidget {
 public:
  explicit Preview(QWidget* parent = nullptr);

  /// A null image shows nothing.
  void setPicture(const QImage&);
  const QImage& picture() const { return picture_; }
  /// Picture pixels a screen pixel; 0 fits the picture into the window.
  void setZoom(double);
  double zoom() const { return zoom_; }
  /// The zoom in effect.
  double scale() const;
  /// One step, the point (of the widget) staying where it is.
  void zoomBy(int steps, QPointF about);
  void zoomBy(int steps) { zoomBy(steps, rect().toRectF().center()); }
  /// Rough scaling while pictures follow each other.
  void setMoving(bool);

  /// Of the widget's point, in picture pixels; may lie outside.
  QPoint pictureAt(QPointF) const;
  QRectF pictureRect() const;

  std::function<void()> zoomChanged;
  /// One of the host's messages about its main image; true when a plug-in took it.
  std::function<bool(uint32_t message, intptr_t first, intptr_t second)> sendMessage;

  QSize sizeHint() const override { return {960, 540}; }
  QSize minimumSizeHint() const override { return {160, 90}; }

 protected:
  bool event(QEvent*) override;
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent*) override;
  void mouseReleaseEvent(QMouseEvent*) override;
  void mouseMoveEvent(QMouseEvent*) override;
  void mouseDoubleClickEvent(QMouseEvent*) override;
  void wheelEvent(QWheelEvent*) override;
  void keyPressEvent(QKeyEvent*) override;
  void keyReleaseEvent(QKeyEvent*) override;

 private:
  bool sendMouse(uint32_t message, const QMouseEvent*);
  bool sendKey(uint32_t message, const QKeyEvent*);
  void limitOffset();

  QImage picture_, scaled_;  // scaled: to the screen's pixels, when it is smaller
  double zoom_ = 0;
  QPointF offset_;  // of the picture's centre from the widget's, screen pixels
  QPointF grabbed_;
  int wheelTurned_ = 0;
  bool panning_ = false, moving_ = false;
  std::optional<bool> keyTaken_;  // by a plug-in, asked before the window's shortcuts
};

}  // namespace cinora::desktop
