// Editing on the preview: the handles that effects show over the image are dragged with the mouse. Points are pixels of
// the host's frame.
//
// The current object's box moves the object, its corners the size, the knob above it the rotation; the marks at the
// ends of a movement move those. Inside of a box the start of the section changes at its first frame, its end at its
// last one, both in between. Shift keeps a move on one axis, sizes to steps of 10 % and turns to steps of 15 degrees;
// Ctrl keeps the position on the XY grid. Arrow keys move what was pressed last by a pixel, with Shift by ten, with
// Ctrl by the smallest step. The right button and Escape take a drag back. A double click makes the object under it
// current; one on the current object takes the next below.
#pragma once

#include <cstdint>

namespace zenlay {

/// One of the host's messages about its main image. `first`: MouseState bits, with the wheel's notches in the high
/// half, or the key; `second`: the point (packPoint), or 1 for a key that repeats. 1 = the frame is to be redrawn, and
/// a key or the wheel was taken.
int imageMessage(uint32_t message, intptr_t first, intptr_t second);
/// Whether the mouse holds a handle.
bool imageDragging();

}  // namespace zenlay
