#include "cinora/desktop/export_dialog.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <filesystem>

#include "cinora/desktop/export_preset.h"
#include "cinora/desktop/time_code.h"
#include "cinora/export/media_guard.h"
#include "cinora/host/project.h"
#include "cinora/support/failure.h"
#include "cinora/support/interruption.h"
#include "platform/paths.h"
#include "platform/qt/qt_desktop.h"

namespace cinora::desktop {
namespace {

constexpr char section[] = "desktop", presetKey[] = "export_preset";
constexpr int64_t showEvery = 60;  // ms between looks at the user while exporting

std::filesystem::path absolutePath(const std::string& path) {
  std::error_code error;
  return std::filesystem::absolute(path, error);
}

QString durationText(double seconds) {
  int whole = static_cast<int>(seconds + 0.5);
  if (whole < 60) return QString("%1 s").arg(whole);
  if (whole < 3600) return QString("%1 min %2 s").arg(whole / 60).arg(whole % 60);
  return QString("%1 h %2 min").arg(whole / 3600).arg(whole % 3600 / 60);
}

class ProgressDialog : public QDialog {
 public:
  explicit ProgressDialog(const QString& what, QWidget* parent) : QDialog(parent) {
    setWindowTitle("Exporting");
    setWindowModality(Qt::ApplicationModal);
    setMinimumWidth(420);
    auto* column = new QVBoxLayout(this);
    auto* name = new QLabel(what);
    name->setTextFormat(Qt::PlainText);
    column->addWidget(name);
    column->addWidget(bar_ = new QProgressBar);
    bar_->setTextVisible(false);
    column->addWidget(state_ = new QLabel("Preparing…"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &ProgressDialog::reject);
    clock_.start();
  }

  /// False when the user wants no more of it.
  bool show(int done, int total) {
    if (sinceShown_.isValid() && sinceShown_.elapsed() < showEvery && done < total) return !cancelled_;
    sinceShown_.start();
    double seconds = std::max(clock_.nsecsElapsed() / 1e9, 1e-3), rate = done / seconds;
    bar_->setRange(0, total);
    bar_->setValue(done);
    state_->setText(QString("Frame %1 of %2  ·  %3 frames/s  ·  %4 left")
                        .arg(done)
                        .arg(total)
                        .arg(rate, 0, 'f', rate < 10 ? 1 : 0)
                        .arg(durationText((total - done) / rate)));
    QCoreApplication::processEvents();
    return !cancelled_;
  }
  bool cancelled() const { return cancelled_; }
  void reject() override {
    cancelled_ = true;
    state_->setText("Cancelling…");
  }

 private:
  QProgressBar* bar_;
  QLabel* state_;
  QElapsedTimer clock_, sinceShown_;
  bool cancelled_ = false;
};

}  // namespace

ExportDialog::ExportDialog(Host& host, const std::string& filmPath, QWidget* parent)
    : QDialog(parent),
      host_(host),
      preset_(new QComboBox),
      about_(new QLabel),
      problem_(new QLabel),
      whole_(new QRadioButton),
      selection_(new QRadioButton),
      path_(new QLineEdit) {
  setWindowTitle("Export Film");
  fill(filmPath);
  layOut();
  connect(preset_, &QComboBox::currentIndexChanged, this, [this] { choosePreset(); });
  choosePreset();
}

void ExportDialog::fill(const std::string& filmPath) {
  const zenlay::HostEdit& edit = host_.edit;
  for (const ExportPreset& preset : exportPresets())
    if (canExport(preset)) preset_->addItem(preset.name, static_cast<int>(&preset - exportPresets().data()));
  preset_->setCurrentIndex(std::clamp(
      preset_->findText(QString::fromStdString(host_.settings.get(section, presetKey, ""))), 0, preset_->count() - 1));
  about_->setForegroundRole(QPalette::PlaceholderText);
  whole_->setText(
      QString("Whole film (%1 frames, %2)").arg(edit.frameCount).arg(timeCode(edit.frameCount, edit.format)));
  int first = edit.selectionFirst, last = edit.selectionLast;
  selection_->setText(QString("Selection (frames %1 to %2)").arg(first + 1).arg(last + 1));
  bool part = first > 0 || last < edit.frameCount - 1;
  selection_->setEnabled(part);
  (part ? selection_ : whole_)->setChecked(true);
  path_->setMinimumWidth(380);
  path_->setText(QString::fromStdString(absolutePath(filmPath).string()));
}

void ExportDialog::layOut() {
  auto* browseButton = new QPushButton("Browse…");
  browseButton->setAutoDefault(false);
  auto* fileRow = new QHBoxLayout;
  fileRow->addWidget(path_);
  fileRow->addWidget(browseButton);
  problem_->setTextFormat(Qt::PlainText);
  problem_->setWordWrap(true);
  problem_->setStyleSheet(platform::qt::themeIsDark() ? "color: #E0796B" : "color: #A83226");
  problem_->hide();
  auto* form = new QFormLayout;
  form->setHorizontalSpacing(12);
  form->setVerticalSpacing(8);
  form->addRow("Format", preset_);
  form->addRow("", about_);
  form->addRow("Range", whole_);
  form->addRow("", selection_);
  form->addRow("File", fileRow);
  form->addRow("", problem_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  QPushButton* start = buttons->addButton("Export", QDialogButtonBox::AcceptRole);
  auto* column = new QVBoxLayout(this);
  column->addLayout(form);
  column->addStretch(1);
  column->addWidget(buttons);
  column->setSizeConstraint(QLayout::SetFixedSize);
  start->setDefault(true);  // only now does the dialog know the button

  connect(browseButton, &QPushButton::clicked, this, [this] { browse(); });
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

static const ExportPreset& presetOf(const QComboBox* box) { return exportPresets()[box->currentData().toInt()]; }

void ExportDialog::choosePreset() {
  const ExportPreset& preset = presetOf(preset_);
  about_->setText(preset.about);
  path_->setText(QString::fromStdString(exportPath(preset, path_->text().toStdString())));
  problem_->hide();
}

void ExportDialog::browse() {
  QString pattern = QString("*%1").arg(presetOf(preset_).extension);
  QString path = QFileDialog::getSaveFileName(this, "Export to", path_->text(), pattern, nullptr,
                                              QFileDialog::DontConfirmOverwrite);
  if (path.isEmpty()) return;
  path_->setText(QString::fromStdString(exportPath(presetOf(preset_), path.toStdString())));
}

ExportRequest ExportDialog::request() const {
  const zenlay::HostEdit& edit = host_.edit;
  ExportRequest request{
      .output = outputOf(presetOf(preset_), path_->text().toStdString()), .first = 0, .last = edit.frameCount - 1};
  if (selection_->isChecked()) request.first = edit.selectionFirst, request.last = edit.selectionLast;
  return request;
}

/// One question about all files that stand where the export writes.
bool ExportDialog::mayReplace(const ExportRequest& wanted) {
  std::string existing;
  int count = 0;
  for (int frame = wanted.first; frame <= wanted.last; frame++) {
    std::optional<std::string> numbered = numberedName(wanted.output.path, frame + 1);
    std::string path = numbered.value_or(wanted.output.path);
    if (platform::fileExists(path) && count++ == 0) existing = path;
    if (!numbered) break;
  }
  if (count == 0) return true;
  QString name = QString::fromStdString(existing);
  QString text = count == 1
                     ? QString("%1 exists already. Replace it?").arg(name)
                     : QString("%2 files of the sequence exist already, %1 first. Replace them?").arg(name).arg(count);
  return QMessageBox::question(this, "Export Film", text) == QMessageBox::Yes;
}

void ExportDialog::accept() {
  if (!path_->text().isEmpty())
    path_->setText(QString::fromStdString(completedPath(presetOf(preset_), path_->text().toStdString())));
  ExportRequest wanted = request();
  try {
    const std::string folder(platform::folderOf(wanted.output.path));
    if (!folder.empty() && !platform::folderExists(folder)) throw Failure("There is no folder " + folder);
    checkOutput(wanted.output, wanted.last - wanted.first + 1);
    keepMedia(host_, wanted);
  } catch (const std::exception& error) {
    problem_->setText(error.what());
    problem_->show();
    return;
  }
  if (!mayReplace(wanted)) return;
  host_.settings.set(section, presetKey, presetOf(preset_).name);
  QDialog::accept();
}

bool exportWithProgress(Host& host, const ExportRequest& request, QWidget* parent) {
  ProgressDialog dialog(QString::fromStdString(std::string(platform::fileName(request.output.path))), parent);
  dialog.QDialog::show();
  QCoreApplication::processEvents();
  try {
    exportFilm(host, request, [&](int done, int total) { return dialog.show(done, total) && !interrupted(); });
    return true;
  } catch (const std::exception&) {
    if (dialog.cancelled()) return false;
    throw;
  }
}

}  // namespace cinora::desktop
