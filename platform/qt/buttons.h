// Buttons and the separator as the small rows of the windows need them.
#pragma once

#include <QPushButton>

namespace platform::qt {

/// Narrows and then shortens a text that is wider than the button.
struct TextButton : QPushButton {
  using QPushButton::QPushButton;
  void paintEvent(QPaintEvent*) override;
};

/// The icon of its record on a grid of whole pixels; a face only while pointed at, pressed or focused.
struct IconButton : QAbstractButton {
  explicit IconButton(QWidget* parent);
  QSize sizeHint() const override { return {18, 18}; }
  void paintEvent(QPaintEvent*) override;
};

/// An etched horizontal line across the middle.
struct Separator : QWidget {
  using QWidget::QWidget;
  void paintEvent(QPaintEvent*) override;
};

}  // namespace platform::qt
