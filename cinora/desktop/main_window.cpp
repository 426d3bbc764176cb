#include "cinora/desktop/main_window.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>

#include "cinora/desktop/plugin_docks.h"
#include "cinora/desktop/preview.h"
#include "cinora/desktop/seek_bar.h"
#include "cinora/desktop/theme_menu.h"
#include "cinora/desktop/time_code.h"
#include "cinora/desktop/transport.h"
#include "cinora/desktop/welcome.h"
#include "cinora/export/exporter.h"
#include "cinora/support/failure.h"
#include "platform/icons.h"

namespace cinora::desktop {
namespace {

constexpr char section[] = "desktop", geometryKey[] = "geometry", stateKey[] = "arrangement";
constexpr int arrangementVersion = 1;
constexpr QSize firstSize(1600, 940);
constexpr int titlePause = 250;  // ms without a change before the title is brought up to date

QString formatText(const ClipFormat& f) {
  QString rate = QString::number(static_cast<double>(f.rate) / f.scale, 'g', 5);
  return QString("%1 × %2  ·  %3 fps  ·  %4 kHz").arg(f.width).arg(f.height).arg(rate).arg(f.audioRate / 1000.0);
}

}  // namespace

MainWindow::MainWindow()
    : stage_(new QStackedWidget), preview_(new Preview), seekBar_(new SeekBar), format_(new QLabel) {
  setObjectName("Cinora");
  setAcceptDrops(true);
  setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks);
  createActions();
  createMenus();
  transport_ = new Transport({action(ActionId::toStart), action(ActionId::frameBack), action(ActionId::play),
                              action(ActionId::frameForward), action(ActionId::toEnd)},
                             {action(ActionId::selectionFirst), action(ActionId::selectionLast)});
  stage_->addWidget(new Welcome(action(ActionId::newProject), action(ActionId::open)));
  stage_->addWidget(preview_);
  auto* middle = new QWidget;
  auto* column = new QVBoxLayout(middle);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addWidget(stage_, 1);
  column->addWidget(seekBar_);
  column->addWidget(transport_);
  setCentralWidget(middle);
  format_->setForegroundRole(QPalette::PlaceholderText);
  format_->setContentsMargins(0, 0, 8, 0);
  statusBar()->addPermanentWidget(format_);
  statusBar()->setSizeGripEnabled(false);

  seekBar_->sought = [this](int frame) { goTo(frame); };
  seekBar_->describe = [this](int frame) {
    return host_ ? QString("%1  ·  %2").arg(timeCode(frame, host_->edit.format)).arg(frame + 1) : QString();
  };
  transport_->sought = [this](int frame) { goTo(frame); };
  transport_->zoomChosen = [this](double zoom) { preview_->setZoom(zoom); };
  preview_->zoomChanged = [this] { transport_->setZoom(preview_->zoom(), preview_->scale()); };
  preview_->sendMessage = [this](uint32_t message, intptr_t first, intptr_t second) {
    if (!host_ || !host_->edit.open || exporting_) return false;
    intptr_t taken = 0;
    for (const auto& filter : host_->plugins.filters())
      if (filter->window) taken |= platform::sendMessage(filter->window, message, first, second);
    return taken == 1;
  };
  for (QTimer* timer : {&refreshTimer_, &titleTimer_}) timer->setSingleShot(true);
  connect(&refreshTimer_, &QTimer::timeout, this, [this] { refresh(); });
  connect(&titleTimer_, &QTimer::timeout, this, [this] {
    updateTitle();
    if (host_) host_->settings.save();  // no crash takes them away
  });
}

MainWindow::~MainWindow() = default;

platform::Window* MainWindow::createFrame() {
  frame_ = platform::createWindow(nullptr, frameProcedure, this, {.className = "Cinora"});
  platform::qt::attachWidget(frame_, this);
  return frame_;
}

intptr_t MainWindow::frameProcedure(platform::Window*, uint32_t message, intptr_t first, intptr_t, void* user) {
  auto* window = static_cast<MainWindow*>(user);
  if (!window->host_) return 0;
  switch (message) {
    case platform::messageKeyDown:
    case platform::messageSystemKeyDown:
      return window->runKey(static_cast<int>(first));
    case platform::messageCommand:
      return window->runHostCommand(static_cast<int>(first));
    default:
      return 0;
  }
}

