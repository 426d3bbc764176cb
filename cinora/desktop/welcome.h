// What stands in the preview's place while nothing is open: how to begin.
#pragma once

#include <QWidget>

class QAction;

namespace cinora::desktop {

class Welcome : public QWidget {
 public:
  Welcome(QAction* newProject, QAction* open, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent*) override;
};

}  // namespace cinora::desktop
