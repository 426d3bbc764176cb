// The command dispatcher: every numbered command the plug-in carries out.
#pragma once

#include <cstdint>

#include "zenlay/ui/commands/command_ids.h"

namespace zenlay {

// 1 when something was opened, copied or changed (asks the host to redraw the frame), 0 when cancelled, refused or
// failed after a message. Numbers without a command do nothing. Nothing is begun while the host saves or while a dialog
// of another command waits for the user.

/// From the plug-in's own menus, keys and windows.
int runCommand(int id, intptr_t parameter);
/// From the host's menus and keys and the settings window's toggles: some commands then go by the window that is
/// active.
int runHostCommand(int id, intptr_t parameter);

}  // namespace zenlay
