// Films as documents: open, save, the question before work is lost, files that are no films.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QAction>
#include <QCheckBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <filesystem>

#include "cinora/host/project.h"
#include "cinora/host/project_file.h"
#include "platform/paths.h"
#include "tests/editor/editor_stage.h"

namespace cinora::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct Session : testing::Test {
  EditorStage stage;

  std::string film(const char* name, int frames = 10) {
    stage.folder.write(name, squareFilm(frames, 20));
    return stage.folder / name;
  }
  /// An edit as a plug-in reports one.
  void edit() {
    Filter* editor = stage.host().plugins.editor();
    std::string more = stage.folder / "more.zlo";
    stage.folder.write("more.zlo", squareFilm(5, 8, 3));
    stage.host().dialogs.load = more;
    ASSERT_EQ(platform::sendMessage(editor->window, zenlay::messageCommand, zenlay::commandOpenObjectFile, 0), 1)
        << testing::PrintToString(stage.host().takeMessages());
    stage.host().dialogs = {};
    stage.settle();
  }
  QString title() {
    stage.window().refreshNow();
    return stage.window().windowTitle();
  }
  bool modified() {
    title();
    return stage.window().isWindowModified();
  }
  void typeFileName(QFileDialog* dialog, const char* name) {
    auto* box = dialog->findChild<QLineEdit*>("fileNameEdit");
    box->setText(QString::fromStdString(stage.folder / name));
    QTest::keyClick(box, Qt::Key_Return);
  }
  /// Does `act` as soon as the plug-in's dialog of this title is open.
  void inDialog(const char* title, std::function<void(QWidget*)> act) {
    auto* timer = new QTimer(&stage.window());
    QObject::connect(timer, &QTimer::timeout, &stage.window(), [=] {
      for (QWidget* dialog : QApplication::topLevelWidgets()) {
        if (dialog->windowTitle() != title || !dialog->isVisible()) continue;
        timer->stop();
        timer->deleteLater();
        return act(dialog);
      }
    });
    timer->start(5);
  }
  /// Types into the new-project dialog, its boxes from top to bottom, and presses a key.
  void answerNewProject(QStringList texts, Qt::Key key) {
    inDialog("Create a New Project", [=](QWidget* dialog) {
      QList<QLineEdit*> boxes = dialog->findChildren<QLineEdit*>();
      for (int i = 0; i < texts.size(); i++) {
        boxes[i]->selectAll();
        QTest::keyClicks(boxes[i], texts[i]);
      }
      QTest::keyClick(boxes[0], key);
    });
  }
  void command(int id) {
    platform::sendMessage(stage.host().plugins.editor()->window, zenlay::messageCommand, id, 0);
    stage.settle();
  }
};

TEST_F(Session, OpeningShowsTheFilmAndItsName) {
  EXPECT_EQ(title(), "Cinora");
  EXPECT_FALSE(stage.window().action(ActionId::save)->isEnabled());
  stage.window().openFile(film("a.zlo"));
  EXPECT_EQ(title(), "a.zlo[*] — Cinora");
  EXPECT_FALSE(stage.window().isWindowModified());
  EXPECT_EQ(stage.window().preview().picture().size(), QSize(64, 48));
  EXPECT_EQ(stage.colourAt(32, 24), QColor(Qt::white));
  EXPECT_EQ(stage.colourAt(2, 2), QColor(Qt::black));
}

TEST_F(Session, AnIdleEditorMakesNoPictures) {
  stage.window().openFile(film("a.zlo"));
  stage.settle();
  const qint64 shown = stage.window().preview().picture().cacheKey();
  EXPECT_FALSE(stage.wait([&] { return stage.window().preview().picture().cacheKey() != shown; }, 300));
}

TEST_F(Session, UnsavedWorkIsAskedAbout) {
  stage.window().openFile(film("a.zlo"));
  std::string project = stage.folder / "a.cnp";
  ASSERT_TRUE(stage.window().saveTo(project));
  EXPECT_EQ(title(), "a.cnp[*] — Cinora");
  edit();
  title();
  EXPECT_TRUE(stage.window().isWindowModified());
  stage.answer(QMessageBox::Discard);
  stage.window().openFile(project);
  struct Row {
    QMessageBox::StandardButton button;
    bool opened, saved;
  };
  for (const Row& row : {Row{QMessageBox::Cancel, false, false}, Row{QMessageBox::Discard, true, false},
                         Row{QMessageBox::Save, true, true}}) {
    stage.window().openFile(project);
    stage.asked.clear();
    edit();
    auto before = std::filesystem::file_size(project);
    stage.answer(row.button);
    stage.window().openFile(film("b.zlo"));
    EXPECT_EQ(stage.asked, QStringList("Save the changes to “a.cnp”?"));
    EXPECT_EQ(stage.window().session().name(), row.opened ? "b.zlo" : "a.cnp");
    EXPECT_EQ(std::filesystem::file_size(project) > before, row.saved);
    if (!row.opened) {
      stage.answer(QMessageBox::Discard);
      stage.window().openFile(film("b.zlo"));
    }
  }
  EXPECT_TRUE(stage.window().session().path().empty());
}

