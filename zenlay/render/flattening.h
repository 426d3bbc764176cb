// Flattening: the object drawn, with its current placement, into an empty frame-size image that becomes the object
// image. Placement and transparency are used up by it; the blend mode acts in the final copy onto the frame.
#pragma once

#include "zenlay/render/targets.h"

namespace zenlay {

/// 1 when the object image is now frame-size; 0 when the object cannot be placed in this pass (no drawable object, no
/// drawing effect, or already inside a flattening).
int flattenObject(EffectProcessInfo*);
/// The same, but an object that is flattened already and still covers the frame exactly stays as it is.
int flattenForClipping(EffectProcessInfo*);
/// Copies a flattened object onto the frame with its blend bits.
void copyFlattened(EffectProcessInfo*);
/// Flags for drawing onto the current frame: destination format, and in a flattening pass blend mode Normal, the mode
/// asked for being kept for the final copy.
uint32_t frameFlags(const EffectProcessInfo*, uint32_t flags);
/// Turns an opaque object image into one with full alpha, in place.
void addAlpha(EffectProcessInfo*);

}  // namespace zenlay
