// The layer ranges of control objects, as the timeline shows them.
#pragma once

#include <vector>

namespace zenlay {

enum RangeKind { rangeTime = 1, rangeGroup = 2, rangeOther = 4 };
struct RangeMark {
  int object;
  int x0, x1;  // of the whole section chain; x1 is behind it
  int lastLayer;
  int kind;  // RangeKind
};
inline constexpr int maxRangeMarks = 4095;

/// Those in view, as of the last collectRangeMarks.
extern std::vector<RangeMark> rangeMarks;
/// Leaves none when the ranges are not shown.
void collectRangeMarks();

struct TintedSpan {
  int x0, x1;  // columns x0..x1 - 1
  int kinds;   // 1..3
};
/// Of a visible row, from left to right, within the object area.
std::vector<TintedSpan> tintedSpans(int layer);

}  // namespace zenlay
