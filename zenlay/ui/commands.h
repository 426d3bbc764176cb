// The command dispatcher: every numbered command the plug-in carries out.
#pragma once

#include <cstdint>

#include "zenlay/ui/command_ids.h"

namespace zenlay {

/// 1 when something was opened or changed (asks the host to redraw the frame), 0 when cancelled or failed after a
/// message. Ids without a row do nothing.
int runCommand(int id, intptr_t parameter);

}  // namespace zenlay
