// The arithmetic of zoom, aspect and angle that effects and drawing share.
#pragma once

#include <algorithm>
#include <cstdint>

#include "zenlay/effects/process_info.h"

namespace zenlay {

/// (v rem 36000) x 65536 / 36000, truncated; the remainder keeps the sign. Degrees x 100 to turn units.
constexpr int32_t turnUnits(int32_t hundredthsOfDegree) {
  return static_cast<int32_t>(int64_t{hundredthsOfDegree % 36000} * fullTurn / 36000);
}

struct Scales {
  int32_t x, y;  // 16.16
};

/// scale x numerator / denominator in 64 bits, truncated, within 32 bits.
constexpr int32_t scaled(int32_t scale, int32_t numerator, int32_t denominator) {
  return static_cast<int32_t>(std::clamp<int64_t>(int64_t{scale} * numerator / denominator, INT32_MIN, INT32_MAX));
}

/// Zoom and aspect as a horizontal and a vertical scale.
constexpr Scales decodeZoom(int32_t zoom, int32_t aspect) {
  return {aspect > 0 ? scaled(zoom, zoomOne - aspect, zoomOne) : zoom,
          aspect < 0 ? scaled(zoom, zoomOne + aspect, zoomOne) : zoom};
}

/// And back: the larger scale, and how much the other one falls short of it.
constexpr void encodeZoom(Scales s, int32_t* zoom, int32_t* aspect) {
  *zoom = std::max(s.x, s.y);
  *aspect = *zoom == 0 || s.x == s.y ? 0 : static_cast<int32_t>((int64_t{s.y} - s.x) * zoomOne / *zoom);
}

}  // namespace zenlay
