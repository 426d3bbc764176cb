#include "tests/editor/editor_stage.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <filesystem>
#include <utility>

namespace cinora::test {

std::string squareFilm(int frames, int size, int layer) {
  std::string length = std::to_string(frames);
  return "[zenlay]\nwidth=64\nheight=48\nrate=25\nscale=1\nlength=" + length +
         "\naudio_rate=44100\naudio_ch=2\n[0]\nstart=1\nend=" + length + "\nlayer=" + std::to_string(layer) +
         "\noverlay=1\ncamera=0\n[0.0]\n_name=Graphic\nSize=" + std::to_string(size) +
         "\ntype=2\ncolor=ffffff\n[0.1]\n_name=Standard drawing\n";
}

EditorStage::EditorStage(QSize size, bool ownPlugins) : size_(size) {
  if (ownPlugins) {
    std::string shared = std::exchange(plugins_, folder / "plugins") + "/";
    std::filesystem::create_directory(plugins_);
    for (const char* file : {"zenlay.cnf", "zenlay.ini"})
      std::filesystem::copy_file(shared + file, plugins_ + "/" + file);
  }
  start();
}

EditorStage::~EditorStage() {
  editor.reset();
  settle();
}

void EditorStage::start() {
  editor = std::make_unique<desktop::Editor>(
      HostOptions{.settingsFile = folder / "cinora.ini", .pluginFolder = plugins_, .overrides = {{"auto_save", "0"}}});
  editor->show();
  window().resize(size_);
  window().begin("");
  settle();
}

void EditorStage::restart() {
  editor.reset();
  settle();
  start();
}

void EditorStage::trigger(ActionId id) {
  window().action(id)->trigger();
  settle();
}

bool EditorStage::wait(const std::function<bool()>& done, int milliseconds) {
  return QTest::qWaitFor(done, milliseconds);
}

void EditorStage::settle() {
  for (int i = 0; i < 4; i++) {
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

}  // namespace cinora::test