// A session's end asks first, and the windows are closed only later.
TEST_F(Session, TheEndIsAskedAboutOnceForEachChange) {
  stage.window().openFile(film("a.zlo"));
  edit();
  stage.answer(QMessageBox::Cancel);
  EXPECT_FALSE(stage.window().mayEnd());
  stage.answer(QMessageBox::Discard);
  EXPECT_TRUE(stage.window().mayEnd());
  EXPECT_TRUE(stage.window().mayEnd());
  EXPECT_EQ(stage.asked.size(), 2);
  command(zenlay::commandUndoStep);
  stage.answer(QMessageBox::Cancel);
  EXPECT_FALSE(stage.window().mayEnd());
  EXPECT_EQ(stage.asked.size(), 3);
}

TEST_F(Session, CursorAndSelectionAreNoUnsavedWork) {
  stage.window().openFile(film("a.zlo"));
  stage.window().goTo(5);
  stage.trigger(ActionId::selectionFirst);
  title();
  EXPECT_FALSE(stage.window().isWindowModified());
}

TEST_F(Session, AFileThatCannotBePlacedIsNoFilm) {
  stage.window().openFile(film("a.zlo"));
  const std::string folder = std::string(200, 'x'), name = folder + "/" + std::string(60, 'y') + ".png";
  std::filesystem::create_directory(stage.folder / folder);
  QImage picture(32, 32, QImage::Format_RGB32);
  ASSERT_TRUE(picture.save(QString::fromStdString(stage.folder / name)));
  for (bool importing : {false, true}) {
    stage.answer(QMessageBox::Ok);
    importing ? stage.window().importAll({stage.folder / name}) : stage.window().openFile(stage.folder / name);
    EXPECT_EQ(title(), "a.zlo[*] — Cinora");
  }
  EXPECT_EQ(stage.asked, QStringList({"The path of the file is too long", "The path of the file is too long"}));
}

TEST_F(Session, BadFilesAreOneMessageAndLoseNothing) {
  stage.window().openFile(film("a.zlo"));
  std::string project = stage.folder / "good.cnp";
  ASSERT_TRUE(stage.window().saveTo(project));
  std::string bytes;
  ASSERT_TRUE(platform::readFile(project, bytes));
  std::string damaged = bytes;
  damaged[damaged.size() / 2] ^= 0x40;
  stage.folder.write("torn.cnp", bytes.substr(0, bytes.size() / 2));
  stage.folder.write("damaged.cnp", damaged);
  stage.folder.write("empty.cnp", "");
  stage.folder.write("bad.zlo", "[zenlay]\nwidth=-5\n");
  stage.folder.write("bad.zenlay_backup", "80ZL but no more");
  stage.folder.write("text.txt", "no film");
  std::filesystem::create_directory(stage.folder / "folder.cnp");
  for (const char* name : {"torn.cnp", "damaged.cnp", "empty.cnp", "bad.zlo", "bad.zenlay_backup", "text.txt",
                           "folder.cnp", "missing.cnp"}) {
    stage.asked.clear();
    stage.answer(QMessageBox::Ok);
    stage.window().openFile(stage.folder / name);
    ASSERT_EQ(stage.asked.size(), 1) << name;
    EXPECT_THAT(stage.asked[0].toStdString(), HasSubstr(name));
    EXPECT_EQ(stage.window().session().path(), project) << name;
    EXPECT_EQ(stage.colourAt(32, 24), QColor(Qt::white)) << name;
  }
}

