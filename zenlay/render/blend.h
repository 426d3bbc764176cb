// Blend modes: every way one image is put onto another.
//
// A kernel works on a row. The plain version is the definition; the vector version gives the same bits.
#pragma once

#include <cstdint>

#include "zenlay/effects/effect_services.h"
#include "zenlay/effects/pixels.h"

namespace zenlay {

enum BlendMode : int {
  blendNormal, blendAdditive, blendSubtractive, blendMultiply, blendScreen, blendOverlay, blendBrighter, blendDarker,
  blendLuminance, blendColorDifference, blendShadow, blendContrast, blendDifference,
  userBlendModes,
  // Internal, for destinations with alpha.
  blendMark = 16, blendAddOpaque, blendBehind, blendReplace, blendAverage, blendAverageLargerAlpha, blendCutOut,
  blendScaleOut, blendDisplacement, blendAccumulate,
  blendModeCount = 32,
};

/// The drop-down list of the drawing effects: NUL-separated names ended by an empty string.
extern const char blendModeList[];

/// `n` pixels; `weight` 0..4096 multiplies the source's alpha (4096 - transparency). An opaque source passes
/// FramePixels. Null entries do not occur.
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
/// Mode 0..31 (others count as 0).
const BlendKernels& blendKernels(int mode);       // the fastest on this processor
const BlendKernels& plainBlendKernels(int mode);  // the definition

/// A rectangle of an image combined with a target; clipped to the target, negative positions shift the source origin.
/// Flags: BlendFlag with the mode in bits 24..28. Rows are spread over the host's workers above 63.
void blendCopy(const HostFunctionTable*, const ImageTarget&, int x, int y, const ImageRegion&, int transparency,
               uint32_t flags);

}  // namespace zenlay
