#include "zenlay/filters/light_domain.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace zenlay {
namespace {

inline constexpr int lumaPerExponent = 16;
inline constexpr int chromaShift = 4;

double logarithmOfBase(int strength) { return std::log1p(std::clamp(strength, 1, maxLightStrength) / 1000.0); }

template <class Pixel>
Pixel* rowOf(const ImageTarget& image, int y) {
  return reinterpret_cast<Pixel*>(static_cast<uint8_t*>(image.pixels) + static_cast<ptrdiff_t>(y) * image.lineBytes);
}

int8_t coarseChroma(int c) { return static_cast<int8_t>(std::clamp((c + 8) >> chromaShift, -128, 127)); }

LightPixel lit(const float* table, ObjectPixel p) {
  if (p.a <= 0) return {};
  return {table[std::clamp<int>(p.y, 0, whiteLuma)], coarseChroma(p.cb), coarseChroma(p.cr), p.a};
}

int16_t lumaOf(float light, double scale) {
  return static_cast<int16_t>(std::clamp(std::lrint(std::log1p(std::max(light, 0.0f)) * scale), 0L, long{whiteLuma}));
}

int16_t fullChroma(int8_t c) { return static_cast<int16_t>(c * (1 << chromaShift)); }

/// A window's sums, colours times alpha.
struct LightSum {
  double light;
  int32_t cb, cr, a;
};

void add(LightSum* sum, const LightPixel& p, int sign) {
  int alpha = std::clamp<int>(p.a, 0, fullAlpha) * sign;
  sum->light += static_cast<double>(p.light) * alpha;
  sum->cb += p.cb * alpha;
  sum->cr += p.cr * alpha;
  sum->a += alpha;
}

LightPixel average(const LightSum& sum, int count, const LightPixel& middle) {
  if (sum.a == 0) return {middle.light, middle.cb, middle.cr, 0};
  return {static_cast<float>(std::max(sum.light / sum.a, 0.0)), static_cast<int8_t>(sum.cb / sum.a),
          static_cast<int8_t>(sum.cr / sum.a), static_cast<int16_t>(sum.a / count)};
}

void readRow(const ImageTarget& image, int y, bool alpha, LightPixel* row) {
  if (alpha) {
    std::copy_n(rowOf<LightPixel>(image, y), image.width, row);
    return;
  }
  const LightFramePixel* from = rowOf<LightFramePixel>(image, y);
  for (int x = 0; x < image.width; x++) row[x] = {from[x].light, from[x].cb, from[x].cr, fullAlpha};
}

void writeRow(const ImageTarget& image, int y, bool alpha, const LightPixel* row) {
  if (alpha) {
    std::copy_n(row, image.width, rowOf<LightPixel>(image, y));
    return;
  }
  LightFramePixel* to = rowOf<LightFramePixel>(image, y);
  for (int x = 0; x < image.width; x++) to[x] = {row[x].light, row[x].cb, row[x].cr};
}

struct Scratch {
  std::vector<LightSum> sums;
  std::vector<LightPixel> entering, row, out;
};

void averageRow(const LightPixel* row, int width, int radius, BoxEdge edge, LightPixel* out, int outWidth) {
  LightSum sum{};
  int shift = edge == boxGrow ? radius : 0;
  for (int x = 0; x < std::min(radius - shift, width); x++) add(&sum, row[x], 1);
  for (int x = 0; x < outWidth; x++) {
    int middle = x - shift, enter = middle + radius, leave = enter - 2 * radius - 1;
    if (enter < width) add(&sum, row[enter], 1);
    if (leave >= 0) add(&sum, row[leave], -1);
    bool inside = middle >= 0 && middle < width;
    out[x] = average(sum, boxWindow(x, width, radius, edge).count, inside ? row[middle] : LightPixel{});
  }
}

struct Strip {
  const ImageTarget& to;
  const ImageTarget& from;
  int rx, ry;
  BoxEdge edge;
  bool alpha;
  Scratch& s;

