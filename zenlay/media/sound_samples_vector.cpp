// The sums of samples in vectors, chosen for the processor at run time. Same bits as sound_samples.cpp.
#include "zenlay/media/sound_samples.h"

#define HWY_DISABLED_TARGETS \
  (HWY_SSSE3 | HWY_SSE4 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "zenlay/media/sound_samples_vector.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace zenlay {
namespace HWY_NAMESPACE {
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

void add(int16_t* to, const int16_t* from, int n, int32_t even, int32_t odd) {
  plainAddSamples(to, from, n, even, odd);
}
void scale(int16_t* samples, int n, int32_t gain) { plainScaleSamples(samples, n, gain); }

#else

namespace hn = hwy::HWY_NAMESPACE;

using Lanes32 = hn::ScalableTag<int32_t>;
using Lanes16 = hn::Rebind<int16_t, Lanes32>;

/// Lanes count evenly, so a vector always begins with an even sample.
void add(int16_t* to, const int16_t* from, int n, int32_t even, int32_t odd) {
  const Lanes32 wide;
  const Lanes16 narrow;
  const int lanes = static_cast<int>(hn::Lanes(wide));
  auto gain = hn::OddEven(hn::Set(wide, odd), hn::Set(wide, even));
  int i = 0;
  if (even == soundOne && odd == soundOne) {
    const hn::ScalableTag<int16_t> whole;
    const int all = static_cast<int>(hn::Lanes(whole));
    for (; i + all <= n; i += all)
      hn::StoreU(hn::SaturatedAdd(hn::LoadU(whole, to + i), hn::LoadU(whole, from + i)), whole, to + i);
  }
  for (; i + lanes <= n; i += lanes) {
    auto scaled = hn::ShiftRight<12>(hn::Mul(hn::PromoteTo(wide, hn::LoadU(narrow, from + i)), gain));
    auto sum = hn::Add(hn::PromoteTo(wide, hn::LoadU(narrow, to + i)), scaled);
    hn::StoreU(hn::DemoteTo(narrow, sum), narrow, to + i);
  }
  plainAddSamples(to + i, from + i, n - i, even, odd);
}

void scale(int16_t* samples, int n, int32_t gain) {
  const Lanes32 wide;
  const Lanes16 narrow;
  const int lanes = static_cast<int>(hn::Lanes(wide));
  auto factor = hn::Set(wide, gain);
  int i = 0;
  for (; i + lanes <= n; i += lanes) {
    auto scaled = hn::ShiftRight<12>(hn::Mul(hn::PromoteTo(wide, hn::LoadU(narrow, samples + i)), factor));
    hn::StoreU(hn::DemoteTo(narrow, scaled), narrow, samples + i);
  }
  plainScaleSamples(samples + i, n - i, gain);
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace zenlay
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zenlay {

HWY_EXPORT(add);
HWY_EXPORT(scale);

void addSamples(int16_t* to, const int16_t* from, int n, int32_t evenGain, int32_t oddGain) {
  HWY_DYNAMIC_DISPATCH(add)(to, from, n, evenGain, oddGain);
}
void scaleSamples(int16_t* samples, int n, int32_t gain) { HWY_DYNAMIC_DISPATCH(scale)(samples, n, gain); }

}  // namespace zenlay
#endif
