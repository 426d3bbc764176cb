// The generated entries of the context menus.
#pragma once

#include "zenlay/ui/menus/menus.h"

namespace zenlay {

/// Whether the menu has generated entries.
bool isGenerated(ContextMenu);
/// Into menus as made from their tables: effects in their order, then aliases and templates. Aliases whose file cannot
/// be read are left out.
void fillMenus(platform::Menu* const (&menus)[contextMenus]);

}  // namespace zenlay
