// The menus of the main window: one row an action.
#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

#include "cinora/desktop/main_window.h"
#include "cinora/desktop/plugin_docks.h"
#include "cinora/host/project.h"
#include "platform/icons.h"
#include "platform/qt/qt_desktop.h"

namespace cinora::desktop {
namespace {

enum MenuIndex { menuFile, menuEdit, menuView, menuPlayback, menuPlugin, menuHelp, menuCount };
constexpr const char* menuTitles[menuCount] = {"&File", "&Edit", "&View", "&Playback", "", "&Help"};

/// The editor's entries that stand among the host's own actions.
constexpr int entriesOfOwn[] = {zenlay::commandNewProject, zenlay::commandHostCopy, zenlay::commandHostPaste,
                                zenlay::commandHostDelete};

constexpr char iconMarkIn[] = "mark_in", iconMarkOut[] = "mark_out";  // of this folder's own resources

struct NamedKey {
  int number;
  Qt::Key key;
};
constexpr NamedKey namedKeys[] = {
    {platform::keyTab, Qt::Key_Tab},
    {platform::keyEnter, Qt::Key_Return},
    {platform::keyEscape, Qt::Key_Escape},
    {platform::keySpace, Qt::Key_Space},
    {platform::keyPageUp, Qt::Key_PageUp},
    {platform::keyPageDown, Qt::Key_PageDown},
    {platform::keyEnd, Qt::Key_End},
    {platform::keyHome, Qt::Key_Home},
    {platform::keyLeft, Qt::Key_Left},
    {platform::keyUp, Qt::Key_Up},
    {platform::keyRight, Qt::Key_Right},
    {platform::keyDown, Qt::Key_Down},
    {platform::keyInsert, Qt::Key_Insert},
    {platform::keyDelete, Qt::Key_Delete},
    {platform::keyBackspace, Qt::Key_Backspace},
    {platform::keySemicolon, Qt::Key_Semicolon},
    {platform::keyPlus, Qt::Key_Equal},
    {platform::keyComma, Qt::Key_Comma},
    {platform::keyMinus, Qt::Key_Minus},
    {platform::keyPeriod, Qt::Key_Period},
    {platform::keySlash, Qt::Key_Slash},
    {platform::keyBackquote, Qt::Key_QuoteLeft},
    {platform::keyOpenBracket, Qt::Key_BracketLeft},
    {platform::keyBackslash, Qt::Key_Backslash},
    {platform::keyCloseBracket, Qt::Key_BracketRight},
    {platform::keyQuote, Qt::Key_Apostrophe},
};

/// Of a key by its number on the plug-ins' side; empty for one without a name here.
QKeySequence sequenceOf(int number, int modifiers) {
  int key = 0;
  if ((number >= 'A' && number <= 'Z') || (number >= '0' && number <= '9')) key = number;
  if (number >= platform::keyF1 && number <= platform::keyF24) key = Qt::Key_F1 + (number - platform::keyF1);
  for (const NamedKey& row : namedKeys)
    if (row.number == number) key = row.key;
  if (!key) return {};
  if (modifiers & zenlay::keyShift) key |= Qt::SHIFT;
  if (modifiers & zenlay::keyCtrl) key |= Qt::CTRL;
  if (modifiers & zenlay::keyAlt) key |= Qt::ALT;
  return key;
}

}  // namespace

struct MenuRow {
  ActionId id;
  MenuIndex menu;
  const char* text;
  const char* icon;  // or null
  const char* keys;  // separated by ", "
  void (MainWindow::*run)();
  bool separated = false;  // from the row above
  bool checkable = false;
};

struct MenuTables {
  static constexpr MenuRow rows[] = {
      {ActionId::newProject, menuFile, "&New Project…", platform::iconNew, "Ctrl+N", &MainWindow::newProject},
      {ActionId::open, menuFile, "&Open…", platform::iconOpen, "Ctrl+O", &MainWindow::open},
      {ActionId::save, menuFile, "&Save", platform::iconSave, "Ctrl+S", nullptr, true},
      {ActionId::saveAs, menuFile, "Save &As…", nullptr, "Ctrl+Shift+S", nullptr},
      {ActionId::import, menuFile, "&Import…", platform::iconImport, "Ctrl+I", &MainWindow::importFiles, true},
      {ActionId::exportFilm, menuFile, "&Export…", platform::iconExport, "Ctrl+E", &MainWindow::exportFilm},
      {ActionId::close, menuFile, "&Close", nullptr, "Ctrl+W", &MainWindow::closeFilm, true},
      {ActionId::quit, menuFile, "&Quit", nullptr, "Ctrl+Q", nullptr},
      {ActionId::undo, menuEdit, "&Undo", platform::iconUndo, "Ctrl+Z", &MainWindow::undo},
      {ActionId::cut, menuEdit, "Cu&t", nullptr, "Ctrl+X", &MainWindow::cut, true},
      {ActionId::copy, menuEdit, "&Copy", nullptr, "Ctrl+C", &MainWindow::copy},
      {ActionId::paste, menuEdit, "&Paste", nullptr, "Ctrl+V", &MainWindow::paste},
      {ActionId::remove, menuEdit, "&Delete", nullptr, "Del", &MainWindow::remove},
      {ActionId::zoomFit, menuView, "&Fit Picture", platform::iconFit, "Ctrl+0", &MainWindow::zoomFit},
      {ActionId::zoomWhole, menuView, "&100 %", nullptr, "Ctrl+1", &MainWindow::zoomWhole},
      {ActionId::zoomIn, menuView, "Zoom &In", platform::iconZoomIn, "Ctrl++, Ctrl+=", &MainWindow::zoomIn},
      {ActionId::zoomOut, menuView, "Zoom &Out", platform::iconZoomOut, "Ctrl+-", &MainWindow::zoomOut},
      {ActionId::fullScreen, menuView, "Full &Screen", nullptr, "F11", &MainWindow::toggleFullScreen, true, true},
      {ActionId::arrange, menuView, "&Arrange Windows Anew", nullptr, "", &MainWindow::arrange},
      {ActionId::play, menuPlayback, "&Play", platform::iconPlay, "Space", &MainWindow::togglePlay},
      {ActionId::playSelection, menuPlayback, "Play &Selection", nullptr, "Shift+Space", &MainWindow::playSelection},
      {ActionId::loop, menuPlayback, "&Loop", nullptr, "", &MainWindow::setLoop, false, true},
      {ActionId::toStart, menuPlayback, "To S&tart", platform::iconJumpStart, "Home", &MainWindow::toStart, true},
      {ActionId::frameBack, menuPlayback, "Frame &Back", platform::iconPreviousFrame, "Left", &MainWindow::frameBack},
      {ActionId::frameForward, menuPlayback, "Frame &Forward", platform::iconNextFrame, "Right",
       &MainWindow::frameForward},
      {ActionId::toEnd, menuPlayback, "To &End", platform::iconJumpEnd, "End", &MainWindow::toEnd},
      {ActionId::selectionFirst, menuPlayback, "Selection Begins H&ere", iconMarkIn, "I", &MainWindow::selectionFirst,
       true},
      {ActionId::selectionLast, menuPlayback, "Selection En&ds Here", iconMarkOut, "O", &MainWindow::selectionLast},
      {ActionId::selectAll, menuPlayback, "Select &Whole Film", nullptr, "Ctrl+Shift+A", &MainWindow::selectAll},
      {ActionId::keys, menuHelp, "&Keys", nullptr, "F1", &MainWindow::showKeys},
      {ActionId::about, menuHelp, "&About Cinora", nullptr, "", &MainWindow::showAbout},
  };
};

void MainWindow::createActions() {
  for (const MenuRow& row : MenuTables::rows) {
    auto* action = new QAction(QString::fromUtf8(row.text), this);
    if (row.icon) action->setIcon(platform::qt::themedIcon(row.icon));
    QList<QKeySequence> keys;
    for (const QString& key : QString(row.keys).split(", ", Qt::SkipEmptyParts)) keys.push_back(QKeySequence(key));
    action->setShortcuts(keys);
    action->setCheckable(row.checkable);
    QString tip = action->text().remove('&').remove(QChar(0x2026));
    action->setToolTip(keys.isEmpty() ? tip : tip + " (" + keys.first().toString(QKeySequence::NativeText) + ")");
    if (row.run) connect(action, &QAction::triggered, this, [this, run = row.run] { (this->*run)(); });
    addAction(action);
    actions_[static_cast<int>(row.id)] = action;
  }
  connect(action(ActionId::save), &QAction::triggered, this, [this] { save(); });
  connect(action(ActionId::saveAs), &QAction::triggered, this, [this] { saveAs(); });
  connect(action(ActionId::quit), &QAction::triggered, this, [this] { QWidget::close(); });
}

void MainWindow::createMenus() {
  QMenu* menus[menuCount];
  for (int i = 0; i < menuCount; i++) menus[i] = menuBar()->addMenu(menuTitles[i]);
  for (const MenuRow& row : MenuTables::rows) {
    if (row.separated) menus[row.menu]->addSeparator();
    menus[row.menu]->addAction(action(row.id));
    if (row.id == ActionId::open) menus[row.menu]->addMenu(recentMenu_ = new QMenu("Open &Recent", this));
  }
  pluginMenu_ = menus[menuPlugin];
  pluginMenu_->menuAction()->setVisible(false);
  viewMenu_ = menus[menuView];
  connect(recentMenu_, &QMenu::aboutToShow, this, [this] { fillRecentMenu(); });
}

void MainWindow::fillRecentMenu() {
  recentMenu_->clear();
  for (const std::string& path : session_->recentFiles())
    recentMenu_->addAction(QString::fromStdString(path).replace('&', "&&"), this, [this, path] { openFile(path); });
  recentMenu_->addSeparator();
  recentMenu_->addAction("Clear List", this, [this] { session_->forgetRecentFiles(); });
}

/// The first of two actions with one key has it; the other one only shows it.
void MainWindow::fillPluginMenu() {
  const std::vector<MenuItem>& items = host_->menuItems;
  pluginMenu_->clear();
  pluginMenu_->menuAction()->setVisible(!items.empty());
  if (items.empty()) return;
  pluginMenu_->setTitle(items.front().filter ? items.front().filter->name : "Plug-ins");
  QList<QKeySequence> taken;
  for (QAction* own : actions_) taken += own->shortcuts();
  for (const MenuItem& item : items) {
    bool own = std::find(std::begin(entriesOfOwn), std::end(entriesOfOwn), item.command) != std::end(entriesOfOwn);
    if (own && &item == pluginEntry(item.command)) continue;
    QString text = QString::fromStdString(item.entry).replace('&', "&&");
    QKeySequence keys = sequenceOf(item.key, item.modifiers);
    bool free = !keys.isEmpty() && !taken.contains(keys);
    if (!keys.isEmpty() && !free) text += "\t" + keys.toString(QKeySequence::NativeText);
    QAction* action = pluginMenu_->addAction(text, this, [this, item] { sendPluginCommand(item); });
    if (!free) continue;
    action->setShortcut(keys);
    taken.push_back(keys);
  }
}

/// Keys that reach the main window through a plug-in's window.
bool MainWindow::runKey(int key) {
  intptr_t held = platform::mouseState();
  int modifiers = (held & platform::mouseShift ? int{zenlay::keyShift} : 0) |
                  (held & platform::mouseCtrl ? int{zenlay::keyCtrl} : 0) |
                  (held & platform::mouseAlt ? int{zenlay::keyAlt} : 0);
  QKeySequence keys = sequenceOf(key, modifiers);
  if (keys.isEmpty()) return false;
  for (QAction* action : actions() + pluginMenu_->actions()) {
    if (!action->shortcuts().contains(keys) || !action->isEnabled()) continue;
    QMetaObject::invokeMethod(action, &QAction::trigger, Qt::QueuedConnection);
    return true;
  }
  return false;
}

/// The editor's own; null when it offers none.
const MenuItem* MainWindow::pluginEntry(int command) const {
  const Filter* editor = host_->plugins.editor();
  for (const MenuItem& item : host_->menuItems)
    if (editor && item.filter == editor->record && item.command == command) return &item;
  return nullptr;
}

/// The plug-ins take some commands only when the main window is the active one.
bool MainWindow::sendPluginCommand(const MenuItem& item) {
  if (exporting_) return false;
  const bool done = platform::sendMessage(item.window, zenlay::messageHostCommand, item.command, 0);
  tellMessages();
  return done;
}

bool MainWindow::runPluginCommand(int command) {
  const MenuItem* item = pluginEntry(command);
  if (!item) return false;
  QPointer<QWidget> focus = QApplication::focusWidget();
  platform::focusWindow(frame_);
  const bool done = sendPluginCommand(*item);
  if (focus) focus->setFocus();
  return done;
}

/// What could not be copied stays.
void MainWindow::cut() {
  if (runPluginCommand(zenlay::commandHostCopy)) remove();
}
void MainWindow::copy() { runPluginCommand(zenlay::commandHostCopy); }
void MainWindow::paste() { runPluginCommand(zenlay::commandHostPaste); }
void MainWindow::remove() { runPluginCommand(zenlay::commandHostDelete); }

void MainWindow::undo() {
  Filter* editor = host_->plugins.editor();
  if (editor) platform::sendMessage(editor->window, zenlay::messageHostCommand, zenlay::commandUndoStep, 0);
}

/// Of the plug-in's history; 1 when it doesn't tell.
int MainWindow::undoSteps() const {
  try {
    return std::stoi(askEditor(*host_, zenlay::queryUndoSteps, nullptr));
  } catch (const std::exception&) {
    return 1;
  }
}

void MainWindow::updateActions() {
  bool film = host_ && host_->edit.open, playing = player_ && player_->playing();
  for (ActionId id : {ActionId::save, ActionId::saveAs, ActionId::exportFilm, ActionId::close, ActionId::play,
                      ActionId::playSelection, ActionId::toStart, ActionId::frameBack, ActionId::frameForward,
                      ActionId::toEnd, ActionId::selectionFirst, ActionId::selectionLast, ActionId::selectAll,
                      ActionId::zoomIn, ActionId::zoomOut, ActionId::zoomFit, ActionId::zoomWhole})
    action(id)->setEnabled(film);
  action(ActionId::undo)->setEnabled(film && undoSteps() > 0);
  constexpr std::pair<ActionId, int> entries[] = {{ActionId::cut, zenlay::commandHostDelete},
                                                  {ActionId::copy, zenlay::commandHostCopy},
                                                  {ActionId::paste, zenlay::commandHostPaste},
                                                  {ActionId::remove, zenlay::commandHostDelete}};
  for (const auto& [id, command] : entries) action(id)->setEnabled(film && pluginEntry(command));
  action(ActionId::play)->setIcon(platform::qt::themedIcon(playing ? platform::iconPause : platform::iconPlay));
  action(ActionId::play)->setText(playing ? "&Pause" : "&Play");
}

/// By the plug-in's dialog, which it shows only when nothing is open: what was open is kept until there is an answer.
void MainWindow::newProject() {
  const MenuItem* item = pluginEntry(zenlay::commandNewProject);
  if (!item)
    return tell(host_->plugins.editor() ? "the editing plug-in makes no projects" : host_->plugins.whyNoEditor());
  if (!mayDiscard()) return;
  const std::optional<FilmSession::Kept> before = session_->keep();
  session_->close();
  sendPluginCommand(*item);
  try {
    if (!session_->open()) session_->reopen(before);
  } catch (const std::exception& error) {
    tell(error.what());
  }
  refreshNow();
}

}  // namespace cinora::desktop
