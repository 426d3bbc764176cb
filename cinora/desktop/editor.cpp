#include "cinora/desktop/editor.h"

#include <unistd.h>

#include <QApplication>
#include <QIcon>
#include <QSessionManager>
#include <QTimer>
#include <cstdio>

#include "cinora/command/command_line.h"
#include "cinora/desktop/main_window.h"
#include "cinora/desktop/plugin_docks.h"
#include "cinora/support/interruption.h"
#include "platform/qt/qt_desktop.h"

namespace cinora::desktop {
namespace {

constexpr char programName[] = "cinora";
constexpr int signalPoll = 200;  // ms between looks at whether a signal asks the program to end

/// Qt has no other way to say that a display cannot be reached; what else it remarks is not for users.
void reportFatal(QtMsgType type, const QMessageLogContext&, const QString&) {
  if (type != QtFatalMsg) return;
  fprintf(stderr, "cinora: the display cannot be opened; to make a film without one: cinora render FILE -o film.mp4\n");
  _exit(statusFailed);
}

/// A logout asks, where it lets the user be asked.
void endSession(MainWindow& window, QSessionManager& session) {
  if (!session.allowsInteraction()) return window.rescue();
  if (!window.mayEnd()) session.cancel();
  session.release();
}

}  // namespace
}  // namespace cinora::desktop

// The macro declares a function of the global namespace.
static void loadEditorResources() { Q_INIT_RESOURCE(editor); }

namespace cinora::desktop {

Editor::Editor(HostOptions options) : window_(std::make_unique<MainWindow>()) {
  loadEditorResources();
  frame_ = window_->createFrame();
  docks_ = std::make_unique<PluginDocks>(*window_, frame_);
  options.desktop.mainWindow = frame_;
  options.desktop.ownFilters = {playback_.record()};
  window_->fillPorts(options.desktop);
  host_ = std::make_unique<Host>(options);
  window_->attach(*host_, playback_, *docks_);
}

Editor::~Editor() {
  window_->detach();
  host_.reset();
  docks_.reset();
  platform::destroyWindow(frame_);
}

void Editor::show() {
  docks_->showFilterWindows(*host_);
  window_->restoreArrangement();
  window_->show();
}

int runEditor(const EditorArguments& arguments) {
  int argc = 1;
  char name[] = "cinora";
  char* argv[] = {name, nullptr};
  qInstallMessageHandler(reportFatal);
  QApplication application(argc, argv);
  QApplication::setApplicationName(programName);
  QApplication::setDesktopFileName(programName);
  QApplication::setQuitOnLastWindowClosed(false);
  platform::qt::startDesktop();
  int status;
  {
    Editor editor({.settingsFile = Settings::userFile(), .pluginFolder = arguments.plugins, .overrides = {}});
    QApplication::setWindowIcon(QIcon(":/editor/cinora.svg"));
    editor.show();
    QTimer::singleShot(0, &editor.window(), [&] { editor.window().begin(arguments.file); });
    watchForInterruption();
    QTimer signalPolls;
    QObject::connect(&signalPolls, &QTimer::timeout, &signalPolls, [] {
      if (interrupted()) QApplication::exit(statusFailed);
    });
    signalPolls.start(signalPoll);
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &editor.window(),
                     [&](QSessionManager& session) { endSession(editor.window(), session); });
    status = QApplication::exec();
    if (interrupted()) editor.window().rescue();
  }
  platform::qt::stopDesktop();
  return status;
}

}  // namespace cinora::desktop
