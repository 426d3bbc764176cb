// Pixels in the light domain: blurs done on light instead of luma spread bright areas further than dark ones.
//
// With k = 1 + strength / 1000, light = k^(Y / 16) - 1 for Y 0..4096; chroma keeps 8 bits, (c + 8) >> 4. The pixels
// take the same bytes as before, so that a picture is converted in place and back: ObjectPixel and LightPixel,
// FramePixel and LightFramePixel.
#pragma once

#include <cstdint>

#include "zenlay/filters/box_blur.h"

namespace zenlay {

struct LightPixel {
  float light;
  int8_t cb, cr;
  int16_t a;
};
struct __attribute__((packed)) LightFramePixel {
  float light;
  int8_t cb, cr;
};
static_assert(sizeof(LightPixel) == sizeof(ObjectPixel) && sizeof(LightFramePixel) == sizeof(FramePixel));

inline constexpr int maxLightStrength = 100;

/// `strength` is clamped to 1..100. Pixels with alpha <= 0 become zeros.
void toLight(const HostFunctionTable*, const ImageTarget&, int strength, bool alpha);
/// Y = round(16 ln(light + 1) / ln k), within 0..4096.
void fromLight(const HostFunctionTable*, const ImageTarget&, int strength, bool alpha);

/// boxRound for pixels in the light domain. The sums are of light x alpha and chroma x alpha without rounding.
void lightRound(const HostFunctionTable*, const ImageTarget& to, const ImageTarget& from, int rx, int ry, BoxEdge,
                bool alpha);

}  // namespace zenlay
