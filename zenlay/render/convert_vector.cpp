// The row conversions in vectors, chosen for the processor at run time. Same bits as convert.cpp.
#include "zenlay/render/convert.h"

#define HWY_DISABLED_TARGETS \
  (HWY_SSSE3 | HWY_SSE4 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "zenlay/render/convert_vector.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"
#include "zenlay/render/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace zenlay {
namespace HWY_NAMESPACE {
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

void bgrToObject(ObjectPixel* d, const Bgr* s, int n) { plainBgrToObjectRow(d, s, n); }
void bgraToObject(ObjectPixel* d, const Bgra* s, int n) { plainBgraToObjectRow(d, s, n); }
void frameToBgr(Bgr* d, const FramePixel* s, int n) { plainFrameToBgrRow(d, s, n); }
void objectToBgra(Bgra* d, const ObjectPixel* s, int n) { plainObjectToBgraRow(d, s, n); }
void saturate(FramePixel* p, int n) { plainSaturateRow(p, n); }

#else

using Lanes8 = hn::Rebind<uint8_t, Lanes32>;

HWY_INLINE Colours toYcbcrScale(const Rgbs& rgb) {
  Rgbs c{hn::ShiftLeft<4>(rgb.r), hn::ShiftLeft<4>(rgb.g), hn::ShiftLeft<4>(rgb.b)};
  return {hn::ShiftRight<14>(sumOfThree(c, 4918, 9655, 1875)), hn::ShiftRight<14>(sumOfThree(c, -2775, -5449, 8224)),
          hn::ShiftRight<14>(sumOfThree(c, 8224, -6887, -1337))};
}

HWY_INLINE hn::Vec<Lanes8> toBytes(Vector times16) {
  return hn::DemoteTo(Lanes8(), hn::ShiftRight<4>(hn::Add(hn::ShiftRight<14>(times16), splat(8))));
}

struct Bytes {
  hn::Vec<Lanes8> b, g, r;
};
HWY_INLINE Bytes toRgbBytes(const Colours& c) {
  Vector y = hn::Mul(c.y, splat(16320));
  return {toBytes(hn::Add(y, hn::Mul(c.cb, splat(28919)))),
          toBytes(hn::Add(hn::Add(y, hn::Mul(c.cb, splat(-5616))), hn::Mul(c.cr, splat(-11655)))),
          toBytes(hn::Add(y, hn::Mul(c.cr, splat(22881))))};
}

struct BgrToObject {
  HWY_INLINE void operator()(ObjectPixel* d, const Bgr* s) const {
    hn::Vec<Lanes8> b, g, r;
    hn::LoadInterleaved3(Lanes8(), &s->b, b, g, r);
    const Lanes32 wide;
    store(d, toYcbcrScale({hn::PromoteTo(wide, r), hn::PromoteTo(wide, g), hn::PromoteTo(wide, b)}), splat(fullAlpha));
  }
};

struct BgraToObject {
  HWY_INLINE void operator()(ObjectPixel* d, const Bgra* s) const {
    hn::Vec<Lanes8> b, g, r, a;
    hn::LoadInterleaved4(Lanes8(), &s->b, b, g, r, a);
    const Lanes32 wide;
    Vector alpha = hn::PromoteTo(wide, a);
    alpha = hn::Add(hn::ShiftLeft<4>(alpha), hn::ShiftRight<4>(hn::Add(alpha, splat(8))));
    store(d, toYcbcrScale({hn::PromoteTo(wide, r), hn::PromoteTo(wide, g), hn::PromoteTo(wide, b)}), alpha);
  }
};

struct FrameToBgr {
  HWY_INLINE void operator()(Bgr* d, const FramePixel* s) const {
    Colours c;
    load(s, &c);
    Bytes bytes = toRgbBytes(c);
    hn::StoreInterleaved3(bytes.b, bytes.g, bytes.r, Lanes8(), &d->b);
  }
};

struct ObjectToBgra {
  HWY_INLINE void operator()(Bgra* d, const ObjectPixel* s) const {
    Colours c;
    Vector a;
    load(s, &c, &a);
    Bytes bytes = toRgbBytes(c);
    auto alpha = hn::DemoteTo(Lanes8(), hn::ShiftRight<12>(hn::Add(hn::Mul(a, splat(255)), splat(2048))));
    hn::StoreInterleaved4(bytes.b, bytes.g, bytes.r, alpha, Lanes8(), &d->b);
  }
};

/// Pixels inside keep their bits, so a block that has none outside is left alone.
struct Saturate {
  HWY_INLINE void operator()(FramePixel* d, const FramePixel* s) const {
    Colours c;
    load(s, &c);
    Rgbs rgb = toRgbScale(c), inside{limit(rgb.r, 0, 4096), limit(rgb.g, 0, 4096), limit(rgb.b, 0, 4096)};
    auto kept = hn::And(hn::And(hn::Eq(rgb.r, inside.r), hn::Eq(rgb.g, inside.g)), hn::Eq(rgb.b, inside.b));
    if (hn::AllTrue(Lanes32(), kept)) return;
    Colours back = fromRgbScale(inside);
    store(d, {hn::IfThenElse(kept, c.y, back.y), hn::IfThenElse(kept, c.cb, back.cb),
              hn::IfThenElse(kept, c.cr, back.cr)});
  }
};

void bgrToObject(ObjectPixel* d, const Bgr* s, int n) { inBlocks<vectorPixels, false>(d, s, n, BgrToObject()); }
void bgraToObject(ObjectPixel* d, const Bgra* s, int n) { inBlocks<vectorPixels, false>(d, s, n, BgraToObject()); }
void frameToBgr(Bgr* d, const FramePixel* s, int n) { inBlocks<vectorPixels, false>(d, s, n, FrameToBgr()); }
void objectToBgra(Bgra* d, const ObjectPixel* s, int n) { inBlocks<vectorPixels, false>(d, s, n, ObjectToBgra()); }
void saturate(FramePixel* p, int n) {
  inBlocks<vectorPixels, true>(p, static_cast<const FramePixel*>(p), n, Saturate());
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace zenlay
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zenlay {

HWY_EXPORT(bgrToObject);
HWY_EXPORT(bgraToObject);
HWY_EXPORT(frameToBgr);
HWY_EXPORT(objectToBgra);
HWY_EXPORT(saturate);

void bgrToObjectRow(ObjectPixel* d, const Bgr* s, int n) { HWY_DYNAMIC_DISPATCH(bgrToObject)(d, s, n); }
void bgraToObjectRow(ObjectPixel* d, const Bgra* s, int n) { HWY_DYNAMIC_DISPATCH(bgraToObject)(d, s, n); }
void frameToBgrRow(Bgr* d, const FramePixel* s, int n) { HWY_DYNAMIC_DISPATCH(frameToBgr)(d, s, n); }
void objectToBgraRow(Bgra* d, const ObjectPixel* s, int n) { HWY_DYNAMIC_DISPATCH(objectToBgra)(d, s, n); }
void saturateRow(FramePixel* p, int n) { HWY_DYNAMIC_DISPATCH(saturate)(p, n); }

}  // namespace zenlay
#endif