TEST_F(Session, ACancelledNewProjectLosesNothing) {
  for (bool saved : {false, true}) {
    stage.window().openFile(film("a.zlo"));
    if (saved) {
      ASSERT_TRUE(stage.window().saveTo(stage.folder / "a.cnp"));
    }
    edit();
    ASSERT_TRUE(modified());
    const std::string before = askEditor(stage.host(), zenlay::queryProject, nullptr);
    stage.answer(QMessageBox::Discard);
    answerNewProject({}, Qt::Key_Escape);
    stage.trigger(ActionId::newProject);
    EXPECT_EQ(askEditor(stage.host(), zenlay::queryProject, nullptr), before);
    EXPECT_EQ(title(), saved ? "a.cnp[*] — Cinora" : "a.zlo[*] — Cinora");
    EXPECT_TRUE(modified());
    EXPECT_EQ(stage.window().session().hasProjectFile(), saved);
    stage.answer(QMessageBox::Discard);
  }
}

TEST_F(Session, WhatTheHostCannotMakeIsTold) {
  answerNewProject({"5000", "100"}, Qt::Key_Return);
  stage.answer(QMessageBox::Ok);
  stage.trigger(ActionId::newProject);
  EXPECT_THAT(stage.asked.join("").toStdString(), HasSubstr("larger than the settings allow"));
  stage.asked.clear();
  stage.answer(QMessageBox::Ok);
  stage.host().dialogs.load = "/tmp/" + std::string(300, 'x') + ".zlo";
  platform::Window* editor = stage.host().plugins.editor()->window;
  platform::sendMessage(editor, zenlay::messageCommand, zenlay::commandOpenObjectFile, 0);
  stage.host().dialogs = {};
  EXPECT_THAT(stage.asked.join("").toStdString(), HasSubstr("longer than 259 bytes"));
}

TEST_F(Session, AProjectBegunByThePluginHasNothingToLose) {
  stage.window().openFile(film("a.zlo"));
  stage.trigger(ActionId::close);
  answerNewProject({"64", "48", "25", "44100"}, Qt::Key_Return);
  platform::Window* editor = stage.host().plugins.editor()->window;
  platform::sendMessage(editor, zenlay::messageCommand, zenlay::commandNewProject, 0);
  stage.settle();
  ASSERT_TRUE(stage.host().edit.open);
  EXPECT_EQ(stage.host().edit.name, "64x48_25fps_44100Hz.zenlay");
  EXPECT_EQ(title(), "Untitled[*] — Cinora");
  EXPECT_FALSE(modified());
  edit();
  EXPECT_TRUE(modified());
  stage.answer(QMessageBox::Discard);
  stage.trigger(ActionId::close);
}

TEST_F(Session, ANameWithoutExtensionGetsThatOfItsKind) {
  stage.window().openFile(film("a.zlo"));
  struct Row {
    const char *filter, *written;
  };
  for (const Row& row : {Row{"Project (*.cnp)", "named.cnp"}, Row{"Backup (*.zenlay_backup)", "named.zenlay_backup"}}) {
    stage.whenAsked<QFileDialog>([&](QFileDialog* dialog) {
      dialog->selectNameFilter(row.filter);
      emit dialog->filterSelected(row.filter);
      typeFileName(dialog, "named");
    });
    stage.trigger(ActionId::saveAs);
    EXPECT_TRUE(platform::fileExists(stage.folder / row.written)) << row.filter;
  }
  stage.whenAsked<QFileDialog>([&](QFileDialog* dialog) { typeFileName(dialog, "objects"); });
  platform::Window* editor = stage.host().plugins.editor()->window;
  platform::sendMessage(editor, zenlay::messageCommand, zenlay::commandSaveObjectFile, 0);
  EXPECT_TRUE(platform::fileExists(stage.folder / "objects.zlo"));
}

TEST_F(Session, SavingWhereNothingCanBeWrittenKeepsTheMark) {
  stage.window().openFile(film("a.zlo"));
  edit();
  stage.answer(QMessageBox::Ok);
  EXPECT_FALSE(stage.window().saveTo(stage.folder / "no/such/folder/a.cnp"));
  EXPECT_EQ(stage.asked.size(), 1);
  title();
  EXPECT_TRUE(stage.window().isWindowModified());
}

TEST_F(Session, RecentFilesAreKeptLatestFirst) {
  std::vector<std::string> paths;
  for (int i = 0; i < 12; i++) {
    paths.push_back(film((std::to_string(i) + ".zlo").c_str(), 2));
    stage.window().openFile(paths.back());
  }
  stage.window().openFile(paths[5]);
  stage.restart();
  const std::vector<std::string>& recent = stage.window().session().recentFiles();
  ASSERT_EQ(recent.size(), desktop::maxRecentFiles);
  EXPECT_EQ(recent[0], paths[5]);
  EXPECT_EQ(recent[1], paths[11]);
  EXPECT_EQ(recent[9], paths[2]);
}

