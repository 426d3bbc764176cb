#include "cinora/desktop/plugin_docks.h"

#include <QAction>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>

namespace cinora::desktop {
namespace {

constexpr int toolWidth = 500, filterHeight = 260;  // before a window says what it wants
constexpr int leastToolWidth = 200, leastFilterHeight = 140;
constexpr char toolTitle[] = "Settings", filterTitle[] = "Timeline";

/// The menu keeps calling the dock what it is for, whatever it shows.
void setTitle(QDockWidget* dock, const QString& title, const char* menuText) {
  dock->setWindowTitle(title);
  dock->toggleViewAction()->setText(menuText);
}

QDockWidget* addDock(QMainWindow& main, Qt::DockWidgetArea area, platform::Window* window, const char* title) {
  auto* dock = new QDockWidget(title, &main);
  dock->setObjectName(QString::fromUtf8(platform::windowClassName(window)));
  dock->setAllowedAreas(Qt::AllDockWidgetAreas);
  main.addDockWidget(area, dock);
  return dock;
}

QWidget* placeholder() {
  auto* text = new QLabel("Double-click an object on the timeline\nto see its settings.");
  text->setAlignment(Qt::AlignCenter);
  text->setForegroundRole(QPalette::PlaceholderText);
  text->setMinimumWidth(180);
  return text;
}

}  // namespace

PluginDocks::PluginDocks(QMainWindow& main, platform::Window* frame) : main_(main), frame_(frame) {
  platform::qt::setFrameMaker([this](platform::Window* w, QWidget* surface) { return frameFor(w, surface); });
}

PluginDocks::~PluginDocks() { platform::qt::setFrameMaker({}); }

std::optional<platform::qt::WindowFrame> PluginDocks::frameFor(platform::Window* window, QWidget* surface) {
  if (platform::windowStyle(window) & platform::windowFrameless) return {};
  if (platform::windowOwner(window) != frame_) {
    auto* dock = addDock(main_, Qt::RightDockWidgetArea, window, toolTitle);
    tools_.push_back(dock);
    return frameTool(window, surface, dock);
  }
  if (!(platform::windowStyle(window) & platform::windowAcceptsFiles)) return {};
  auto* dock = addDock(main_, Qt::BottomDockWidgetArea, window, filterTitle);
  surface->setMinimumHeight(leastFilterHeight);
  dock->setWidget(surface);
  filters_.push_back(dock);
  return platform::qt::WindowFrame{
      .show = [dock](bool shown, bool) { dock->setVisible(shown); },
      .setTitle = [dock](const QString& title) { setTitle(dock, title, filterTitle); },
      .resize = [this, dock](QSize client) { main_.resizeDocks({dock}, {client.height()}, Qt::Vertical); },
  };
}

/// The dock stays when the tool has nothing to show, so that the other windows keep their places.
platform::qt::WindowFrame PluginDocks::frameTool(platform::Window*, QWidget* surface, QDockWidget* dock) {
  auto* stack = new QStackedWidget;
  auto* scroll = new QScrollArea;
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  scroll->setWidget(surface);
  surface->setMinimumSize(1, 1);
  stack->addWidget(placeholder());
  stack->addWidget(scroll);
  dock->setWidget(stack);
  scroll->setMinimumWidth(leastToolWidth);
  // Not of a small screen's picture.
  auto makeRoom = [this, scroll, surface, dock] {
    const int wanted = surface->width() + scroll->verticalScrollBar()->sizeHint().width();
    if (scroll->width() < wanted && wanted < main_.width() / 2) main_.resizeDocks({dock}, {wanted}, Qt::Horizontal);
  };
  auto fit = [surface, makeRoom](QSize client) {
    const bool widened = client.width() > surface->width();
    surface->resize(client);
    if (widened) makeRoom();
  };
  return {
      .show =
          [stack, dock, makeRoom](bool shown, bool activate) {
            if (shown && stack->currentIndex() == 0) makeRoom();
            stack->setCurrentIndex(shown ? 1 : 0);
            if (!shown) setTitle(dock, toolTitle, toolTitle);
            if (shown && activate) dock->raise();
          },
      .setTitle = [dock](const QString& title) { setTitle(dock, title, toolTitle); },
      .resize = fit,
  };
}

void PluginDocks::showFilterWindows(Host& host) {
  for (const auto& filter : host.plugins.filters())
    if (filter->window && filter->module) platform::showWindow(filter->window, true, false);
}

void PluginDocks::arrange() {
  main_.setCorner(Qt::BottomLeftCorner, Qt::BottomDockWidgetArea);
  main_.setCorner(Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
  for (QDockWidget* dock : filters_) {
    dock->setFloating(false);
    main_.addDockWidget(Qt::BottomDockWidgetArea, dock);
    dock->show();
  }
  for (QDockWidget* dock : tools_) {
    dock->setFloating(false);
    main_.addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->show();
  }
  main_.resizeDocks(filters_, QList<int>(filters_.size(), filterHeight), Qt::Vertical);
  main_.resizeDocks(tools_, QList<int>(tools_.size(), toolWidth), Qt::Horizontal);
}

QList<QAction*> PluginDocks::toggles() const {
  QList<QAction*> actions;
  for (QDockWidget* dock : filters_ + tools_) actions.push_back(dock->toggleViewAction());
  return actions;
}

}  // namespace cinora::desktop
