// Docks of the main window for the windows of the plug-ins: those of filters at the foot, tools at the right.
#pragma once

#include <QDockWidget>
#include <QMainWindow>
#include <map>

#include "cinora/host/host.h"
#include "platform/qt/qt_desktop.h"

namespace cinora::desktop {

class PluginDocks {
 public:
  /// `frame`: what the main window is to the plug-ins.
  PluginDocks(QMainWindow&, platform::Window* frame);
  ~PluginDocks();
  PluginDocks(const PluginDocks&) = delete;
  PluginDocks& operator=(const PluginDocks&) = delete;

  /// What a host does with the windows it has made.
  void showFilterWindows(Host&);
  /// As at the first start.
  void arrange();
  QList<QAction*> toggles() const;

 private:
  std::optional<platform::qt::WindowFrame> frameFor(platform::Window*, QWidget* surface);
  platform::qt::WindowFrame frameTool(platform::Window*, QWidget* surface, QDockWidget*);

  QMainWindow& main_;
  platform::Window* frame_;
  QList<QDockWidget*> filters_, tools_;
};

}  // namespace cinora::desktop
