// What the main window does with files: open, save, import, export, and the question before work is lost.
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QRegularExpression>
#include <QStatusBar>
#include <algorithm>

#include "cinora/desktop/export_dialog.h"
#include "cinora/desktop/main_window.h"
#include "cinora/desktop/plugin_docks.h"
#include "cinora/export/media_guard.h"
#include "cinora/host/project.h"
#include "cinora/support/failure.h"
#include "cinora/support/interruption.h"
#include "platform/paths.h"
#include "platform/system.h"

namespace cinora::desktop {
namespace {

constexpr char openFilter[] =
    "Films, videos, pictures and sounds (*.cnp *.zlo *.zenlay_backup *.mp4 *.mkv *.mov *.webm *.avi *.mpg *.wmv *.flv "
    "*.png *.jpg *.jpeg *.bmp *.gif *.webp *.wav *.mp3 *.flac *.ogg *.m4a);;"
    "Projects, object files and backups (*.cnp *.zlo *.zenlay_backup);;All files (*)";
constexpr char importFilter[] =
    "Videos, pictures, sounds and object files (*.mp4 *.mkv *.mov *.webm *.avi *.mpg *.wmv *.flv *.png *.jpg *.jpeg "
    "*.bmp *.gif *.webp *.wav *.mp3 *.flac *.ogg *.m4a *.zlo *.zla);;All files (*)";
constexpr char saveFilter[] =
    "Project (*.cnp);;Object file, the current scene's objects (*.zlo);;Backup (*.zenlay_backup)";
constexpr int noticeTime = 8000;  // ms

/// From pairs of NUL-terminated label and patterns.
QString qtFilter(const char* list) {
  QStringList filters;
  while (list && *list) {
    QString label = QString::fromUtf8(list).section(" (", 0, 0);
    list += strlen(list) + 1;
    QString patterns = QString::fromUtf8(list).replace(';', ' ').replace("*.*", "*");
    list += strlen(list) + 1;
    filters.push_back(label + " (" + patterns + ")");
  }
  return filters.join(";;");
}

/// ".cnp" of "Project (*.cnp)": the first extension that files of the filter have.
QString suffixOf(const QString& filter) {
  static const QRegularExpression extension(R"(\*\.(\w+))");
  return extension.match(filter).captured(1);
}

/// Empty when cancelled. A name typed without extension gets that of the chosen kind.
std::string askSavePath(QWidget* parent, const QString& title, const QString& filters, const QString& suggested) {
  QFileDialog dialog(parent, title, QString(), filters);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(suffixOf(dialog.selectedNameFilter()));
  QObject::connect(&dialog, &QFileDialog::filterSelected,
                   [&](const QString& filter) { dialog.setDefaultSuffix(suffixOf(filter)); });
  dialog.selectFile(suggested);
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().first().toStdString() : "";
}

std::string joined(const std::vector<std::string>& messages) {
  std::string text;
  for (const std::string& message : messages) text += (text.empty() ? "" : "\n\n") + message;
  return text;
}

std::vector<std::string> filesIn(const QMimeData* data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data->urls())
    if (url.isLocalFile()) paths.push_back(url.toLocalFile().toStdString());
  return paths;
}

bool replacesProject(const std::string& path) {
  return platform::equalNoCase(platform::extensionOf(path), ".cnp") ||
         platform::equalNoCase(platform::extensionOf(path), ".zenlay_backup");
}

}  // namespace

void MainWindow::tell(const std::string& problem) {
  QMessageBox box(QMessageBox::Warning, "Cinora", "", QMessageBox::Ok, this);
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromStdString(problem));
  box.exec();
}

/// What was collected while a file was dealt with: nothing that kept it from being done.
void MainWindow::tellMessages() {
  std::vector<std::string> messages = host_->takeMessages();
  if (!messages.empty()) statusBar()->showMessage(QString::fromStdString(messages.front()), noticeTime);
}

bool MainWindow::mayDiscard() {
  if (exporting_) return false;
  player_->stop();
  if (!session_->modified()) return true;
  QMessageBox box(QMessageBox::Question, "Cinora", "", QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                  this);
  box.setTextFormat(Qt::PlainText);
  box.setText(QString("Save the changes to “%1”?").arg(QString::fromStdString(session_->name())));
  box.setInformativeText("Without saving they are lost.");
  box.setDefaultButton(QMessageBox::Save);
  int answer = box.exec();
  return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save());
}

void MainWindow::begin(const std::string& file) {
  refreshNow();
  if (!file.empty()) openFile(file);
}

