#include "cinora/desktop/theme_menu.h"

#include <QActionGroup>

#include "platform/qt/qt_desktop.h"

namespace cinora::desktop {
namespace {

constexpr char section[] = "desktop", key[] = "theme";

struct ThemeRow {
  platform::qt::Theme theme;
  const char *text, *stored;
};
constexpr ThemeRow rows[] = {
    {platform::qt::themeAutomatic, "As the &Desktop", ""},
    {platform::qt::themeDark, "D&ark", "dark"},
    {platform::qt::themeLight, "&Light", "light"},
};

}  // namespace

QMenu* createThemeMenu(Settings& settings, QWidget* parent) {
  auto* menu = new QMenu("&Theme", parent);
  auto* group = new QActionGroup(menu);
  const std::string stored = settings.get(section, key, "");
  for (const ThemeRow& row : rows) {
    QAction* action = menu->addAction(row.text);
    group->addAction(action);
    action->setCheckable(true);
    QObject::connect(action, &QAction::triggered, menu, [&settings, &row] {
      settings.set(section, key, row.stored);
      platform::qt::setTheme(row.theme);
    });
    if (stored != row.stored) continue;
    action->setChecked(true);
    if (!stored.empty()) platform::qt::setTheme(row.theme);
  }
  return menu;
}

}  // namespace cinora::desktop
