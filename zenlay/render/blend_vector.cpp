// The blend kernels in vectors, chosen for the processor at run time. Same bits as blend_plain.cpp.
#include "zenlay/render/blend.h"
#include "zenlay/render/blend_table.h"

// AVX2, AVX-512 and the fixed-size vectors of other architectures; older x86 runs the plain kernels.
#define HWY_DISABLED_TARGETS \
  (HWY_SSSE3 | HWY_SSE4 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "zenlay/render/blend_vector.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"
#include "zenlay/render/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace zenlay {
namespace HWY_NAMESPACE {
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

const BlendKernels& vectorKernels(int mode) { return plainBlendKernels(mode); }

#else

/// Two weights and the alpha they leave behind.
struct Joint {
  Vector destination, source, alpha;
};

/// The float quotient of n >= 0 and d > 0, truncated. Exact for n <= 2^24, d <= 4096 and quotients below 2^13: the
/// nearest float to a quotient that is short of an integer by 1/4096 or more never reaches it. Lanes with d = 0 come
/// out arbitrary.
HWY_INLINE Vector quotient(Vector n, Vector d) {
  const hn::RebindToFloat<Lanes32> lanes;
  return hn::ConvertTo(Lanes32(), hn::Div(hn::ConvertTo(lanes, n), hn::ConvertTo(lanes, d)));
}

/// n / d towards zero for |n| <= 2^28, 0 < d <= 8192 and a quotient of at most 2^15: the float quotient is off by one
/// at most, which the rest shows.
HWY_INLINE Vector signedQuotient(Vector n, Vector d) {
  Vector size = hn::Abs(n), q = quotient(size, d), rest = hn::Sub(size, hn::Mul(q, d));
  q = hn::IfThenElse(hn::Lt(rest, splat(0)), hn::Sub(q, splat(1)), q);
  q = hn::IfThenElse(hn::Lt(rest, d), q, hn::Add(q, splat(1)));
  return hn::IfThenElse(hn::Lt(n, splat(0)), hn::Neg(q), q);
}

/// A' for A and a of 0..4096.
HWY_INLINE Vector jointAlpha(Vector A, Vector a) {
  Vector uncovered = hn::Mul(hn::Sub(splat(fullAlpha), A), hn::Sub(splat(fullAlpha), a));
  return hn::ShiftRight<12>(hn::Sub(splat(fullAlpha * fullAlpha + 2048), uncovered));
}

HWY_INLINE Vector weighted(Vector d, Vector wD, Vector s, Vector wS) {
  return hn::ShiftRight<12>(hn::Add(hn::Mul(d, wD), hn::Mul(s, wS)));
}
HWY_INLINE Colours weighted(const Colours& d, Vector wD, const Colours& s, Vector wS) {
  return {weighted(d.y, wD, s.y, wS), weighted(d.cb, wD, s.cb, wS), weighted(d.cr, wD, s.cr, wS)};
}

template <class Mask>
HWY_INLINE Colours choose(Mask mask, const Colours& yes, const Colours& no) {
  return {hn::IfThenElse(mask, yes.y, no.y), hn::IfThenElse(mask, yes.cb, no.cb), hn::IfThenElse(mask, yes.cr, no.cr)};
}

HWY_INLINE Colours additive(const Colours& s, const Colours& d) {
  Colours c{hn::Add(s.y, d.y), hn::Add(s.cb, d.cb), hn::Add(s.cr, d.cr)};
  Vector rest = limit(hn::Sub(splat(12288), c.y), 0, 4096);
  return {hn::Min(c.y, splat(8192)), hn::ShiftRight<12>(hn::Mul(c.cb, rest)), hn::ShiftRight<12>(hn::Mul(c.cr, rest))};
}

HWY_INLINE Colours subtractive(const Colours& s, const Colours& d) {
  Colours c{hn::Sub(d.y, s.y), hn::Sub(d.cb, s.cb), hn::Sub(d.cr, s.cr)};
  Vector rest = limit(hn::Add(c.y, splat(1024)), 0, 1024);
  return {hn::Max(c.y, splat(0)), hn::ShiftRight<10>(hn::Mul(c.cb, rest)), hn::ShiftRight<10>(hn::Mul(c.cr, rest))};
}

/// One component on the RGB scale.
template <int mode>
HWY_INLINE Vector combine(Vector s, Vector d) {
  const Vector zero = splat(0), white = splat(4096);
  if constexpr (mode == blendMultiply) return hn::Min(hn::ShiftRight<12>(hn::Mul(s, d)), splat(8192));
  if constexpr (mode == blendScreen) return hn::Sub(hn::Add(s, d), hn::ShiftRight<12>(hn::Mul(s, d)));
  if constexpr (mode == blendOverlay) {
    Vector product = hn::ShiftRight<11>(hn::Mul(d, s)), sum = hn::Add(d, s);
    return hn::IfThenElse(hn::Lt(d, splat(2048)), product, hn::Sub(hn::Sub(hn::Add(sum, sum), white), product));
  }
  if constexpr (mode == blendBrighter) return hn::Max(s, d);
  if constexpr (mode == blendDarker) return hn::Min(s, d);
  if constexpr (mode == blendShadow) return hn::Max(hn::Sub(hn::Add(s, d), white), zero);
  if constexpr (mode == blendContrast) return limit(hn::Sub(hn::Add(d, hn::Add(s, s)), white), 0, 8192);
  if constexpr (mode == blendDifference) return hn::Abs(hn::Sub(s, d));
}

constexpr bool withoutNegatives(int mode) {
  return mode == blendMultiply || mode == blendScreen || mode == blendOverlay || mode == blendShadow;
}

/// The colour of a user mode.
template <int mode>
HWY_INLINE Colours mix(const Colours& s, const Colours& d) {
  if constexpr (mode == blendNormal) {
    return s;
  } else if constexpr (mode == blendAdditive) {
    return additive(s, d);
  } else if constexpr (mode == blendSubtractive) {
    return subtractive(s, d);
  } else if constexpr (mode == blendLuminance) {
    return {s.y, d.cb, d.cr};
  } else if constexpr (mode == blendColorDifference) {
    return {d.y, s.cb, s.cr};
  } else {
    Rgbs a = toRgbScale(s), b = toRgbScale(d);
    if constexpr (withoutNegatives(mode)) {
      const Vector zero = splat(0);
      a = {hn::Max(a.r, zero), hn::Max(a.g, zero), hn::Max(a.b, zero)};
      b = {hn::Max(b.r, zero), hn::Max(b.g, zero), hn::Max(b.b, zero)};
    }
    return fromRgbScale({combine<mode>(a.r, b.r), combine<mode>(a.g, b.g), combine<mode>(a.b, b.b)});
  }
}

/// Source colours of two vectors and their weights limited to 0..4096.
HWY_INLINE void loadSource(const FramePixel* p, Vector weight, Colours s[2], Vector a[2]) {
  loadPair(p, s);
  a[0] = a[1] = weight;
}
HWY_INLINE void loadSource(const ObjectPixel* p, Vector weight, Colours s[2], Vector a[2]) {
  loadPair(p, s, a);
  for (int i = 0; i < 2; ++i) a[i] = limit(hn::ShiftRight<12>(hn::Mul(a[i], weight)), 0, fullAlpha);
}
HWY_INLINE bool nothingDrawn(const Vector a[2]) { return hn::AllTrue(Lanes32(), hn::Eq(hn::Or(a[0], a[1]), splat(0))); }

/// D + ((C - D) * a >> 12) is the colour itself for a = 4096 and the destination for 0.
template <int mode>
struct OntoFrame {
  Vector weight;
  template <class Source>
  HWY_INLINE void operator()(FramePixel* p, const Source* q) const {
    Colours s[2], d[2];
    Vector a[2];
    loadSource(q, weight, s, a);
    if (nothingDrawn(a)) return;
    loadPair(p, d);
    for (int i = 0; i < 2; ++i) d[i] = weighted(d[i], hn::Sub(splat(fullAlpha), a[i]), mix<mode>(s[i], d[i]), a[i]);
    storePair(p, d);
  }
};

/// With A limited to 0..4096 the weights of the general case are also those of an opaque or a transparent destination
/// and of a full weight.
HWY_INLINE Joint over(Vector A, Vector a) {
  Vector joint = jointAlpha(A, a);
  return {quotient(hn::Mul(hn::Sub(splat(fullAlpha), a), A), joint), quotient(hn::ShiftLeft<12>(a), joint), joint};
}

/// What a user mode makes of a destination.
template <int mode>
HWY_INLINE void userMode(const Colours& s, Vector a, Colours* d, Vector* alpha) {
  Joint joint = over(limit(*alpha, 0, fullAlpha), a);
  *d = weighted(*d, joint.destination, mix<mode>(s, *d), joint.source);
  *alpha = joint.alpha;
}

/// What an internal mode makes of a destination; `alpha` is as stored on entry.
template <int mode>
HWY_INLINE void internalMode(const Colours& s, Vector a, Colours* d, Vector* alpha) {
  const Vector stored = *alpha, A = limit(stored, 0, fullAlpha), full = splat(fullAlpha);
  if constexpr (mode == blendMark) {
    *alpha = hn::Add(hn::ShiftRight<12>(hn::Mul(stored, a)), full);
  } else if constexpr (mode == blendAddOpaque) {
    *alpha = jointAlpha(A, a);
    *d = weighted(*d, quotient(hn::ShiftLeft<12>(A), *alpha), s, quotient(hn::ShiftLeft<12>(a), *alpha));
  } else if constexpr (mode == blendBehind) {
    *alpha = jointAlpha(A, a);
    *d = weighted(*d, quotient(hn::ShiftLeft<12>(A), *alpha), s, quotient(hn::Mul(hn::Sub(full, A), a), *alpha));
  } else if constexpr (mode == blendAverage || mode == blendAverageLargerAlpha) {
    Vector sum = hn::Add(A, a);
    *d = {signedQuotient(hn::Add(hn::Mul(A, d->y), hn::Mul(a, s.y)), sum),
          signedQuotient(hn::Add(hn::Mul(A, d->cb), hn::Mul(a, s.cb)), sum),
          signedQuotient(hn::Add(hn::Mul(A, d->cr), hn::Mul(a, s.cr)), sum)};
    *alpha = mode == blendAverage ? hn::Min(sum, full) : hn::Max(A, a);
  } else if constexpr (mode == blendCutOut) {
    *alpha = hn::Max(hn::Sub(stored, a), splat(0));
  } else if constexpr (mode == blendScaleOut) {
    *alpha = hn::ShiftRight<12>(hn::Mul(stored, hn::Sub(full, a)));
  } else if constexpr (mode == blendDisplacement) {
    Rgbs rgb = toRgbScale(s);
    *d = {hn::ShiftRight<12>(hn::Mul(hn::Sub(rgb.r, splat(2048)), a)),
          hn::ShiftRight<12>(hn::Mul(hn::Sub(rgb.g, splat(2048)), a)), splat(0)};
    *alpha = full;
  } else if constexpr (mode == blendAccumulate) {
    Vector part = hn::Min(a, hn::Sub(full, A));
    *d = {hn::Add(d->y, hn::ShiftRight<12>(hn::Mul(s.y, part))),
          hn::Add(d->cb, hn::ShiftRight<12>(hn::Mul(s.cb, part))),
          hn::Add(d->cr, hn::ShiftRight<12>(hn::Mul(s.cr, part)))};
    *alpha = hn::Min(hn::Add(A, a), full);
  }
}

/// Pixels with a = 0 keep colour and alpha as stored.
template <int mode>
struct OntoObject {
  Vector weight;
  template <class Source>
  HWY_INLINE void operator()(ObjectPixel* p, const Source* q) const {
    Colours s[2], d[2];
    Vector a[2], alpha[2];
    loadSource(q, weight, s, a);
    if (nothingDrawn(a)) return;
    loadPair(p, d, alpha);
    for (int i = 0; i < 2; ++i) {
      Colours result = d[i];
      Vector resultAlpha = alpha[i];
      if constexpr (mode < userBlendModes) {
        userMode<mode>(s[i], a[i], &result, &resultAlpha);
      } else {
        internalMode<mode>(s[i], a[i], &result, &resultAlpha);
      }
      auto drawn = hn::Gt(a[i], splat(0));
      d[i] = choose(drawn, result, d[i]);
      alpha[i] = hn::IfThenElse(drawn, resultAlpha, alpha[i]);
    }
    storePair(p, d, alpha);
  }
};

template <class Rule, class Destination, class Source>
void row(Destination* d, const Source* s, int n, int weight) {
  inBlocks<2 * vectorPixels, true>(d, s, n, Rule{limit(splat(weight), 0, fullAlpha)});
}

void normalOpaqueToFrame(FramePixel* d, const FramePixel* s, int n, int weight) {
  if (weight >= fullAlpha) {
    std::memcpy(d, s, n * sizeof(FramePixel));
  } else {
    row<OntoFrame<blendNormal>, FramePixel, FramePixel>(d, s, n, weight);
  }
}

template <int mode>
constexpr BlendKernels user() {
  return {row<OntoFrame<mode>, FramePixel, ObjectPixel>,
          mode == blendNormal ? normalOpaqueToFrame : row<OntoFrame<mode>, FramePixel, FramePixel>,
          row<OntoObject<mode>, ObjectPixel, ObjectPixel>, row<OntoObject<mode>, ObjectPixel, FramePixel>};
}

template <int mode>
constexpr BlendKernels internal() {
  return {row<OntoFrame<blendNormal>, FramePixel, ObjectPixel>, normalOpaqueToFrame,
          row<OntoObject<mode>, ObjectPixel, ObjectPixel>, row<OntoObject<mode>, ObjectPixel, FramePixel>};
}

constexpr BlendKernels kernels[blendModeCount] = {
    user<blendNormal>(),           user<blendAdditive>(),
    user<blendSubtractive>(),      user<blendMultiply>(),
    user<blendScreen>(),           user<blendOverlay>(),
    user<blendBrighter>(),         user<blendDarker>(),
    user<blendLuminance>(),        user<blendColorDifference>(),
    user<blendShadow>(),           user<blendContrast>(),
    user<blendDifference>(),       user<blendNormal>(),
    user<blendNormal>(),           user<blendNormal>(),
    internal<blendMark>(),         internal<blendAddOpaque>(),
    internal<blendBehind>(),       replaceKernels,
    internal<blendAverage>(),      internal<blendAverageLargerAlpha>(),
    internal<blendCutOut>(),       internal<blendScaleOut>(),
    internal<blendDisplacement>(), internal<blendAccumulate>(),
    user<blendNormal>(),           user<blendNormal>(),
    user<blendNormal>(),           user<blendNormal>(),
    user<blendNormal>(),           user<blendNormal>(),
};

const BlendKernels& vectorKernels(int mode) { return kernels[mode]; }

#endif
}  // namespace HWY_NAMESPACE
}  // namespace zenlay
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zenlay {

HWY_EXPORT(vectorKernels);

const BlendKernels& blendKernels(int mode) {
  return HWY_DYNAMIC_DISPATCH(vectorKernels)(mode >= 0 && mode < blendModeCount ? mode : blendNormal);
}

}  // namespace zenlay
#endif
