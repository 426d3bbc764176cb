// The ways one image is put onto another; the arithmetic is in render/blend.h.
#pragma once

namespace zenlay {

/// The user's modes are in the order of blendModeList.
enum BlendMode : int {
  blendNormal,
  blendAdditive,
  blendSubtractive,
  blendMultiply,
  blendScreen,
  blendOverlay,
  blendBrighter,
  blendDarker,
  blendLuminance,
  blendColorDifference,
  blendShadow,
  blendContrast,
  blendDifference,
  userBlendModes,
  // Internal, for destinations with alpha; S and D are the colours, a and A the weight and the destination's alpha,
  // A' = (4096 * 4096 + 2048 - (4096 - A) * (4096 - a)) >> 12. On a frame all but blendReplace are blendNormal.
  blendMark = 16,  // A = ((A * a) >> 12) + 4096 with A as it is: a pixel met by the pass has 4096 or more
  blendAddOpaque,  // D = (D * ((A << 12) / A') + S * ((a << 12) / A')) >> 12, A = A': the sum where both are 4096
  blendBehind,     // D = (D * ((A << 12) / A') + S * (((4096 - A) * a) / A')) >> 12, A = A'
  blendReplace,    // D = S, A = source alpha (4096 from a frame), whatever the weight; a = 0 is not skipped
  blendAverage,    // D = (A * D + a * S) / (A + a) towards zero, A = min(A + a, 4096)
  blendAverageLargerAlpha,  // the same D, A = max(A, a)
  blendCutOut,              // A = max(A - a, 0) with A as it is
  blendScaleOut,            // A = (A * (4096 - a)) >> 12 with A as it is
  blendDisplacement,        // Y = ((red - 2048) * a) >> 12, Cb = ((green - 2048) * a) >> 12 of S on the 0..4096 scale,
                            // Cr = 0, A = 4096: mid grey moves nothing
  blendAccumulate,          // D += (S * min(a, 4096 - A)) >> 12, A = min(A + a, 4096): premultiplied, seamless sums
  blendModeCount = 32,
};

/// The drop-down list of the effects with a blend mode: NUL-separated names ended by an empty one.
inline constexpr char blendModeList[] =
    "Normal\0"
    "Additive\0"
    "Subtractive\0"
    "Multiply\0"
    "Screen\0"
    "Overlay\0"
    "Brighter\0"
    "Darker\0"
    "Luminance\0"
    "Color difference\0"
    "Shadow\0"
    "Contrast\0"
    "Difference\0";

}  // namespace zenlay
