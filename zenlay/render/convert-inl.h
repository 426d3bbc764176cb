// Pixels in vectors of 32-bit lanes, compiled once a target (Highway's way: included by each vector source, which
// defines HWY_TARGET_INCLUDE). Only for targets with real vectors.
#if defined(ZENLAY_RENDER_CONVERT_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ZENLAY_RENDER_CONVERT_INL_H
#undef ZENLAY_RENDER_CONVERT_INL_H
#else
#define ZENLAY_RENDER_CONVERT_INL_H
#endif

#include <cstring>

#include "hwy/highway.h"
#include "zenlay/effects/pixels.h"

HWY_BEFORE_NAMESPACE();
namespace zenlay {
namespace HWY_NAMESPACE {
#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using Lanes32 = hn::ScalableTag<int32_t>;
using Lanes16 = hn::Rebind<int16_t, Lanes32>;
using Vector = hn::Vec<Lanes32>;
using PairLanes16 = hn::ScalableTag<int16_t>;  // the pixels of two Vectors

inline constexpr int vectorPixels = static_cast<int>(hn::MaxLanes(Lanes32()));

struct Colours {
  Vector y, cb, cr;
};
struct Rgbs {
  Vector r, g, b;
};

HWY_INLINE Vector splat(int32_t value) { return hn::Set(Lanes32(), value); }

HWY_INLINE Vector limit(Vector v, int low, int high) { return hn::Min(hn::Max(v, splat(low)), splat(high)); }

/// The low 16 bits of every lane.
HWY_INLINE hn::Vec<Lanes16> low16(Vector v) {
  return hn::BitCast(Lanes16(),
                     hn::TruncateTo(hn::Rebind<uint16_t, Lanes32>(), hn::BitCast(hn::RebindToUnsigned<Lanes32>(), v)));
}

HWY_INLINE void load(const FramePixel* p, Colours* colours) {
  hn::Vec<Lanes16> y, cb, cr;
  hn::LoadInterleaved3(Lanes16(), &p->y, y, cb, cr);
  *colours = {hn::PromoteTo(Lanes32(), y), hn::PromoteTo(Lanes32(), cb), hn::PromoteTo(Lanes32(), cr)};
}
HWY_INLINE void load(const ObjectPixel* p, Colours* colours, Vector* alpha) {
  hn::Vec<Lanes16> y, cb, cr, a;
  hn::LoadInterleaved4(Lanes16(), &p->y, y, cb, cr, a);
  *colours = {hn::PromoteTo(Lanes32(), y), hn::PromoteTo(Lanes32(), cb), hn::PromoteTo(Lanes32(), cr)};
  *alpha = hn::PromoteTo(Lanes32(), a);
}
HWY_INLINE void store(FramePixel* p, const Colours& c) {
  hn::StoreInterleaved3(low16(c.y), low16(c.cb), low16(c.cr), Lanes16(), &p->y);
}
HWY_INLINE void store(ObjectPixel* p, const Colours& c, Vector alpha) {
  hn::StoreInterleaved4(low16(c.y), low16(c.cb), low16(c.cr), low16(alpha), Lanes16(), &p->y);
}

/// The same for the two vectors a full one of 16-bit lanes makes: half the shuffles a pixel.
HWY_INLINE void widen(hn::Vec<PairLanes16> v, Vector* lower, Vector* upper) {
  *lower = hn::PromoteTo(Lanes32(), hn::LowerHalf(Lanes16(), v));
  *upper = hn::PromoteTo(Lanes32(), hn::UpperHalf(Lanes16(), v));
}
HWY_INLINE hn::Vec<PairLanes16> low16(Vector lower, Vector upper) {
  return hn::Combine(PairLanes16(), low16(upper), low16(lower));
}
HWY_INLINE void loadPair(const FramePixel* p, Colours c[2]) {
  hn::Vec<PairLanes16> y, cb, cr;
  hn::LoadInterleaved3(PairLanes16(), &p->y, y, cb, cr);
  widen(y, &c[0].y, &c[1].y);
  widen(cb, &c[0].cb, &c[1].cb);
  widen(cr, &c[0].cr, &c[1].cr);
}
HWY_INLINE void loadPair(const ObjectPixel* p, Colours c[2], Vector alpha[2]) {
  hn::Vec<PairLanes16> y, cb, cr, a;
  hn::LoadInterleaved4(PairLanes16(), &p->y, y, cb, cr, a);
  widen(y, &c[0].y, &c[1].y);
  widen(cb, &c[0].cb, &c[1].cb);
  widen(cr, &c[0].cr, &c[1].cr);
  widen(a, &alpha[0], &alpha[1]);
}
HWY_INLINE void storePair(FramePixel* p, const Colours c[2]) {
  hn::StoreInterleaved3(low16(c[0].y, c[1].y), low16(c[0].cb, c[1].cb), low16(c[0].cr, c[1].cr), PairLanes16(), &p->y);
}
HWY_INLINE void storePair(ObjectPixel* p, const Colours c[2], const Vector alpha[2]) {
  hn::StoreInterleaved4(low16(c[0].y, c[1].y), low16(c[0].cb, c[1].cb), low16(c[0].cr, c[1].cr),
                        low16(alpha[0], alpha[1]), PairLanes16(), &p->y);
}

/// RGB on the 0..4096 scale.
HWY_INLINE Rgbs toRgbScale(const Colours& c) {
  return {hn::Add(c.y, hn::ShiftRight<14>(hn::Mul(c.cr, splat(22970)))),
          hn::Add(c.y, hn::ShiftRight<14>(hn::Add(hn::Mul(c.cb, splat(-5636)), hn::Mul(c.cr, splat(-11698))))),
          hn::Add(c.y, hn::ShiftRight<14>(hn::Mul(c.cb, splat(29032))))};
}

HWY_INLINE Vector sumOfThree(const Rgbs& c, int r, int g, int b) {
  return hn::Add(hn::Add(hn::Mul(c.r, splat(r)), hn::Mul(c.g, splat(g))), hn::Mul(c.b, splat(b)));
}
HWY_INLINE Colours fromRgbScale(const Rgbs& c) {
  return {hn::ShiftRight<14>(sumOfThree(c, 4898, 9617, 1867)), hn::ShiftRight<14>(sumOfThree(c, -2768, -5423, 8192)),
          hn::ShiftRight<14>(sumOfThree(c, 8192, -6864, -1327))};
}

/// Runs block(destination, source) over a row in blocks of `blockPixels`; the rest goes through zeroed buffers. With
/// `reads` the block also reads the destination.
template <int blockPixels, bool reads, class Block, class Destination, class Source>
HWY_INLINE void inBlocks(Destination* d, const Source* s, int n, const Block& block) {
  int i = 0;
  for (; i + blockPixels <= n; i += blockPixels) block(d + i, s + i);
  if (i == n) return;
  Destination lastD[blockPixels] = {};
  Source lastS[blockPixels] = {};
  std::memcpy(lastS, s + i, (n - i) * sizeof(Source));
  if (reads) std::memcpy(lastD, d + i, (n - i) * sizeof(Destination));
  block(lastD, lastS);
  std::memcpy(d + i, lastD, (n - i) * sizeof(Destination));
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace zenlay
HWY_AFTER_NAMESPACE();

#endif
