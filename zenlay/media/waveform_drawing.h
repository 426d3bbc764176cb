// Pictures of sound: a connected line, or bars of frequencies.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zenlay/effects/pixels.h"

namespace zenlay {

struct WaveformShape {
  int32_t columns;    // points of the line, or bars; 0 or above the width: one a column
  int32_t rows;       // vertical extent of the line in pixels, or steps of a bar; 0 or above the height: the height
  int32_t columnGap;  // between bars and between steps, percent 0..100
  int32_t rowGap;
  bool mirror;  // also upside down; bars grow from the middle line
};

/// An image whose pixels have the colour already; drawing changes their alpha alone. Rows lie `line` pixels apart.
struct WaveformImage {
  ObjectPixel* pixels;
  int line, width, height;
};

/// The samples spread over the width around the middle line, anti-aliased.
void drawWaveLine(const WaveformImage&, const int16_t* mono, int count, const WaveformShape&);
/// `count` levels 0..1 grouped into bars from left to right, each as high as its largest level.
void drawLevelBars(const WaveformImage&, const float* levels, int count, const WaveformShape&);

}  // namespace zenlay
