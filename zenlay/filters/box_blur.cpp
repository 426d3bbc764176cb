#include "zenlay/filters/box_blur.h"

// Pixels stand in blocks of four lanes. The columns' sums of a step of pixels are kept as two vectors, the pixels of
// even and those of odd place, which is how interleaving within blocks takes 16-bit pixels apart and packing puts them
// together again.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "zenlay/filters/box_blur.cpp"
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_AVX3_DL)
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef ZENLAY_BOX_BLUR_ONCE
#define ZENLAY_BOX_BLUR_ONCE
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace zenlay {

inline constexpr int boxStep = 8;  // buffers hold whole steps of the widest vectors

/// A pixel's channels times its alpha (the alpha as it is), or sums of them.
struct BoxSum {
  int32_t y, cb, cr, a;
};

inline int16_t weigh(int32_t colour, int32_t alpha) {
  return static_cast<int16_t>(std::max(colour, -32767) * std::clamp(alpha, 0, 4096) / 4096);
}
inline ObjectPixel weighed(ObjectPixel p) {
  return {weigh(p.y, p.a), weigh(p.cb, p.a), weigh(p.cr, p.a), std::max<int16_t>(p.a, 0)};
}
inline ObjectPixel average(BoxSum sum, int count, ObjectPixel middle) {
  if (sum.a == 0) return {middle.y, middle.cb, middle.cr, 0};
  auto colour = [&](int32_t s) { return static_cast<int16_t>(int64_t{s} * 4096 / sum.a); };
  return {colour(sum.y), colour(sum.cb), colour(sum.cr), static_cast<int16_t>(sum.a / count)};
}
inline void addTo(BoxSum* sum, ObjectPixel p, int sign) {
  sum->y += sign * p.y;
  sum->cb += sign * p.cb;
  sum->cr += sign * p.cr;
  sum->a += sign * p.a;
}

}  // namespace zenlay
#endif

HWY_BEFORE_NAMESPACE();
namespace zenlay {
namespace HWY_NAMESPACE {

// Rows hold `n` pixels; `sums`, `out` and `weights` have room for whole steps. `enter` and `leave` come into and go out
// of the columns' sums; rows of zeros stand for none. `count` 0 only sums. The averages of the sums go to `out`, and
// weighed to `weights`.
//
// rowAverages: output i averages weights [i + 1, i + window]; `sum` holds those of [1, window - 1] and weights[0] is 0.

// The widening multiplication adds neighbouring products in place on x86 only.
#if HWY_TARGET == HWY_SCALAR || !HWY_ARCH_X86

void columnAverages(BoxSum* sums, const ObjectPixel* enter, const ObjectPixel* leave, const ObjectPixel* middle, int n,
                    int count, ObjectPixel* out, ObjectPixel* weights) {
  for (int i = 0; i < n; i++) {
    addTo(&sums[i], weighed(enter[i]), 1);
    addTo(&sums[i], weighed(leave[i]), -1);
    if (count == 0) continue;
    out[i] = average(sums[i], count, middle[i]);
    weights[i] = weighed(out[i]);
  }
}

void rowWeights(const ObjectPixel* row, int n, ObjectPixel* weights) {
  for (int i = 0; i < n; i++) weights[i] = weighed(row[i]);
}

void rowAverages(BoxSum sum, const ObjectPixel* weights, int window, const ObjectPixel* middle, const int32_t* counts,
                 int n, ObjectPixel* out) {
  for (int i = 0; i < n; i++) {
    addTo(&sum, weights[i + window], 1);
    addTo(&sum, weights[i], -1);
    out[i] = average(sum, counts[i], middle[i]);
  }
}

#else
namespace hn = hwy::HWY_NAMESPACE;

using D32 = hn::CappedTag<int32_t, 16>;
using D16 = hn::Repartition<int16_t, D32>;
using DHalf = hn::Rebind<int16_t, D32>;
using V32 = hn::VFromD<D32>;
using V16 = hn::VFromD<D16>;

inline constexpr D32 d32;
inline constexpr D16 d16;

/// Four values repeated in every block.
V16 blocks16(int16_t y, int16_t a) {
  alignas(16) const int16_t values[8] = {y, y, y, a, y, y, y, a};
  return hn::LoadDup128(d16, values);
}
V32 blocks32(int32_t y, int32_t a) {
  alignas(16) const int32_t values[4] = {y, y, y, a};
  return hn::LoadDup128(d32, values);
}

struct Weigher {
  hn::VFromD<hn::Repartition<uint8_t, D16> > alphaBytes;
  V16 alphaFactor, colourLanes, lowest;

