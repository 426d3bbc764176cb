// Windows as widgets: creation, place, state, and which widget is whose.
#include <QApplication>
#include <QMouseEvent>
#include <QScrollArea>
#include <QTimerEvent>
#include <QWheelEvent>

#include "platform/qt/native.h"
#include "platform/user_input.h"

namespace platform {

namespace {

QHash<const QWidget*, NativeWindow*>& registry() {
  static QHash<const QWidget*, NativeWindow*> all;
  return all;
}

bool isInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
      return true;
    default:
      return false;
  }
}

}  // namespace

NativeWindow::NativeWindow(Window* window, QWidget* widget) : QObject(widget), window(window), widget(widget) {
  window->native = this;
  registry()[widget] = this;
}

NativeWindow::~NativeWindow() {
  registry().remove(widget);
  if (modal) modal->quit();
  if (window && window->native == this) window->native = nullptr;
  qt::releaseImage(this);
}

bool NativeWindow::eventFilter(QObject*, QEvent* event) {
  if (!window) return isInput(event->type());
  if (event->type() == QEvent::Leave && !attached) {
    if (ControlRecord* c = controlRecord(window); c && c->hook) c->hook(window, messageMouseLeave, 0, 0, c->hookUser);
  }
  if (attached || !isInput(event->type())) return false;
  if (event->type() == QEvent::ContextMenu) return controlKind(window) != controlEdit;
  return qt::sendMouse(this, event);
}

void NativeWindow::timerEvent(QTimerEvent* event) {
  auto found = timers.constFind(event->timerId());
  if (found != timers.constEnd()) user::timer(window, *found);
}

}  // namespace platform