void MainWindow::openFile(const std::string& path) {
  std::string problem;
  try {
    session_->check(path);
    if (!mayDiscard()) return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    struct Restore {
      ~Restore() { QApplication::restoreOverrideCursor(); }
    } restore;
    session_->openFile(path);
    problem = joined(host_->takeMessages());
  } catch (const std::exception& error) {
    problem = error.what();
  }
  refreshNow();
  if (!problem.empty()) tell(problem);
}

void MainWindow::importAll(const std::vector<std::string>& paths) {
  std::vector<std::string> problems;
  for (const std::string& path : paths) {
    if (!session_->open()) {
      openFile(path);
      continue;
    }
    try {
      session_->place(path);
    } catch (const std::exception& error) {
      problems.push_back(error.what());
    }
  }
  if (!problems.empty()) tell(joined(problems));
  tellMessages();
  noteChange(true);
}

void MainWindow::open() {
  QString path = QFileDialog::getOpenFileName(this, "Open", QString::fromStdString(session_->path()), openFilter);
  if (!path.isEmpty()) openFile(path.toStdString());
}

void MainWindow::importFiles() {
  QString path = QFileDialog::getOpenFileName(this, "Import", "", importFilter);
  if (!path.isEmpty()) importAll({path.toStdString()});
}

bool MainWindow::saveTo(const std::string& path) {
  try {
    session_->save(path);
    tellMessages();
    updateTitle();
    return true;
  } catch (const std::exception& error) {
    tell(error.what());
    return false;
  }
}

bool MainWindow::save() { return session_->hasProjectFile() ? saveTo(session_->path()) : saveAs(); }

bool MainWindow::saveAs() {
  if (!session_->open()) return false;
  std::string path = askSavePath(this, "Save As", saveFilter, QString::fromStdString(session_->suggestedPath()));
  return !path.empty() && saveTo(path);
}

void MainWindow::closeFilm() {
  if (!mayDiscard()) return;
  session_->close();
  refreshNow();
}

void MainWindow::exportFilm() {
  if (!session_->open() || exporting_) return;
  player_->stop();
  ExportDialog dialog(*host_, session_->suggestedPath(), this);
  if (dialog.exec() == QDialog::Accepted) runExport(dialog.request());
}

bool MainWindow::runExport(const ExportRequest& request) {
  if (exporting_) return false;
  player_->stop();
  exporting_ = true;
  bool done = false;
  std::string problem;
  try {
    keepMedia(*host_, request);
    done = exportWithProgress(*host_, request, this);
  } catch (const std::exception& error) {
    problem = error.what();
  }
  exporting_ = false;
  noteChange(true);
  if (!problem.empty()) tell(problem);
  QString name = QString::fromStdString(request.output.path);
  if (problem.empty())
    statusBar()->showMessage(done ? name + " is written." : QString("The export was cancelled."), noticeTime);
  return done;
}

std::string MainWindow::askFileName(bool save, const char* filter, const char* initial) {
  QString name = QString::fromUtf8(initial ? initial : "");
  if (save) return askSavePath(this, "Save", qtFilter(filter), name);
  return QFileDialog::getOpenFileName(this, "Open", name, qtFilter(filter)).toStdString();
}

bool MainWindow::mayEnd() { return endAgreed_ || (endAgreed_ = mayDiscard()); }

void MainWindow::rescue() {
  storeArrangement();
  if (!session_->modified()) return;
  const std::string about = "cinora: the unsaved work on " + session_->name();
  try {
    rescueProject(*host_);
    platform::debugOutput(about + " is kept as a backup");
  } catch (const std::exception& error) {
    platform::debugOutput(about + " is lost: " + error.what());
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!host_ || !mayEnd()) return event->ignore();
  storeArrangement();
  event->accept();
  QApplication::quit();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!exporting_ && !filesIn(event->mimeData()).empty()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  std::vector<std::string> paths = filesIn(event->mimeData());
  if (paths.empty() || exporting_) return;
  event->acceptProposedAction();
  // The program that the files were dragged from waits for the answer.
  QMetaObject::invokeMethod(
      this, [this, paths] { takeFiles(paths); }, Qt::QueuedConnection);
}

void MainWindow::takeFiles(const std::vector<std::string>& paths) {
  auto project = std::find_if(paths.begin(), paths.end(), replacesProject);
  if (project == paths.end()) return importAll(paths);
  openFile(*project);
  std::string leftOut;
  for (auto path = paths.begin(); path != paths.end(); ++path)
    if (path != project) leftOut += "\n" + *path;
  if (!leftOut.empty()) tell("A project opens alone. Left out:" + leftOut);
}

}  // namespace cinora::desktop
