// What waits for the user: message boxes and modal dialogs.
#include <QFontMetricsF>
#include <QMessageBox>
#include <QPushButton>

#include "platform/qt/native.h"

namespace platform::qt {

namespace {

/// Buttons in bits 0..3 of a box's style, in the order in which bits 8..9 number them.
struct ButtonRow {
  BoxResult buttons[3];
  int count;
};
constexpr ButtonRow buttonRows[] = {
    {{boxOk}, 1},
    {{boxOk, boxCancel}, 2},
    {{boxAbort, boxRetry, boxIgnore}, 3},
    {{boxYes, boxNo, boxCancel}, 3},
    {{boxYes, boxNo}, 2},
    {{boxRetry, boxCancel}, 2},
};

QMessageBox::StandardButton buttonOf(BoxResult result) {
  static constexpr QMessageBox::StandardButton buttons[] = {QMessageBox::Ok,    QMessageBox::Cancel, QMessageBox::Abort,
                                                            QMessageBox::Retry, QMessageBox::Ignore, QMessageBox::Yes,
                                                            QMessageBox::No};
  return buttons[result - boxOk];
}

QMessageBox::Icon iconOf(uint32_t style) {
  static constexpr QMessageBox::Icon icons[] = {QMessageBox::NoIcon, QMessageBox::Critical, QMessageBox::Question,
                                                QMessageBox::Warning, QMessageBox::Information};
  uint32_t index = style >> 4 & 15;
  return index < std::size(icons) ? icons[index] : QMessageBox::NoIcon;
}

}  // namespace

int messageBox(Window* owner, const char* text, const char* caption, uint32_t style) {
  releaseMouse();
  QWidget* parent = widgetOf(owner);
  Window* focused = focusedWindow();
  const ButtonRow& row = buttonRows[std::min<uint32_t>(style & 15, std::size(buttonRows) - 1)];
  QPointer<QMessageBox> box = new QMessageBox(parent ? parent->window() : nullptr);
  box->setWindowTitle(QString::fromUtf8(caption));
  box->setTextFormat(Qt::PlainText);
  box->setText(QString::fromUtf8(text));
  box->setIcon(iconOf(style));
  for (int i = 0; i < row.count; i++) box->addButton(buttonOf(row.buttons[i]));
  box->setDefaultButton(buttonOf(row.buttons[std::min<int>(style >> 8 & 3, row.count - 1)]));
  box->setEscapeButton(buttonOf(refusalOf(style)));
  int pressed = box->exec();
  delete box;
  holdPresentModifiers();
  if (focused) focusWindow(focused);
  for (int i = 0; i < row.count; i++)
    if (buttonOf(row.buttons[i]) == pressed) return row.buttons[i];
  return refusalOf(style);
}

void runModal(Window* dialog) {
  QPointer<NativeWindow> native = nativeOf(dialog);
  if (!native) return;
  QEventLoop loop;
  native->modal = &loop;
  loop.exec(QEventLoop::DialogExec);
  holdPresentModifiers();
  if (native) native->modal = nullptr;
}

void endModal(Window* dialog) {
  if (NativeWindow* native = nativeOf(dialog); native && native->modal) native->modal->quit();
}

Size dialogUnits() {
  static const QString sample("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
  QFontMetricsF metrics(fontOf(fontMessage));
  return {static_cast<int>(metrics.horizontalAdvance(sample) / sample.size() + 0.5),
          static_cast<int>(metrics.height() + 0.5)};
}

}  // namespace platform::qt