namespace platform::qt {

namespace {

FrameMaker& frameMaker() {
  static FrameMaker maker;
  return maker;
}

/// A window's own frame stands on the desktop, not inside something of the host's.
bool hasOwnFrame(const NativeWindow* native) { return !native->frame && native->widget->isWindow(); }

Qt::WindowFlags flagsOf(uint32_t style) {
  if (style & windowChild) return Qt::Widget;
  Qt::WindowFlags flags = style & windowDialog ? Qt::Dialog : style & windowTool ? Qt::Tool : Qt::Window;
  // A bare list closes when the user clicks elsewhere.
  if ((style & windowDialog) && (style & windowFrameless)) return Qt::Popup;
  if (style & windowDialog) flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
  if (style & windowFrameless) flags |= Qt::FramelessWindowHint;
  if (style & windowTopmost) flags |= Qt::WindowStaysOnTopHint;
  return flags;
}

void resizeWidget(NativeWindow* native, QSize size) {
  if (!native->window) return;  // moving it has made its procedure destroy it
  if (native->frame && native->frame->resize)
    native->frame->resize(size);
  else if (native->frame || native->attached || (native->window->style & (windowResizable | windowChild)))
    native->widget->resize(size);
  else
    native->widget->setFixedSize(size);
}

uint32_t pressMessage(Qt::MouseButton button, bool down) {
  switch (button) {
    case Qt::LeftButton:
      return down ? messageLeftDown : messageLeftUp;
    case Qt::RightButton:
      return down ? messageRightDown : messageRightUp;
    case Qt::MiddleButton:
      return down ? messageMiddleDown : messageMiddleUp;
    default:
      return 0;
  }
}

uint32_t mouseMessage(const QMouseEvent* event) {
  switch (event->type()) {
    case QEvent::MouseMove:
      return messageMouseMove;
    case QEvent::MouseButtonDblClick:
      if (event->button() == Qt::LeftButton) return messageLeftDoubleClick;
      return pressMessage(event->button(), true);
    default:
      return pressMessage(event->button(), event->type() == QEvent::MouseButtonPress);
  }
}

/// Whole notches; what a touch pad gives in smaller parts adds up.
int notchesOf(const QWheelEvent* event) {
  constexpr int notch = 120;
  static int collected;
  QPoint delta = event->angleDelta();
  int turned = delta.y() ? delta.y() : delta.x();  // Alt turns the wheel sideways
  if ((turned > 0) != (collected > 0)) collected = 0;
  collected += turned;
  int notches = collected / notch;
  collected -= notches * notch;
  return notches;
}

/// Where the window stands inside something that scrolls.
void bringIntoView(QWidget* widget) {
  constexpr int margin = 12;
  for (QWidget* around = widget->parentWidget(); around; around = around->parentWidget())
    if (auto* area = qobject_cast<QScrollArea*>(around)) return area->ensureWidgetVisible(widget, margin, margin);
}

/// The widget may be handling an event: it goes when that is over.
void destroySurface(Window* window) {
  NativeWindow* native = window->native;
  window->native = nullptr;
  native->window = nullptr;
  if (native->modal) native->modal->quit();
  releaseImage(native);
  if (native->attached) {
    delete native;
    return;
  }
  if (native->frame && native->frame->show) native->frame->show(false, false);
  native->widget->hide();
  native->widget->deleteLater();
}

}  // namespace

const QHash<const QWidget*, NativeWindow*>& natives() { return registry(); }
NativeWindow* nativeOf(const QWidget* widget) { return registry().value(widget); }

QWidget* widgetOf(Window* window) {
  NativeWindow* native = nativeOf(window);
  return native ? native->widget : nullptr;
}

Window* windowOf(const QWidget* widget) {
  for (; widget; widget = widget->parentWidget()) {
    if (NativeWindow* native = nativeOf(widget); native && native->window) return native->window;
    if (widget->isWindow() && widget->windowType() != Qt::Popup) break;  // a dialog of the program's own
  }
  return nullptr;
}

void attachWidget(Window* window, QWidget* widget) {
  if (!windowLives(window) || !window->children.empty()) return;
  if (window->native) destroySurface(window);
  auto* native = new NativeWindow(window, widget);
  native->attached = true;
  window->shown = widget->isVisible();
  refreshPlace(window);
}

void setFrameMaker(FrameMaker maker) { frameMaker() = std::move(maker); }

void createWindow(Window* window) {
  NativeWindow* owner = nativeOf(window->owner);
  QWidget* parent = owner ? owner->widget : nullptr;
  if (parent && !(window->style & windowChild)) parent = parent->window();
  QWidget* surface = createSurface(parent, flagsOf(window->style));
  auto* native = new NativeWindow(window, surface);
  surface->setAcceptDrops(window->style & windowAcceptsFiles);
  surface->setWindowTitle(QString::fromStdString(window->text));
  if (window->style & windowDialog) surface->setWindowModality(Qt::ApplicationModal);
  surface->setObjectName(QString::fromStdString(window->className));
  if (!(window->style & (windowChild | windowDialog)) && frameMaker()) native->frame = frameMaker()(window, surface);
  if (isEmpty(window->place)) return;
  if (!native->frame) surface->move(window->place.x, window->place.y);
  resizeWidget(native, {window->place.width, window->place.height});
}

void destroyWindow(Window* window) { destroySurface(window); }

void show(Window* window, bool activate) {
  NativeWindow* native = window->native;
  if (native->frame && native->frame->show) {
    if (window->shown) native->widget->show();
    return native->frame->show(window->shown, activate);
  }
  bool topLevel = hasOwnFrame(native);
  if (topLevel) native->widget->setAttribute(Qt::WA_ShowWithoutActivating, !activate);
  native->widget->setVisible(window->shown);
  if (topLevel && window->shown) native->widget->raise();
  if (topLevel && window->shown && activate) native->widget->activateWindow();
  refreshPlace(window);
}

/// Top-level windows keep their looks while something else has the user's attention; input is held back elsewhere.
void enable(Window* window) {
  if (window->style & windowChild) window->native->widget->setEnabled(window->enabled);
}

void setText(Window* window) {
  NativeWindow* native = window->native;
  QString text = QString::fromStdString(window->text);
  if (window->control)
    setControlText(window);
  else if (native->frame && native->frame->setTitle)
    native->frame->setTitle(text);
  else if (native->widget->isWindow())
    native->widget->setWindowTitle(text);
}

void setPlace(Window* window) {
  NativeWindow* native = window->native;
  const Rect& place = window->place;
  if (window->style & windowChild) return native->widget->setGeometry(toQt(place));
  QSize size(place.width, place.height);
  if (hasOwnFrame(native)) {
    native->widget->move(place.x, place.y);
    size -= native->widget->frameGeometry().size() - native->widget->size();
  }
  resizeWidget(native, size.expandedTo({1, 1}));
  refreshPlace(window);
}

void setClientSize(Window* window) {
  resizeWidget(window->native, QSize(window->client.width, window->client.height).expandedTo({1, 1}));
  refreshPlace(window);
}

/// A window may have gone by the messages of what changed its place.
void refreshPlace(Window* window) {
  NativeWindow* native = nativeOf(window);
  if (!native || (window->style & windowChild)) return;
  QRect client(native->widget->mapToGlobal(QPoint(0, 0)), native->widget->size());
  QRect outer = hasOwnFrame(native) ? native->widget->frameGeometry() : client;
  reportPlace(window, fromQt(outer), fromQt(client));
}

void focus(Window* window) {
  QWidget* widget = window->native->widget;
  if (!widget->window()->isActiveWindow() && widget->isVisible()) widget->activateWindow();
  widget->setFocus(Qt::OtherFocusReason);
  if (window->control) bringIntoView(widget);
}

void capture(Window* window) {
  if (NativeWindow* native = nativeOf(window))
    native->widget->grabMouse();
  else if (QWidget* holder = QWidget::mouseGrabber())
    holder->releaseMouse();
}

void setCursor(Window* window) {
  static constexpr Qt::CursorShape shapes[] = {Qt::ArrowCursor,   Qt::SizeHorCursor,      Qt::SizeVerCursor,
                                               Qt::SizeAllCursor, Qt::PointingHandCursor, Qt::CrossCursor};
  window->native->widget->setCursor(shapes[window->cursor]);
}

intptr_t stateOf(Qt::KeyboardModifiers modifiers, Qt::MouseButtons buttons) {
  intptr_t state = 0;
  if (buttons & Qt::LeftButton) state |= mouseLeft;
  if (buttons & Qt::RightButton) state |= mouseRight;
  if (buttons & Qt::MiddleButton) state |= mouseMiddle;
  if (modifiers & Qt::ShiftModifier) state |= mouseShift;
  if (modifiers & Qt::ControlModifier) state |= mouseCtrl;
  if (modifiers & Qt::AltModifier) state |= mouseAlt;
  return state;
}

void holdPresentModifiers() { user::holdModifiers(stateOf(QGuiApplication::queryKeyboardModifiers(), Qt::NoButton)); }

bool sendMouse(NativeWindow* native, QEvent* event) {
  Window* window = native->window;
  uint32_t message = messageMouseWheel;
  intptr_t answer;
  if (event->type() == QEvent::Wheel) {
    auto* wheel = static_cast<QWheelEvent*>(event);
    Point at = fromQt(wheel->position().toPoint());
    int notches = notchesOf(wheel);
    // What the window does not take is for a scroll area around it.
    wheel->setAccepted(activeWindow() == topLevelWindow(window));
    if (!notches) return !window->control || goesToOwner(controlKind(window), message);
    answer = user::wheel(window, at, notches, stateOf(wheel->modifiers(), wheel->buttons()));
    wheel->setAccepted(answer == 1);
  } else {
    auto* mouse = static_cast<QMouseEvent*>(event);
    message = mouseMessage(mouse);
    if (!message) return true;
    answer = user::mouse(window, message, fromQt(mouse->position().toPoint()),
                         stateOf(mouse->modifiers(), mouse->buttons()));
  }
  if (!windowLives(window) || !windowLives(topLevelWindow(window))) return true;
  bool heldBack = !windowEnabled(topLevelWindow(window));
  return heldBack || !window->control || answer == 1 || goesToOwner(controlKind(window), message);
}

QString plainText(const std::string& text) { return QString::fromStdString(text).replace('&', "&&"); }

}  // namespace platform::qt