/// Notices of windows that the user moves need no answer: docks snap by themselves.
bool MainWindow::runHostCommand(int command) {
  if (command != zenlay::hostPlayFromCursor) return false;
  QMetaObject::invokeMethod(action(ActionId::play), &QAction::trigger, Qt::QueuedConnection);
  return true;
}

void MainWindow::fillPorts(DesktopPorts& ports) {
  ports.askFileName = [this](bool save, const char* filter, const char* initial) {
    return askFileName(save, filter, initial);
  };
  ports.exportSelection = [this](const std::string& path, bool alpha) {
    return host_ && runExport(requestOfSelection(*host_, path, alpha));
  };
  ports.openProject = [this](const std::string& path) {
    if (session_) openFile(path);
    return session_ && session_->path() == path;
  };
  ports.opened = [this] {
    if (session_) session_->begin();
  };
  ports.changed = [this](bool picture) { noteChange(picture); };
}

void MainWindow::attach(Host& host, const PlaybackFilter& playback, PluginDocks& docks) {
  host_ = &host;
  docks_ = &docks;
  session_ = std::make_unique<FilmSession>(host);
  player_ = std::make_unique<Player>(
      host, playback,
      [this](int frame) {
        bool shown = showFrame(frame);
        if (shown) showTransport(frame);
        return shown;
      },
      [this](int frame, bool byItself) {
        preview_->setMoving(false);
        if (!byItself) hostFunctions.setCurrentFrame(host_->editHandle(), frame);
        noteChange(true);
      });
  fillPluginMenu();
  viewMenu_->addMenu(createThemeMenu(host.settings, this));
  viewMenu_->addSeparator();
  viewMenu_->addActions(docks.toggles());
  refreshNow();
}

void MainWindow::detach() {
  if (player_) player_->stop();
  refreshTimer_.stop();
  titleTimer_.stop();
  host_ = nullptr;
  player_.reset();
  session_.reset();
  docks_ = nullptr;
}

void MainWindow::restoreArrangement() {
  auto stored = [this](const char* key) {
    return QByteArray::fromBase64(QByteArray::fromStdString(host_->settings.get(section, key, "")));
  };
  if (!restoreGeometry(stored(geometryKey))) resize(firstSize.boundedTo(screen()->availableSize() * 0.96));
  if (!restoreState(stored(stateKey), arrangementVersion)) docks_->arrange();
}

void MainWindow::storeArrangement() {
  host_->settings.set(section, geometryKey, saveGeometry().toBase64().toStdString());
  host_->settings.set(section, stateKey, saveState(arrangementVersion).toBase64().toStdString());
}

void MainWindow::noteChange(bool picture) {
  if (!host_) return;
  pictureStale_ |= picture;
  endAgreed_ = false;
  if (picture && session_) session_->suspect();
  if (!refreshTimer_.isActive()) refreshTimer_.start(0);
}

void MainWindow::refreshNow() {
  refreshTimer_.stop();
  pictureStale_ = true;
  refresh();
  updateTitle();
}

/// Brings everything to the latest state, whatever number of changes led there.
void MainWindow::refresh() {
  if (!host_ || !player_ || exporting_) return;
  titleTimer_.start(titlePause);
  const zenlay::HostEdit& edit = host_->edit;
  if (player_->playing() && edit.open) return showTransport(player_->frame());
  stage_->setCurrentIndex(edit.open ? 1 : 0);
  if (!edit.open) {
    player_->stop();
    preview_->setPicture({});
    shownFrame_ = -1;
  } else if (pictureStale_ || edit.currentFrame != shownFrame_) {
    showFrame(edit.currentFrame);
  }
  showTransport(edit.currentFrame);
  updateActions();
  tellMessages();
}

/// False, with a word in the status line, when the frame cannot be made.
bool MainWindow::showFrame(int frame) {
  pictureStale_ = false;
  shownFrame_ = frame;
  try {
    preview_->setPicture(pictures_.make(*host_, frame));
    if (preview_->zoom() == 0) transport_->setZoom(0, 0);
    return true;
  } catch (const std::exception& error) {
    preview_->setPicture({});
    statusBar()->showMessage(error.what());
    return false;
  }
}

void MainWindow::showTransport(int frame) {
  const zenlay::HostEdit& edit = host_->edit;
  int count = edit.open ? edit.frameCount : 0;
  seekBar_->setState({count, frame, edit.selectionFirst, edit.selectionLast});
  transport_->setFrame(frame, count, edit.open ? &edit.format : nullptr);
}

