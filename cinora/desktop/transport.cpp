#include "cinora/desktop/transport.h"

#include <QAction>
#include <QHBoxLayout>
#include <cmath>

#include "cinora/desktop/time_code.h"

namespace cinora::desktop {
namespace {

constexpr double zoomChoices[] = {0, 0.25, 0.5, 1, 2, 4};  // 0: fitted

QString zoomText(double zoom) { return zoom == 0 ? QString("Fit") : QString("%1 %").arg(std::lround(zoom * 100)); }

void addButtons(QHBoxLayout* row, const QList<QAction*>& actions) {
  for (QAction* action : actions) {
    auto* button = new QToolButton;
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setIconSize({16, 16});
    button->setFixedSize(28, 26);
    button->setFocusPolicy(Qt::NoFocus);
    row->addWidget(button);
  }
}

}  // namespace

Transport::Transport(const QList<QAction*>& moving, const QList<QAction*>& selecting, QWidget* parent)
    : QWidget(parent), time_(new QLineEdit), frame_(new QSpinBox), total_(new QLabel), zoom_(new QComboBox) {
  time_->setAccessibleName("Time");
  time_->setToolTip("Time: hours:minutes:seconds.hundredths");
  time_->setAlignment(Qt::AlignCenter);
  time_->setFixedWidth(time_->fontMetrics().horizontalAdvance("000:00:00.00") + 16);
  frame_->setAccessibleName("Frame");
  frame_->setToolTip("Frame, counted from 1");
  frame_->setButtonSymbols(QAbstractSpinBox::NoButtons);
  frame_->setAlignment(Qt::AlignRight);
  frame_->setFixedWidth(frame_->fontMetrics().horizontalAdvance("800000") + 18);
  frame_->setKeyboardTracking(false);
  for (double zoom : zoomChoices) zoom_->addItem(zoomText(zoom), zoom);
  zoom_->setAccessibleName("Zoom");
  zoom_->setToolTip("Size of the picture");
  zoom_->setFocusPolicy(Qt::NoFocus);
  zoom_->setFixedWidth(zoom_->fontMetrics().horizontalAdvance("1600 %") + 40);

  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(8, 2, 8, 4);
  row->setSpacing(2);
  row->addWidget(time_);
  row->addSpacing(6);
  row->addWidget(frame_);
  row->addWidget(total_);
  row->addStretch(1);
  addButtons(row, moving);
  row->addSpacing(12);
  addButtons(row, selecting);
  row->addStretch(1);
  row->addWidget(zoom_);

  connect(time_, &QLineEdit::editingFinished, this, [this] { typed(); });
  connect(frame_, &QSpinBox::valueChanged, this, [this](int frame) {
    if (sought) sought(frame - 1);
  });
  connect(zoom_, &QComboBox::activated, this, [this](int index) {
    if (zoomChosen) zoomChosen(zoom_->itemData(index).toDouble());
  });
  setFrame(0, 0, nullptr);
}

void Transport::typed() {
  if (!time_->isModified()) return;
  time_->setModified(false);
  std::optional<int> frame = frameOfTimeCode(time_->text(), format_);
  if (frame && frameCount_ > 0 && sought) sought(std::min(*frame, frameCount_ - 1));
  time_->setText(timeCode(frame_->value() - 1, format_));
}

void Transport::setFrame(int frame, int frameCount, const ClipFormat* format) {
  format_ = format ? *format : ClipFormat{};
  frameCount_ = frameCount;
  setEnabled(format != nullptr);
  QSignalBlocker quiet(frame_);
  frame_->setRange(format ? 1 : 0, std::max(frameCount, 0));
  frame_->setValue(format ? frame + 1 : 0);
  total_->setText(format ? QString("/ %1").arg(frameCount) : QString("/ 0"));
  if (!time_->hasFocus() || !time_->isModified()) time_->setText(timeCode(format ? frame : 0, format_));
}

void Transport::setZoom(double zoom, double scale) {
  for (int i = 0; i < zoom_->count(); i++)
    if (zoom_->itemData(i).toDouble() == zoom && i < static_cast<int>(std::size(zoomChoices))) {
      while (zoom_->count() > static_cast<int>(std::size(zoomChoices))) zoom_->removeItem(zoom_->count() - 1);
      zoom_->setCurrentIndex(i);
      return;
    }
  while (zoom_->count() > static_cast<int>(std::size(zoomChoices))) zoom_->removeItem(zoom_->count() - 1);
  zoom_->addItem(zoomText(scale), scale);
  zoom_->setCurrentIndex(zoom_->count() - 1);
}

}  // namespace cinora::desktop
