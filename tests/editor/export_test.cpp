// Export from the editor: presets, progress, cancelling.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <filesystem>

#include "cinora/desktop/export_dialog.h"
#include "cinora/desktop/export_preset.h"
#include "cinora/media/media_reader.h"
#include "tests/editor/editor_stage.h"

namespace cinora::test {
namespace {

using desktop::ExportDialog;

QPushButton* exportButton(ExportDialog& dialog) {
  for (QPushButton* button : dialog.findChildren<QPushButton*>())
    if (button->text() == "Export") return button;
  return nullptr;
}

struct Export : testing::Test {
  EditorStage stage;

  void openFilm(int frames) {
    stage.folder.write("film.zlo", squareFilm(frames, 20));
    stage.window().openFile(stage.folder / "film.zlo");
  }
  void exportTo(const std::string& path) {
    stage.whenAsked<ExportDialog>([path](ExportDialog* dialog) {
      dialog->findChild<QLineEdit*>()->setText(QString::fromStdString(path));
      exportButton(*dialog)->click();
    });
    stage.trigger(ActionId::exportFilm);
  }
  std::vector<std::string> names() {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(stage.folder.path()))
      found.push_back(entry.path().filename());
    std::sort(found.begin(), found.end());
    return found;
  }
};

TEST(ExportPresets, NameTheirFiles) {
  using namespace desktop;
  int usable = 0;
  for (const ExportPreset& preset : exportPresets()) {
    std::string once = exportPath(preset, "/a/film.cnp");
    EXPECT_EQ(exportPath(preset, once), once);
    EXPECT_EQ(once, std::string("/a/film") + (preset.sequence ? "_%05d" : "") + preset.extension);
    usable += canExport(preset);
  }
  EXPECT_GE(usable, 6);
  const ExportPreset &mp4 = exportPresets()[0], &png = exportPresets()[5];
  const char* const rows[][3] = {
      {"/a/clip", "/a/clip.mp4", "/a/clip_%05d.png"},     {"/a/clip.MP4", "/a/clip.MP4", "/a/clip_%05d.png"},
      {"/a/clip.wav", "/a/clip.mp4", "/a/clip_%05d.png"}, {"/a/take.1", "/a/take.1.mp4", "/a/take.1_%05d.png"},
      {"/a/f%d.png", "/a/f%d.mp4", "/a/f%d.png"},
  };
  for (auto [typed, film, pictures] : rows) {
    EXPECT_EQ(completedPath(mp4, typed), film);
    EXPECT_EQ(completedPath(png, typed), pictures);
  }
}

TEST_F(Export, TheSelectionAsAFilm) {
  openFilm(12);
  hostFunctions.setSelection(stage.host().editHandle(), 2, 8);
  exportTo(stage.folder / "out.mp4");
  EXPECT_TRUE(stage.asked.empty()) << stage.asked.value(0).toStdString();
  MediaReader reader;
  std::string error;
  ASSERT_TRUE(reader.open(stage.folder / "out.mp4", false, error)) << error;
  EXPECT_EQ(reader.info().frameCount, 7);
  EXPECT_EQ(reader.info().width, 64);
  EXPECT_EQ(reader.info().rate / reader.info().scale, 25);
}

TEST_F(Export, AnyFileOfASequenceIsAskedAboutBeforeItIsReplaced) {
  openFilm(6);
  const QString pattern = QString::fromStdString(stage.folder / "f_%05d.png");
  desktop::ExportDialog dialog(stage.host(), stage.folder / "f.cnp", &stage.window());
  dialog.findChild<QComboBox*>()->setCurrentText("PNG pictures");
  dialog.findChild<QLineEdit*>()->setText(pattern);
  auto answered = [&](const char* name, QMessageBox::StandardButton button) {
    stage.folder.write(name, "kept");
    stage.asked.clear();
    stage.answer(button);
    dialog.accept();
    return stage.asked.value(0).toStdString();
  };
  EXPECT_EQ(answered("f_00004.png", QMessageBox::No), (stage.folder / "f_00004.png") + " exists already. Replace it?");
  EXPECT_NE(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(answered("f_00006.png", QMessageBox::Yes),
            "2 files of the sequence exist already, " + (stage.folder / "f_00004.png") + " first. Replace them?");
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(Export, CancelledLeavesNothing) {
  openFilm(100000);
  stage.whenAsked<ExportDialog>([&](ExportDialog* dialog) {
    dialog->findChild<QLineEdit*>()->setText(QString::fromStdString(stage.folder / "out.mp4"));
    stage.whenAsked<QDialog>([](QDialog*) {});
    dialog->accept();
  });
  int steps = 0;
  bool refused = false;
  QTimer cancel;
  QObject::connect(&cancel, &QTimer::timeout, &cancel, [&] {
    QWidget* modal = QApplication::activeModalWidget();
    auto* bar = modal ? modal->findChild<QProgressBar*>() : nullptr;
    if (!bar || bar->value() < 3) return;
    refused |= !stage.window().close();  // everything else is refused meanwhile
    if (++steps == 3) modal->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
  });
  cancel.start(20);
  stage.trigger(ActionId::exportFilm);
  EXPECT_EQ(steps, 3);
  EXPECT_TRUE(refused);
  EXPECT_EQ(names(), (std::vector<std::string>{"film.zlo"}));
  EXPECT_TRUE(stage.asked.empty());
  stage.trigger(ActionId::frameForward);
  EXPECT_EQ(stage.host().edit.currentFrame, 1);
}

TEST_F(Export, WhatCannotBeIsSaidInTheDialog) {
  openFilm(3);
  ExportDialog dialog(stage.host(), stage.folder / "film.cnp", &stage.window());
  dialog.show();
  auto* path = dialog.findChild<QLineEdit*>();
  QPushButton* start = exportButton(dialog);
  EXPECT_TRUE(start->isDefault());
  for (const char* wrong : {"no/folder/out.mp4", "film.zlo/out.mp4", ""}) {
    path->setText(*wrong ? QString::fromStdString(stage.folder / wrong) : "");
    start->click();
    EXPECT_TRUE(dialog.isVisible()) << wrong;
  }
  path->setText(QString::fromStdString(stage.folder / "ok"));
  start->click();
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.request().output.path, stage.folder / "ok.mp4");
  EXPECT_EQ(dialog.request().last, 2);
}

TEST_F(Export, AFailureIsToldAndLeavesNothing) {
  openFilm(3);
  std::filesystem::create_directory(stage.folder / "out.mp4");
  stage.answer(QMessageBox::Ok);
  exportTo(stage.folder / "out.mp4");
  EXPECT_EQ(stage.asked.size(), 1);
  EXPECT_EQ(names(), (std::vector<std::string>{"film.zlo", "out.mp4"}));
}

}  // namespace
}  // namespace cinora::test
