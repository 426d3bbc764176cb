// Vector kernels are chosen for the processor at run time; tests run them in every version this processor can.
#pragma once

#include <gtest/gtest.h>
#include <hwy/highway.h>

namespace zenlay::test {

/// check() with the AVX-512, the AVX2 and the plain version in force (where supported), then the usual choice again.
template <class Check>
void onEveryTarget(Check check) {
  const int64_t supported = hwy::SupportedTargets();
  for (int64_t target : {int64_t{HWY_AVX3}, int64_t{HWY_AVX2}, int64_t{HWY_STATIC_TARGET}}) {
    if (!(supported & target) && target != HWY_STATIC_TARGET) continue;
    SCOPED_TRACE(hwy::TargetName(target));
    hwy::GetChosenTarget().Update(target);
    check();
  }
  hwy::GetChosenTarget().Update(supported);
}

}  // namespace zenlay::test
