// The window procedure of the main filter record: the host's messages, commands and queries.
#pragma once

#include "zenlay/host/host_interface.h"

namespace zenlay {

/// 1 asks the host to redraw the frame.
int timelineWindowProcedure(WindowHandle, uint32_t message, intptr_t first, intptr_t second, EditHandle,
                            HostFilterRecord*);

}  // namespace zenlay
