#include "cinora/desktop/welcome.h"

#include <QAction>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace cinora::desktop {
namespace {

QPushButton* buttonFor(QAction* action) {
  auto* button = new QPushButton(action->icon(), action->text().remove('&').remove(QChar(0x2026)));
  button->setMinimumSize(140, 30);
  QObject::connect(button, &QPushButton::clicked, action, &QAction::trigger);
  return button;
}

QLabel* line(const char* text) {
  auto* label = new QLabel(text);
  label->setForegroundRole(QPalette::WindowText);
  return label;
}

}  // namespace

Welcome::Welcome(QAction* newProject, QAction* open, QWidget* parent) : QWidget(parent) {
  auto* grid = new QGridLayout(this);
  grid->setHorizontalSpacing(18);
  grid->setVerticalSpacing(12);
  grid->setRowStretch(0, 1);
  grid->setRowStretch(4, 1);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(3, 1);
  grid->addWidget(buttonFor(newProject), 1, 1);
  grid->addWidget(line("Begin with an empty film of a size and rate you choose."), 1, 2);
  grid->addWidget(buttonFor(open), 2, 1);
  grid->addWidget(line("Go on with a project, or begin with a video or picture."), 2, 2);
  auto* drop = new QLabel("Drop files here");
  drop->setAlignment(Qt::AlignCenter);
  drop->setForegroundRole(QPalette::PlaceholderText);
  drop->setMinimumSize(140, 30);
  grid->addWidget(drop, 3, 1);
  grid->addWidget(line("Videos, pictures, sounds and projects can be dropped anywhere."), 3, 2);
}

void Welcome::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  QRect frame = childrenRect().adjusted(-28, -24, 28, 24);
  QPen pen(palette().color(QPalette::Light), 1, Qt::DashLine);
  painter.setPen(pen);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
}

}  // namespace cinora::desktop
