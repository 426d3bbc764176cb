#include "cinora/sound/weighted_sums.h"

// AVX2, AVX-512 and the fixed-size vectors of other architectures; older x86 uses its smallest.
#define HWY_DISABLED_TARGETS \
  (HWY_SSSE3 | HWY_SSE4 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cinora/sound/weighted_sums.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace cinora {
namespace HWY_NAMESPACE {

// Products are rounded before they are added: compiled without contraction.
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

template <bool between>
float sumOf(const float* samples, const WeightedStretch& row, int count) {
  float sums[sumLanes] = {};
  for (int first = 0; first < count; first += sumLanes)
    for (int lane = 0; lane < sumLanes; lane++) {
      const int i = first + lane;
      const float weight = between ? row.before[i] + row.part * (row.behind[i] - row.before[i]) : row.before[i];
      sums[lane] += weight * samples[i];
    }
  for (int half = sumLanes / 2; half > 0; half /= 2)
    for (int lane = 0; lane < half; lane++) sums[lane] += sums[lane + half];
  return sums[0];
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Lanes = hn::CappedTag<float, sumLanes>;
constexpr int lanes = static_cast<int>(hn::MaxLanes(Lanes())), vectors = sumLanes / lanes;

/// The upper half is added to the lower one until one lane is left.
template <class D>
HWY_INLINE float total(D, hn::Vec<D> v) {
  if constexpr (hn::MaxLanes(D()) == 1) {
    return hn::GetLane(v);
  } else {
    const hn::Half<D> half;
    return total(half, hn::Add(hn::LowerHalf(half, v), hn::UpperHalf(half, v)));
  }
}

template <bool between>
HWY_INLINE float sumOf(const float* samples, const WeightedStretch& row, int count) {
  const Lanes d;
  const auto part = hn::Set(d, row.part);
  hn::Vec<Lanes> sums[vectors];
  for (auto& sum : sums) sum = hn::Zero(d);
  for (int first = 0; first < count; first += sumLanes) {
    for (int v = 0; v < vectors; v++) {
      const int i = first + v * lanes;
      auto weight = hn::LoadU(d, row.before + i);
      if constexpr (between) weight = hn::Add(weight, hn::Mul(part, hn::Sub(hn::LoadU(d, row.behind + i), weight)));
      sums[v] = hn::Add(sums[v], hn::Mul(weight, hn::LoadU(d, samples + i)));
    }
  }
  for (int half = vectors / 2; half > 0; half /= 2)
    for (int v = 0; v < half; v++) sums[v] = hn::Add(sums[v], sums[v + half]);
  return total(d, sums[0]);
}

#endif

void sums(const WeightedStretch* stretches, int count, int length, int channels, size_t plane, float* out) {
  for (int i = 0; i < count; i++) {
    const WeightedStretch& s = stretches[i];
    for (int c = 0; c < channels; c++) {
      const float* samples = s.samples + c * plane;
      *out++ = s.part != 0 ? sumOf<true>(samples, s, length) : sumOf<false>(samples, s, length);
    }
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace cinora
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace cinora {

HWY_EXPORT(sums);

void weightedSums(const WeightedStretch* stretches, int count, int length, int channels, size_t plane, float* out) {
  HWY_DYNAMIC_DISPATCH(sums)(stretches, count, length, channels, plane, out);
}

}  // namespace cinora
#endif
