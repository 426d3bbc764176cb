// The row under the preview: where the film stands, the buttons that move it, the zoom.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QToolButton>
#include <QWidget>
#include <functional>

#include "cinora/host/edit.h"

namespace cinora::desktop {

class Transport : public QWidget {
 public:
  /// A button for each action, in two groups: what moves the film, and what selects.
  Transport(const QList<QAction*>& moving, const QList<QAction*>& selecting, QWidget* parent = nullptr);

  /// A null format: nothing is open.
  void setFrame(int frame, int frameCount, const ClipFormat*);
  void setZoom(double zoom, double scale);

  std::function<void(int frame)> sought;
  std::function<void(double zoom)> zoomChosen;

 private:
  void typed();

  QLineEdit* time_;
  QSpinBox* frame_;
  QLabel* total_;
  QComboBox* zoom_;
  ClipFormat format_;
  int frameCount_ = 0;
};

}  // namespace cinora::desktop
