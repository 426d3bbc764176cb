// Files that must not outlive the process when a signal ends it. Internal to platform/.
#pragma once

#include <string>

namespace platform {

inline constexpr int noLiveFile = -1;

/// Remembers `path` until released. SIGINT, SIGTERM and SIGHUP, as long as nobody else handles them, then remove it
/// before they end the process. `noLiveFile` when the table is full or the path too long: the file is then not guarded.
int guardLiveFile(const std::string& path);
void releaseLiveFile(int handle);

}  // namespace platform
