// The backend's table, and what concerns the screen as a whole.
#include <xcb/xcb.h>

#include <QApplication>
#include <QCursor>
#include <QScreen>
#include <cstdlib>
#include <utility>

#include "platform/qt/native.h"
#include "platform/user_input.h"

// The macro declares a function of the global namespace.
static void loadDrawings() { Q_INIT_RESOURCE(icons); }

namespace platform::qt {

namespace {

Point cursorPosition() { return fromQt(QCursor::pos()); }
intptr_t screenButtons() {
  auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (!x11) return stateOf(Qt::NoModifier, QGuiApplication::mouseButtons());
  xcb_connection_t* connection = x11->connection();
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  xcb_query_pointer_reply_t* reply = xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), nullptr);
  const int mask = reply ? reply->mask : 0;
  free(reply);
  intptr_t state = 0;
  if (mask & XCB_BUTTON_MASK_1) state |= mouseLeft;
  if (mask & XCB_BUTTON_MASK_2) state |= mouseMiddle;
  if (mask & XCB_BUTTON_MASK_3) state |= mouseRight;
  return state;
}

Window* windowAt(Point screen) { return windowOf(QApplication::widgetAt(toQt(screen))); }

int screenPixel(Point at) {
  QScreen* screen = QGuiApplication::screenAt(toQt(at));
  if (!screen) return -1;
  QPoint inside = toQt(at) - screen->geometry().topLeft();
  QImage shot = screen->grabWindow(0, inside.x(), inside.y(), 1, 1).toImage();
  return shot.isNull() ? -1 : static_cast<int>(shot.pixel(0, 0) & 0xFFFFFF);
}

Rect virtualScreen() {
  QScreen* screen = QGuiApplication::primaryScreen();
  return screen ? fromQt(screen->virtualGeometry()) : Rect{0, 0, 1920, 1080};
}

bool onAnyMonitor(Rect place) {
  const QList<QScreen*> screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(),
                     [&](QScreen* s) { return s->availableGeometry().intersects(toQt(place)); });
}

void startTimer(Window* window, int id, int milliseconds) {
  NativeWindow* native = window->native;
  for (int running : native->timers.keys(id)) native->killTimer(running), native->timers.remove(running);
  native->timers[native->startTimer(milliseconds)] = id;
}

void stopTimer(Window* window, int id) {
  NativeWindow* native = window->native;
  for (int running : native->timers.keys(id)) native->killTimer(running), native->timers.remove(running);
}

std::atomic<bool> waking;

void wake() {
  if (waking.exchange(true)) return;
  QMetaObject::invokeMethod(
      qApp,
      [] {
        waking = false;
        runPostedMessages();
      },
      Qt::QueuedConnection);
}

constexpr int focusPause = 100;  // ms in which a window of the program follows another that has closed

bool focusFollows;  // a change of the focus is still to be told of

/// Not from within Qt's own change of it: a window's answer may open a dialog or destroy windows.
void followFocus(QWidget*, QWidget* now) {
  if (now) {
    focusFollows = true;
    QMetaObject::invokeMethod(qApp, deliverFocus, Qt::QueuedConnection);
    return;
  }
  QTimer::singleShot(focusPause, qApp, [] {
    if (QApplication::activeWindow() || QApplication::focusWidget()) return;
    reportFocus(nullptr);
    user::releaseAll();
  });
}

}  // namespace

void deliverFocus() {
  QWidget* now = QApplication::focusWidget();
  if (!std::exchange(focusFollows, false) || !now) return;
  for (QWidget* widget = now; widget; widget = widget->parentWidget())
    if (NativeWindow* native = nativeOf(widget); native && !native->window) return;  // it is going
  reportFocus(windowOf(now));
}

namespace {

constexpr DesktopBackend table{
    .messageBox = messageBox,
    .createWindow = createWindow,
    .createControl = createControl,
    .destroyWindow = destroyWindow,
    .show = show,
    .enable = enable,
    .setText = setText,
    .setPlace = setPlace,
    .setClientSize = setClientSize,
    .refreshPlace = refreshPlace,
    .invalidate = invalidate,
    .focus = focus,
    .capture = capture,
    .setCursor = setCursor,
    .startTimer = startTimer,
    .stopTimer = stopTimer,
    .setValue = setValue,
    .setRange = setRange,
    .setItems = setItems,
    .setIcon = setIcon,
    .setMuted = setMuted,
    .setSwatch = setSwatch,
    .setTip = setTip,
    .selectText = selectText,
    .setDropWidth = setDropWidth,
    .showMenu = showMenu,
    .runModal = runModal,
    .endModal = endModal,
    .dialogUnits = dialogUnits,
    .cursorPosition = cursorPosition,
    .screenButtons = screenButtons,
    .windowAt = windowAt,
    .screenPixel = screenPixel,
    .virtualScreen = virtualScreen,
    .onAnyMonitor = onAnyMonitor,
    .windowCanvas = windowCanvas,
    .canvasTouched = canvasTouched,
    .renderText = renderText,
    .textSize = textSize,
    .renderIcon = renderIcon,
    .wake = wake,
};

QMetaObject::Connection focusFollower;

}  // namespace

void startDesktop() {
  loadDrawings();
  forgetMasks();
  startTheme();
  startKeys();
  focusFollower = QObject::connect(qApp, &QApplication::focusChanged, followFocus);
  waking = false;
  setDesktopBackend(&table);
}

void stopDesktop() {
  setDesktopBackend(nullptr);
  QObject::disconnect(focusFollower);
  stopKeys();
  stopTheme();
  while (!natives().isEmpty()) {
    NativeWindow* native = *natives().begin();
    QWidget* widget = native->widget;
    bool ours = !native->attached;
    delete native;
    if (ours) delete widget;
  }
  setFrameMaker({});
  forgetMasks();
}

}  // namespace platform::qt
