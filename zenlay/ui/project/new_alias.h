// Creating an alias.
#pragma once

#include <string>

namespace zenlay {

/// Asks for a name and a folder, writes the slot's effect, or the whole object with aliasWholeObject, and lists the
/// alias in the menus.
void createAlias(const char* title, std::string name, int object, int slot);

}  // namespace zenlay
