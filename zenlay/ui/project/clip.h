// What the host's clip and project mean for the timeline.
#pragma once

#include "zenlay/host/host_interface.h"

namespace zenlay {

void adoptClip(EditHandle);   // a clip was opened
void readClip(EditHandle);    // its information changed
void dropClip();              // it was closed: the model goes with it
void followHost(EditHandle);  // the host's state changed

}  // namespace zenlay
