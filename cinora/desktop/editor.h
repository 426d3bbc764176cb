// The editor as a program: the host, its windows and the plug-ins' windows in one life.
#pragma once

#include <memory>

#include "cinora/command/editor_entry.h"
#include "cinora/desktop/playback_filter.h"
#include "cinora/host/host.h"

namespace cinora::desktop {

class MainWindow;
class PluginDocks;

/// Needs a QApplication and a started desktop. The window exists, hidden, until show().
class Editor {
 public:
  explicit Editor(HostOptions);
  ~Editor();
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  Host& host() { return *host_; }
  MainWindow& window() { return *window_; }
  /// Shows the arrangement of the last run.
  void show();

 private:
  std::unique_ptr<MainWindow> window_;
  platform::Window* frame_;  // the main window as the plug-ins know it
  std::unique_ptr<PluginDocks> docks_;
  PlaybackFilter playback_;
  std::unique_ptr<Host> host_;
};

/// What the program does for `cinora [FILE]`; the exit status.
int runEditor(const EditorArguments&);

}  // namespace cinora::desktop
