// Controls as widgets. A kind is a row of the table at the foot: how it is made and how it follows its record.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QRadioButton>

#include "platform/qt/buttons.h"
#include "platform/qt/native.h"
#include "platform/qt/sliders.h"
#include "platform/user_input.h"

namespace platform::qt {

namespace {

Qt::Alignment alignmentOf(uint32_t style) {
  return Qt::AlignVCenter | (style & controlRightAligned ? Qt::AlignRight
                             : style & controlCentred    ? Qt::AlignHCenter
                                                         : Qt::AlignLeft);
}

/// The widget of a control that is known to be of that class.
template <typename Widget>
Widget* as(NativeWindow* native) {
  return static_cast<Widget*>(native->widget);
}

// What the user did to a button is told once and then shown as the record has it, which the owner may have changed.
void followClicks(NativeWindow* native) {
  QObject::connect(as<QAbstractButton>(native), &QAbstractButton::clicked, native, [native] {
    Window* window = native->window;
    user::click(window);
    if (windowLives(window) && native->setValue) native->setValue(native);
  });
}

void showChecked(NativeWindow* native) { as<QAbstractButton>(native)->setChecked(controlValue(native->window)); }

constexpr int swatchWidth = 22, swatchHeight = 12, swatchGap = 6;

/// With the square of its record before the text.
struct Label : QLabel {
  using QLabel::QLabel;
  int swatch() const {
    Window* window = windowOf(this);
    return window ? controlSwatch(window) : -1;
  }
  void paintEvent(QPaintEvent* event) override {
    QLabel::paintEvent(event);
    if (swatch() < 0) return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(QColor::fromRgb(static_cast<QRgb>(swatch())));
    painter.drawRect(0, (height() - swatchHeight) / 2, swatchWidth - 1, swatchHeight - 1);
  }
};

QWidget* makeLabel(QWidget* parent, const ControlRecord& record) {
  auto* label = new Label(parent);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(alignmentOf(record.style));
  if (record.style & controlSunken) label->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  return label;
}

QWidget* makeButton(QWidget* parent, const ControlRecord& record) {
  auto* button = new TextButton(parent);
  button->setAutoDefault(false);
  button->setDefault(record.style & controlDefault);
  return button;
}

QWidget* makeToggle(QWidget* parent, const ControlRecord& record) {
  auto* button = static_cast<TextButton*>(makeButton(parent, record));
  button->setCheckable(true);
  return button;
}

QWidget* makeIconButton(QWidget* parent, const ControlRecord&) { return new IconButton(parent); }

QWidget* makeCheckBox(QWidget* parent, const ControlRecord&) { return new QCheckBox(parent); }

QWidget* makeRadioButton(QWidget* parent, const ControlRecord&) {
  auto* button = new QRadioButton(parent);
  button->setAutoExclusive(false);  // the record knows the groups
  return button;
}

QWidget* makeGroupBox(QWidget* parent, const ControlRecord&) {
  auto* box = new QGroupBox(parent);
  box->lower();  // what it frames are its neighbours
  return box;
}

QWidget* makeSeparator(QWidget* parent, const ControlRecord&) { return new Separator(parent); }

constexpr int flatEditMargins = 6;  // left and right of its text together

QWidget* makeEdit(QWidget* parent, const ControlRecord& record) {
  auto* edit = new QLineEdit(parent);
  edit->setAlignment(alignmentOf(record.style));
  edit->setFrame(!(record.style & controlFlat));
  edit->setAcceptDrops(false);  // files go to the window
  if (record.style & controlFlat) {
    edit->setFocusPolicy(Qt::TabFocus);  // a press may be the beginning of a drag
    QObject::connect(edit, &QLineEdit::textChanged, edit, [edit](const QString& text) {
      edit->setFont(narrowed(edit->parentWidget()->font(), text, edit->width() - flatEditMargins));
    });
  }
  if (record.style & controlNumber) {
    edit->setAttribute(Qt::WA_InputMethodEnabled, false);
    edit->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
  }
  return edit;
}

void followEdit(NativeWindow* native) {
  QObject::connect(as<QLineEdit>(native), &QLineEdit::textEdited, native,
                   [native](const QString& text) { user::type(native->window, text.toUtf8().constData()); });
}

void showEditText(NativeWindow* native) {
  auto* edit = as<QLineEdit>(native);
  QString text = QString::fromStdString(windowText(native->window));
  if (edit->text() == text) return;
  int cursor = edit->cursorPosition();
  edit->setText(text);
  edit->setCursorPosition(std::min<int>(cursor, text.size()));
}

QWidget* makeTextBox(QWidget* parent, const ControlRecord&) {
  auto* box = new QPlainTextEdit(parent);
  box->setTabChangesFocus(true);
  box->setAcceptDrops(false);
  box->viewport()->setAcceptDrops(false);
  box->document()->setDocumentMargin(3);
  return box;
}

void followTextBox(NativeWindow* native) {
  auto* box = as<QPlainTextEdit>(native);
  box->viewport()->installEventFilter(native);
  QObject::connect(box, &QPlainTextEdit::textChanged, native,
                   [native, box] { user::type(native->window, box->toPlainText().toUtf8().constData()); });
}

void showTextBoxText(NativeWindow* native) {
  auto* box = as<QPlainTextEdit>(native);
  QString text = QString::fromStdString(windowText(native->window));
  if (box->toPlainText() == text) return;
  QSignalBlocker quiet(box);
  int position = box->textCursor().position();
  box->setPlainText(text);
  QTextCursor cursor = box->textCursor();
  cursor.setPosition(std::min<int>(position, text.size()));
  box->setTextCursor(cursor);
}

QWidget* makeComboBox(QWidget* parent, const ControlRecord&) {
  auto* box = new QComboBox(parent);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMaxVisibleItems(24);
  return box;
}

void followComboBox(NativeWindow* native) {
  QObject::connect(as<QComboBox>(native), &QComboBox::activated, native,
                   [native](int index) { user::choose(native->window, index); });
}

void showChoice(NativeWindow* native) {
  QSignalBlocker quiet(native->widget);
  as<QComboBox>(native)->setCurrentIndex(controlValue(native->window));
}

void showChoices(NativeWindow* native) {
  QSignalBlocker quiet(native->widget);
  as<QComboBox>(native)->clear();
  for (const std::string& item : native->window->control->items)
    as<QComboBox>(native)->addItem(QString::fromStdString(item));
  showChoice(native);
}

/// Nothing is chosen by the focus alone.
struct ListBox : QListWidget {
  using QListWidget::QListWidget;
  void focusInEvent(QFocusEvent*) override { viewport()->update(); }
};

QWidget* makeListBox(QWidget* parent, const ControlRecord&) {
  auto* list = new ListBox(parent);
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list->setUniformItemSizes(true);
  return list;
}

void followListBox(NativeWindow* native) {
  auto* list = as<QListWidget>(native);
  list->viewport()->installEventFilter(native);
  QObject::connect(list, &QListWidget::currentRowChanged, native,
                   [native](int row) { user::choose(native->window, row); });
  QObject::connect(list, &QListWidget::itemDoubleClicked, native,
                   [native](QListWidgetItem*) { user::doubleClick(native->window); });
}

void showRow(NativeWindow* native) {
  QSignalBlocker quiet(native->widget);
  as<QListWidget>(native)->setCurrentRow(controlValue(native->window));
}

void showRows(NativeWindow* native) {
  QSignalBlocker quiet(native->widget);
  as<QListWidget>(native)->clear();
  for (const std::string& item : native->window->control->items)
    as<QListWidget>(native)->addItem(QString::fromStdString(item));
  showRow(native);
}

QWidget* makeTrackBar(QWidget* parent, const ControlRecord&) { return new TrackBar(Qt::Horizontal, parent); }
QWidget* makeSpinButton(QWidget* parent, const ControlRecord&) { return new SpinButton(parent); }
QWidget* makeHorizontalScrollBar(QWidget* parent, const ControlRecord&) {
  return new ScrollBar(Qt::Horizontal, parent);
}
QWidget* makeVerticalScrollBar(QWidget* parent, const ControlRecord&) { return new ScrollBar(Qt::Vertical, parent); }

void followTrackBar(NativeWindow* native) { as<TrackBar>(native)->follow(native); }
void followSpinButton(NativeWindow* native) { as<SpinButton>(native)->native = native; }
void followScrollBar(NativeWindow* native) { as<ScrollBar>(native)->follow(native); }

void showPosition(NativeWindow* native) {
  QSignalBlocker quiet(native->widget);
  as<QAbstractSlider>(native)->setValue(controlValue(native->window));
  native->widget->update();
}

void showTrackRange(NativeWindow* native) {
  QSignalBlocker quiet(native->widget);
  const ControlRecord& record = *native->window->control;
  as<QAbstractSlider>(native)->setRange(record.minimum, record.maximum);
  as<QAbstractSlider>(native)->setPageStep(record.page);
  showPosition(native);
}

void showScrollRange(NativeWindow* native) {
  QSignalBlocker quiet(native->widget);
  const ControlRecord& record = *native->window->control;
  int page = std::max(record.page, 1);
  auto last = std::max<int64_t>(int64_t{record.maximum} - page + 1, record.minimum);
  as<QAbstractSlider>(native)->setRange(record.minimum, static_cast<int>(last));
  as<QAbstractSlider>(native)->setPageStep(page);
  showPosition(native);
}

void showLabelText(NativeWindow* native) {
  as<QLabel>(native)->setText(QString::fromStdString(windowText(native->window)));
}
void showButtonText(NativeWindow* native) {
  as<QAbstractButton>(native)->setText(plainText(windowText(native->window)));
}
void showTitle(NativeWindow* native) { as<QGroupBox>(native)->setTitle(plainText(windowText(native->window))); }

using Follow = void (*)(NativeWindow*);

/// In the order of ControlKind.
struct KindRow {
  QWidget* (*make)(QWidget* parent, const ControlRecord&);
  Follow connect;  // its signals
  Follow showText, showValue, showRange, showItems;
};
constexpr KindRow kinds[] = {
    {makeLabel, nullptr, showLabelText},
    {makeButton, followClicks, showButtonText},
    {makeToggle, followClicks, showButtonText, showChecked},
    {makeIconButton, followClicks, nullptr, showChecked},
    {makeCheckBox, followClicks, showButtonText, showChecked},
    {makeRadioButton, followClicks, showButtonText, showChecked},
    {makeGroupBox, nullptr, showTitle},
    {makeSeparator, nullptr},
    {makeEdit, followEdit, showEditText},
    {makeComboBox, followComboBox, nullptr, showChoice, nullptr, showChoices},
    {makeListBox, followListBox, nullptr, showRow, nullptr, showRows},
    {makeTrackBar, followTrackBar, nullptr, showPosition, showTrackRange},
    {makeSpinButton, followSpinButton},
    {makeHorizontalScrollBar, followScrollBar, nullptr, showPosition, showScrollRange},
    {makeVerticalScrollBar, followScrollBar, nullptr, showPosition, showScrollRange},
};
static_assert(std::size(kinds) == controlVerticalScrollBar + 1);

constexpr KindRow textBox{makeTextBox, followTextBox, showTextBoxText};

const KindRow& kindOf(Window* control) {
  const ControlRecord& record = *control->control;
  return record.kind == controlEdit && (record.style & controlMultiLine) ? textBox : kinds[record.kind];
}
void run(Follow follow, Window* control) {
  if (follow) follow(control->native);
}

/// Outside of dialogs a click on a button or slider leaves the keys with the window.
void leaveKeysToWindow(Window* control, QWidget* widget) {
  if (control->owner->style & windowDialog || !(widget->focusPolicy() & Qt::ClickFocus)) return;
  if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QAbstractSlider*>(widget))
    widget->setFocusPolicy(Qt::TabFocus);
}

}  // namespace

