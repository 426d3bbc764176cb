#include "cinora/weighted_sums.h"

// AVX2, AVX-512 and the fixed-size vectors of other architectures; older x86 uses its smallest.
#define HWY_DISABLED_TARGETS \
  (HWY_SSSE3 | HWY_SSE4 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cinora/weighted_sums.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace cinora {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Products are rounded before they are added: compile without contraction.
void sums(const float* samples, size_t stride, int channels, const WeightRow& row, int count, float* out) {
  const hn::CappedTag<float, sumLanes> d;
  const int lanes = static_cast<int>(hn::Lanes(d));
  const auto part = hn::Set(d, row.part);
  for (int c = 0; c < channels; c++, samples += stride) {
    HWY_ALIGN float partial[sumLanes];
    for (int first = 0; first < sumLanes; first += lanes) {
      auto sum = hn::Zero(d);
      for (int i = first; i < count; i += sumLanes) {
        const auto before = hn::LoadU(d, row.before + i), behind = hn::LoadU(d, row.behind + i);
        const auto weight = hn::Add(before, hn::Mul(part, hn::Sub(behind, before)));
        sum = hn::Add(sum, hn::Mul(weight, hn::LoadU(d, samples + i)));
      }
      hn::StoreU(sum, d, partial + first);
    }
    for (int half = sumLanes / 2; half > 0; half /= 2)
      for (int i = 0; i < half; i++) partial[i] += partial[i + half];
    out[c] = partial[0];
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace cinora
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace cinora {

HWY_EXPORT(sums);

void weightedSums(const float* samples, size_t stride, int channels, const WeightRow& row, int count, float* out) {
  HWY_DYNAMIC_DISPATCH(sums)(samples, stride, channels, row, count, out);
}

}  // namespace cinora
#endif
