// Editing on the preview: the handles an effect shows over the image, dragged with the mouse. Points are pixels of the
// host's frame.
#pragma once

#include <cstdint>

#include "platform/geometry.h"

namespace zenlay {

/// One of the host's messages about its main image. 1 asks the host to redraw the frame.
int imageMessage(uint32_t message, intptr_t first, intptr_t second);
/// Draws the handles of the last rendered frame over it; nothing while playing or saving.
void drawImageHandles();

}  // namespace zenlay
