#include <QMenu>

#include "platform/qt/native.h"

namespace platform::qt {

namespace {

void fill(QMenu* shown, const Menu* menu) {
  for (int i = 0; i < menuEntryCount(menu); i++) {
    MenuEntry entry = menuEntry(menu, i);
    if (entry.separator) {
      shown->addSeparator();
      continue;
    }
    QAction* action;
    if (entry.submenu) {
      QMenu* submenu = shown->addMenu(plainText(entry.text));
      fill(submenu, entry.submenu);
      action = submenu->menuAction();
    } else {
      action = shown->addAction(plainText(entry.text));
      action->setData(entry.id);
      action->setCheckable(entry.checked);
      action->setChecked(entry.checked);
    }
    action->setEnabled(entry.enabled);
  }
}

}  // namespace

int showMenu(const Menu* menu, Window* owner, Point screen) {
  releaseMouse();
  QPointer<QMenu> shown = new QMenu(widgetOf(owner));
  fill(shown, menu);
  QAction* chosen = shown->exec(toQt(screen));
  int id = shown && chosen ? chosen->data().toInt() : 0;
  delete shown;
  holdPresentModifiers();
  return id;
}

}  // namespace platform::qt
