// Plane and pixel rows in vectors, chosen for the processor at run time. Same bits as the plain rows of planes.cpp.
#include "cinora/picture/planes_rows.h"

// AVX2, AVX-512 and the fixed-size vectors of other architectures; older x86 runs the plain rows.
#define HWY_DISABLED_TARGETS \
  (HWY_SSSE3 | HWY_SSE4 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cinora/picture/planes_vector.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace cinora {
namespace HWY_NAMESPACE {

using zenlay::Bgr;
using zenlay::Bgra;
using zenlay::FramePixel;
using zenlay::fullAlpha;
using zenlay::ObjectPixel;

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

template <class Pixel>
int rowIn(const RowIn&, Pixel*, int first, int) {
  return first;
}
template <class Pixel>
int rowIn16(const RowIn&, Pixel*, int first, int) {
  return first;
}
template <class Pixel>
int rowsOut(const RowsOut<Pixel>&, int first, int) {
  return first;
}
template <class Pixel>
int rowsOut16(const RowsOut<Pixel>&, int first, int) {
  return first;
}
template <class Pixel, class Packed>
int packedIn(Pixel*, const Packed*, int) {
  return 0;
}
template <class Packed, class Pixel>
int packedOut(Packed*, const Pixel*, int) {
  return 0;
}
template <class Pixel>
int matrix(Pixel*, int, const ColourMatrix&) {
  return 0;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

// ---- 8-bit planes, in 16-bit lanes ----

using Wide = hn::ScalableTag<int16_t>;
using Bytes = hn::Rebind<uint8_t, Wide>;
using Pairs = hn::RepartitionToWide<Wide>;  // two neighbouring pixels a lane
using Vector = hn::Vec<Wide>;

HWY_INLINE Vector splat(int value) { return hn::Set(Wide(), static_cast<int16_t>(value)); }

/// whole * v + ((part * v + offset) >> bits).
template <int whole, int part, int offset, int bits>
HWY_INLINE Vector scaled(Vector v) {
  Vector fraction = hn::ShiftRight<bits>(hn::Add(hn::Mul(v, splat(part)), splat(offset)));
  return hn::Add(hn::Mul(v, splat(whole)), fraction);
}
// v * 4096 / span to nearest for every 8-bit v, without a division: found by trying every multiplier and offset.
template <bool fullRange>
HWY_INLINE Vector lumaIn(Vector v) {
  return fullRange ? scaled<16, 16, 128, 8>(v) : scaled<18, 90, 64, 7>(hn::Sub(v, splat(16)));
}
template <bool fullRange>
HWY_INLINE Vector chromaIn(Vector v) {
  v = hn::Sub(v, splat(128));
  return fullRange ? scaled<16, 129, 1016, 11>(v) : scaled<18, 146, 254, 9>(v);
}

HWY_INLINE Vector samples(const uint8_t* p) { return hn::PromoteTo(Wide(), hn::LoadU(Bytes(), p)); }
/// Each sample twice.
HWY_INLINE Vector doubledSamples(const uint8_t* p) {
  const hn::Half<Bytes> halfBytes;
  const hn::Rebind<uint16_t, decltype(halfBytes)> halfWide;
  auto single = hn::PromoteTo(halfWide, hn::LoadU(halfBytes, p));
  return hn::PromoteTo(Wide(), hn::BitCast(Bytes(), hn::Or(single, hn::ShiftLeft<8>(single))));
}

HWY_INLINE void store(FramePixel* p, Vector y, Vector cb, Vector cr, const uint8_t*) {
  hn::StoreInterleaved3(y, cb, cr, Wide(), &p->y);
}
HWY_INLINE void store(ObjectPixel* p, Vector y, Vector cb, Vector cr, const uint8_t* alpha) {
  Vector a = alpha ? scaled<16, 16, 128, 8>(samples(alpha)) : splat(fullAlpha);
  hn::StoreInterleaved4(y, cb, cr, a, Wide(), &p->y);
}

template <bool fullRange, Chroma chroma, class Pixel>
HWY_INLINE int rowInAs(const RowIn& row, Pixel* pixels, int x, int width) {
  constexpr bool halfWide = chroma == Chroma::half;
  const int block = static_cast<int>(hn::Lanes(Wide()));
  const uint8_t* const* planes = row.samples;
  for (; x + block <= width; x += block) {
    Vector cb = splat(0), cr = splat(0);
    if constexpr (halfWide) {
      cb = chromaIn<fullRange>(doubledSamples(planes[1] + x / 2));
      cr = chromaIn<fullRange>(doubledSamples(planes[2] + x / 2));
    } else if constexpr (chroma == Chroma::full) {
      cb = chromaIn<fullRange>(samples(planes[1] + x));
      cr = chromaIn<fullRange>(samples(planes[2] + x));
    }
    store(pixels + x, lumaIn<fullRange>(samples(planes[0] + x)), cb, cr, planes[3] ? planes[3] + x : nullptr);
  }
  return x;
}

template <bool fullRange, class Pixel>
int rowInRange(const RowIn& row, Pixel* pixels, int first, int width) {
  switch (row.chroma) {
    case Chroma::half:
    case Chroma::halfWide:
      return rowInAs<fullRange, Chroma::half>(row, pixels, first, width);
    case Chroma::full:
      return rowInAs<fullRange, Chroma::full>(row, pixels, first, width);
    case Chroma::none:
      return rowInAs<fullRange, Chroma::none>(row, pixels, first, width);
  }
  return first;
}

template <class Pixel>
int rowIn(const RowIn& row, Pixel* pixels, int first, int width) {
  return row.fullRange ? rowInRange<true>(row, pixels, first, width) : rowInRange<false>(row, pixels, first, width);
}

/// v * span / 4096 to nearest, with `zero` added, as bytes.
HWY_INLINE hn::Vec<Bytes> toBytes(Vector v, int span, int zero) {
  return hn::DemoteTo(Bytes(), hn::Add(hn::MulFixedPoint15(v, splat(span * 8)), splat(zero)));
}

HWY_INLINE void loadOut(const FramePixel* p, Vector* y, Vector* cb, Vector* cr, Vector* a) {
  hn::LoadInterleaved3(Wide(), &p->y, *y, *cb, *cr);
  *a = splat(fullAlpha);
}
HWY_INLINE void loadOut(const ObjectPixel* p, Vector* y, Vector* cb, Vector* cr, Vector* a) {
  hn::LoadInterleaved4(Wide(), &p->y, *y, *cb, *cr, *a);
}

HWY_INLINE hn::Vec<Pairs> pairSums(Vector v) {
  auto pairs = hn::BitCast(Pairs(), v);
  return hn::Add(hn::ShiftRight<16>(hn::ShiftLeft<16>(pairs)), hn::ShiftRight<16>(pairs));
}
/// The mean of two pixels of two rows each.
HWY_INLINE void storeMeans(uint8_t* p, Vector upper, Vector lower, int span) {
  auto sum = hn::Mul(hn::Add(pairSums(upper), pairSums(lower)), hn::Set(Pairs(), span));
  auto mean = hn::Add(hn::ShiftRight<14>(hn::Add(sum, hn::Set(Pairs(), 8192))), hn::Set(Pairs(), 128));
  const hn::Rebind<uint8_t, Pairs> bytes;
  hn::StoreU(hn::DemoteTo(bytes, mean), bytes, p);
}

/// Loads a block of row i, writes its luma and alpha and returns its chroma.
template <class Pixel>
HWY_INLINE void lumaOut(const RowsOut<Pixel>& rows, int i, int x, Vector* cb, Vector* cr) {
  Vector y, a;
  loadOut(rows.pixels[i] + x, &y, cb, cr, &a);
  hn::StoreU(toBytes(y, rows.fullRange ? 255 : 219, rows.fullRange ? 0 : 16), Bytes(), rows.luma[i] + x);
  if (rows.alpha[i]) hn::StoreU(toBytes(a, 255, 0), Bytes(), rows.alpha[i] + x);
}

template <Chroma chroma, class Pixel>
HWY_INLINE int rowsOutAs(const RowsOut<Pixel>& rows, int x, int width) {
  const int block = static_cast<int>(hn::Lanes(Wide())), span = rows.fullRange ? 255 : 224;
  for (; x + block <= width; x += block) {
    Vector cb, cr;
    lumaOut(rows, 0, x, &cb, &cr);
    if constexpr (chroma == Chroma::full) {
      hn::StoreU(toBytes(cb, span, 128), Bytes(), rows.cb + x);
      hn::StoreU(toBytes(cr, span, 128), Bytes(), rows.cr + x);
    } else if constexpr (chroma != Chroma::none) {
      Vector lowerCb = cb, lowerCr = cr;
      if constexpr (chroma == Chroma::half) lumaOut(rows, 1, x, &lowerCb, &lowerCr);
      storeMeans(rows.cb + x / 2, cb, lowerCb, span);
      storeMeans(rows.cr + x / 2, cr, lowerCr, span);
    }
  }
  return x;
}

template <class Pixel>
int rowsOut(const RowsOut<Pixel>& rows, int first, int width) {
  switch (rows.chroma) {
    case Chroma::half:
      return rowsOutAs<Chroma::half>(rows, first, width);
    case Chroma::halfWide:
      return rowsOutAs<Chroma::halfWide>(rows, first, width);
    case Chroma::full:
      return rowsOutAs<Chroma::full>(rows, first, width);
    case Chroma::none:
      return rowsOutAs<Chroma::none>(rows, first, width);
  }
  return first;
}

// ---- Everything else, in 32-bit lanes ----

using Lanes = hn::ScalableTag<int32_t>;
using Shorts = hn::Rebind<int16_t, Lanes>;
using Words = hn::Rebind<uint16_t, Lanes>;
using Octets = hn::Rebind<uint8_t, Lanes>;
using Vector32 = hn::Vec<Lanes>;

HWY_INLINE Vector32 splat32(int32_t value) { return hn::Set(Lanes(), value); }
HWY_INLINE int lanes32() { return static_cast<int>(hn::Lanes(Lanes())); }

struct Colours {
  Vector32 y, cb, cr, a;
};

template <int bits>
HWY_INLINE Vector32 rounded(Vector32 v) {
  return hn::ShiftRight<bits>(hn::Add(v, splat32(1 << (bits - 1))));
}

HWY_INLINE Colours load(const FramePixel* p) {
  hn::Vec<Shorts> y, cb, cr;
  hn::LoadInterleaved3(Shorts(), &p->y, y, cb, cr);
  return {hn::PromoteTo(Lanes(), y), hn::PromoteTo(Lanes(), cb), hn::PromoteTo(Lanes(), cr), splat32(fullAlpha)};
}
HWY_INLINE Colours load(const ObjectPixel* p) {
  hn::Vec<Shorts> y, cb, cr, a;
  hn::LoadInterleaved4(Shorts(), &p->y, y, cb, cr, a);
  return {hn::PromoteTo(Lanes(), y), hn::PromoteTo(Lanes(), cb), hn::PromoteTo(Lanes(), cr), hn::PromoteTo(Lanes(), a)};
}

HWY_INLINE hn::Vec<Shorts> limited(Vector32 v) { return hn::DemoteTo(Shorts(), v); }
HWY_INLINE void store(FramePixel* p, const Colours& c) {
  hn::StoreInterleaved3(limited(c.y), limited(c.cb), limited(c.cr), Shorts(), &p->y);
}
HWY_INLINE void store(ObjectPixel* p, const Colours& c) {
  hn::StoreInterleaved4(limited(c.y), limited(c.cb), limited(c.cr), limited(c.a), Shorts(), &p->y);
}

HWY_INLINE Vector32 samples16(const uint8_t* plane, int x) {
  return hn::PromoteTo(Lanes(), hn::LoadU(Words(), reinterpret_cast<const uint16_t*>(plane) + x));
}

/// v * 4096 / 65535 to nearest for -32768..65535: v / 16 and a little more, never a half.
HWY_INLINE Vector32 fromFull16(Vector32 v) {
  return hn::ShiftRight<4>(hn::Add(hn::Add(v, splat32(8)), hn::ShiftRight<31>(v)));
}
/// v * 16 / 219 to nearest for 16 bits: quotients lie 1/438 and more from a half, floats nearer than that.
HWY_INLINE Vector32 fromLimited16(Vector32 v) {
  const hn::RebindToFloat<Lanes> floats;
  return hn::NearestInt(hn::Mul(hn::ConvertTo(floats, v), hn::Set(floats, 16.0f / 219.0f)));
}
/// v / 14 to nearest, halves upwards, for 16 bits: made positive and 1/28 off every integer, then truncated.
HWY_INLINE Vector32 fromLimitedChroma16(Vector32 v) {
  const hn::RebindToFloat<Lanes> floats;
  auto n = hn::Add(hn::ConvertTo(floats, v), hn::Set(floats, 14 * 4096 + 7.5f));
  return hn::Sub(hn::ConvertTo(Lanes(), hn::Mul(n, hn::Set(floats, 1.0f / 14.0f))), splat32(4096));
}

template <class Pixel>
int rowIn16(const RowIn& row, Pixel* pixels, int x, int width) {
  for (; x + lanes32() <= width; x += lanes32()) {
    Colours c{samples16(row.samples[0], x), splat32(0), splat32(0), splat32(fullAlpha)};
    c.y = row.fullRange ? fromFull16(c.y) : fromLimited16(hn::Sub(c.y, splat32(4096)));
    if (row.chroma != Chroma::none) {
      c.cb = hn::Sub(samples16(row.samples[1], x), splat32(32768));
      c.cr = hn::Sub(samples16(row.samples[2], x), splat32(32768));
      c.cb = row.fullRange ? fromFull16(c.cb) : fromLimitedChroma16(c.cb);
      c.cr = row.fullRange ? fromFull16(c.cr) : fromLimitedChroma16(c.cr);
    }
    if (row.samples[3]) c.a = fromFull16(samples16(row.samples[3], x));
    store(pixels + x, c);
  }
  return x;
}

HWY_INLINE void storeSamples16(uint8_t* plane, int x, Vector32 v, int span, int zero) {
  Vector32 value = hn::Add(rounded<12>(hn::Mul(v, splat32(span))), splat32(zero));
  hn::StoreU(hn::DemoteTo(Words(), value), Words(), reinterpret_cast<uint16_t*>(plane) + x);
}

template <class Pixel>
int rowsOut16(const RowsOut<Pixel>& rows, int x, int width) {
  const int lumaSpan = rows.fullRange ? 65535 : 219 * 256, chromaSpan = rows.fullRange ? 65535 : 224 * 256;
  for (; x + lanes32() <= width; x += lanes32()) {
    Colours c = load(rows.pixels[0] + x);
    storeSamples16(rows.luma[0], x, c.y, lumaSpan, rows.fullRange ? 0 : 4096);
    if (rows.alpha[0]) storeSamples16(rows.alpha[0], x, c.a, 65535, 0);
    if (rows.chroma == Chroma::none) continue;
    storeSamples16(rows.cb, x, c.cb, chromaSpan, 32768);
    storeSamples16(rows.cr, x, c.cr, chromaSpan, 32768);
  }
  return x;
}

HWY_INLINE Vector32 share(Vector32 r, Vector32 g, Vector32 b, const int32_t (&shares)[3]) {
  Vector32 sum = hn::Add(hn::Mul(r, splat32(shares[0])), hn::Mul(g, splat32(shares[1])));
  return rounded<rgbBits>(hn::Add(sum, hn::Mul(b, splat32(shares[2]))));
}
HWY_INLINE void packedBlockIn(FramePixel* d, const Bgr* s) {
  hn::Vec<Octets> b8, g8, r8;
  hn::LoadInterleaved3(Octets(), &s->b, b8, g8, r8);
  Vector32 b = hn::PromoteTo(Lanes(), b8), g = hn::PromoteTo(Lanes(), g8), r = hn::PromoteTo(Lanes(), r8);
  store(d, {share(r, g, b, toYcbcr[0]), share(r, g, b, toYcbcr[1]), share(r, g, b, toYcbcr[2]), b});
}
HWY_INLINE void packedBlockIn(ObjectPixel* d, const Bgra* s) {
  hn::Vec<Octets> b8, g8, r8, a8;
  hn::LoadInterleaved4(Octets(), &s->b, b8, g8, r8, a8);
  Vector32 b = hn::PromoteTo(Lanes(), b8), g = hn::PromoteTo(Lanes(), g8), r = hn::PromoteTo(Lanes(), r8);
  Vector32 a = hn::PromoteTo(Lanes(), a8);
  a = hn::Add(hn::ShiftLeft<4>(a), hn::ShiftRight<4>(hn::Add(a, splat32(8))));
  store(d, {share(r, g, b, toYcbcr[0]), share(r, g, b, toYcbcr[1]), share(r, g, b, toYcbcr[2]), a});
}
template <class Pixel, class Packed>
int packedIn(Pixel* d, const Packed* s, int n) {
  int i = 0;
  for (; i + lanes32() <= n; i += lanes32()) packedBlockIn(d + i, s + i);
  return i;
}

HWY_INLINE hn::Vec<Octets> octets(Vector32 v) { return hn::DemoteTo(Octets(), rounded<rgbBits>(v)); }
struct PackedVectors {
  hn::Vec<Octets> b, g, r;
};
HWY_INLINE PackedVectors toPacked(const Colours& c) {
  Vector32 luma = hn::Mul(c.y, splat32(lumaToRgb));
  Vector32 green = hn::Add(hn::Mul(c.cb, splat32(cbToGreen)), hn::Mul(c.cr, splat32(crToGreen)));
  return {octets(hn::Add(luma, hn::Mul(c.cb, splat32(cbToBlue)))), octets(hn::Add(luma, green)),
          octets(hn::Add(luma, hn::Mul(c.cr, splat32(crToRed))))};
}
HWY_INLINE void packedBlockOut(Bgr* d, const FramePixel* s) {
  PackedVectors c = toPacked(load(s));
  hn::StoreInterleaved3(c.b, c.g, c.r, Octets(), &d->b);
}
HWY_INLINE void packedBlockOut(Bgra* d, const ObjectPixel* s) {
  Colours colours = load(s);
  PackedVectors c = toPacked(colours);
  auto alpha = hn::DemoteTo(Octets(), rounded<12>(hn::Mul(colours.a, splat32(255))));
  hn::StoreInterleaved4(c.b, c.g, c.r, alpha, Octets(), &d->b);
}
template <class Packed, class Pixel>
int packedOut(Packed* d, const Pixel* s, int n) {
  int i = 0;
  for (; i + lanes32() <= n; i += lanes32()) packedBlockOut(d + i, s + i);
  return i;
}

HWY_INLINE Vector32 chromaShare(const Colours& c, int32_t cb, int32_t cr) {
  return rounded<15>(hn::Add(hn::Mul(c.cb, splat32(cb)), hn::Mul(c.cr, splat32(cr))));
}
template <class Pixel>
int matrix(Pixel* row, int n, const ColourMatrix& m) {
  int i = 0;
  for (; i + lanes32() <= n; i += lanes32()) {
    Colours c = load(row + i);
    store(row + i, {hn::Add(c.y, chromaShare(c, m.cbToY, m.crToY)), chromaShare(c, m.cbToCb, m.crToCb),
                    chromaShare(c, m.cbToCr, m.crToCr), c.a});
  }
  return i;
}

#endif

// The dispatcher takes no templates.
int frameIn(const RowIn& row, FramePixel* p, int first, int width) { return rowIn(row, p, first, width); }
int objectIn(const RowIn& row, ObjectPixel* p, int first, int width) { return rowIn(row, p, first, width); }
int frameIn16(const RowIn& row, FramePixel* p, int first, int width) { return rowIn16(row, p, first, width); }
int objectIn16(const RowIn& row, ObjectPixel* p, int first, int width) { return rowIn16(row, p, first, width); }
int frameOut(const RowsOut<FramePixel>& rows, int first, int width) { return rowsOut(rows, first, width); }
int objectOut(const RowsOut<ObjectPixel>& rows, int first, int width) { return rowsOut(rows, first, width); }
int frameOut16(const RowsOut<FramePixel>& rows, int first, int width) { return rowsOut16(rows, first, width); }
int objectOut16(const RowsOut<ObjectPixel>& rows, int first, int width) { return rowsOut16(rows, first, width); }
int bgrIn(FramePixel* d, const Bgr* s, int n) { return packedIn(d, s, n); }
int bgraIn(ObjectPixel* d, const Bgra* s, int n) { return packedIn(d, s, n); }
int bgrOut(Bgr* d, const FramePixel* s, int n) { return packedOut(d, s, n); }
int bgraOut(Bgra* d, const ObjectPixel* s, int n) { return packedOut(d, s, n); }
int frameMatrix(FramePixel* p, int n, const ColourMatrix& m) { return matrix(p, n, m); }
int objectMatrix(ObjectPixel* p, int n, const ColourMatrix& m) { return matrix(p, n, m); }

}  // namespace HWY_NAMESPACE
}  // namespace cinora
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace cinora {

using zenlay::Bgr;
using zenlay::Bgra;
using zenlay::FramePixel;
using zenlay::ObjectPixel;

HWY_EXPORT(frameIn);
HWY_EXPORT(objectIn);
HWY_EXPORT(frameIn16);
HWY_EXPORT(objectIn16);
HWY_EXPORT(frameOut);
HWY_EXPORT(objectOut);
HWY_EXPORT(frameOut16);
HWY_EXPORT(objectOut16);
HWY_EXPORT(bgrIn);
HWY_EXPORT(bgraIn);
HWY_EXPORT(bgrOut);
HWY_EXPORT(bgraOut);
HWY_EXPORT(frameMatrix);
HWY_EXPORT(objectMatrix);

int vectorRowIn(const RowIn& row, FramePixel* p, int first, int width) {
  return HWY_DYNAMIC_DISPATCH(frameIn)(row, p, first, width);
}
int vectorRowIn(const RowIn& row, ObjectPixel* p, int first, int width) {
  return HWY_DYNAMIC_DISPATCH(objectIn)(row, p, first, width);
}
int vectorRowIn16(const RowIn& row, FramePixel* p, int first, int width) {
  return HWY_DYNAMIC_DISPATCH(frameIn16)(row, p, first, width);
}
int vectorRowIn16(const RowIn& row, ObjectPixel* p, int first, int width) {
  return HWY_DYNAMIC_DISPATCH(objectIn16)(row, p, first, width);
}
int vectorRowsOut(const RowsOut<FramePixel>& rows, int first, int width) {
  return HWY_DYNAMIC_DISPATCH(frameOut)(rows, first, width);
}
int vectorRowsOut(const RowsOut<ObjectPixel>& rows, int first, int width) {
  return HWY_DYNAMIC_DISPATCH(objectOut)(rows, first, width);
}
int vectorRowsOut16(const RowsOut<FramePixel>& rows, int first, int width) {
  return HWY_DYNAMIC_DISPATCH(frameOut16)(rows, first, width);
}
int vectorRowsOut16(const RowsOut<ObjectPixel>& rows, int first, int width) {
  return HWY_DYNAMIC_DISPATCH(objectOut16)(rows, first, width);
}
int vectorBgrToFrame(FramePixel* d, const Bgr* s, int n) { return HWY_DYNAMIC_DISPATCH(bgrIn)(d, s, n); }
int vectorBgraToObject(ObjectPixel* d, const Bgra* s, int n) { return HWY_DYNAMIC_DISPATCH(bgraIn)(d, s, n); }
int vectorFrameToBgr(Bgr* d, const FramePixel* s, int n) { return HWY_DYNAMIC_DISPATCH(bgrOut)(d, s, n); }
int vectorObjectToBgra(Bgra* d, const ObjectPixel* s, int n) { return HWY_DYNAMIC_DISPATCH(bgraOut)(d, s, n); }
int vectorMatrix(FramePixel* p, int n, const ColourMatrix& m) { return HWY_DYNAMIC_DISPATCH(frameMatrix)(p, n, m); }
int vectorMatrix(ObjectPixel* p, int n, const ColourMatrix& m) { return HWY_DYNAMIC_DISPATCH(objectMatrix)(p, n, m); }

}  // namespace cinora
#endif
