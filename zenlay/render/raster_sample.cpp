#include "zenlay/render/raster_sample.h"

// Two steps: `gather` finds the four neighbours of every pixel and their weights, `filter` mixes them. Only the second
// is worth vectors; it works on blocks of four 32-bit lanes, a block a pixel.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "zenlay/render/raster_sample.cpp"
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_AVX3_DL)
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef ZENLAY_RASTER_SAMPLE_ONCE
#define ZENLAY_RASTER_SAMPLE_ONCE
#include <algorithm>
#include <cmath>
#include <cstring>

namespace zenlay {

inline constexpr int positionBits = 7;  // 1/128 pixel
inline constexpr int positionOne = 1 << positionBits;
inline constexpr int weightBits = 2 * positionBits;  // the four weights add up to 1 << weightBits
inline constexpr int weightOne = 1 << weightBits;

struct Neighbours {
  alignas(64) ObjectPixel top[maxSampleRun][2];
  alignas(64) ObjectPixel bottom[maxSampleRun][2];
  alignas(64) int32_t weights[maxSampleRun][4];  // top left, top right, bottom left, bottom right
};

}  // namespace zenlay
#endif

HWY_BEFORE_NAMESPACE();
namespace zenlay {
namespace HWY_NAMESPACE {

// The widening multiplication adds neighbouring products in place on x86 only.
#if HWY_TARGET == HWY_SCALAR || !HWY_ARCH_X86
int filterVectors(const Neighbours&, int, ObjectPixel*) { return 0; }
#else
namespace hn = hwy::HWY_NAMESPACE;

/// As many of the pixels as fill vectors; returns their number.
int filterVectors(const Neighbours& from, int count, ObjectPixel* out) {
  const hn::CappedTag<int32_t, 16> d32;
  const hn::Repartition<int16_t, decltype(d32)> d16;
  const hn::Repartition<uint8_t, decltype(d32)> d8;
  const hn::RebindToFloat<decltype(d32)> df;
  const hn::Rebind<int16_t, decltype(d32)> dOut;
  using V16 = hn::VFromD<decltype(d16)>;
  constexpr uint8_t no = 0x80;
  alignas(16) static constexpr uint8_t topAlphaBytes[16] = {6,  7,  no, no, 14, 15, no, no,
                                                            no, no, no, no, no, no, no, no};
  alignas(16) static constexpr uint8_t bottomAlphaBytes[16] = {no, no, no, no, no, no, no, no,
                                                               6,  7,  no, no, 14, 15, no, no};
  alignas(16) static constexpr uint8_t pairBytes[16] = {0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
  alignas(16) static constexpr uint8_t topWeightBytes[16] = {0, 1, 4, 5, 0, 1, 4, 5, 0, 1, 4, 5, 0, 1, 4, 5};
  alignas(16) static constexpr uint8_t bottomWeightBytes[16] = {8, 9, 12, 13, 8, 9, 12, 13, 8, 9, 12, 13, 8, 9, 12, 13};
  alignas(16) static constexpr int32_t alphaLaneMask[4] = {0, 0, 0, -1};
  const auto topAlpha = hn::LoadDup128(d8, topAlphaBytes);
  const auto bottomAlpha = hn::LoadDup128(d8, bottomAlphaBytes);
  const auto pairs = hn::LoadDup128(d8, pairBytes);
  const auto topWeight = hn::LoadDup128(d8, topWeightBytes);
  const auto bottomWeight = hn::LoadDup128(d8, bottomWeightBytes);
  const auto alphaLane = hn::MaskFromVec(hn::LoadDup128(d32, alphaLaneMask));
  const auto half = hn::Set(d32, weightOne / 2);
  const auto bytes = [&](V16 v) { return hn::BitCast(d8, v); };
  const auto paired = [&](V16 v) { return hn::BitCast(d16, hn::TableLookupBytes(bytes(v), pairs)); };

  const int step = static_cast<int>(hn::Lanes(d32)) / 4;
  int i = 0;
  for (; i + step <= count; i += step) {
    const auto top = hn::Load(d16, &from.top[i][0].y);
    const auto bottom = hn::Load(d16, &from.bottom[i][0].y);
    const auto alphas = hn::BitCast(d32, hn::Or(hn::TableLookupBytesOr0(bytes(top), topAlpha),
                                                hn::TableLookupBytesOr0(bytes(bottom), bottomAlpha)));
    const auto share = hn::Mul(hn::Load(d32, from.weights[i]), alphas);
    const auto twos = hn::Add(share, hn::Shuffle2301(share));
    const auto total = hn::Add(twos, hn::Shuffle1032(twos));
    const auto scale = hn::Div(hn::Set(df, float{weightOne}), hn::ConvertTo(df, hn::Max(total, hn::Set(d32, 1))));
    const auto weights = hn::BitCast(d8, hn::NearestInt(hn::Mul(hn::ConvertTo(df, share), scale)));

    auto unused = hn::Zero(d32);
    auto sum = hn::ReorderWidenMulAccumulate(d32, paired(top),
                                             hn::BitCast(d16, hn::TableLookupBytes(weights, topWeight)), half, unused);
    sum = hn::ReorderWidenMulAccumulate(d32, paired(bottom),
                                        hn::BitCast(d16, hn::TableLookupBytes(weights, bottomWeight)), sum, unused);
    const auto mixed = hn::IfThenElse(alphaLane, hn::Add(total, half), sum);
    hn::StoreU(hn::DemoteTo(dOut, hn::ShiftRight<weightBits>(mixed)), dOut, &out[i].y);
  }
  return i;
}
#endif

}  // namespace HWY_NAMESPACE
}  // namespace zenlay
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zenlay {
namespace {

HWY_EXPORT(filterVectors);

void filterPlain(const Neighbours& from, int first, int count, ObjectPixel* out) {
  for (int i = first; i < count; i++) {
    const ObjectPixel taps[4] = {from.top[i][0], from.top[i][1], from.bottom[i][0], from.bottom[i][1]};
    int32_t share[4], total = 0;
    for (int t = 0; t < 4; t++) total += share[t] = from.weights[i][t] * static_cast<uint16_t>(taps[t].a);
    float scale = float{weightOne} / static_cast<float>(std::max(total, 1));
    int32_t y = weightOne / 2, cb = y, cr = y;
    for (int t = 0; t < 4; t++) {
      int32_t weight = static_cast<int32_t>(std::lrintf(static_cast<float>(share[t]) * scale));
      y += taps[t].y * weight;
      cb += taps[t].cb * weight;
      cr += taps[t].cr * weight;
    }
    out[i] = {static_cast<int16_t>(y >> weightBits), static_cast<int16_t>(cb >> weightBits),
              static_cast<int16_t>(cr >> weightBits), static_cast<int16_t>((total + weightOne / 2) >> weightBits)};
  }
}

ObjectPixel opaquePixel(const uint8_t* p) {
  ObjectPixel pixel;
  memcpy(&pixel, p, sizeof(FramePixel));
  pixel.a = fullAlpha;
  return pixel;
}

/// Fetches the neighbours of a position in 1/128 pixel from the first pixel's centre.
struct Fetch {
  const SampleSource& source;
  int lastX, lastY;       // positions of the last pixels
  int lastCell, lastRow;  // first of the last pair
  ptrdiff_t right, below;

  explicit Fetch(const SampleSource& s)
      : source(s),
        lastX((s.width - 1) * positionOne),
        lastY((s.height - 1) * positionOne),
        lastCell(std::max(s.width - 2, 0)),
        lastRow(std::max(s.height - 2, 0)),
        right(s.width > 1 ? (s.alpha ? sizeof(ObjectPixel) : sizeof(FramePixel)) : 0),
        below(s.height > 1 ? s.lineBytes : 0) {}

  template <bool alpha>
  void at(int x, int y, int i, Neighbours* to) const {
    x = std::clamp(x, 0, lastX);
    y = std::clamp(y, 0, lastY);
    int cell = std::min(x >> positionBits, lastCell), row = std::min(y >> positionBits, lastRow);
    int fx = x - cell * positionOne, fy = y - row * positionOne, both = fx * fy;
    int32_t* w = to->weights[i];
    w[0] = (positionOne - fx - fy) * positionOne + both;
    w[1] = fx * positionOne - both;
    w[2] = fy * positionOne - both;
    w[3] = both;
    constexpr ptrdiff_t size = alpha ? sizeof(ObjectPixel) : sizeof(FramePixel);
    const uint8_t* p = source.pixels + row * source.lineBytes + cell * size;
    if constexpr (alpha) {
      memcpy(&to->top[i][0], p, sizeof(ObjectPixel));
      memcpy(&to->top[i][1], p + right, sizeof(ObjectPixel));
      memcpy(&to->bottom[i][0], p + below, sizeof(ObjectPixel));
      memcpy(&to->bottom[i][1], p + below + right, sizeof(ObjectPixel));
    } else {
      to->top[i][0] = opaquePixel(p);
      to->top[i][1] = opaquePixel(p + right);
      to->bottom[i][0] = opaquePixel(p + below);
      to->bottom[i][1] = opaquePixel(p + below + right);
    }
  }
};

/// Both ends of a fixed-point run have to stay this close to the origin, pixels.
inline constexpr double fixedPointReach = 32000;
inline constexpr double fixedOne = 65536;
inline constexpr int fixedShift = 16 - positionBits;

template <bool alpha>
void gather(const SampleSource& source, const SampleRun& run, Neighbours* to) {
  const Fetch fetch(source);
  double u = run.u / run.w - 0.5, v = run.v / run.w - 0.5;
  double du = run.du / run.w, dv = run.dv / run.w, dw = run.dw / run.w;
  double reach = std::max({std::abs(u), std::abs(v), std::abs(u + du * run.count), std::abs(v + dv * run.count)});
  if (dw == 0 && reach < fixedPointReach) {
    int32_t x = static_cast<int32_t>(std::lrint(u * fixedOne)) + (1 << (fixedShift - 1));
    int32_t y = static_cast<int32_t>(std::lrint(v * fixedOne)) + (1 << (fixedShift - 1));
    int32_t dx = static_cast<int32_t>(std::lrint(du * fixedOne)), dy = static_cast<int32_t>(std::lrint(dv * fixedOne));
    for (int i = 0; i < run.count; i++, x += dx, y += dy) fetch.at<alpha>(x >> fixedShift, y >> fixedShift, i, to);
    return;
  }
  // (u + i du) / (1 + i dw) - u = i (du - u dw) / (1 + i dw): a difference that floats carry well. The half pixel is
  // part of the position, so it is taken off before and not mixed into the quotient.
  auto place = [](double p) { return static_cast<float>(std::clamp(p * positionOne, -1e8, 1e8)); };
  auto slope = [](double s) { return static_cast<float>(std::clamp(s * positionOne, -1e30, 1e30)); };
  float x = place(u), y = place(v);
  float ax = slope(du - (u + 0.5) * dw), ay = slope(dv - (v + 0.5) * dw), b = static_cast<float>(dw);
  float limitX = static_cast<float>(fetch.lastX), limitY = static_cast<float>(fetch.lastY);
  for (int i = 0; i < run.count; i++) {
    float t = static_cast<float>(i) / std::max(1 + static_cast<float>(i) * b, 1e-6f);
    float px = std::clamp(x + ax * t, 0.0f, limitX), py = std::clamp(y + ay * t, 0.0f, limitY);
    fetch.at<alpha>(static_cast<int>(px + 0.5f), static_cast<int>(py + 0.5f), i, to);
  }
}

void gather(const SampleSource& source, const SampleRun& run, Neighbours* to) {
  source.alpha ? gather<true>(source, run, to) : gather<false>(source, run, to);
}

}  // namespace

void sampleRun(const SampleSource& source, const SampleRun& run, ObjectPixel* out) {
  Neighbours neighbours;
  gather(source, run, &neighbours);
  int done = HWY_DYNAMIC_DISPATCH(filterVectors)(neighbours, run.count, out);
  filterPlain(neighbours, done, run.count, out);
}

void sampleRunPlain(const SampleSource& source, const SampleRun& run, ObjectPixel* out) {
  Neighbours neighbours;
  gather(source, run, &neighbours);
  filterPlain(neighbours, 0, run.count, out);
}

}  // namespace zenlay
#endif
