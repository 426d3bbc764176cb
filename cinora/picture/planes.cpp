#include "cinora/picture/planes.h"

#include <algorithm>
#include <cstddef>

#include "cinora/picture/planes_rows.h"

namespace cinora {
namespace {

using zenlay::Bgr;
using zenlay::Bgra;
using zenlay::FramePixel;
using zenlay::fullAlpha;
using zenlay::ObjectPixel;

/// Where black and no colour lie and how many levels span 0..4096, by the size of a sample.
template <class Sample>
struct Levels {
  static constexpr int unit = sizeof(Sample) == 1 ? 1 : 256;
  static constexpr int largest = 256 * unit - 1;
  static constexpr int chromaCentre = 128 * unit;
  int black, lumaSpan, chromaSpan;
  explicit constexpr Levels(bool fullRange)
      : black(fullRange ? 0 : 16 * unit),
        lumaSpan(fullRange ? largest : 219 * unit),
        chromaSpan(fullRange ? largest : 224 * unit) {}
};

/// n / d to the nearest integer, halves upwards; d > 0.
constexpr int64_t nearest(int64_t n, int64_t d) {
  int64_t doubled = 2 * n + d, quotient = doubled / (2 * d);
  return quotient - (doubled % (2 * d) < 0);
}

int16_t fromSample(int value, int span) { return static_cast<int16_t>(nearest(int64_t{value} * fullAlpha, span)); }

/// The mean of `count` values whose sum is given.
template <class Sample>
Sample toSample(int sum, int count, int span, int zero) {
  int64_t value = nearest(int64_t{sum} * span, int64_t{fullAlpha} * count) + zero;
  return static_cast<Sample>(std::clamp<int64_t>(value, 0, Levels<Sample>::largest));
}

bool isHalfWide(Chroma chroma) { return chroma == Chroma::half || chroma == Chroma::halfWide; }

void setAlpha(FramePixel*, int16_t) {}
void setAlpha(ObjectPixel* p, int16_t alpha) { p->a = alpha; }
int alphaOf(const FramePixel&) { return fullAlpha; }
int alphaOf(const ObjectPixel& p) { return p.a; }

template <class Sample, class Pixel>
void plainRowIn(const RowIn& row, Pixel* pixels, int first, int width) {
  const Levels<Sample> levels(row.fullRange);
  const auto sample = [&row](int plane, int x) { return int{reinterpret_cast<const Sample*>(row.samples[plane])[x]}; };
  for (int x = first; x < width; ++x) {
    Pixel* p = &pixels[x];
    p->y = fromSample(sample(0, x) - levels.black, levels.lumaSpan);
    p->cb = p->cr = 0;
    if (row.chroma != Chroma::none) {
      int chromaX = isHalfWide(row.chroma) ? x / 2 : x;
      p->cb = fromSample(sample(1, chromaX) - levels.chromaCentre, levels.chromaSpan);
      p->cr = fromSample(sample(2, chromaX) - levels.chromaCentre, levels.chromaSpan);
    }
    setAlpha(p, row.samples[3] ? fromSample(sample(3, x), levels.largest) : int16_t{fullAlpha});
  }
}

template <class Sample, class Pixel>
void plainChromaOut(const RowsOut<Pixel>& rows, int first, int width) {
  const Levels<Sample> levels(rows.fullRange);
  auto* cbs = reinterpret_cast<Sample*>(rows.cb);
  auto* crs = reinterpret_cast<Sample*>(rows.cr);
  const int step = isHalfWide(rows.chroma) ? 2 : 1;
  for (int x = first; x < width; x += step) {
    int last = std::min(x + step - 1, width - 1), cb = 0, cr = 0;
    for (const Pixel* row : rows.pixels) {
      cb += row[x].cb + row[last].cb;
      cr += row[x].cr + row[last].cr;
    }
    cbs[x / step] = toSample<Sample>(cb, 4, levels.chromaSpan, levels.chromaCentre);
    crs[x / step] = toSample<Sample>(cr, 4, levels.chromaSpan, levels.chromaCentre);
  }
}

template <class Sample, class Pixel>
void plainRowsOut(const RowsOut<Pixel>& rows, int first, int width) {
  const Levels<Sample> levels(rows.fullRange);
  for (int i = 0; i < 2; ++i) {
    auto* luma = reinterpret_cast<Sample*>(rows.luma[i]);
    auto* alpha = reinterpret_cast<Sample*>(rows.alpha[i]);
    for (int x = first; x < width; ++x) {
      luma[x] = toSample<Sample>(rows.pixels[i][x].y, 1, levels.lumaSpan, levels.black);
      if (alpha) alpha[x] = toSample<Sample>(alphaOf(rows.pixels[i][x]), 1, levels.largest, 0);
    }
  }
  if (rows.chroma != Chroma::none) plainChromaOut<Sample>(rows, first, width);
}

/// Every row of the range through `vectorRow` and, for what it leaves, the plain version.
template <class Sample, class Pixel>
void planesIn(const PlanesIn& planes, Pixel* pixels, int rowPixels, int width, int firstRow, int lastRow,
              int (*vectorRow)(const RowIn&, Pixel*, int, int)) {
  for (int y = firstRow; y < lastRow; ++y) {
    const int chromaY = planes.chroma == Chroma::half ? y / 2 : y;
    RowIn row{{}, planes.chroma, planes.fullRange};
    for (int plane = 0; plane < 4; ++plane) {
      const bool chroma = plane == 1 || plane == 2;
      const bool present = planes.data[plane] && !(chroma && planes.chroma == Chroma::none);
      if (present) row.samples[plane] = planes.data[plane] + ptrdiff_t{chroma ? chromaY : y} * planes.stride[plane];
    }
    Pixel* out = pixels + ptrdiff_t{y} * rowPixels;
    plainRowIn<Sample>(row, out, vectorRow(row, out, 0, width), width);
  }
}

template <class Sample, class Pixel>
void planesOut(const Pixel* pixels, int rowPixels, const PlanesOut& planes, bool withAlpha, int width, int firstRow,
               int lastRow, int (*vectorRows)(const RowsOut<Pixel>&, int, int)) {
  const bool pairs = planes.chroma == Chroma::half;
  const auto start = [&planes](int plane, int y) { return planes.data[plane] + ptrdiff_t{y} * planes.stride[plane]; };
  for (int y = firstRow; y < lastRow; y += pairs ? 2 : 1) {
    RowsOut<Pixel> rows{};
    rows.chroma = planes.chroma;
    rows.fullRange = planes.fullRange;
    const int lower = pairs ? std::min(y + 1, lastRow - 1) : y;
    for (int i = 0; i < 2; ++i) {
      const int row = i ? lower : y;
      rows.pixels[i] = pixels + ptrdiff_t{row} * rowPixels;
      rows.luma[i] = start(0, row);
      if (withAlpha && planes.data[3]) rows.alpha[i] = start(3, row);
    }
    if (planes.chroma != Chroma::none) {
      rows.cb = start(1, pairs ? y / 2 : y);
      rows.cr = start(2, pairs ? y / 2 : y);
    }
    plainRowsOut<Sample>(rows, vectorRows(rows, 0, width), width);
  }
}

/// `value` has `bits` fractional bits.
int32_t rounded(int32_t value, int bits) { return (value + (1 << (bits - 1))) >> bits; }
uint8_t toByte(int32_t value) { return static_cast<uint8_t>(std::clamp(rounded(value, rgbBits), 0, 255)); }
int16_t toShort(int32_t value) { return static_cast<int16_t>(std::clamp<int32_t>(value, INT16_MIN, INT16_MAX)); }

template <class Pixel, class Packed>
void setYcbcr(Pixel* p, const Packed& c) {
  int16_t* const components[] = {&p->y, &p->cb, &p->cr};
  for (int i = 0; i < 3; ++i) {
    const int32_t* share = toYcbcr[i];
    *components[i] = static_cast<int16_t>(rounded(c.r * share[0] + c.g * share[1] + c.b * share[2], rgbBits));
  }
}

template <class Packed, class Pixel>
void setRgb(Packed* c, const Pixel& p) {
  int32_t luma = p.y * lumaToRgb;
  c->b = toByte(luma + p.cb * cbToBlue);
  c->g = toByte(luma + p.cb * cbToGreen + p.cr * crToGreen);
  c->r = toByte(luma + p.cr * crToRed);
}

// Y is unchanged by grey; derived from BT.709's and BT.601's luma shares (0.2126, 0.0722 and 0.299, 0.114).
constexpr ColourMatrix matrix709To601 = {3329, 6425, 32436, -3626, -2374, 32224};
constexpr ColourMatrix matrix601To709 = {-3873, -6969, 33379, 3756, 2459, 33598};

template <class Pixel>
void applyMatrix(Pixel* row, int n, const ColourMatrix& m) {
  for (int i = vectorMatrix(row, n, m); i < n; ++i) {
    Pixel* p = &row[i];
    const int32_t cb = p->cb, cr = p->cr;
    p->y = toShort(p->y + rounded(cb * m.cbToY + cr * m.crToY, 15));
    p->cb = toShort(rounded(cb * m.cbToCb + cr * m.crToCb, 15));
    p->cr = toShort(rounded(cb * m.cbToCr + cr * m.crToCr, 15));
  }
}

}  // namespace

void planesToFrame(const PlanesIn& planes, FramePixel* rows, int rowPixels, int width, int firstRow, int lastRow) {
  planesIn<uint8_t>(planes, rows, rowPixels, width, firstRow, lastRow, vectorRowIn);
}
void planesToObject(const PlanesIn& planes, ObjectPixel* rows, int rowPixels, int width, int firstRow, int lastRow) {
  planesIn<uint8_t>(planes, rows, rowPixels, width, firstRow, lastRow, vectorRowIn);
}
void planes16ToFrame(const PlanesIn& planes, FramePixel* rows, int rowPixels, int width, int firstRow, int lastRow) {
  planesIn<uint16_t>(planes, rows, rowPixels, width, firstRow, lastRow, vectorRowIn16);
}
void planes16ToObject(const PlanesIn& planes, ObjectPixel* rows, int rowPixels, int width, int firstRow, int lastRow) {
  planesIn<uint16_t>(planes, rows, rowPixels, width, firstRow, lastRow, vectorRowIn16);
}

void frameToPlanes(const FramePixel* rows, int rowPixels, const PlanesOut& planes, int width, int firstRow,
                   int lastRow) {
  planesOut<uint8_t>(rows, rowPixels, planes, false, width, firstRow, lastRow, vectorRowsOut);
}
void frameWithAlphaToPlanes(const ObjectPixel* rows, int rowPixels, const PlanesOut& planes, int width, int firstRow,
                            int lastRow) {
  planesOut<uint8_t>(rows, rowPixels, planes, true, width, firstRow, lastRow, vectorRowsOut);
}
void frameToPlanes16(const FramePixel* rows, int rowPixels, const PlanesOut& planes, int width, int firstRow,
                     int lastRow) {
  planesOut<uint16_t>(rows, rowPixels, planes, false, width, firstRow, lastRow, vectorRowsOut16);
}
void frameWithAlphaToPlanes16(const ObjectPixel* rows, int rowPixels, const PlanesOut& planes, int width, int firstRow,
                              int lastRow) {
  planesOut<uint16_t>(rows, rowPixels, planes, true, width, firstRow, lastRow, vectorRowsOut16);
}

void bgrToFrameRow(FramePixel* d, const Bgr* s, int n) {
  for (int i = vectorBgrToFrame(d, s, n); i < n; ++i) setYcbcr(&d[i], s[i]);
}
void bgraToObjectRow(ObjectPixel* d, const Bgra* s, int n) {
  for (int i = vectorBgraToObject(d, s, n); i < n; ++i) {
    setYcbcr(&d[i], s[i]);
    d[i].a = fromSample(s[i].a, 255);
  }
}
void frameToBgrRow(Bgr* d, const FramePixel* s, int n) {
  for (int i = vectorFrameToBgr(d, s, n); i < n; ++i) setRgb(&d[i], s[i]);
}
void objectToBgraRow(Bgra* d, const ObjectPixel* s, int n) {
  for (int i = vectorObjectToBgra(d, s, n); i < n; ++i) {
    setRgb(&d[i], s[i]);
    d[i].a = toSample<uint8_t>(s[i].a, 1, 255, 0);
  }
}

void bt709ToBt601Row(FramePixel* row, int n) { applyMatrix(row, n, matrix709To601); }
void bt709ToBt601Row(ObjectPixel* row, int n) { applyMatrix(row, n, matrix709To601); }
void bt601ToBt709Row(FramePixel* row, int n) { applyMatrix(row, n, matrix601To709); }
void bt601ToBt709Row(ObjectPixel* row, int n) { applyMatrix(row, n, matrix601To709); }

}  // namespace cinora
