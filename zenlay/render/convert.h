// Conversions between the pixel formats, in rows.
//
// RGB to YCbCr: the 8-bit components times 16, summed with 14-bit coefficients (BT.601) and shifted down, so that white
// is Y 4095. YCbCr to RGB: summed and shifted down to the components times 16, then to the nearest of 0..255, so that
// every 8-bit colour taken in and out again is the same colour. Conversions to and from FramePixel and ObjectPixel
// store the low 16 bits and have the same results on every processor.
#pragma once

#include "zenlay/effects/pixels.h"

namespace zenlay {

struct Colour {
  int32_t y, cb, cr;
};
struct Rgb {
  int32_t r, g, b;  // 0..4096 scale
};

/// Between the scale of frames and RGB on the same scale, for arithmetic in RGB (BT.601).
inline Rgb toRgbScale(Colour c) {
  return {(c.y * 16384 + c.cr * 22970) >> 14, (c.y * 16384 - c.cb * 5636 - c.cr * 11698) >> 14,
          (c.y * 16384 + c.cb * 29032) >> 14};
}
inline Colour fromRgbScale(Rgb c) {
  return {(c.r * 4898 + c.g * 9617 + c.b * 1867) >> 14, (c.b * 8192 - c.g * 5423 - c.r * 2768) >> 14,
          (c.r * 8192 - c.g * 6864 - c.b * 1327) >> 14};
}

ObjectPixel toYcbcr(uint8_t red, uint8_t green, uint8_t blue);  // alpha 4096
Bgr toRgb(int y, int cb, int cr);

void bgrToObjectRow(ObjectPixel*, const Bgr*, int n);
void bgraToObjectRow(ObjectPixel*, const Bgra*, int n);         // alpha 0..255 becomes 0..4096, to nearest
void frameToObjectRow(ObjectPixel*, const FramePixel*, int n);  // opaque
void objectToFrameRow(FramePixel*, const ObjectPixel*, int n);  // drops the alpha
void frameToBgrRow(Bgr*, const FramePixel*, int n);
void objectToBgraRow(Bgra*, const ObjectPixel*, int n);  // alpha to the nearest of 0..255
/// Limits every pixel to the RGB range: to RGB on the 0..4096 scale (the blend modes' coefficients), clamped, and back;
/// pixels inside keep their bits.
void saturateRow(FramePixel*, int n);

/// The definition of the rows that have a vector version.
void plainBgrToObjectRow(ObjectPixel*, const Bgr*, int n);
void plainBgraToObjectRow(ObjectPixel*, const Bgra*, int n);
void plainFrameToBgrRow(Bgr*, const FramePixel*, int n);
void plainObjectToBgraRow(Bgra*, const ObjectPixel*, int n);
void plainSaturateRow(FramePixel*, int n);

}  // namespace zenlay
