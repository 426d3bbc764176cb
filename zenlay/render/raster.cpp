#include "zenlay/render/raster.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "zenlay/render/blend.h"
#include "zenlay/render/draw.h"
#include "zenlay/render/raster_sample.h"

namespace zenlay {
namespace {

inline constexpr double borderSlack = 1.0 / 64;     // source pixels
inline constexpr double planeTolerance = 1.0 / 16;  // source pixels
inline constexpr double smallestArea = 1e-7;        // square pixels
inline constexpr double shrinkWithoutTaps = 1.5;    // source pixels a pixel that one bilinear tap still covers
inline constexpr int maxTaps = 256;                 // a direction
inline constexpr int perspectiveRun = 64;           // pixels over which the number of taps is kept

/// value(x, y) = c + x dx + y dy
struct Plane {
  double c, dx, dy;
  double at(double x, double y) const { return c + x * dx + y * dy; }
};

/// An edge shared with a neighbour. Both compute `crossing` from the same ends in the same order.
struct SharedEdge {
  double x, y, slope;  // upper end; slope in x a row
  bool level;          // horizontal: parts rows
  bool inside;         // of larger x (or y, when level)
};

struct Polygon {
  HalfPlane outer[maxPolygonVertices];
  SharedEdge shared[maxPolygonVertices];
  int outerCount, sharedCount;
  Plane w, u, v;  // u and v times w
  double left, top, right, bottom;
};

struct Fill {
  ImageTarget target;
  SampleSource source;
  const BlendKernels* kernels;
  int weight;
  bool targetAlpha;
};

double cross(const RasterVertex& o, const RasterVertex& p, const RasterVertex& q) {
  return (p.x - o.x) * (q.y - o.y) - (p.y - o.y) * (q.x - o.x);
}

Plane planeThrough(const RasterVertex& o, const RasterVertex& p, const RasterVertex& q, double area, double vo,
                   double vp, double vq) {
  Plane plane;
  plane.dx = ((vp - vo) * (q.y - o.y) - (vq - vo) * (p.y - o.y)) / area;
  plane.dy = ((vq - vo) * (p.x - o.x) - (vp - vo) * (q.x - o.x)) / area;
  plane.c = vo - o.x * plane.dx - o.y * plane.dy;
  return plane;
}

/// The linear map from the frame to the texture, and whether every vertex agrees with it.
bool fitTexture(const RasterVertex* p, int count, Polygon* polygon) {
  int second = 1, third = 2;
  for (int i = 1; i < count; i++) {
    for (int k = i + 1; k < count; k++) {
      if (std::abs(cross(p[0], p[i], p[k])) > std::abs(cross(p[0], p[second], p[third]))) second = i, third = k;
    }
  }
  const RasterVertex &a = p[0], &b = p[second], &c = p[third];
  double area = cross(a, b, c);
  if (std::abs(area) < smallestArea) return false;
  polygon->w = planeThrough(a, b, c, area, a.w, b.w, c.w);
  polygon->u = planeThrough(a, b, c, area, a.u * a.w, b.u * b.w, c.u * c.w);
  polygon->v = planeThrough(a, b, c, area, a.v * a.w, b.v * b.w, c.v * c.w);
  for (int i = 1; i < count; i++) {
    double w = polygon->w.at(p[i].x, p[i].y);
    if (!(w > 0) || std::abs(polygon->u.at(p[i].x, p[i].y) / w - p[i].u) > planeTolerance ||
        std::abs(polygon->v.at(p[i].x, p[i].y) / w - p[i].v) > planeTolerance) {
      return false;
    }
  }
  return true;
}

bool isConvex(const RasterVertex* p, int count, double area) {
  for (int i = 0; i < count; i++) {
    if (cross(p[i], p[(i + 1) % count], p[(i + 2) % count]) * area < 0) return false;
  }
  return true;
}

/// Whether the edge lies on the region's border, or has no length in the texture.
bool isPictureEdge(const RasterVertex& p, const RasterVertex& q, const ImageRegion& region) {
  double left = region.x + borderSlack, right = region.x + region.width - borderSlack;
  double top = region.y + borderSlack, bottom = region.y + region.height - borderSlack;
  return (p.u <= left && q.u <= left) || (p.u >= right && q.u >= right) || (p.v <= top && q.v <= top) ||
         (p.v >= bottom && q.v >= bottom) || (p.u == q.u && p.v == q.v);
}

void addOuterEdge(const RasterVertex& p, const RasterVertex& q, double sign, Polygon* polygon) {
  double a = -(q.y - p.y) * sign, b = (q.x - p.x) * sign;
  double length = std::abs(a) + std::abs(b);
  polygon->outer[polygon->outerCount++] = {a / length, b / length, -(a * p.x + b * p.y) / length};
}

void addSharedEdge(const RasterVertex& p, const RasterVertex& q, double sign, Polygon* polygon) {
  bool ordered = p.y < q.y || (p.y == q.y && p.x < q.x);
  const RasterVertex &upper = ordered ? p : q, &lower = ordered ? q : p;
  bool level = upper.y == lower.y;
  double inward = level ? (q.x - p.x) * sign : -(q.y - p.y) * sign;
  double slope = level ? 0 : (lower.x - upper.x) / (lower.y - upper.y);
  polygon->shared[polygon->sharedCount++] = {upper.x, upper.y, slope, level, inward > 0};
}

/// Half-open pixel ranges of a row: [first, last) is touched, [fullFirst, fullLast) lies wholly inside.
struct Span {
  int first, last, fullFirst, fullLast;
};

int toPixel(double x) { return static_cast<int>(std::clamp(x, -1e9, 1e9)); }

Span rowSpan(const Polygon& polygon, int row, int width) {
  Span span{std::max(toPixel(std::floor(polygon.left)), 0), std::min(toPixel(std::ceil(polygon.right)), width), 0,
            width};
  const Span nothing{0, 0, 0, 0};
  double y = row + 0.5;
  for (int i = 0; i < polygon.sharedCount; i++) {
    const SharedEdge& edge = polygon.shared[i];
    if (edge.level) {
      if ((y >= edge.y) != edge.inside) return nothing;
      continue;
    }
    int crossing = toPixel(std::ceil(edge.x + (y - edge.y) * edge.slope - 0.5));
    edge.inside ? span.first = std::max(span.first, crossing) : span.last = std::min(span.last, crossing);
  }
  for (int i = 0; i < polygon.outerCount; i++) {
    const HalfPlane& edge = polygon.outer[i];
    // The part inside grows linearly: level at x = 0, touched from -1/2, full from 1/2.
    double level = edge.b * y + edge.c + edge.a * 0.5;
    if (std::abs(edge.a) < 1e-12) {
      if (level <= -0.5) return nothing;
      if (level < 0.5) span.fullLast = 0;
      continue;
    }
    double touched = (-0.5 - level) / edge.a, full = (0.5 - level) / edge.a;
    if (edge.a > 0) {
      span.first = std::max(span.first, toPixel(std::floor(touched)));
      span.fullFirst = std::max(span.fullFirst, toPixel(std::ceil(full)));
    } else {
      span.last = std::min(span.last, toPixel(std::ceil(touched)));
      span.fullLast = std::min(span.fullLast, toPixel(std::floor(full)) + 1);
    }
  }
  return span;
}

struct Taps {
  int across, down;
};

/// Taps that cover the parallelogram of the texture which the pixel at (x, y) shows: the longer side by its length, the
/// other by what it adds in area, so that all taps together read the picture about once however flat it lies.
Taps tapsAt(const Fill& fill, const Polygon& polygon, double x, double y) {
  double w = polygon.w.at(x, y);
  if (!(w > 0)) return {1, 1};
  double u = polygon.u.at(x, y) / w, v = polygon.v.at(x, y) / w;
  double ux = (polygon.u.dx - u * polygon.w.dx) / w, vx = (polygon.v.dx - v * polygon.w.dx) / w;
  double uy = (polygon.u.dy - u * polygon.w.dy) / w, vy = (polygon.v.dy - v * polygon.w.dy) / w;
  double across = std::hypot(ux, vx), down = std::hypot(uy, vy), area = std::abs(ux * vy - uy * vx);
  across >= down ? down = area / std::max(across, 1e-9) : across = area / std::max(down, 1e-9);
  double most = std::min(maxTaps, std::max(fill.source.width, fill.source.height));
  auto count = [&](double reach) {
    return reach >= shrinkWithoutTaps ? static_cast<int>(std::min(std::round(reach), most)) : 1;
  };
  return {count(across), count(down)};
}

void sampleAt(const Fill& fill, const Polygon& polygon, double x, double y, int count, ObjectPixel* out) {
  double w = std::max(polygon.w.at(x, y), 1e-12);
  sampleRun(fill.source, {polygon.u.at(x, y), polygon.v.at(x, y), w, polygon.u.dx, polygon.v.dx, polygon.w.dx, count},
            out);
}

/// The mean of the taps of each pixel, colours weighted by alpha.
void sampleArea(const Fill& fill, const Polygon& polygon, int x, int y, int count, Taps taps, ObjectPixel* out) {
  int32_t sums[maxSampleRun][4] = {};
  ObjectPixel samples[maxSampleRun];
  for (int j = 0; j < taps.down; j++) {
    for (int i = 0; i < taps.across; i++) {
      sampleAt(fill, polygon, x + (i + 0.5) / taps.across, y + (j + 0.5) / taps.down, count, samples);
      for (int k = 0; k < count; k++) {
        const ObjectPixel& p = samples[k];
        sums[k][0] += (p.y * p.a + 2048) >> 12;
        sums[k][1] += (p.cb * p.a + 2048) >> 12;
        sums[k][2] += (p.cr * p.a + 2048) >> 12;
        sums[k][3] += p.a;
      }
    }
  }
  int total = taps.across * taps.down;
  for (int k = 0; k < count; k++) {
    double scale = sums[k][3] > 0 ? 4096.0 / sums[k][3] : 0;
    auto mean = [&](int channel) { return static_cast<int16_t>(std::lrint(sums[k][channel] * scale)); };
    out[k] = {mean(0), mean(1), mean(2), static_cast<int16_t>((sums[k][3] + total / 2) / total)};
  }
}

void drawRun(const Fill& fill, const Polygon& polygon, const Span& span, int x, int row, int count) {
  ObjectPixel pixels[maxSampleRun];
  double y = row + 0.5;
  Taps first = tapsAt(fill, polygon, x + 0.5, y), last = tapsAt(fill, polygon, x + count - 0.5, y);
  Taps taps{std::max(first.across, last.across), std::max(first.down, last.down)};
  if (taps.across == 1 && taps.down == 1) {
    sampleAt(fill, polygon, x + 0.5, y, count, pixels);
  } else {
    sampleArea(fill, polygon, x, row, count, taps, pixels);
  }
  for (int i = 0; i < count; i++) {
    if (x + i >= span.fullFirst && x + i < span.fullLast) {
      i = std::min(span.fullLast - x, count) - 1;
      continue;
    }
    double area = pixelCoverage(polygon.outer, polygon.outerCount, x + i + 0.5, y);
    pixels[i].a = static_cast<int16_t>((pixels[i].a * std::lround(area * 4096) + 2048) >> 12);
  }
  uint8_t* line = static_cast<uint8_t*>(fill.target.pixels) + static_cast<ptrdiff_t>(row) * fill.target.lineBytes;
  if (fill.targetAlpha) {
    fill.kernels->toObject(reinterpret_cast<ObjectPixel*>(line) + x, pixels, count, fill.weight);
  } else {
    fill.kernels->toFrame(reinterpret_cast<FramePixel*>(line) + x, pixels, count, fill.weight);
  }
}

void drawRow(const Fill& fill, const Polygon& polygon, int row) {
  Span span = rowSpan(polygon, row, fill.target.width);
  int longest = polygon.w.dx == 0 ? maxSampleRun : perspectiveRun;
  for (int x = span.first; x < span.last; x += longest) {
    drawRun(fill, polygon, span, x, row, std::min(longest, span.last - x));
  }
}

/// One convex polygon whose texture is a plane's. `pieceEdges`: bit i: edge i is shared whatever it lies on.
void fillConvex(const HostFunctionTable* host, const Fill& fill, const RasterVertex* p, int count, double area,
                const ImageRegion& region, uint32_t pieceEdges, Polygon* polygon) {
  polygon->outerCount = polygon->sharedCount = 0;
  polygon->left = polygon->right = p[0].x;
  polygon->top = polygon->bottom = p[0].y;
  double sign = area > 0 ? 1 : -1;
  for (int i = 0; i < count; i++) {
    const RasterVertex& q = p[(i + 1) % count];
    polygon->left = std::min(polygon->left, p[i].x);
    polygon->right = std::max(polygon->right, p[i].x);
    polygon->top = std::min(polygon->top, p[i].y);
    polygon->bottom = std::max(polygon->bottom, p[i].y);
    if (p[i].x == q.x && p[i].y == q.y) continue;
    bool shared = (pieceEdges >> i & 1) || !isPictureEdge(p[i], q, region);
    shared ? addSharedEdge(p[i], q, sign, polygon) : addOuterEdge(p[i], q, sign, polygon);
  }
  int first = std::max(toPixel(std::floor(polygon->top)), 0);
  int last = std::min(toPixel(std::ceil(polygon->bottom)), fill.target.height);
  if (first >= last || polygon->right <= 0 || polygon->left >= fill.target.width) return;
  // The texture's planes start at the region's corner from here on.
  auto moved = [&](const Plane& plane, int by) {
    return Plane{plane.c - by * polygon->w.c, plane.dx - by * polygon->w.dx, plane.dy - by * polygon->w.dy};
  };
  polygon->u = moved(polygon->u, region.x);
  polygon->v = moved(polygon->v, region.y);
  overRows(host, last - first, [&](int begin, int end) {
    for (int row = first + begin; row < first + end; row++) drawRow(fill, *polygon, row);
  });
}

double signedArea(const RasterVertex* p, int count) {
  double area = 0;
  for (int i = 1; i + 1 < count; i++) area += cross(p[0], p[i], p[i + 1]);
  return area;
}

void fillTriangles(const HostFunctionTable* host, const Fill& fill, const RasterVertex* p, int count,
                   const ImageRegion& region, bool allShared) {
  // A dented quadrilateral is cut at the dent.
  int start = count == 4 && cross(p[0], p[1], p[2]) * cross(p[0], p[2], p[3]) < 0 ? 1 : 0;
  for (int i = 1; i + 1 < count; i++) {
    RasterVertex triangle[3] = {p[start], p[(start + i) % count], p[(start + i + 1) % count]};
    double area = cross(triangle[0], triangle[1], triangle[2]);
    uint32_t cuts = (i > 1 ? 1 : 0) | (i + 2 < count ? 4 : 0);
    Polygon polygon;
    if (std::abs(area) < smallestArea || !fitTexture(triangle, 3, &polygon)) continue;
    fillConvex(host, fill, triangle, 3, area, region, allShared ? 7 : cuts, &polygon);
  }
}

}  // namespace

double pixelCoverage(const HalfPlane* planes, int count, double x, double y) {
  struct Point {
    double x, y;
  };
  Point square[4 + maxPolygonVertices] = {{-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}};
  Point cut[4 + maxPolygonVertices];
  int corners = 4;
  for (int i = 0; i < count; i++) {
    const HalfPlane& plane = planes[i];
    double centre = plane.a * x + plane.b * y + plane.c;
    if (centre >= 0.5) continue;
    if (centre <= -0.5) return 0;
    int kept = 0;
    for (int k = 0; k < corners; k++) {
      const Point &p = square[k], &q = square[(k + 1) % corners];
      double ep = plane.a * p.x + plane.b * p.y + centre, eq = plane.a * q.x + plane.b * q.y + centre;
      if (ep >= 0) cut[kept++] = p;
      if ((ep < 0) != (eq < 0)) {
        double t = ep / (ep - eq);
        cut[kept++] = {p.x + (q.x - p.x) * t, p.y + (q.y - p.y) * t};
      }
      if (kept > 2 + maxPolygonVertices) break;  // rounding alone could bring more corners
    }
    if (kept < 3) return 0;
    corners = kept;
    std::copy(cut, cut + kept, square);
  }
  double area = 0;
  for (int k = 0; k < corners; k++) {
    const Point &p = square[k], &q = square[(k + 1) % corners];
    area += p.x * q.y - p.y * q.x;
  }
  return std::clamp(area / 2, 0.0, 1.0);
}

void fillVertices(const HostFunctionTable* host, const ImageTarget& target, const RasterVertex* vertices, int count,
                  const ImageRegion& region, int transparency, uint32_t flags) {
  if (count < 3 || count > maxPolygonVertices || region.width <= 0 || region.height <= 0 || !region.pixels ||
      transparency >= fullAlpha || target.width <= 0 || target.height <= 0) {
    return;
  }
  for (int i = 0; i < count; i++) {
    const RasterVertex& p = vertices[i];
    if (!(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.w) && std::isfinite(p.u) && std::isfinite(p.v)) ||
        p.w <= 0) {
      return;
    }
  }
  bool alpha = flags & blendSourceAlpha;
  ptrdiff_t size = alpha ? sizeof(ObjectPixel) : sizeof(FramePixel);
  Fill fill{target,
            {static_cast<const uint8_t*>(region.pixels) + static_cast<ptrdiff_t>(region.y) * region.lineBytes +
                 region.x * size,
             region.width, region.height, region.lineBytes, alpha},
            &blendKernels(blendModeOf(flags)),
            fullAlpha - std::max(transparency, 0),
            (flags & blendDestinationAlpha) != 0};
  Polygon polygon;
  double area = signedArea(vertices, count);
  bool allShared = flags & drawSharedEdges;
  if (isConvex(vertices, count, area) && std::abs(area) >= smallestArea && fitTexture(vertices, count, &polygon)) {
    fillConvex(host, fill, vertices, count, area, region, allShared ? ~0u : 0, &polygon);
  } else {
    fillTriangles(host, fill, vertices, count, region, allShared);
  }
}

void fillPolygon(const HostFunctionTable* host, const ImageTarget& target, const DrawVertex* vertices, int count,
                 const ImageRegion& region, int transparency, uint32_t flags) {
  if (count < 3 || count > maxPolygonVertices) return;
  RasterVertex wide[maxPolygonVertices];
  for (int i = 0; i < count; i++) wide[i] = {vertices[i].x, vertices[i].y, vertices[i].w, vertices[i].u, vertices[i].v};
  fillVertices(host, target, wide, count, region, transparency, flags);
}

}  // namespace zenlay
