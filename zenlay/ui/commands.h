// The command dispatcher: every numbered command the plug-in carries out.
#pragma once

#include <cstdint>

#include "zenlay/host/host_interface.h"

namespace zenlay {

enum CommandId : int {
  commandToggleOutOfArea = 1021,
  commandImport = commandOpenObjectFile,
  commandExport = commandSaveObjectFile,
  commandNewFromObjectFile = 1059,  // parameter: path
  commandToggleFastPreview = 1061,
  commandRestoreBackup = commandOpenBackup,
  commandRestoreBackupPath = 1068,  // parameter: path
  commandDiscardCaches = 1072,
  commandToggleGrid2d = 1082,
  commandToggleGrid3d = 1083,
};

/// 1 when something was opened or changed (asks the host to redraw the frame), 0 when cancelled or failed after a
/// message. Ids without a row do nothing.
int runCommand(int id, intptr_t parameter);

}  // namespace zenlay
