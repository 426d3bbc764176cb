// What the host's clip and project mean for the timeline, and which of the project's scenes it shows.
#pragma once

#include "zenlay/host/host_interface.h"

namespace zenlay {

void adoptClip(EditHandle);   // a clip was opened
void readClip(EditHandle);    // its information changed
void dropClip();              // it was closed: the model goes with it
void followHost(EditHandle);  // the host's state changed

/// Whether the host clip's name is one that a new project of this plug-in was given.
bool isProjectClip(const char* name);
/// Everything anew after the model was replaced or another scene was entered.
void showModel();
/// Ends what the mouse is doing, enters another scene and shows it.
void enterScene(int scene);

}  // namespace zenlay
