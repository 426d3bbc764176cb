// Text as coverage: shaped, with the fall-back fonts of the desktop for what the first font lacks.
#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <array>
#include <cmath>

#include "platform/qt/native.h"

namespace platform::qt {

namespace {

constexpr int messagePixels = 12, smallPixels = 10;
constexpr int overhang = 3;         // room around the text for glyphs that lean out of it
constexpr int maxMaskWidth = 8192;  // device pixels; no screen shows more

std::array<QFont, 3> makeFonts() {
  QFont message = QApplication::font();
  message.setPixelSize(messagePixels);
  QFont small = message, bold = message;
  small.setPixelSize(smallPixels);
  bold.setBold(true);
  return {message, small, bold};
}

}  // namespace

QFont fontOf(TextFont which) {
  static const std::array<QFont, 3> fonts = makeFonts();
  return fonts[which];
}

Size textSize(const char* text, TextFont font) {
  QFontMetrics metrics(fontOf(font));
  return {metrics.horizontalAdvance(QString::fromUtf8(text)), metrics.height()};
}

CoverageMask renderText(const char* text, TextFont which, double scale) {
  QFont font = fontOf(which);
  QFontMetrics metrics(font);
  QString line = QString::fromUtf8(text);
  int width = static_cast<int>(std::ceil((metrics.horizontalAdvance(line) + 2 * overhang) * scale));
  int height = static_cast<int>(std::ceil((metrics.height() + 2 * overhang) * scale));
  int origin = static_cast<int>(std::floor(overhang * scale));
  QImage image(std::min(width, maxMaskWidth), height, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(QPointF(origin / scale, origin / scale + metrics.ascent()), line);
  painter.end();
  CoverageMask mask{image.width(), image.height(), -origin, -origin, {}};
  mask.rows.resize(static_cast<size_t>(mask.width) * mask.height);
  for (int y = 0; y < mask.height; y++) {
    auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < mask.width; x++) mask.rows[static_cast<size_t>(y) * mask.width + x] = qAlpha(row[x]);
  }
  return mask;
}

QFont narrowed(const QFont& font, const QString& text, int room) {
  QFont narrow = font;
  for (int stretch : {100, 87, 75}) {
    if (stretch != 100) narrow.setStretch(stretch);
    if (QFontMetrics(narrow).size(Qt::TextShowMnemonic, text).width() <= room) break;
  }
  return narrow;
}

}  // namespace platform::qt
