// How soon the editor stands and answers: start to the first window painted, a key to the new preview picture painted
// for a 1080p film of three layers, and frames shown while it plays. Offscreen unless QT_QPA_PLATFORM says otherwise.
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "cinora/desktop/editor.h"
#include "cinora/desktop/main_window.h"
#include "cinora/desktop/preview.h"
#include "platform/paths.h"
#include "platform/qt/qt_desktop.h"

namespace {

using cinora::desktop::ActionId;
using cinora::desktop::Editor;
using cinora::desktop::Preview;

constexpr int steps = 60;
constexpr double startAim = 800, stepAim = 50;  // ms

/// Counts what reaches the screen.
struct PaintCounter : QObject {
  int paints = 0;
  bool eventFilter(QObject*, QEvent* event) override {
    paints += event->type() == QEvent::Paint;
    return false;
  }
};

std::string writeFilm(const std::string& media) {
  std::string path = (std::filesystem::temp_directory_path() / "editor_bench.zlo").string();
  std::ofstream(path) << "[zenlay]\nwidth=1920\nheight=1080\nrate=30\nscale=1\nlength=150\naudio_rate=44100\n"
                         "audio_ch=2\n[0]\nstart=1\nend=150\nlayer=1\noverlay=1\n[0.0]\n_name=Video file\nfile="
                      << media
                      << "\nLoop playback=1\n[0.1]\n_name=Standard drawing\nZoom%=400.00\n[1]\nstart=1\nend=150\n"
                         "layer=2\noverlay=1\n[1.0]\n_name=Graphic\nSize=400\ntype=5\n[1.1]\n_name=Standard drawing\n"
                         "Rotation=0.00,360.00,1\n[2]\nstart=1\nend=150\nlayer=3\noverlay=1\n[2.0]\n_name=Text\n"
                         "Size=96\ntext=460069006c006d000000\n[2.1]\n_name=Standard drawing\nY=-300.0,300.0,1\n";
  return path;
}

void report(const char* what, double milliseconds, double aim) {
  printf("%-44s %8.1f ms  (aim %.0f ms)\n", what, milliseconds, aim);
}

double secondOf(QElapsedTimer& timer) { return timer.nsecsElapsed() / 1e6; }

}  // namespace

int main(int argc, char** argv) {
  QElapsedTimer clock;
  clock.start();
  qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("QT_QPA_PLATFORM", "offscreen").toUtf8());
  QApplication application(argc, argv);
  platform::qt::startDesktop();
  {
    Editor editor({.overrides = {{"auto_save", "0"}}});
    PaintCounter painted;
    editor.window().installEventFilter(&painted);
    editor.show();
    editor.window().begin("");
    while (!painted.paints) QApplication::processEvents();
    report("start to the first window", secondOf(clock), startAim);

    std::string media = std::filesystem::absolute(argc > 1 ? argv[1] : "examples/media/lights.mp4").string();
    std::string film = writeFilm(media);
    editor.window().openFile(film);
    std::filesystem::remove(film);
    Preview& preview = editor.window().preview();
    preview.installEventFilter(&painted);
    QApplication::processEvents();
    std::vector<double> times;
    for (int i = 0; i < steps; i++) {
      painted.paints = 0;
      clock.start();
      editor.window().action(ActionId::frameForward)->trigger();
      while (!painted.paints) QApplication::processEvents();
      times.push_back(secondOf(clock));
    }
    std::sort(times.begin(), times.end());
    report("key to the new picture, 1080p, 3 layers", times[steps / 2], stepAim);
    report("  the slowest but one in twenty", times[steps * 19 / 20], stepAim);

    editor.window().goTo(0);
    editor.window().action(ActionId::play)->trigger();
    clock.start();
    while (clock.elapsed() < 3000) QApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    printf("%-44s %8.1f /s  of 30, the clock kept\n", "pictures while it plays",
           editor.window().player().framesShown() / 3.0);
    editor.window().player().stop();
  }
  platform::qt::stopDesktop();
}
