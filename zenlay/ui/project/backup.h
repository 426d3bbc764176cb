// Backups: the whole project with the clip's format, in time-stamped files beside the module.
#pragma once

#include <cstdint>
#include <string>

namespace zenlay {

extern uint32_t lastBackup;  // tick count from which the interval runs

/// The interval runs from now.
void restartBackupInterval();
/// Deletes what exceeds `auto_save_num`, the oldest first.
void pruneBackups();
/// Writes a backup into the backup folder when the preferences want it and the project holds something; without
/// `force` only when the interval is over and the host isn't saving. Failures show a message.
void writeAutomaticBackup(bool force);
/// The same whatever the preferences want. Null when written, otherwise why not (static text).
const char* writeTimeStampedBackup();
/// Path of the newest backup, or the folder when there is none.
std::string newestBackup();

/// Writes the project to `path`. Null when written, otherwise why not (static text).
const char* writeBackup(const char* path, bool replace);
/// New project from a backup. 1 when its data were loaded; otherwise 0 after a message, with an empty project open when
/// only the data were bad.
int restoreBackup(const char* path);

}  // namespace zenlay