void createControl(Window* control) {
  const KindRow& kind = kindOf(control);
  QWidget* widget = kind.make(control->owner->native->widget, *control->control);
  auto* native = new NativeWindow(control, widget);
  native->setValue = kind.showValue;
  widget->installEventFilter(native);
  widget->setGeometry(toQt(control->place));
  leaveKeysToWindow(control, widget);
  run(kind.connect, control);
  run(kind.showText, control);
  run(kind.showRange, control);
  applyColours(control);
  widget->setVisible(control->shown);
}

void setControlText(Window* control) { run(kindOf(control).showText, control); }
void setValue(Window* control) { run(kindOf(control).showValue, control); }
void setRange(Window* control) { run(kindOf(control).showRange, control); }
void setItems(Window* control) { run(kindOf(control).showItems, control); }

void setIcon(Window* control) {
  if (control->control->kind == controlIconButton)
    as<IconButton>(control->native)->update();
  else if (auto* button = qobject_cast<QAbstractButton*>(control->native->widget))
    button->setIcon(themedIcon(control->control->icon.c_str()));
}

void setTip(Window* control) {
  control->native->widget->setToolTip(QString::fromStdString(control->control->tip).toHtmlEscaped());
}

void setMuted(Window* control) { applyColours(control); }

void setSwatch(Window* control) {
  if (auto* label = qobject_cast<QLabel*>(control->native->widget))
    label->setIndent(controlSwatch(control) < 0 ? -1 : swatchWidth + swatchGap);
  control->native->widget->update();
}