void MainWindow::updateTitle() {
  if (!host_ || exporting_) return;
  const zenlay::HostEdit& edit = host_->edit;
  setWindowModified(session_->modified());
  setWindowTitle(edit.open ? QString::fromStdString(session_->name()) + "[*] — Cinora" : QString("Cinora"));
  format_->setText(edit.open ? formatText(edit.format) : "");
}

// Moving through the film.

void MainWindow::goTo(int frame) {
  if (!host_ || !host_->edit.open || exporting_) return;
  player_->stop();
  hostFunctions.setCurrentFrame(host_->editHandle(), frame);
}

void MainWindow::toStart() { goTo(0); }
void MainWindow::toEnd() { goTo(host_->edit.frameCount - 1); }
int MainWindow::frameNow() const { return player_->playing() ? player_->frame() : host_->edit.currentFrame; }
void MainWindow::frameBack() { goTo(frameNow() - 1); }
void MainWindow::frameForward() { goTo(frameNow() + 1); }

void MainWindow::play(int first, int last, int from) {
  if (!host_->edit.open || exporting_) return;
  preview_->setMoving(true);
  host_->sound.forget();
  player_->play(first, last, from);
  updateActions();
}

void MainWindow::togglePlay() {
  if (player_->playing()) return player_->stop();
  const zenlay::HostEdit& edit = host_->edit;
  int last = edit.frameCount - 1;
  play(0, last, edit.currentFrame >= last ? 0 : edit.currentFrame);
}

void MainWindow::playSelection() {
  if (player_->playing()) return player_->stop();
  play(host_->edit.selectionFirst, host_->edit.selectionLast, host_->edit.selectionFirst);
}

void MainWindow::setLoop() { player_->setLoop(action(ActionId::loop)->isChecked()); }

static void select(Host& host, int first, int last) {
  hostFunctions.setSelection(host.editHandle(), first, last);
  host.plugins.broadcast(zenlay::messageUpdate);
}

void MainWindow::selectionFirst() {
  int frame = frameNow();
  select(*host_, frame, std::max(frame, host_->edit.selectionLast));
}

void MainWindow::selectionLast() {
  int frame = frameNow();
  select(*host_, std::min(frame, host_->edit.selectionFirst), frame);
}

void MainWindow::selectAll() { select(*host_, 0, host_->edit.frameCount - 1); }

// The view and the help.

void MainWindow::toggleFullScreen() { setWindowState(windowState() ^ Qt::WindowFullScreen); }
void MainWindow::zoomIn() { preview_->zoomBy(1); }
void MainWindow::zoomOut() { preview_->zoomBy(-1); }
void MainWindow::zoomFit() { preview_->setZoom(0); }
void MainWindow::zoomWhole() { preview_->setZoom(1); }
void MainWindow::arrange() { docks_->arrange(); }

void MainWindow::showAbout() {
  QString text = "<h3>Cinora 0.92</h3><p>A host for film editing plug-ins.</p><p>";
  for (const auto& filter : host_->plugins.filters())
    if (filter->record->information) text += QString::fromUtf8(filter->record->information).toHtmlEscaped() + "<br>";
  QMessageBox::about(this, "About Cinora", text + "</p>");
}

void MainWindow::showKeys() {
  QDialog dialog(this);
  dialog.setWindowTitle("Keys");
  auto* list = new QWidget;
  auto* form = new QFormLayout(list);
  form->setLabelAlignment(Qt::AlignRight);
  for (QAction* action : actions() + pluginMenu_->actions()) {
    if (action->shortcuts().isEmpty()) continue;
    auto* keys = new QLabel("<b>" + action->shortcut().toString(QKeySequence::NativeText).toHtmlEscaped() + "</b>");
    form->addRow(keys, new QLabel(action->text().remove('&').remove(QChar(0x2026))));
  }
  auto* scroll = new QScrollArea;
  scroll->setWidget(list);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setMinimumWidth(list->sizeHint().width() + scroll->verticalScrollBar()->sizeHint().width());
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  auto* column = new QVBoxLayout(&dialog);
  column->addWidget(scroll);
  column->addWidget(buttons);
  dialog.resize(
      dialog.sizeHint().expandedTo(list->sizeHint() + QSize(60, 80)).boundedTo(screen()->availableSize() * 0.9));
  dialog.exec();
}

}  // namespace cinora::desktop
