// Menus: trees of entries made from static tables, changed by id and shown by the desktop.
#pragma once

#include <span>
#include <string>

#include "platform/window.h"

namespace platform {

/// One row of a menu table. Rows of a submenu stand between its menuBegin row and menuEnd.
struct MenuRow {
  enum Kind : uint8_t { item, begin, end, separator };
  const char* text = nullptr;
  int id = 0;  // of an item; of a submenu 0 or a number by which it is found
  Kind kind = item;
};
constexpr MenuRow menuBegin(const char* text, int id = 0) { return {text, id, MenuRow::begin}; }
inline constexpr MenuRow menuEnd{nullptr, 0, MenuRow::end};
inline constexpr MenuRow menuSeparator{nullptr, 0, MenuRow::separator};

struct Menu;
Menu* createMenu(std::span<const MenuRow>);
void destroyMenu(Menu*);

/// A submenu at the top level of `menu` by its text, or null.
Menu* findSubmenu(Menu*, const char* text);
/// Behind the last entry, or before the submenu `before` of this menu.
void addMenuItem(Menu*, const char* text, int id, const Menu* before = nullptr);
Menu* addSubmenu(Menu*, const char* text, const Menu* before = nullptr);
void addMenuSeparator(Menu*);
/// Every entry with that id in the tree. A submenu that loses its last entry goes too.
void removeMenuItem(Menu*, int id);
bool hasMenuItem(const Menu*, int id);

/// Of every entry with that id in the tree.
void setMenuText(Menu*, int id, const char* text);
void enableMenuItem(Menu*, int id, bool enabled);
void checkMenuItem(Menu*, int id, bool checked);

/// What a desktop shows.
struct MenuEntry {
  std::string text;
  int id;  // 0 for separators and submenus without a number
  bool enabled, checked, separator;
  const Menu* submenu;  // or null
};
int menuEntryCount(const Menu*);
MenuEntry menuEntry(const Menu*, int index);

/// Shows it at a screen point until the user has chosen: the id, or 0. Without a desktop 0.
int showMenu(const Menu*, Window* owner, Point screen);

}  // namespace platform
