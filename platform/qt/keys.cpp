// Keys by their virtual-key numbers, and their way through hooks and windows before anything of Qt's sees them.
#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>

#include "platform/qt/native.h"
#include "platform/user_input.h"

namespace platform::qt {

namespace {

struct KeyRow {
  int qt;
  int number;
};
constexpr KeyRow keys[] = {
    {Qt::Key_Backspace, keyBackspace},
    {Qt::Key_Tab, keyTab},
    {Qt::Key_Backtab, keyTab},
    {Qt::Key_Return, keyEnter},
    {Qt::Key_Enter, keyEnter},
    {Qt::Key_Shift, keyShift},
    {Qt::Key_Control, keyCtrl},
    {Qt::Key_Alt, keyAlt},
    {Qt::Key_AltGr, keyAlt},
    {Qt::Key_Pause, 0x13},
    {Qt::Key_CapsLock, 0x14},
    {Qt::Key_Escape, keyEscape},
    {Qt::Key_Space, keySpace},
    {Qt::Key_PageUp, keyPageUp},
    {Qt::Key_PageDown, keyPageDown},
    {Qt::Key_End, keyEnd},
    {Qt::Key_Home, keyHome},
    {Qt::Key_Left, keyLeft},
    {Qt::Key_Up, keyUp},
    {Qt::Key_Right, keyRight},
    {Qt::Key_Down, keyDown},
    {Qt::Key_Print, 0x2C},
    {Qt::Key_Insert, keyInsert},
    {Qt::Key_Delete, keyDelete},
    {Qt::Key_Meta, 0x5B},
    {Qt::Key_Menu, 0x5D},
    {Qt::Key_NumLock, 0x90},
    {Qt::Key_ScrollLock, 0x91},
    {Qt::Key_Semicolon, keySemicolon},
    {Qt::Key_Colon, keySemicolon},
    {Qt::Key_Equal, keyPlus},
    {Qt::Key_Plus, keyPlus},
    {Qt::Key_Comma, keyComma},
    {Qt::Key_Less, keyComma},
    {Qt::Key_Minus, keyMinus},
    {Qt::Key_Underscore, keyMinus},
    {Qt::Key_Period, keyPeriod},
    {Qt::Key_Greater, keyPeriod},
    {Qt::Key_Slash, keySlash},
    {Qt::Key_Question, keySlash},
    {Qt::Key_QuoteLeft, keyBackquote},
    {Qt::Key_AsciiTilde, keyBackquote},
    {Qt::Key_BracketLeft, keyOpenBracket},
    {Qt::Key_BraceLeft, keyOpenBracket},
    {Qt::Key_Backslash, keyBackslash},
    {Qt::Key_Bar, keyBackslash},
    {Qt::Key_BracketRight, keyCloseBracket},
    {Qt::Key_BraceRight, keyCloseBracket},
    {Qt::Key_Apostrophe, keyQuote},
    {Qt::Key_QuoteDbl, keyQuote},
    {Qt::Key_Exclam, '1'},
    {Qt::Key_At, '2'},
    {Qt::Key_NumberSign, '3'},
    {Qt::Key_Dollar, '4'},
    {Qt::Key_Percent, '5'},
    {Qt::Key_AsciiCircum, '6'},
    {Qt::Key_Ampersand, '7'},
    {Qt::Key_Asterisk, '8'},
    {Qt::Key_ParenLeft, '9'},
    {Qt::Key_ParenRight, '0'},
};
constexpr KeyRow keypadKeys[] = {
    {Qt::Key_Asterisk, keyMultiply}, {Qt::Key_Plus, keyAdd},      {Qt::Key_Minus, keySubtract},
    {Qt::Key_Period, keyDecimal},    {Qt::Key_Comma, keyDecimal}, {Qt::Key_Slash, keyDivide},
};

/// By the place of the key, for layouts whose keys carry no Latin letters or give digits only with Shift. Scan codes of
/// X and Wayland: 8 more than the kernel's.
struct PlaceRow {
  quint32 first;
  const char* keys;
};
constexpr PlaceRow places[] = {{10, "1234567890"}, {24, "QWERTYUIOP"}, {38, "ASDFGHJKL"}, {52, "ZXCVBNM"}};

int keyAtPlace(quint32 scanCode) {
  for (const PlaceRow& row : places)
    if (scanCode >= row.first && scanCode < row.first + strlen(row.keys)) return row.keys[scanCode - row.first];
  return 0;
}

template <size_t n>
int find(const KeyRow (&rows)[n], int key) {
  for (const KeyRow& row : rows)
    if (row.qt == key) return row.number;
  return 0;
}

/// Whether typing goes into it.
bool takesText(Window* window) {
  ControlKind kind = controlKind(window);
  return window->control && (kind == controlEdit || kind == controlComboBox || kind == controlListBox);
}

/// The window whose key this is: not the one that a key climbs to after a control in it made nothing of it.
Window* targetOf(QObject* receiver) {
  if (!receiver->isWidgetType()) return nullptr;
  auto* widget = static_cast<QWidget*>(receiver);
  NativeWindow* native = nativeOf(widget);
  QWidget* focus = QApplication::focusWidget();
  if (native && !native->attached)
    return focus && focus != widget && widget->isAncestorOf(focus) ? nullptr : native->window;
  Window* window = windowOf(widget);
  return widget == focus && window && nativeOf(window)->attached ? window : nullptr;
}

/// Enter does what Space does.
bool pressButton(Window* window) {
  auto* button = qobject_cast<QAbstractButton*>(widgetOf(window));
  if (button) button->click();
  return button;
}

struct KeyRouter : QObject {
  bool eventFilter(QObject*, QEvent*) override;
  bool route(Window*, const QKeyEvent*);
  QElapsedTimer sinceKey;  // since the last key was dealt with
};

bool KeyRouter::eventFilter(QObject* receiver, QEvent* event) {
  QEvent::Type type = event->type();
  if (type != QEvent::KeyPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride) return false;
  Window* window = targetOf(receiver);
  if (!window) return false;
  auto* key = static_cast<QKeyEvent*>(event);
  if (type != QEvent::ShortcutOverride) return route(window, key);
  // Keys of the windows are theirs before they are shortcuts of the program around them; its menus keep Alt and letter.
  bool menuKey = (key->modifiers() & Qt::AltModifier) && !key->text().isEmpty();
  bool tab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;  // a text box leaves it to shortcuts
  if (nativeOf(window)->attached || (takesText(window) && !tab) || menuKey) return false;
  event->accept();
  return true;
}

/// True when Qt is not to see the key.
bool KeyRouter::route(Window* window, const QKeyEvent* event) {
  bool down = event->type() == QEvent::KeyPress;
  bool repeats = event->isAutoRepeat();
  bool attached = nativeOf(window)->attached, plain = !attached && !window->control;
  if (repeats && !down) return !attached && !window->control;  // the key has not come up
  int number = virtualKey(static_cast<Qt::Key>(event->key()), event->modifiers(), event->nativeScanCode());
  if (!number) return plain;
  // One that has waited while the last was dealt with has another behind it.
  if (repeats && plain && sinceKey.isValid() && sinceKey.elapsed() < 2) return true;
  if (!attached && !windowEnabled(topLevelWindow(window))) return true;
  reportFocus(window);
  if (number != keyShift && number != keyCtrl && number != keyAlt)
    user::holdModifiers(stateOf(event->modifiers(), Qt::NoButton));
  bool taken = attached ? runKeyHooks(number, down) : user::key(number, down, repeats);
  sinceKey.start();
  if (!taken && down && !repeats && number == keyEnter && pressButton(window)) return true;
  return taken;
}

KeyRouter* router;

}  // namespace

int virtualKey(Qt::Key key, Qt::KeyboardModifiers modifiers, quint32 scanCode) {
  if (modifiers & Qt::KeypadModifier) {
    if (key >= Qt::Key_0 && key <= Qt::Key_9) return int{keyNumpad0} + (key - Qt::Key_0);
    if (int number = find(keypadKeys, key)) return number;
    return find(keys, key);
  }
  bool letter = key >= Qt::Key_A && key <= Qt::Key_Z, digit = key >= Qt::Key_0 && key <= Qt::Key_9;
  if (letter || digit) return key;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return int{keyF1} + (key - Qt::Key_F1);
  bool named = key >= Qt::Key_Escape || key == Qt::Key_Space;
  if (int placed = named ? 0 : keyAtPlace(scanCode)) return placed;
  return find(keys, key);
}

void startKeys() { qApp->installEventFilter(router = new KeyRouter); }

void stopKeys() {
  delete router;
  router = nullptr;
}

}  // namespace platform::qt
