// Conversions between the pixel formats, in rows.
//
// RGB to YCbCr: the 8-bit components times 16, summed with 14-bit coefficients (BT.601) and shifted, so that white is
// Y 4095. YCbCr to RGB: shifted and clamped to 0..255.
#pragma once

#include "zenlay/effects/pixels.h"

namespace zenlay {

ObjectPixel toYcbcr(uint8_t red, uint8_t green, uint8_t blue);  // alpha 4096
Bgr toRgb(int y, int cb, int cr);

void bgrToObjectRow(ObjectPixel*, const Bgr*, int n);
void bgraToObjectRow(ObjectPixel*, const Bgra*, int n);  // alpha 0..255 becomes 0..4096
void frameToObjectRow(ObjectPixel*, const FramePixel*, int n);  // opaque
void objectToFrameRow(FramePixel*, const ObjectPixel*, int n);  // drops the alpha
void frameToBgrRow(Bgr*, const FramePixel*, int n);
void objectToBgraRow(Bgra*, const ObjectPixel*, int n);
/// Limits every pixel to the RGB range: to RGB on the 0..4096 scale, clamped, and back; pixels inside keep their bits.
void saturateRow(FramePixel*, int n);

}  // namespace zenlay