TEST_F(Session, FilesDroppedTogetherAreTakenOrTold) {
  auto hasAll = [&](const std::vector<std::string>& files) {
    std::string texts = askEditor(stage.host(), zenlay::queryTexts, nullptr);
    return std::all_of(files.begin(), files.end(), [&](auto& file) { return texts.find(file) != texts.npos; });
  };
  std::vector<std::string> pictures;
  for (const char* name : {"a.png", "b.png", "c.png"}) {
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(QString::fromStdString(stage.folder / name)));
    pictures.push_back(stage.folder / name);
  }
  stage.folder.write("film.zlo", squareFilm(10, 20, 5));
  stage.window().openFile(stage.folder / "film.zlo");
  stage.answer(QMessageBox::Ok);
  stage.window().takeFiles(pictures);
  EXPECT_TRUE(hasAll({pictures[0], pictures[1]}));
  // The plug-in finds no place for a third one where two stand.
  EXPECT_EQ(stage.asked, QStringList(QString::fromStdString(pictures[2] + " finds no place on the timeline")));
  stage.asked.clear();
  std::string project = stage.folder / "a.cnp";
  ASSERT_TRUE(stage.window().saveTo(project));
  std::string second = stage.folder / "b.cnp";
  ASSERT_TRUE(stage.window().saveTo(second));
  stage.answer(QMessageBox::Ok);
  stage.window().takeFiles({pictures[0], project, second});
  EXPECT_EQ(stage.window().session().path(), project);
  EXPECT_TRUE(hasAll({pictures[0], pictures[1]}));
  EXPECT_EQ(stage.asked,
            QStringList(QString::fromStdString("A project opens alone. Left out:\n" + pictures[0] + "\n" + second)));
}

TEST_F(Session, AVideoBeginsAProjectOfItsFormat) {
  stage.window().openFile(SOURCE_DIR "/examples/media/lights.mp4");
  EXPECT_TRUE(stage.asked.empty());
  ASSERT_TRUE(stage.host().edit.open);
  EXPECT_THAT(askEditor(stage.host(), zenlay::queryProject, nullptr), HasSubstr("Video file"));
  EXPECT_GT(stage.host().edit.frameCount, 1);
  QSize size = stage.window().preview().picture().size();
  EXPECT_NE(stage.colourAt(size.width() / 2, size.height() / 2), QColor(Qt::black));
  EXPECT_FALSE(stage.window().session().hasProjectFile());
  EXPECT_THAT(stage.window().session().suggestedPath(), HasSubstr("media/lights.cnp"));
}

TEST_F(Session, AProjectOpensWithoutItsFilmAndFindsItBesideItself) {
  std::string clip = stage.folder / "clip.mp4", project = stage.folder / "sub/a.cnp";
  std::filesystem::create_directory(stage.folder / "sub");
  std::filesystem::copy_file(SOURCE_DIR "/examples/media/lights.mp4", clip);
  ASSERT_TRUE(stage.host().openEdit(clip));
  ASSERT_TRUE(stage.window().saveTo(project));
  const ClipFormat format = stage.host().edit.format;
  const int frames = stage.host().edit.frameCount;
  auto openedIsBlack = [&] {
    stage.asked.clear();
    stage.window().openFile(project);
    EXPECT_EQ(stage.host().edit.name, clip);
    EXPECT_EQ(stage.host().edit.format, format);
    EXPECT_EQ(stage.host().edit.frameCount, frames);
    return stage.colourAt(format.width / 2, format.height / 2) == QColor(Qt::black);
  };
  EXPECT_FALSE(openedIsBlack());
  std::filesystem::rename(clip, stage.folder / "sub/away.mp4");
  stage.answer(QMessageBox::Ok);
  EXPECT_TRUE(openedIsBlack());
  ASSERT_EQ(stage.asked.size(), 1);
  EXPECT_THAT(stage.asked[0].toStdString(), HasSubstr("clip.mp4 cannot be read"));
  ASSERT_TRUE(stage.window().saveTo(project));  // which still names the film
  std::filesystem::rename(stage.folder / "sub/away.mp4", stage.folder / "sub/clip.mp4");
  EXPECT_FALSE(openedIsBlack());
  EXPECT_TRUE(stage.asked.empty());
}

