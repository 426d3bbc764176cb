// The client area of a window: shows the image that the window draws on, and turns events into messages.
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QUrl>
#include <cmath>

#include "platform/qt/native.h"
#include "platform/user_input.h"

namespace platform::qt {

namespace {

constexpr int sizingPause = 150;  // ms without a change that end a move or change of size by the user

std::vector<std::string> filesOf(const QMimeData* data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data->urls())
    if (url.isLocalFile()) paths.push_back(url.toLocalFile().toStdString());
  return paths;
}

bool hasFiles(const QMimeData* data) {
  const QList<QUrl> urls = data->urls();
  return std::any_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
}

/// Makes the image fit the widget.
void fitImage(NativeWindow* native) {
  QWidget* widget = native->widget;
  double scale = widget->devicePixelRatioF();
  QSize size(std::max(1, static_cast<int>(std::ceil(widget->width() * scale))),
             std::max(1, static_cast<int>(std::ceil(widget->height() * scale))));
  if (native->canvas && native->image.size() == size && native->image.devicePixelRatio() == scale) return;
  native->image = QImage(size, QImage::Format_RGB32);
  native->image.setDevicePixelRatio(scale);
  native->image.fill(0xFF000000 | systemColor(colorFace));
  auto* pixels = reinterpret_cast<uint32_t*>(native->image.bits());
  if (native->canvas)
    rewrapCanvas(native->canvas, pixels, {size.width(), size.height()}, scale);
  else
    native->canvas = wrapCanvas(native->window, pixels, {size.width(), size.height()}, scale);
  native->stale = true;
  widget->update();
}

struct Surface : QWidget {
  Surface(QWidget* parent, Qt::WindowFlags flags) : QWidget(parent, flags) {
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    sizing.setSingleShot(true);
    sizing.setInterval(sizingPause);
    QObject::connect(&sizing, &QTimer::timeout, this, [this] { endSizing(); });
  }

  bool event(QEvent* event) override;
  void paint(const QRect&);
  void fitToPlace(bool byUser);
  void endSizing();
  /// Tab is a key like any other to a window that is no dialog.
  bool focusNextPrevChild(bool next) override {
    NativeWindow* native = nativeOf(this);
    bool dialog = native && native->window && (native->window->style & windowDialog);
    return (dialog || !hasFocus()) && QWidget::focusNextPrevChild(next);
  }

  QTimer sizing;
  bool inSizing = false;
  Rect wanted{};  // what messageSizing made of the outer rectangle
};

bool Surface::event(QEvent* event) {
  NativeWindow* native = nativeOf(this);
  if (!native || !native->window) return QWidget::event(event);
  Window* window = native->window;
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      deliverFocus();
      if (nativeOf(this) != native || !native->window) return true;
      if (windowType() == Qt::Popup && !rect().contains(static_cast<QMouseEvent*>(event)->position().toPoint()))
        return close();
      [[fallthrough]];
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
      event->accept();
      sendMouse(native, event);
      return true;
    case QEvent::ContextMenu:
      return true;
    case QEvent::Leave:
      sendMessage(window, messageMouseLeave, 0, 0);
      break;
    case QEvent::Close:
      event->ignore();
      user::close(window);
      return true;
    case QEvent::DragEnter:
    case QEvent::DragMove: {
      auto* drag = static_cast<QDropEvent*>(event);
      drag->setAccepted(hasFiles(drag->mimeData()) && windowEnabled(window));
      if (drag->isAccepted()) drag->setDropAction(Qt::CopyAction);
      return true;
    }
    case QEvent::Drop: {
      auto* drop = static_cast<QDropEvent*>(event);
      drop->acceptProposedAction();
      user::dropFiles(window, fromQt(drop->position().toPoint()), filesOf(drop->mimeData()));
      return true;
    }
    case QEvent::Resize:
      native->stale = true;
      [[fallthrough]];
    case QEvent::Move:
      fitToPlace(event->spontaneous());
      break;
    case QEvent::Paint:
      paint(static_cast<QPaintEvent*>(event)->rect());
      return true;
    default:
      break;
  }
  return QWidget::event(event);
}

void Surface::paint(const QRect& area) {
  NativeWindow* native = nativeOf(this);
  Window* window = native->window;
  if (native->canvas) fitImage(native);
  if (native->stale) {
    native->stale = false;
    clearClip(native->canvas);
    sendMessage(window, messagePaint, 0, 0);
    if (!windowLives(window)) return;
    native->stale = false;  // the first drawing made the image
    if (native->canvas) takeTouched(native->canvas);
    if (area != rect()) update();
  }
  QPainter painter(this);
  if (native->canvas)
    painter.drawImage(QPoint(0, 0), native->image);
  else
    painter.fillRect(area, QRgb(0xFF000000 | systemColor(colorFace)));
}

void Surface::fitToPlace(bool byUser) {
  NativeWindow* native = nativeOf(this);
  Window* window = native->window;
  if (!byUser || !isWindow()) return refreshPlace(window);
  if (!inSizing) {
    inSizing = true;
    sendMessage(window, messageEnterSizeMove, 0, 0);
  }
  wanted = fromQt(frameGeometry());
  Rect asked = wanted;
  if (!(sizeOf(wanted) == sizeOf(window->place)))
    sendMessage(window, messageSizing, 0, reinterpret_cast<intptr_t>(&asked));
  wanted = asked;
  if (windowLives(window)) refreshPlace(window);
  sizing.start();
}

/// The frame's keeper may resize as it likes while the user drags; what the window made of it holds from here.
void Surface::endSizing() {
  NativeWindow* native = nativeOf(this);
  if (!native || !native->window || !inSizing) return;
  Window* window = native->window;
  inSizing = false;
  if (!(wanted == windowPlace(window))) setWindowPlace(window, wanted);
  sendMessage(window, messageExitSizeMove, 0, 0);
}

}  // namespace

QWidget* createSurface(QWidget* parent, Qt::WindowFlags flags) { return new Surface(parent, flags); }

void releaseImage(NativeWindow* native) {
  if (native->canvas) releaseCanvas(native->canvas);
  native->canvas = nullptr;
  native->image = {};
}

Canvas* windowCanvas(Window* window) {
  NativeWindow* native = nativeOf(window);
  if (!native || native->attached || window->control) return nullptr;
  fitImage(native);
  return native->canvas;
}

void canvasTouched(Window* window) {
  NativeWindow* native = nativeOf(window);
  if (!native || native->flushing) return;
  native->flushing = true;
  QMetaObject::invokeMethod(
      native,
      [native] {
        native->flushing = false;
        if (!native->canvas) return;
        Rect touched = takeTouched(native->canvas);
        if (isEmpty(touched)) return;
        double scale = native->image.devicePixelRatio();
        native->widget->update(
            QRectF(touched.x / scale, touched.y / scale, touched.width / scale, touched.height / scale)
                .toAlignedRect());
      },
      Qt::QueuedConnection);
}

void invalidate(Window* window) {
  window->native->stale = true;
  window->native->widget->update();
}

void invalidateAll() {
  for (NativeWindow* native : natives()) {
    if (!native->window || native->attached) continue;
    if (native->window->control)
      applyColours(native->window);
    else
      invalidate(native->window);
  }
}

}  // namespace platform::qt
