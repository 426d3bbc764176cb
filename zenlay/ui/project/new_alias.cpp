#include "zenlay/ui/project/new_alias.h"

#include "zenlay/files/alias_file.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/menus/menus.h"

namespace zenlay {

void createAlias(const char* title, std::string name, int object, int slot) {
  std::string folder;
  if (!askAliasName(title, name, folder) || !inUse(object) || slot >= usedSlots(object)) return;
  if (!writeAlias(object, slot, slot, aliasPath(folder, name).c_str())) return;
  registerAlias(folder, name, firstAliasCommand);
  refillAliasMenus();
}

}  // namespace zenlay
