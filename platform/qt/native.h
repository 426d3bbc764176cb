// What the parts of this folder share: the widget behind a window's record.
#pragma once

#include <QEventLoop>
#include <QHash>
#include <QImage>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "platform/backend.h"
#include "platform/qt/qt_desktop.h"
#include "platform/window_record.h"

namespace platform {

/// A child of the widget, so that it goes when the widget does, whoever deletes that. `window` is null once the window
/// has been destroyed: the widget may still be handling an event then.
struct NativeWindow : QObject {
  NativeWindow(Window*, QWidget*);
  ~NativeWindow() override;
  bool eventFilter(QObject*, QEvent*) override;
  void timerEvent(QTimerEvent*) override;

  Window* window;
  QWidget* widget;
  std::optional<qt::WindowFrame> frame;       // a host's
  QEventLoop* modal = nullptr;                // while the dialog runs
  QHash<int, int> timers;                     // Qt's number: the window's
  bool attached = false;                      // the widget is the program's own
  void (*setValue)(NativeWindow*) = nullptr;  // of a control: makes the widget show the record
  // The backing image of a window's surface.
  QImage image;
  Canvas* canvas = nullptr;
  bool stale = true;      // everything is to be drawn
  bool flushing = false;  // what was drawn is about to be shown
};

}  // namespace platform

namespace platform::qt {

inline NativeWindow* nativeOf(Window* window) { return windowLives(window) ? window->native : nullptr; }
inline QPoint toQt(Point p) { return {p.x, p.y}; }
inline Point fromQt(QPoint p) { return {p.x(), p.y()}; }
inline QRect toQt(const Rect& r) { return {r.x, r.y, r.width, r.height}; }
inline Rect fromQt(const QRect& r) { return {r.x(), r.y(), r.width(), r.height()}; }
/// Texts of controls and menus carry no mnemonics.
QString plainText(const std::string&);

intptr_t stateOf(Qt::KeyboardModifiers, Qt::MouseButtons);
/// After a menu or dialog, which has kept the keys to itself.
void holdPresentModifiers();

// windows.cpp
void createWindow(Window*);
void destroyWindow(Window*);
void show(Window*, bool activate);
void enable(Window*);
void setText(Window*);
void setPlace(Window*);
void setClientSize(Window*);
void refreshPlace(Window*);
void focus(Window*);
void capture(Window*);
void setCursor(Window*);
/// That of the widget itself.
NativeWindow* nativeOf(const QWidget*);
const QHash<const QWidget*, NativeWindow*>& natives();
/// Gives a mouse event to the window or control: true when the widget is not to see it.
bool sendMouse(NativeWindow*, QEvent*);

// surface.cpp
QWidget* createSurface(QWidget* parent, Qt::WindowFlags);  // works once it has a NativeWindow
void releaseImage(NativeWindow*);
Canvas* windowCanvas(Window*);
void canvasTouched(Window*);
void invalidate(Window*);
void invalidateAll();

// controls.cpp
void createControl(Window*);
void setValue(Window*);
void setRange(Window*);
void setItems(Window*);
void setIcon(Window*);
void setTip(Window*);
void setMuted(Window*);
void setSwatch(Window*);
void selectText(Window*);
void setDropWidth(Window*);
void setControlText(Window*);
void applyColours(Window* control);  // after the palette has changed

// dialogs.cpp
int messageBox(Window* owner, const char* text, const char* caption, uint32_t style);
void runModal(Window*);
void endModal(Window*);
Size dialogUnits();

// menus.cpp
int showMenu(const Menu*, Window* owner, Point screen);

// keys.cpp
/// The virtual-key number, 0 for a key that has none here.
int virtualKey(Qt::Key, Qt::KeyboardModifiers, quint32 scanCode);
/// Sends the program's key events through the windows.
void startKeys();
void stopKeys();

// desktop.cpp
/// Tells the windows of the focus that Qt has given: before they are told what the user did there.
void deliverFocus();

// text.cpp
CoverageMask renderText(const char* text, TextFont, double scale);
Size textSize(const char* text, TextFont);
QFont fontOf(TextFont);
/// The font, narrower by up to a quarter where the text needs it to fit into `room` pixels.
QFont narrowed(const QFont&, const QString& text, int room);

// icons.cpp
CoverageMask renderIcon(const char* icon, Size size);
QIcon colouredIcon(const char* name, QColor);
void drawIcon(QPainter&, const QRect&, const char* name, QColor);

// theme.cpp
void startTheme();
void stopTheme();

}  // namespace platform::qt