TEST_F(Session, TheArrangementIsKept) {
  auto* timeline = stage.window().findChild<QDockWidget*>("Zenlay");
  ASSERT_TRUE(timeline);
  EXPECT_TRUE(timeline->isVisible());
  timeline->setFloating(true);
  EXPECT_TRUE(stage.window().close());
  stage.restart();
  timeline = stage.window().findChild<QDockWidget*>("Zenlay");
  EXPECT_TRUE(timeline->isFloating());
  stage.trigger(ActionId::arrange);
  EXPECT_FALSE(timeline->isFloating());
}

// The plug-in writes them as it ends.
TEST_F(Session, PreferencesAreKept) {
  constexpr int toggleSnap = 1034, preferences = 1014;
  auto stored = [&](const char* key) { return Settings(stage.folder / "cinora.ini").getInt("Zenlay", key, -1); };
  inDialog("Preferences", [](QWidget* dialog) {
    for (auto* box : dialog->findChildren<QCheckBox*>())
      if (box->text().startsWith("Scroll the timeline")) box->click();
    for (auto* button : dialog->findChildren<QPushButton*>())
      if (button->text() == "OK") return button->click();
  });
  command(preferences);
  command(toggleSnap);
  stage.restart();
  EXPECT_EQ(stored("auto_scroll"), 0);
  EXPECT_EQ(stored("object_snap"), 0);
  EXPECT_EQ(stored("auto_save"), -1) << "an override of one run";
}

TEST_F(Session, SettingsThatCannotBeKeptAreTold) {
  std::filesystem::create_directory(stage.folder / "cinora.ini");
  testing::internal::CaptureStderr();
  stage.restart();
  EXPECT_THAT(
      testing::internal::GetCapturedStderr(),
      testing::StartsWith("cinora: warning: the settings cannot be written to " + (stage.folder / "cinora.ini")));
}

TEST_F(Session, CutAndPasteMoveAnObject) {
  stage.folder.write("film.zlo", squareFilm(10, 20));
  stage.window().openFile(stage.folder / "film.zlo");
  stage.settle();
  QPoint centre = stage.window().preview().pictureRect().center().toPoint();
  QTest::mouseDClick(&stage.window().preview(), Qt::LeftButton, {}, centre);
  stage.settle();
  EXPECT_GT(stage.colourAt(32, 18).lightness(), 128);
  stage.trigger(ActionId::cut);
  EXPECT_LT(stage.colourAt(32, 18).lightness(), 128);
  stage.trigger(ActionId::paste);
  EXPECT_GT(stage.colourAt(32, 18).lightness(), 128);
}

TEST_F(Session, TabInAValueBoxGoesToTheNextBox) {
  stage.folder.write("film.zlo", squareFilm(10, 20));
  stage.window().openFile(stage.folder / "film.zlo");
  stage.settle();
  QTest::mouseDClick(&stage.window().preview(), Qt::LeftButton, {},
                     stage.window().preview().pictureRect().center().toPoint());
  stage.settle();
  auto* settings = stage.window().findChild<QScrollArea*>();
  ASSERT_TRUE(settings);
  QList<QLineEdit*> boxes;
  for (QLineEdit* box : settings->findChildren<QLineEdit*>())
    if (box->isVisible() && box->isEnabled()) boxes.push_back(box);
  ASSERT_GE(boxes.size(), 2);
  boxes[0]->setFocus();
  QTest::keyClick(boxes[0], Qt::Key_Tab);
  stage.settle();
  auto* next = qobject_cast<QLineEdit*>(QApplication::focusWidget());
  EXPECT_TRUE(next && next != boxes[0] && boxes.contains(next));
}

// A child saves over and over and is killed at any moment: what lies under the name is always a whole project.
TEST_F(Session, KilledWhileSavingLosesNothing) {
  stage.window().openFile(film("a.zlo"));
  std::string project = stage.folder / "a.cnp";
  ASSERT_TRUE(stage.window().saveTo(project));
  for (int round = 0; round < 25; round++) {
    pid_t child = fork();
    if (child == 0) {
      for (;;) saveProject(stage.host(), project);
    }
    usleep(1000 + 1777 * round % 9000);
    kill(child, SIGKILL);
    int status;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    ProjectFile read;
    ASSERT_EQ(readProject(project, &read), "") << round;
    ASSERT_EQ(read.frameCount, 10);
  }
  stage.window().openFile(project);
  EXPECT_EQ(stage.colourAt(32, 24), QColor(Qt::white));
}

}  // namespace
}  // namespace cinora::test
