// The command dispatcher: every numbered command the plug-in carries out.
#pragma once

#include <cstdint>

namespace zenlay {

enum CommandId : int {
  commandToggleOutOfArea = 1021,
  commandImport = 1037,  // new project from the file when none is open
  commandExport = 1038,
  commandNewFromObjectFile = 1059,  // parameter: path
  commandToggleFastPreview = 1061,
  commandRestoreBackup = 1067,
  commandRestoreBackupPath = 1068,  // parameter: path
  commandDiscardCaches = 1072,
  commandToggleGrid2d = 1082,
  commandToggleGrid3d = 1083,
};

/// 1 asks the host to redraw the frame. Ids without a row do nothing.
int runCommand(int id, intptr_t parameter);

}  // namespace zenlay
