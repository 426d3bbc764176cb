// The real editor with the real plug-in, offscreen, and what a user does to it.
#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <functional>
#include <memory>

#include "cinora/desktop/editor.h"
#include "cinora/desktop/main_window.h"
#include "cinora/desktop/preview.h"
#include "cinora/desktop/seek_bar.h"
#include "cinora/desktop/transport.h"
#include "tests/support/scratch_folder.h"

namespace cinora::test {

using desktop::ActionId;

/// An object file of `frames` frames of 64x48 at 25 frames a second: a white square on black, `size` pixels wide.
std::string squareFilm(int frames, int size, int layer = 1);

struct EditorStage {
  ::test::ScratchFolder folder;
  std::unique_ptr<desktop::Editor> editor;

  /// With a folder of its own for the plug-in when what it writes beside itself must not stay.
  explicit EditorStage(QSize size = {1280, 800}, bool ownPlugins = false);
  ~EditorStage();

  desktop::MainWindow& window() { return editor->window(); }
  Host& host() { return editor->host(); }
  void restart();
  void trigger(ActionId);
  /// Handles events until `done` holds; false after `milliseconds`.
  bool wait(const std::function<bool()>& done, int milliseconds = 5000);
  void settle();
  /// Does `act` as soon as a modal window of this kind is open; the text of message boxes is kept in `asked`.
  template <class Dialog>
  void whenAsked(std::function<void(Dialog*)> act) {
    auto* timer = new QTimer(&window());
    QObject::connect(timer, &QTimer::timeout, &window(), [this, timer, act] {
      auto* dialog = dynamic_cast<Dialog*>(QApplication::activeModalWidget());
      if (!dialog) return;
      timer->stop();
      timer->deleteLater();
      if (auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget())) asked.push_back(box->text());
      act(dialog);
    });
    timer->start(5);
  }
  void answer(QMessageBox::StandardButton button) {
    whenAsked<QMessageBox>([button](QMessageBox* box) { box->button(button)->click(); });
  }
  QColor colourAt(int x, int y) { return window().preview().picture().pixelColor(x, y); }

  QStringList asked;

 private:
  void start();
  QSize size_;
  std::string plugins_ = BINARY_DIR "/bin";
};

}  // namespace cinora::test
