// The plug-in's block of data inside the host's project file.
#pragma once

#include "zenlay/host/host_interface.h"

namespace zenlay {

inline constexpr int projectVersion = 9200;

/// Callbacks of the main filter record (see HostFilterRecord).
int saveProject(HostFilterRecord*, EditHandle, void* data, int32_t* size);
int loadProject(HostFilterRecord*, EditHandle, const void* data, int32_t size);

}  // namespace zenlay