  Weigher() : alphaFactor(blocks16(0, -32768)), colourLanes(blocks16(-1, 0)), lowest(blocks16(-32767, 0)) {
    alignas(16) static constexpr uint8_t bytes[16] = {6, 7, 6, 7, 6, 7, 6, 7, 14, 15, 14, 15, 14, 15, 14, 15};
    alphaBytes = hn::LoadDup128(hn::Repartition<uint8_t, D16>(), bytes);
  }
  /// |2 c| x (8 a) >> 16 is |c| a >> 12; the alpha itself takes the factor 32768 in place of 8 a.
  V16 operator()(V16 p) const {
    const hn::RebindToUnsigned<D16> u16;
    const V16 value = hn::Max(p, lowest);
    const V16 alpha =
        hn::BitCast(d16, hn::TableLookupBytes(hn::BitCast(hn::Repartition<uint8_t, D16>(), value), alphaBytes));
    const V16 eightfold = hn::ShiftLeft<3>(hn::Min(alpha, hn::Set(d16, 4096)));
    const V16 factor = hn::Or(hn::And(eightfold, colourLanes), alphaFactor);
    const V16 size = hn::ShiftLeft<1>(hn::Abs(value));
    const V16 product = hn::BitCast(d16, hn::MulHigh(hn::BitCast(u16, size), hn::BitCast(u16, factor)));
    const V16 sign = hn::ShiftRight<15>(value);
    return hn::Sub(hn::Xor(product, sign), sign);
  }
};

/// sum x 4096 / alpha sum, truncated, and alpha sum / count: in the alpha's lane the divisor is count x 4096. The
/// quotient in floats is made a little too small, its integer is never more than one too small (adding 1.5 x 2^23
/// leaves it in the low bits), and the remainder puts it right.
V32 quotient(V32 sum, V32 alphaSum, V32 scaledCount) {
  const hn::RebindToFloat<D32> df;
  const auto alphaLane = hn::MaskFromVec(blocks32(0, -1));
  const V32 divisor = hn::IfThenElse(alphaLane, scaledCount, hn::Max(alphaSum, hn::Set(d32, 1)));
  const V32 size = hn::Abs(sum);
  const auto integerBits = hn::Set(df, 12582912.0f);
  const auto guess = hn::MulSub(hn::Div(hn::ConvertTo(df, size), hn::ConvertTo(df, divisor)),
                                hn::Set(df, 4096.0f * (1 - 1.0f / (1 << 21))), hn::Set(df, 0.5f));
  V32 q = hn::Sub(hn::BitCast(d32, hn::Add(guess, integerBits)), hn::BitCast(d32, integerBits));
  const V32 rest = hn::Sub(hn::ShiftLeft<12>(size), hn::Mul(q, divisor));
  q = hn::Sub(q, hn::VecFromMask(d32, hn::Gt(rest, hn::Sub(divisor, hn::Set(d32, 1)))));
  const V32 sign = hn::ShiftRight<31>(sum);
  return hn::Sub(hn::Xor(q, sign), sign);
}

void columnAverages(BoxSum* sums, const ObjectPixel* enter, const ObjectPixel* leave, const ObjectPixel* middle, int n,
                    int count, ObjectPixel* out, ObjectPixel* weights) {
  const int step = static_cast<int>(hn::Lanes(d16)) / 4, half = step / 2;
  const Weigher weigher;
  const V32 scaledCount = hn::Set(d32, std::max(count, 1) << 12);
  const V16 colourLanes = blocks16(-1, 0);
  alignas(16) static constexpr int16_t signs[8] = {1, -1, 1, -1, 1, -1, 1, -1};
  const V16 difference = hn::LoadDup128(d16, signs);
  auto one = [&](BoxSum* sum, const ObjectPixel* in, const ObjectPixel* gone, const ObjectPixel* mid, ObjectPixel* to,
                 ObjectPixel* weighedTo) {
    const V16 e = weigher(hn::LoadU(d16, &in->y)), l = weigher(hn::LoadU(d16, &gone->y));
    V32 unused = hn::Zero(d32);
    const V32 even = hn::ReorderWidenMulAccumulate(d32, hn::InterleaveLower(d16, e, l), difference,
                                                   hn::LoadU(d32, &sum[0].y), unused);
    const V32 odd = hn::ReorderWidenMulAccumulate(d32, hn::InterleaveUpper(d16, e, l), difference,
                                                  hn::LoadU(d32, &sum[half].y), unused);
    hn::StoreU(even, d32, &sum[0].y);
    hn::StoreU(odd, d32, &sum[half].y);
    if (count == 0) return;
    const V32 evenAlpha = hn::Broadcast<3>(even), oddAlpha = hn::Broadcast<3>(odd);
    const V16 mean =
        hn::ReorderDemote2To(d16, quotient(even, evenAlpha, scaledCount), quotient(odd, oddAlpha, scaledCount));
    const auto empty = hn::Eq(hn::ReorderDemote2To(d16, evenAlpha, oddAlpha), hn::Zero(d16));
    const V16 pixels = hn::IfThenElse(empty, hn::And(hn::LoadU(d16, &mid->y), colourLanes), mean);
    hn::StoreU(pixels, d16, &to->y);
    hn::StoreU(weigher(pixels), d16, &weighedTo->y);
  };
  int i = 0;
  for (; i + step <= n; i += step) one(sums + i, enter + i, leave + i, middle + i, out + i, weights + i);
  if (i == n) return;
  ObjectPixel ends[3][boxStep] = {};
  memcpy(ends[0], enter + i, (n - i) * sizeof(ObjectPixel));
  memcpy(ends[1], leave + i, (n - i) * sizeof(ObjectPixel));
  if (count) memcpy(ends[2], middle + i, (n - i) * sizeof(ObjectPixel));
  one(sums + i, ends[0], ends[1], ends[2], out + i, weights + i);
  if (count) memset(weights + n, 0, (i + step - n) * sizeof(ObjectPixel));
}

void rowWeights(const ObjectPixel* row, int n, ObjectPixel* weights) {
  const int step = static_cast<int>(hn::Lanes(d16)) / 4;
  const Weigher weigher;
  int i = 0;
  for (; i + step <= n; i += step) hn::StoreU(weigher(hn::LoadU(d16, &row[i].y)), d16, &weights[i].y);
  for (; i < n; i++) weights[i] = weighed(row[i]);
}

void rowAverages(BoxSum start, const ObjectPixel* weights, int window, const ObjectPixel* middle, const int32_t* counts,
                 int n, ObjectPixel* out) {
  const DHalf dHalf;
  const hn::Repartition<uint8_t, D32> d8;
  const int lanes = static_cast<int>(hn::Lanes(d32)), step = lanes / 4;
  // Lane shifts by one and by two blocks, and the last block everywhere.
  int32_t byOne[16], byTwo[16], lastBlock[16], keepOne[16], keepTwo[16];
  uint8_t countBytes[64];
  for (int i = 0; i < lanes; i++) {
    byOne[i] = std::max(i - 4, 0);
    byTwo[i] = std::max(i - 8, 0);
    keepOne[i] = i >= 4 ? -1 : 0;
    keepTwo[i] = i >= 8 ? -1 : 0;
    lastBlock[i] = lanes - 4 + i % 4;
  }
  for (int i = 0; i < lanes * 4; i++) countBytes[i] = static_cast<uint8_t>(i / 16 * 4 + i % 4);
  const auto one = hn::SetTableIndices(d32, byOne), two = hn::SetTableIndices(d32, byTwo);
  const auto last = hn::SetTableIndices(d32, lastBlock);
  const V32 maskOne = hn::LoadU(d32, keepOne), maskTwo = hn::LoadU(d32, keepTwo);
  const auto spread = hn::LoadU(d8, countBytes);
  const auto colourLanes = hn::LowerHalf(dHalf, blocks16(-1, 0));
  alignas(16) const int32_t startLanes[4] = {start.y, start.cb, start.cr, start.a};
  V32 carry = hn::LoadDup128(d32, startLanes);
  auto some = [&](int i, const ObjectPixel* mid, const int32_t* dividers, ObjectPixel* to) {
    V32 sum = hn::Sub(hn::PromoteTo(d32, hn::LoadU(dHalf, &weights[i + window].y)),
                      hn::PromoteTo(d32, hn::LoadU(dHalf, &weights[i].y)));
    if (lanes > 4) sum = hn::Add(sum, hn::And(hn::TableLookupLanes(sum, one), maskOne));
    if (lanes > 8) sum = hn::Add(sum, hn::And(hn::TableLookupLanes(sum, two), maskTwo));
    sum = hn::Add(sum, carry);
    carry = hn::TableLookupLanes(sum, last);
    const V32 alpha = hn::Broadcast<3>(sum);
    const V32 scaledCount = hn::ShiftLeft<12>(
        hn::BitCast(d32, hn::TableLookupBytes(hn::BitCast(d8, hn::LoadDup128(d32, dividers)), spread)));
    const auto mean = hn::DemoteTo(dHalf, quotient(sum, alpha, scaledCount));
    const auto empty = hn::Eq(hn::DemoteTo(dHalf, alpha), hn::Zero(dHalf));
    hn::StoreU(hn::IfThenElse(empty, hn::And(hn::LoadU(dHalf, &mid->y), colourLanes), mean), dHalf, &to->y);
  };
  int i = 0;
  alignas(16) int32_t dividers[4];
  for (; i + step <= n; i += step) {
    memcpy(dividers, counts + i, sizeof dividers);
    some(i, middle + i, dividers, out + i);
  }
  if (i == n) return;
  ObjectPixel end[boxStep];
  memcpy(dividers, counts + i, sizeof dividers);
  some(i, middle + i, dividers, end);
  memcpy(out + i, end, (n - i) * sizeof(ObjectPixel));
}
#endif

}  // namespace HWY_NAMESPACE
}  // namespace zenlay
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zenlay {

HWY_EXPORT(columnAverages);
HWY_EXPORT(rowWeights);
HWY_EXPORT(rowAverages);

BoxWindow boxWindow(int index, int size, int radius, BoxEdge edge) {
  int middle = edge == boxGrow ? index - radius : index;
  BoxWindow window{std::max(middle - radius, 0), std::min(middle + radius + 1, size), 2 * radius + 1};
  if (edge == boxKeep) window.count = window.last - window.first;
  return window;
}

namespace {

uint8_t* rowOf(const ImageTarget& image, int y) {
  return static_cast<uint8_t*>(image.pixels) + static_cast<ptrdiff_t>(y) * image.lineBytes;
}

void readRow(const ImageTarget& image, int y, bool alpha, ObjectPixel* row) {
  if (alpha) {
    memcpy(row, rowOf(image, y), image.width * sizeof(ObjectPixel));
    return;
  }
  const FramePixel* from = reinterpret_cast<const FramePixel*>(rowOf(image, y));
  for (int x = 0; x < image.width; x++) row[x] = {from[x].y, from[x].cb, from[x].cr, fullAlpha};
}

void writeRow(const ImageTarget& image, int y, bool alpha, const ObjectPixel* row) {
  if (alpha) {
    memcpy(rowOf(image, y), row, image.width * sizeof(ObjectPixel));
    return;
  }
  FramePixel* to = reinterpret_cast<FramePixel*>(rowOf(image, y));
  for (int x = 0; x < image.width; x++) to[x] = {row[x].y, row[x].cb, row[x].cr};
}

/// What one worker needs; grows to the widest picture a thread has seen.
struct Scratch {
  std::vector<BoxSum> sums;
  std::vector<ObjectPixel> enter, leave, middle, zeros;
  std::vector<ObjectPixel> pixels, weights;  // one zero, the padding, the row, the padding
  std::vector<ObjectPixel> output;
  std::vector<int32_t> counts;
};

/// One worker's share of a round.
struct Strip {
  const ImageTarget& to;
  const ImageTarget& from;
  int rx, ry;
  BoxEdge edge;
  bool alpha;
  Scratch& s;
  ObjectPixel *pixels, *weights;  // the row within the padded buffers

  /// The row itself where it can be used in place, else its copy.
  const ObjectPixel* row(int y, std::vector<ObjectPixel>* copy) const {
    if (y < 0 || y >= from.height) return s.zeros.data();
    if (alpha) return reinterpret_cast<const ObjectPixel*>(rowOf(from, y));
    readRow(from, y, alpha, copy->data());
    return copy->data();
  }

  void reserve() {
    size_t width = from.width + boxStep, padding = edge == boxGrow ? 2 * rx : rx;
    s.sums.assign(width, {});
    s.zeros.assign(width, {});
    s.pixels.assign(1 + 2 * padding + width, {});
    s.weights.assign(1 + 2 * padding + width, {});
    for (auto* row : {&s.enter, &s.leave, &s.middle}) row->resize(width);
    s.output.resize(to.width + boxStep);
    s.counts.assign(to.width + boxStep, 1);
    for (int x = 0; x < to.width; x++) s.counts[x] = boxWindow(x, from.width, rx, edge).count;
    pixels = s.pixels.data() + 1 + padding;
    weights = s.weights.data() + 1 + padding;
  }

  void addRows(int first, int last) const {
    for (int y = first; y < last; y++) {
      HWY_DYNAMIC_DISPATCH(columnAverages)
      (s.sums.data(), row(y, &s.enter), s.zeros.data(), nullptr, from.width, 0, nullptr, nullptr);
    }
  }

  void averageColumns(int y) const {
    int middle = edge == boxGrow ? y - ry : y;
    HWY_DYNAMIC_DISPATCH(columnAverages)
    (s.sums.data(), row(middle + ry, &s.enter), row(middle - ry - 1, &s.leave), row(middle, &s.middle), from.width,
     boxWindow(y, from.height, ry, edge).count, pixels, weights);
  }

  void averageRow(int y) const {
    BoxSum start{};  // a grown picture begins with padding alone
    if (edge == boxKeep)
      for (int x = 0; x < std::min(rx, from.width); x++) addTo(&start, weights[x], 1);
    ObjectPixel* out = alpha ? reinterpret_cast<ObjectPixel*>(rowOf(to, y)) : s.output.data();
    HWY_DYNAMIC_DISPATCH(rowAverages)
    (start, s.weights.data(), 2 * rx + 1, s.pixels.data() + 1 + rx, s.counts.data(), to.width, out);
    if (!alpha) writeRow(to, y, alpha, out);
  }

  void run(int begin, int end) {
    reserve();
    if (ry > 0) {
      // The sums before the first row hold its window but for the row that enters.
      int first = edge == boxGrow ? begin - ry : begin;
      addRows(std::max(first - ry - 1, 0), std::clamp(first + ry, 0, from.height));
    }
    for (int y = begin; y < end; y++) {
      if (ry > 0) {
        averageColumns(y);
      } else {
        readRow(from, y, alpha, pixels);
        HWY_DYNAMIC_DISPATCH(rowWeights)(pixels, from.width, weights);
      }
      rx > 0 ? averageRow(y) : writeRow(to, y, alpha, pixels);
    }
  }
};

ObjectPixel windowAverage(const ObjectPixel* first, ptrdiff_t stride, int index, int size, int radius, BoxEdge edge) {
  BoxWindow window = boxWindow(index, size, radius, edge);
  BoxSum sum{};
  for (int i = window.first; i < window.last; i++) addTo(&sum, weighed(first[i * stride]), 1);
  int middle = edge == boxGrow ? index - radius : index;
  return average(sum, window.count, middle >= 0 && middle < size ? first[middle * stride] : ObjectPixel{});
}

}  // namespace

void boxRound(const HostFunctionTable* host, const ImageTarget& to, const ImageTarget& from, int rx, int ry,
              BoxEdge edge, bool alpha) {
  overRows(host, to.height, [&](int begin, int end) {
    static thread_local Scratch scratch;
    Strip{to, from, rx, ry, edge, alpha, scratch, nullptr, nullptr}.run(begin, end);
  });
}

void boxRoundPlain(const ImageTarget& to, const ImageTarget& from, int rx, int ry, BoxEdge edge, bool alpha) {
  std::vector<ObjectPixel> source(static_cast<size_t>(from.width) * from.height);
  std::vector<ObjectPixel> between(static_cast<size_t>(from.width) * to.height), row(to.width);
  for (int y = 0; y < from.height; y++) readRow(from, y, alpha, &source[static_cast<size_t>(y) * from.width]);
  for (int y = 0; y < to.height; y++) {
    ObjectPixel* line = &between[static_cast<size_t>(y) * from.width];
    for (int x = 0; x < from.width; x++) {
      line[x] = ry ? windowAverage(&source[x], from.width, y, from.height, ry, edge)
                   : source[static_cast<size_t>(y) * from.width + x];
    }
    for (int x = 0; x < to.width; x++) row[x] = rx ? windowAverage(line, 1, x, from.width, rx, edge) : line[x];
    writeRow(to, y, alpha, row.data());
  }
}

}  // namespace zenlay
#endif
