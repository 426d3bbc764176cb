// Icons from their drawings, in whatever colour the palette gives.
#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>
#include <map>
#include <memory>

#include "platform/qt/native.h"

namespace platform::qt {

namespace {

QSvgRenderer* drawingOf(const char* name) {
  if (!*name) return nullptr;
  static std::map<std::string, std::unique_ptr<QSvgRenderer>> drawings;
  auto& drawing = drawings[name];
  if (!drawing) drawing = std::make_unique<QSvgRenderer>(QString(":/icons/%1.svg").arg(name));
  return drawing->isValid() ? drawing.get() : nullptr;
}

struct TintedIcon : QIconEngine {
  explicit TintedIcon(std::string name, QColor own = {}) : name(std::move(name)), own(own) {}
  QIconEngine* clone() const override { return new TintedIcon(name, own); }
  void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override {
    QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    QPalette::ColorRole role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText;
    QColor colour = own.isValid() ? own : QApplication::palette().color(group, role);
    drawIcon(*painter, place, name.c_str(), colour);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }
  std::string name;
  QColor own;  // instead of the palette's
};

}  // namespace

CoverageMask renderIcon(const char* icon, Size size) {
  CoverageMask mask{size.width, size.height, 0, 0, {}};
  mask.rows.resize(static_cast<size_t>(size.width) * size.height);
  QSvgRenderer* drawing = drawingOf(icon);
  if (!drawing) return mask;
  QImage image(size.width, size.height, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  drawing->render(&painter);
  painter.end();
  for (int y = 0; y < size.height; y++) {
    auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < size.width; x++) mask.rows[static_cast<size_t>(y) * size.width + x] = qAlpha(row[x]);
  }
  return mask;
}

void drawIcon(QPainter& painter, const QRect& place, const char* name, QColor colour) {
  QSvgRenderer* drawing = drawingOf(name);
  if (!drawing) return;
  double scale = painter.device()->devicePixelRatioF();
  QImage image((QSizeF(place.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter inner(&image);
  drawing->render(&inner);
  inner.setCompositionMode(QPainter::CompositionMode_SourceIn);
  inner.fillRect(image.rect(), colour);
  inner.end();
  image.setDevicePixelRatio(scale);
  painter.drawImage(place.topLeft(), image);
}

QIcon themedIcon(const char* name) { return QIcon(new TintedIcon(name)); }
QIcon colouredIcon(const char* name, QColor colour) { return QIcon(new TintedIcon(name, colour)); }

}  // namespace platform::qt
