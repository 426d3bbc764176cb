// Blend modes: every way one image is put onto another.
//
// A kernel works on a row. The plain version (blend_plain.cpp) is the definition; the vector version gives the same
// bits for every input.
//
// Arithmetic: 32-bit integers that wrap, >> rounding towards minus infinity; a result is stored by its low 16 bits. The
// weight of a source pixel is a = (source alpha x weight) >> 12, or the weight alone for an opaque source; a <= 0
// leaves the destination as it is, a above 4096 counts as 4096. The colour of a mode is not limited to 16 bits before
// it is weighted, and a destination alpha A outside 0..4096 counts as the nearer end unless said otherwise.
#pragma once

#include <cstdint>

#include "zenlay/effects/blend_modes.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/effects/pixels.h"

namespace zenlay {

/// `n` pixels; `weight` 0..4096 multiplies the source's alpha (4096 - transparency). An opaque source passes
/// FramePixels. Null entries do not occur. Source and destination do not overlap.
using BlendToFrame = void (*)(FramePixel*, const ObjectPixel*, int n, int weight);
using BlendOpaqueToFrame = void (*)(FramePixel*, const FramePixel*, int n, int weight);
using BlendToObject = void (*)(ObjectPixel*, const ObjectPixel*, int n, int weight);
using BlendOpaqueToObject = void (*)(ObjectPixel*, const FramePixel*, int n, int weight);

struct BlendKernels {
  BlendToFrame toFrame;
  BlendOpaqueToFrame opaqueToFrame;
  BlendToObject toObject;
  BlendOpaqueToObject opaqueToObject;
};
/// Mode 0..31; 13..15, 26..31 and what lies outside count as blendNormal.
const BlendKernels& blendKernels(int mode);       // the fastest on this processor
const BlendKernels& plainBlendKernels(int mode);  // the definition

/// A rectangle of an image combined with a target; clipped to the target, negative positions shift the source origin.
/// Transparency 0..4096, 4096 draws nothing. Flags: BlendFlag with the mode in bits 24..28; the drawing areas are the
/// caller's to apply (a target narrowed to the area). The images do not overlap. From 64 rows the host's workers share.
void blendCopy(const HostFunctionTable*, const ImageTarget&, int x, int y, const ImageRegion&, int transparency,
               uint32_t flags);

}  // namespace zenlay