void applyColours(Window* control) {
  const ControlRecord& record = *control->control;
  bool flat = record.kind == controlEdit && (record.style & controlFlat);
  QWidget* widget = control->native->widget;
  QPalette palette;
  if (flat) palette.setColor(QPalette::Base, palette.color(QPalette::Window));
  if (record.muted)
    for (auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
      palette.setColor(role, QColor::fromRgb(systemColor(colorGreyText)));
  if (flat || record.muted || widget->testAttribute(Qt::WA_SetPalette)) widget->setPalette(palette);
}

void selectText(Window* control) {
  const ControlRecord& record = *control->control;
  QWidget* widget = control->native->widget;
  int length = static_cast<int>(QString::fromStdString(control->text).size());
  int first = std::clamp(record.selectionFirst, 0, length), last = std::clamp(record.selectionLast, 0, length);
  if (auto* edit = qobject_cast<QLineEdit*>(widget)) edit->setSelection(first, last - first);
  if (auto* box = qobject_cast<QPlainTextEdit*>(widget)) {
    QTextCursor cursor = box->textCursor();
    cursor.setPosition(first);
    cursor.setPosition(last, QTextCursor::KeepAnchor);
    box->setTextCursor(cursor);
  }
}

void setDropWidth(Window* control) {
  if (auto* box = qobject_cast<QComboBox*>(control->native->widget))
    box->view()->setMinimumWidth(control->control->dropWidth);
}

}  // namespace platform::qt
