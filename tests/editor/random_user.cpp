#include "tests/editor/random_user.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QWheelEvent>

namespace cinora::test {
namespace {

constexpr size_t logLines = 60;
constexpr int maxAnswers = 300;  // events after which a dialog counts as stuck

constexpr const char* files[] = {"picture.png", "video.mp4",   "sound.wav",   "soft.zla",           "chain.zla",
                                 "film.zlo",    "small.zlo",   "film.cnp",    "film.zenlay_backup", "garbage.png",
                                 "garbage.mp4", "garbage.zla", "garbage.zlo", "garbage.cnp",        "empty.wav",
                                 "text.txt",    "missing.png", "folder.png"};
constexpr const char* savedAs[] = {"out.cnp", "out.zlo", "out.zenlay_backup",
                                   "out.mp4", "out.zla", "no/folder/out.cnp"};

constexpr auto ctrl = Qt::ControlModifier;
constexpr auto shift = Qt::ShiftModifier;
constexpr const char* strokes[] = {"Left",   "Right",     "Up",     "Down",        "Ctrl+Left", "Shift+Right",
                                   "Home",   "End",       "Space",  "Shift+Space", "Return",    "Esc",
                                   "Tab",    "Shift+Tab", "Del",    "Backspace",   "S",         "P",
                                   "E",      "G",         "V",      "Q",           "I",         "O",
                                   ".",      ",",         "'",      "\\",          "F5",        "F11",
                                   "1",      "5",         "-",      "Ctrl+C",      "Ctrl+V",    "Ctrl+V",
                                   "Ctrl+X", "Ctrl+Z",    "Ctrl+Z", "Ctrl+D",      "Ctrl+S",    "Ctrl+Shift+A",
                                   "Ctrl++", "Ctrl+0",    "PgDown", "F10",         "Control",   "Alt"};

std::vector<QWidget*> shownChildren(const QWidget* parent) {
  std::vector<QWidget*> shown;
  for (QWidget* child : parent->findChildren<QWidget*>())
    if (child->isVisible() && child->window() == parent->window()) shown.push_back(child);
  return shown;
}

void collectActions(QMenu* menu, std::vector<QAction*>& all) {
  menu->aboutToShow();
  for (QAction* action : menu->actions()) {
    if (action->menu()) collectActions(action->menu(), all);
    if (!action->menu() && !action->isSeparator() && action->isEnabled()) all.push_back(action);
  }
}

}  // namespace

RandomUser::RandomUser(EditorStage& stage, uint32_t seed) : stage_(stage), random_(seed) {}

bool RandomUser::idle() const {
  return held_ == Qt::NoButton && !QApplication::activePopupWidget() && !QApplication::activeModalWidget();
}

std::string RandomUser::recently() const {
  std::string lines;
  for (const std::string& line : log_) lines += line + "\n";
  return lines;
}

void RandomUser::note(const std::string& kind, const std::string& detail) {
  done_.insert(kind);
  log_.push_back(kind + " " + detail);
  if (log_.size() > logLines) log_.pop_front();
}

Qt::KeyboardModifiers RandomUser::someModifiers() {
  const Qt::KeyboardModifiers some[] = {ctrl, shift, ctrl | shift, Qt::AltModifier};
  return below(5) ? Qt::NoModifier : some[below(std::size(some))];
}

std::string RandomUser::someFile() { return stage_.folder / files[below(std::size(files))]; }

/// Mostly the timeline, the settings and the picture.
QWidget* RandomUser::somePlace() {
  desktop::MainWindow& window = stage_.window();
  int choice = below(12);
  auto* timeline = window.findChild<QDockWidget*>("Zenlay");
  auto* settings = window.findChild<QScrollArea*>();
  if (choice < 5 && timeline && timeline->widget()->isVisible()) return timeline->widget();
  if (choice < 8 && settings && settings->isVisible()) {
    std::vector<QWidget*> controls = shownChildren(settings->widget());
    if (!controls.empty()) return controls[below(static_cast<int>(controls.size()))];
  }
  if (choice < 10 && window.preview().isVisible()) return &window.preview();
  std::vector<QWidget*> all = shownChildren(&window);
  return all.empty() ? &window : all[below(static_cast<int>(all.size()))];
}

/// In the timeline mostly where the objects of a short film lie.
QPoint RandomUser::somePoint(const QWidget* widget) {
  QSize size = widget->size();
  if (size.height() > 100 && below(2)) size = QSize(std::min(size.width(), 400), std::min(size.height(), 200));
  return {below(std::max(size.width(), 1)), below(std::max(size.height(), 1))};
}

QPoint RandomUser::onWindow(const QWidget* widget, QPoint at) const {
  QPoint point = widget->mapTo(widget->window(), at);
  QSize size = widget->window()->windowHandle() ? widget->window()->windowHandle()->size() : widget->window()->size();
  return {std::clamp(point.x(), 0, size.width() - 1), std::clamp(point.y(), 0, size.height() - 1)};
}

void RandomUser::openFilm() {
  note("open the film");
  stage_.window().openFile(stage_.folder / "film.zlo");
}

// ---- What may be done at any time ----

void RandomUser::act() {
  if (QWidget* popup = QApplication::activePopupWidget()) return actOnPopup(popup);
  if (QWidget* dialog = QApplication::activeModalWidget()) return answer(dialog);
  actFreely();
}

void RandomUser::leave() {
  if (QWidget* popup = QApplication::activePopupWidget()) {
    popup->close();
  } else if (QWidget* dialog = QApplication::activeModalWidget()) {
    patience_ = std::min(patience_, -1);
    answer(dialog);
  } else if (held_ != Qt::NoButton) {
    release();
  }
}

void RandomUser::actFreely() {
  if (!stage_.host().edit.open && below(4) == 0) return openFilm();
  using Act = void (RandomUser::*)();
  struct Row {
    int weight;
    Act act;
  };
  static constexpr Row rows[] = {{10, &RandomUser::move},         {5, &RandomUser::press},
                                 {5, &RandomUser::release},       {10, &RandomUser::pressKey},
                                 {2, &RandomUser::turnWheel},     {1, &RandomUser::dropFile},
                                 {3, &RandomUser::triggerAction}, {1, &RandomUser::resize}};
  int choice = below(45);
  for (const Row& row : rows)
    if ((choice -= row.weight) < 0) return (this->*row.act)();
  QWidget* place = somePlace();
  if (choice < 3) return click(place, Qt::LeftButton, true);
  if (choice < 6) return click(place, Qt::RightButton, false);
  typeValue(stage_.window().findChild<QScrollArea*>());
}

void RandomUser::press() {
  if (held_ != Qt::NoButton) return release();
  QWidget* place = somePlace();
  pressedOn_ = place->window()->windowHandle();
  if (!pressedOn_) return;
  held_ = below(8) ? Qt::LeftButton : Qt::MiddleButton;
  mouse_ = onWindow(place, somePoint(place));
  note("press", place->metaObject()->className() + std::to_string(mouse_.x()) + "," + std::to_string(mouse_.y()));
  QTest::mousePress(pressedOn_, held_, someModifiers(), mouse_);
}

/// A drag goes on in small steps.
void RandomUser::move() {
  QWindow* window = stage_.window().windowHandle();
  if (held_ != Qt::NoButton) {
    if (!pressedOn_) return release();
    window = pressedOn_;
    mouse_ += QPoint(below(60) - 30, below(40) - 20);
  } else {
    QWidget* place = somePlace();
    window = place->window()->windowHandle();
    mouse_ = onWindow(place, somePoint(place));
  }
  if (!window) return;
  mouse_ = {std::clamp(mouse_.x(), 0, window->width() - 1), std::clamp(mouse_.y(), 0, window->height() - 1)};
  note(held_ != Qt::NoButton ? "drag" : "move", std::to_string(mouse_.x()) + "," + std::to_string(mouse_.y()));
  QTest::mouseMove(window, mouse_);
}

void RandomUser::release() {
  Qt::MouseButton button = std::exchange(held_, Qt::NoButton);
  if (button == Qt::NoButton || !pressedOn_) return;
  note("release");
  QTest::mouseRelease(pressedOn_, button, someModifiers(), mouse_);
}

void RandomUser::click(QWidget* place, Qt::MouseButton button, bool twice) {
  if (held_ != Qt::NoButton && button == Qt::LeftButton) return release();
  QWindow* window = place->window()->windowHandle();
  if (!window) return;
  QPoint at = onWindow(place, somePoint(place));
  note(button == Qt::RightButton ? "right click"
       : twice                   ? "double click"
                                 : "click",
       place->metaObject()->className() + std::to_string(at.x()) + "," + std::to_string(at.y()));
  if (twice) return QTest::mouseDClick(window, button, someModifiers(), at);
  QTest::mouseClick(window, button, someModifiers(), at);
}

void RandomUser::turnWheel() {
  QWidget* place = somePlace();
  QWindow* window = place->window()->windowHandle();
  if (!window) return;
  note("wheel");
  QPointF at = onWindow(place, somePoint(place));
  QWheelEvent event(at, window->mapToGlobal(at), {}, {0, below(2) ? 120 : -120}, {}, someModifiers(), Qt::NoScrollPhase,
                    false);
  QApplication::sendEvent(window, &event);
}

void RandomUser::pressKey() {
  QWindow* window = QGuiApplication::focusWindow();
  if (!window) return stage_.window().activateWindow();
  const char* name = strokes[below(std::size(strokes))];
  const QKeyCombination stroke = QKeySequence(name)[0];
  note("key", name);
  if (below(6) == 0) return QTest::keyPress(window, stroke.key(), stroke.keyboardModifiers());
  QTest::keyClick(window, stroke.key(), stroke.keyboardModifiers());
}

/// Into a box, with a key that leaves it.
void RandomUser::typeValue(QWidget* among) {
  static constexpr const char* values[] = {"1", "0", "7", "25", "-5", "48", "64", "12.5", "99999999999", "abc", ""};
  if (!among) return;
  std::vector<QLineEdit*> boxes;
  for (QLineEdit* box : among->findChildren<QLineEdit*>())
    if (box->isVisible() && box->isEnabled()) boxes.push_back(box);
  if (boxes.empty()) return;
  QPointer<QLineEdit> box = boxes[below(static_cast<int>(boxes.size()))];
  const char* value = values[below(std::size(values))];
  note("type", value);
  box->setFocus();
  QWindow* window = QGuiApplication::focusWindow();
  if (!window) return;
  QTest::keyClick(window, Qt::Key_A, ctrl);
  for (const char* c = value; *c; c++) QTest::keyClick(window, *c);
  if (below(3) && box) QTest::keyClick(window, below(2) ? Qt::Key_Return : Qt::Key_Tab);
}

void RandomUser::dropFile() {
  QWidget* place = somePlace();
  QWindow* window = place->window()->windowHandle();
  if (!window || QApplication::activeModalWidget()) return;  // a window system delivers nothing then
  QMimeData data;
  QList<QUrl> urls;
  for (int i = below(8) ? 1 : 2; i > 0; i--) urls.push_back(QUrl::fromLocalFile(QString::fromStdString(someFile())));
  data.setUrls(urls);
  note("drop", urls.front().fileName().toStdString());
  QPointF at = onWindow(place, somePoint(place));
  QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(window, &enter);
  QDragMoveEvent over(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(window, &over);
  if (!over.isAccepted()) {
    QDragLeaveEvent left;
    QApplication::sendEvent(window, &left);
    return;
  }
  QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(window, &drop);
}

/// Rarely one that begins anew.
void RandomUser::triggerAction() {
  std::vector<QAction*> all;
  for (QAction* entry : stage_.window().menuBar()->actions())
    if (entry->menu()) collectActions(entry->menu(), all);
  QAction* action = all[below(static_cast<int>(all.size()))];
  for (ActionId id : {ActionId::quit, ActionId::close, ActionId::newProject, ActionId::open})
    if (action == stage_.window().action(id) && below(4)) return;
  note("menu " + action->text().remove('&').toStdString());
  action->trigger();
}

void RandomUser::resize() {
  note("resize");
  desktop::MainWindow& window = stage_.window();
  if (below(3)) return window.resize(300 + below(1200), 200 + below(800));
  for (QDockWidget* dock : window.findChildren<QDockWidget*>())
    if (below(2)) dock->setFloating(below(3) == 0);
}

// ---- What asks ----

void RandomUser::actOnPopup(QWidget* popup) {
  auto* menu = qobject_cast<QMenu*>(popup);
  if (menu && below(3) == 0) return chooseEntry(menu);
  QWindow* window = popup->windowHandle();
  static constexpr Qt::Key keys[] = {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Right, Qt::Key_Left};
  switch (below(8)) {
    case 0:
      return dropFile();
    case 1:
      note("popup closed");
      popup->close();
      return;
    case 2:
      if (window) click(popup, Qt::LeftButton, false);
      return;
    case 3:
      if (window) QTest::keyClick(window, Qt::Key_Escape);
      return;
    default:
      note("popup key");
      if (window) QTest::keyClick(window, keys[below(std::size(keys))]);
  }
}

void RandomUser::chooseEntry(QMenu* menu) {
  std::vector<QAction*> entries;
  for (QAction* action : menu->actions())
    if (action->isEnabled() && !action->isSeparator()) entries.push_back(action);
  QWindow* window = menu->windowHandle();
  if (entries.empty() || !window) {
    menu->close();
    return;
  }
  QAction* entry = entries[below(static_cast<int>(entries.size()))];
  note("entry " + entry->text().toStdString());
  menu->setActiveAction(entry);
  QTest::keyClick(window, Qt::Key_Return);
}

void RandomUser::answer(QWidget* dialog) {
  if (dialog != asking_) {
    asking_ = dialog;
    patience_ = below(8);
    const char* kind = dialog->metaObject()->className();
    note(std::string("dialog ") + (dialog->windowTitle().isEmpty() ? kind : dialog->windowTitle().toStdString()));
  }
  if (dialog->findChild<QProgressBar*>() && patience_ > 0 && below(30)) return;  // looks on
  bool mayFumble = !qobject_cast<QFileDialog*>(dialog);  // there files can be renamed and deleted
  if (patience_-- > 0 && mayFumble) return fumble(dialog);
  if (patience_ < -maxAnswers) stuck_ = "the dialog \"" + dialog->windowTitle().toStdString() + "\" stays";
  end(dialog);
}

void RandomUser::fumble(QWidget* dialog) {
  std::vector<QWidget*> children = shownChildren(dialog);
  switch (below(6)) {
    case 0:
      return typeValue(dialog);
    case 1:
      return click(somePlace(), Qt::LeftButton, false);  // behind it
    case 2:
      return pressKey();
    case 3:
      return click(dialog, below(4) ? Qt::LeftButton : Qt::RightButton, below(4) == 0);
    default:
      if (!children.empty()) click(children[below(static_cast<int>(children.size()))], Qt::LeftButton, false);
  }
}

void RandomUser::end(QWidget* dialog) {
  QWindow* window = dialog->windowHandle();
  if (!window) return;
  if (auto* files = qobject_cast<QFileDialog*>(dialog); files && below(4)) {
    bool saves = files->acceptMode() == QFileDialog::AcceptSave;
    std::string path = saves ? stage_.folder / savedAs[below(std::size(savedAs))] : someFile();
    note("choose", path);
    files->selectFile(QString::fromStdString(path));
    return static_cast<QDialog*>(files)->accept();
  }
  std::vector<QAbstractButton*> buttons;
  for (QWidget* child : shownChildren(dialog))
    if (auto* button = qobject_cast<QPushButton*>(child); button && button->isEnabled()) buttons.push_back(button);
  note("end dialog");
  if (patience_ < -20 || buttons.empty() || qobject_cast<QFileDialog*>(dialog) || below(3) == 0)
    QTest::keyClick(window, patience_ < -20 || below(2) ? Qt::Key_Escape : Qt::Key_Return);
  else
    click(buttons[below(static_cast<int>(buttons.size()))], Qt::LeftButton, false);
}

}  // namespace cinora::test
