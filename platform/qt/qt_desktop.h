// The desktop of Qt 6 Widgets. A program that has made its QApplication calls startDesktop; from then on windows and
// controls are widgets. Only what is loaded for a desktop includes this.
#pragma once

#include <QIcon>
#include <QWidget>
#include <functional>
#include <optional>

#include "platform/window.h"

namespace platform::qt {

/// Needs a QApplication. Sets the style and the palette and takes over as the platform's backend. The event loop is then
/// ended by QCoreApplication::exit: quit() would ask the windows to close, and they leave that to their procedures.
void startDesktop();
/// Windows still alive lose their widgets.
void stopDesktop();

/// The widget of a window or control; null for one that has none. The backend owns it.
QWidget* widgetOf(Window*);
/// The window or control that the widget is or lies in, the nearest; null outside of all.
Window* windowOf(const QWidget*);
/// Makes a widget of the program's own the face of a window: focus, activation and title reach it, and what lies in it
/// and in no nearer window counts as that window. The widget stays the program's. Before the window owns others.
void attachWidget(Window*, QWidget*);

/// How a top-level window stands inside something of the program's, a dock say. Entries may be empty.
struct WindowFrame {
  std::function<void(bool shown, bool activate)> show;
  std::function<void(const QString&)> setTitle;
  std::function<void(QSize client)> resize;  // empty: the surface itself is resized
};
/// Asked when a top-level window is created, before it is shown: no value leaves it to a frame of the desktop's. The
/// surface is a widget without a frame; whoever frames it may put it anywhere, but not delete it.
using FrameMaker = std::function<std::optional<WindowFrame>(Window*, QWidget* surface)>;
void setFrameMaker(FrameMaker);

enum Theme { themeAutomatic, themeDark, themeLight };
/// Automatic, as at the start: dark unless the desktop prefers light when asked at startDesktop.
void setTheme(Theme);
bool themeIsDark();

/// An icon of icons.h in the palette's colours; follows the theme.
QIcon themedIcon(const char* name);

}  // namespace platform::qt
