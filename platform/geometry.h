// Points, sizes and rectangles in logical pixels: a desktop that scales its windows scales these.
#pragma once

#include <algorithm>
#include <cstdint>

namespace platform {

struct Point {
  int x, y;
  bool operator==(const Point&) const = default;
};
struct Size {
  int width, height;
  bool operator==(const Size&) const = default;
};
/// Covers x..x + width - 1, y..y + height - 1; a side below 1 covers nothing.
struct Rect {
  int x, y, width, height;
  bool operator==(const Rect&) const = default;
};

inline bool isEmpty(const Rect& r) { return r.width < 1 || r.height < 1; }
inline Size sizeOf(const Rect& r) { return {r.width, r.height}; }
inline bool contains(const Rect& r, Point p) {
  return p.x >= r.x && p.x < r.x + r.width && p.y >= r.y && p.y < r.y + r.height;
}
inline Rect intersect(const Rect& a, const Rect& b) {
  int x = std::max(a.x, b.x), y = std::max(a.y, b.y);
  return {x, y, std::min(a.x + a.width, b.x + b.width) - x, std::min(a.y + a.height, b.y + b.height) - y};
}

/// A point as a message parameter.
inline intptr_t packPoint(Point p) {
  return static_cast<intptr_t>(static_cast<uint64_t>(static_cast<uint32_t>(p.y)) << 32 | static_cast<uint32_t>(p.x));
}
inline Point unpackPoint(intptr_t packed) { return {static_cast<int32_t>(packed), static_cast<int32_t>(packed >> 32)}; }

}  // namespace platform
