// Rows of samples to and from rows of pixels: what planes.cpp asks of its plain and its vector version.
//
// Each takes pixels from `first` on. The vector version stops before the last incomplete block and returns where; the
// plain version, which is the definition, takes the rest. `first` is even.
#pragma once

#include "cinora/picture/planes.h"

namespace cinora {

/// Starts of a picture row's samples in the planes Y, Cb, Cr and alpha.
struct RowIn {
  const uint8_t* samples[4];
  Chroma chroma;
  bool fullRange;
};

/// Two picture rows that share a chroma row. In formats without vertical sub-sampling, and at an odd lower edge, both
/// are the same row.
template <class Pixel>
struct RowsOut {
  const Pixel* pixels[2];
  uint8_t* luma[2];
  uint8_t* alpha[2];  // null: none
  uint8_t* cb;
  uint8_t* cr;
  Chroma chroma;
  bool fullRange;
};

int vectorRowIn(const RowIn&, zenlay::FramePixel*, int first, int width);
int vectorRowIn(const RowIn&, zenlay::ObjectPixel*, int first, int width);
int vectorRowIn16(const RowIn&, zenlay::FramePixel*, int first, int width);
int vectorRowIn16(const RowIn&, zenlay::ObjectPixel*, int first, int width);
int vectorRowsOut(const RowsOut<zenlay::FramePixel>&, int first, int width);
int vectorRowsOut(const RowsOut<zenlay::ObjectPixel>&, int first, int width);
int vectorRowsOut16(const RowsOut<zenlay::FramePixel>&, int first, int width);
int vectorRowsOut16(const RowsOut<zenlay::ObjectPixel>&, int first, int width);

int vectorBgrToFrame(zenlay::FramePixel*, const zenlay::Bgr*, int n);
int vectorBgraToObject(zenlay::ObjectPixel*, const zenlay::Bgra*, int n);
int vectorFrameToBgr(zenlay::Bgr*, const zenlay::FramePixel*, int n);
int vectorObjectToBgra(zenlay::Bgra*, const zenlay::ObjectPixel*, int n);

/// Coefficients of full-range BT.601 in 18 fractional bits: 8-bit components to the 4096 scale, and back. The rows of
/// the first sum to 4096 / 255, 0 and 0, so greys stay grey and white is 4096.
inline constexpr int rgbBits = 18;
inline constexpr int32_t toYcbcr[3][3] = {  // Y, Cb, Cr of red, green, blue
    {1259015, 2471711, 480026},
    {-710505, -1394871, 2105376},
    {2105376, -1762990, -342386}};
inline constexpr int32_t lumaToRgb = 16320;  // 255 / 4096
inline constexpr int32_t crToRed = 22881, cbToGreen = -5616, crToGreen = -11655, cbToBlue = 28919;

/// What a Y, Cb, Cr triple adds to Y and its own shares in Cb and Cr, in 15 fractional bits.
struct ColourMatrix {
  int32_t cbToY, crToY, cbToCb, crToCb, cbToCr, crToCr;
};
int vectorMatrix(zenlay::FramePixel*, int n, const ColourMatrix&);
int vectorMatrix(zenlay::ObjectPixel*, int n, const ColourMatrix&);

}  // namespace cinora