  void addRow(int y, int sign) const {
    if (y < 0 || y >= from.height) return;
    readRow(from, y, alpha, s.entering.data());
    for (int x = 0; x < from.width; x++) add(&s.sums[x], s.entering[x], sign);
  }

  void averageColumns(int y) const {
    int middle = edge == boxGrow ? y - ry : y, count = boxWindow(y, from.height, ry, edge).count;
    addRow(middle + ry, 1);
    addRow(middle - ry - 1, -1);
    if (middle >= 0 && middle < from.height) {
      readRow(from, middle, alpha, s.row.data());
    } else {
      std::fill(s.row.begin(), s.row.end(), LightPixel{});
    }
    for (int x = 0; x < from.width; x++) s.row[x] = average(s.sums[x], count, s.row[x]);
  }

  void run(int begin, int end) const {
    s.sums.assign(from.width, {});
    s.entering.resize(from.width);
    s.row.resize(from.width);
    s.out.resize(to.width);
    int first = edge == boxGrow ? begin - ry : begin;
    for (int y = first - ry - 1; ry > 0 && y < first + ry; y++) addRow(y, 1);
    for (int y = begin; y < end; y++) {
      ry > 0 ? averageColumns(y) : readRow(from, y, alpha, s.row.data());
      if (rx > 0) averageRow(s.row.data(), from.width, rx, edge, s.out.data(), to.width);
      writeRow(to, y, alpha, rx > 0 ? s.out.data() : s.row.data());
    }
  }
};

}  // namespace

void toLight(const HostFunctionTable* host, const ImageTarget& image, int strength, bool alpha) {
  float table[whiteLuma + 1];
  double logarithm = logarithmOfBase(strength);
  for (int y = 0; y <= whiteLuma; y++) table[y] = static_cast<float>(std::expm1(y * logarithm / lumaPerExponent));
  overRows(host, image.height, [&](int begin, int end) {
    for (int y = begin; y < end; y++) {
      if (alpha) {
        ObjectPixel* row = rowOf<ObjectPixel>(image, y);
        for (int x = 0; x < image.width; x++) {
          LightPixel p = lit(table, row[x]);
          memcpy(&row[x], &p, sizeof p);
        }
      } else {
        FramePixel* row = rowOf<FramePixel>(image, y);
        for (int x = 0; x < image.width; x++) {
          LightPixel p = lit(table, {row[x].y, row[x].cb, row[x].cr, fullAlpha});
          LightFramePixel q{p.light, p.cb, p.cr};
          memcpy(&row[x], &q, sizeof q);
        }
      }
    }
  });
}

void fromLight(const HostFunctionTable* host, const ImageTarget& image, int strength, bool alpha) {
  double scale = lumaPerExponent / logarithmOfBase(strength);
  overRows(host, image.height, [&](int begin, int end) {
    static thread_local std::vector<LightPixel> row;
    row.resize(image.width);
    for (int y = begin; y < end; y++) {
      readRow(image, y, alpha, row.data());
      for (int x = 0; x < image.width; x++) {
        const LightPixel& p = row[x];
        FramePixel colour{lumaOf(p.light, scale), fullChroma(p.cb), fullChroma(p.cr)};
        if (alpha) {
          rowOf<ObjectPixel>(image, y)[x] = {colour.y, colour.cb, colour.cr, p.a};
        } else {
          rowOf<FramePixel>(image, y)[x] = colour;
        }
      }
    }
  });
}

void lightRound(const HostFunctionTable* host, const ImageTarget& to, const ImageTarget& from, int rx, int ry,
                BoxEdge edge, bool alpha) {
  overRows(host, to.height, [&](int begin, int end) {
    static thread_local Scratch scratch;
    Strip{to, from, rx, ry, edge, alpha, scratch}.run(begin, end);
  });
}

}  // namespace zenlay
