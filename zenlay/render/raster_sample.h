// Reading a run of pixels out of a picture at positions that are linear, or linear over linear, along a row.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zenlay/effects/pixels.h"

namespace zenlay {

inline constexpr int maxSampleRun = 256;

/// The rectangle that is sampled. Positions outside of it take its nearest edge pixel; nothing outside is read.
struct SampleSource {
  const uint8_t* pixels;  // of the rectangle's first pixel
  int width, height;      // 1..16384
  ptrdiff_t lineBytes;
  bool alpha;  // ObjectPixels, else FramePixels, which count as opaque
};

/// Pixel i lies at ((u + i du) / (w + i dw), (v + i dv) / (w + i dw)) source pixels from the rectangle's corner; pixel
/// centres at .5. `w` is positive. With dw 0 the positions advance in 16.16 fixed point.
struct SampleRun {
  double u, v, w;
  double du, dv, dw;
  int count;  // 1..maxSampleRun
};

/// Bilinear, positions rounded to 1/128 pixel. Each of the four taps counts by its alpha; a whole-pixel position copies
/// the pixel unless it is transparent, whose colour becomes black.
void sampleRun(const SampleSource&, const SampleRun&, ObjectPixel* out);
void sampleRunPlain(const SampleSource&, const SampleRun&, ObjectPixel* out);  // the definition

}  // namespace zenlay
