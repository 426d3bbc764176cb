// Pixel formats shared by the host, the pipeline and every effect.
//
// Colour is YCbCr in BT.601 proportions, full range, signed 16-bit per component: Y 0..4096 (4096 = white),
// Cb and Cr -2048..2048. Intermediate results may leave these ranges (additive light reaches Y 8192).
#pragma once

#include <cstdint>

namespace zenlay {

/// Opaque pixel of the host's frame images, 6 bytes.
struct FramePixel {
  int16_t y, cb, cr;
};

/// Pixel of object images, work images and caches, 8 bytes. `a` is 0 (transparent) to 4096 (opaque); the colour is
/// not premultiplied.
struct ObjectPixel {
  int16_t y, cb, cr, a;
};

/// 24-bit picture pixel, byte order of bottom-up bitmap rows.
struct Bgr {
  uint8_t b, g, r;
};

/// 32-bit picture pixel with straight alpha.
struct Bgra {
  uint8_t b, g, r, a;
};

inline constexpr int fullAlpha = 4096;   // also full weight of every 12-bit mixing factor
inline constexpr int whiteLuma = 4096;
inline constexpr int chromaLimit = 2048;

static_assert(sizeof(FramePixel) == 6 && sizeof(ObjectPixel) == 8 && sizeof(Bgr) == 3 && sizeof(Bgra) == 4);

}  // namespace zenlay
