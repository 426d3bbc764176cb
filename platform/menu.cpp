#include "platform/menu.h"

#include <functional>
#include <memory>
#include <vector>

#include "platform/backend.h"

namespace platform {

namespace {

struct Entry {
  std::string text;
  int id = 0;
  bool enabled = true, checked = false, separator = false;
  std::unique_ptr<Menu> submenu;
};

}  // namespace

struct Menu {
  std::vector<Entry> entries;
};

namespace {

/// Fills `menu` from the rows up to its menuEnd; what is left.
std::span<const MenuRow> addRows(Menu& menu, std::span<const MenuRow> rows) {
  while (!rows.empty()) {
    const MenuRow& row = rows.front();
    rows = rows.subspan(1);
    if (row.kind == MenuRow::end) break;
    Entry entry{.text = row.text ? row.text : "", .id = row.id, .separator = row.kind == MenuRow::separator};
    if (row.kind == MenuRow::begin) {
      entry.submenu = std::make_unique<Menu>();
      rows = addRows(*entry.submenu, rows);
    }
    menu.entries.push_back(std::move(entry));
  }
  return rows;
}

Entry& insertEntry(Menu* menu, const Menu* before, Entry entry) {
  auto at = menu->entries.begin();
  while (at != menu->entries.end() && !(before && at->submenu.get() == before)) ++at;
  return *menu->entries.insert(at, std::move(entry));
}

void forEach(Menu* menu, int id, const std::function<void(Entry&)>& change) {
  if (!menu) return;
  for (Entry& entry : menu->entries) {
    if (entry.id == id && !entry.separator) change(entry);
    forEach(entry.submenu.get(), id, change);
  }
}

}  // namespace

Menu* createMenu(std::span<const MenuRow> rows) {
  Menu* menu = new Menu;
  addRows(*menu, rows);
  return menu;
}

void destroyMenu(Menu* menu) { delete menu; }

Menu* findSubmenu(Menu* menu, const char* text) {
  if (!menu) return nullptr;
  for (Entry& entry : menu->entries)
    if (entry.submenu && entry.text == text) return entry.submenu.get();
  return nullptr;
}

void addMenuItem(Menu* menu, const char* text, int id, const Menu* before) {
  if (menu) insertEntry(menu, before, {.text = text, .id = id});
}

Menu* addSubmenu(Menu* menu, const char* text, const Menu* before) {
  if (!menu) return nullptr;
  Entry& entry = insertEntry(menu, before, {.text = text, .submenu = std::make_unique<Menu>()});
  return entry.submenu.get();
}

void addMenuSeparator(Menu* menu) {
  if (menu) menu->entries.push_back({.separator = true});
}

void removeMenuItem(Menu* menu, int id) {
  if (!menu) return;
  std::erase_if(menu->entries, [id](Entry& entry) {
    if (!entry.submenu) return !entry.separator && entry.id == id;
    bool filled = !entry.submenu->entries.empty();
    removeMenuItem(entry.submenu.get(), id);
    return filled && entry.submenu->entries.empty();
  });
}

bool hasMenuItem(const Menu* menu, int id) {
  bool found = false;
  forEach(const_cast<Menu*>(menu), id, [&](Entry&) { found = true; });
  return found;
}

void setMenuText(Menu* menu, int id, const char* text) {
  forEach(menu, id, [&](Entry& entry) { entry.text = text; });
}

void enableMenuItem(Menu* menu, int id, bool enabled) {
  forEach(menu, id, [&](Entry& entry) { entry.enabled = enabled; });
}

void checkMenuItem(Menu* menu, int id, bool checked) {
  forEach(menu, id, [&](Entry& entry) { entry.checked = checked; });
}

int menuEntryCount(const Menu* menu) { return menu ? static_cast<int>(menu->entries.size()) : 0; }

MenuEntry menuEntry(const Menu* menu, int index) {
  if (index < 0 || index >= menuEntryCount(menu)) return {};
  const Entry& entry = menu->entries[index];
  return {entry.text, entry.id, entry.enabled, entry.checked, entry.separator, entry.submenu.get()};
}

int showMenu(const Menu* menu, Window* owner, Point screen) {
  return menu && desktopBackend().showMenu ? desktopBackend().showMenu(menu, owner, screen) : 0;
}

}  // namespace platform
