// The context menus, their generated submenus and the shortcut entries given to the host.
#pragma once

#include "platform/menu.h"

namespace zenlay {

enum ContextMenu {
  menuRow,             // CONTEXT: empty row space
  menuNoProject,       // CONTEXTN
  menuObject,          // CONTEXTO
  menuLayer,           // CONTEXTL
  menuScene,           // CONTEXTS
  menuSettingsHeader,  // CONTEXTC
  menuVideoEffects,    // CONTEXT2: media and filter-effect objects
  menuVideoFilters,    // CONTEXT3: filter objects
  menuAudioEffects,    // CONTEXT4
  menuAudioFilters,    // CONTEXT5
  menuVideoSource,     // CONTEXT6: "Change I/O"
  menuAudioSource,     // CONTEXT7
  menuCameraEffects,   // CONTEXT8: control objects
  menuMovement,        // CONTEXTM
  menuColor,           // CONTEXTCOL
  contextMenus
};

/// Ids of generated entries.
inline constexpr int menuEffect = 2000, menuAlias = 3000, menuTemplate = 5000, menuTemplateEnd = 22000;

void createMenus();  // and fills the generated submenus; after the effects are registered
void destroyMenus();
/// The aliases' entries again, after one was written. The menus that hold such entries are made anew.
void refillAliasMenus();
platform::Menu* contextMenu(ContextMenu);
/// Shows it with the toggles checked from the preferences and greyed what can do nothing now; the chosen id, or 0.
int showContextMenu(ContextMenu, platform::Window* owner, platform::Point screen);
void registerShortcuts();

/// Which of menuVideoEffects..menuAudioFilters and menuCameraEffects is that of the object's effects: its kind.
ContextMenu effectMenuOf(int object);
/// Whether the effect is listed in one of the menu's generated parts.
bool menuLists(ContextMenu, int effect);

}  // namespace zenlay
