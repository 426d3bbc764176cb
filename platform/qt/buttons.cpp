#include "platform/qt/buttons.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>

#include "platform/qt/native.h"

namespace platform::qt {

namespace {

constexpr int iconSide = 16;
constexpr int textMargin = 3;  // left and right of a button's text

}  // namespace

void TextButton::paintEvent(QPaintEvent*) {
  QStyleOptionButton option;
  initStyleOption(&option);
  int room = width() - 2 * textMargin - (icon().isNull() ? 0 : iconSize().width() + 4);
  QStylePainter painter(this);
  QFont narrow = narrowed(font(), option.text, room);
  painter.setFont(narrow);
  option.fontMetrics = QFontMetrics(narrow);
  option.text = option.fontMetrics.elidedText(option.text, Qt::ElideRight, room, Qt::TextShowMnemonic);
  if (isEnabled() && (isDown() || isChecked()))
    option.palette.setColor(QPalette::ButtonText, option.palette.color(QPalette::HighlightedText));
  painter.drawControl(QStyle::CE_PushButton, option);
}

IconButton::IconButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
}

void IconButton::paintEvent(QPaintEvent*) {
  Window* window = windowOf(this);
  ControlRecord* record = controlRecord(window);
  if (!record) return;
  QPainter painter(this);
  QColor ink = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
  bool lit = isEnabled() && (underMouse() || isDown() || hasFocus());
  if (lit) {
    QColor face = ink;
    face.setAlpha(isDown() ? 64 : 32);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(face);
    painter.drawRoundedRect(rect(), 3, 3);
  }
  // An odd pixel of room goes to the right and below; one missing is the empty margin of the drawing.
  QPoint corner((width() - iconSide + (width() < iconSide)) / 2, (height() - iconSide + (height() < iconSide)) / 2);
  drawIcon(painter, QRect(corner, QSize(iconSide, iconSide)), record->icon.c_str(), ink);
}

void Separator::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  int y = height() / 2 - 1;
  painter.fillRect(0, y, width(), 1, QColor::fromRgb(systemColor(colorDarkEdge)));
  painter.fillRect(0, y + 1, width(), 1, QColor::fromRgb(systemColor(colorLightEdge)));
}

}  // namespace platform::qt
