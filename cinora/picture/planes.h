// Pictures of the decoder and the encoder to and from frame rows.
//
// 8-bit (and 16-bit 4:4:4) planes, packed BGR and BGRA against FramePixel and ObjectPixel, all in BT.601 proportions
// unless said otherwise. Every step rounds to the nearest value, so an 8-bit picture taken in and out again is the same
// picture. Sub-sampled chroma is replicated on the way in and averaged (one rounding) on the way out; at an odd right
// or lower edge the last column or row stands for its missing neighbour.
//
// Values outside the nominal range are kept on the way in (limited-range Y 1..15 is negative) and limited to what the
// plane can hold on the way out. Nothing here allocates; pointers need no alignment.
#pragma once

#include <cstdint>

#include "zenlay/host/host_interface.h"  // FramePixel, ObjectPixel, Bgr, Bgra

namespace cinora {

/// How much smaller the chroma planes are than the luma plane, rounded up.
enum class Chroma {
  half,      // 4:2:0
  halfWide,  // 4:2:2
  full,      // 4:4:4
  none,      // 4:0:0, grey: planes 1 and 2 are neither read nor written
};

/// Planes Y, Cb, Cr and alpha (always full range; null when there is none). Strides in bytes, negative ones for
/// bottom-up planes: an AVFrame's `data` and `linesize`.
struct PlanesIn {
  const uint8_t* data[4];
  int stride[4];
  Chroma chroma;
  bool fullRange;  // Y, Cb and Cr span 255 levels; else Y 16..235, Cb and Cr 16..240
};
struct PlanesOut {
  uint8_t* data[4];
  int stride[4];
  Chroma chroma;
  bool fullRange;
};

/// Rows firstRow..lastRow-1 of a picture; `rows` and the planes begin at row 0, rows are `rowPixels` apart. So that
/// ranges can be given to different threads, firstRow is even and lastRow is even or the picture's height.
void planesToFrame(const PlanesIn&, zenlay::FramePixel* rows, int rowPixels, int width, int firstRow, int lastRow);
void frameToPlanes(const zenlay::FramePixel* rows, int rowPixels, const PlanesOut&, int width, int firstRow,
                   int lastRow);
/// With the alpha plane: a missing one reads as opaque and is not written. Chroma is averaged without regard to alpha.
void planesToObject(const PlanesIn&, zenlay::ObjectPixel* rows, int rowPixels, int width, int firstRow, int lastRow);
void frameWithAlphaToPlanes(const zenlay::ObjectPixel* rows, int rowPixels, const PlanesOut&, int width, int firstRow,
                            int lastRow);

/// The same with 16-bit native-endian samples (yuv444p16, yuva444p16): limited range Y 4096..60160, Cb and Cr
/// 4096..61440; full range and alpha 0..65535. `chroma` must be full or none.
void planes16ToFrame(const PlanesIn&, zenlay::FramePixel* rows, int rowPixels, int width, int firstRow, int lastRow);
void planes16ToObject(const PlanesIn&, zenlay::ObjectPixel* rows, int rowPixels, int width, int firstRow, int lastRow);
void frameToPlanes16(const zenlay::FramePixel* rows, int rowPixels, const PlanesOut&, int width, int firstRow,
                     int lastRow);
void frameWithAlphaToPlanes16(const zenlay::ObjectPixel* rows, int rowPixels, const PlanesOut&, int width, int firstRow,
                              int lastRow);

/// Packed pictures, one row of `n` pixels (bgr24, bgra: straight alpha). All 2^24 colours come out as they went in.
void bgrToFrameRow(zenlay::FramePixel*, const zenlay::Bgr*, int n);
void bgraToObjectRow(zenlay::ObjectPixel*, const zenlay::Bgra*, int n);
void frameToBgrRow(zenlay::Bgr*, const zenlay::FramePixel*, int n);
void objectToBgraRow(zenlay::Bgra*, const zenlay::ObjectPixel*, int n);

/// Full-range BT.709 colour to the frame's BT.601 and back, in place: a source or an output tagged BT.709.
void bt709ToBt601Row(zenlay::FramePixel*, int n);
void bt709ToBt601Row(zenlay::ObjectPixel*, int n);
void bt601ToBt709Row(zenlay::FramePixel*, int n);
void bt601ToBt709Row(zenlay::ObjectPixel*, int n);

}  // namespace cinora
