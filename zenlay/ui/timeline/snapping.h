// Where moved objects, edges, drops and pasted objects catch on: the cursor, objects of other layers, the scene's ends
// and the beat grid.
#pragma once

namespace zenlay {

/// Moves the frame to the nearest target for something on `layer` when that lies within 8 pixels; whether there was one
/// (maybe the frame itself). Never when snapping is switched off. The layer's own objects are no targets.
bool snapToTarget(int& frame, int layer, bool ignoreSelected);

/// The frame after snapToTarget.
int snapFrame(int frame, int layer, bool ignoreSelected);

}  // namespace zenlay
