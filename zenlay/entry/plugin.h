// The two filter records that the module hands to the host.
#pragma once

#include "zenlay/host/host_interface.h"

namespace zenlay {

inline constexpr uint32_t hostRefuses = 0x2;  // bit of HostSystemInfo::flags: both records refuse to start

extern HostFilterRecord mainFilterRecord;
extern HostFilterRecord audioFilterRecord;

/// The main record's initialisation and exit callbacks (start_up.cpp). startUp returns 0 when the plug-in is unusable;
/// what was set up before stays in place.
int startUp(HostFilterRecord*);
int shutDown(HostFilterRecord*);

}  // namespace zenlay
