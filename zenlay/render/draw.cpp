#include "zenlay/render/draw.h"

#include <algorithm>
#include <cmath>

#include "zenlay/render/blend.h"
#include "zenlay/render/raster.h"

namespace zenlay {

constinit Projection projection{0, 0, defaultEyeDistance, defaultEyeDistance / 20};
constinit int32_t nearPercent = defaultNearPercent;

void resetProjection(int frameWidth, int frameHeight) {
  projection.centreX = frameWidth * (subPixel / 2);
  projection.centreY = frameHeight * (subPixel / 2);
  projection.eyeDistance = defaultEyeDistance;
  projection.nearDistance = static_cast<int32_t>(static_cast<double>(nearPercent) * defaultEyeDistance * 0.01);
}

void rotationMatrix(double m[3][3], int rx, int ry, int rz, double zoom) {
  // A quarter turn has no rounding, so that pictures turned by it keep their pixels.
  auto cosine = [](int angle) {
    static constexpr double quarters[4] = {1, 0, -1, 0};
    angle &= fullTurn - 1;
    return angle % (fullTurn / 4) ? std::cos(angle * (2 * M_PI / fullTurn)) : quarters[angle / (fullTurn / 4)];
  };
  auto sine = [&](int angle) { return cosine(angle - fullTurn / 4); };
  double cx = cosine(rx), cy = cosine(ry), cz = cosine(rz);
  double sx = sine(rx), sy = sine(ry), sz = sine(rz);
  const double turned[3][3] = {
      {cz * cy, -sz * cy, sy},
      {cz * sx * sy + sz * cx, cz * cx - sz * sx * sy, -cy * sx},
      {sz * sx - cz * cx * sy, sz * cx * sy + cz * sx, cy * cx},
  };
  for (int i = 0; i < 3; i++) {
    for (int k = 0; k < 3; k++) m[i][k] = zoom * turned[i][k];
  }
}

namespace {

struct Point3 {
  double x, y, z;
};

Point3 transformed(const double m[3][3], Point3 p) {
  return {m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z, m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z,
          m[2][0] * p.x + m[2][1] * p.y + m[2][2] * p.z};
}

/// Left top, right top, right bottom, left bottom in space; z is the distance from the eye.
void placeCorners(const ImageRegion& region, const ImagePlacement& at, const SpaceTransform* group, Point3 corner[4]) {
  double zoom = at.zoom / double{zoomOne}, aspect = at.aspect / double{zoomOne};
  double scaleX = aspect > 0 ? 1 - aspect : 1, scaleY = aspect < 0 ? 1 + aspect : 1;
  double matrix[3][3];
  rotationMatrix(matrix, at.rx, at.ry, at.rz, zoom);
  for (int i = 0; i < 4; i++) {
    double u = i == 1 || i == 2 ? region.width : 0, v = i >= 2 ? region.height : 0;
    Point3 p = transformed(
        matrix, {(u * subPixel - at.cx) * scaleX, (v * subPixel - at.cy) * scaleY, -static_cast<double>(at.cz)});
    p = {p.x + at.x, p.y + at.y, p.z + at.z};
    if (group) {
      p = transformed(group->rotation, p);
      p = {p.x + group->x, p.y + group->y, p.z + group->z};
    }
    p.z += projection.eyeDistance;
    corner[i] = p;
  }
}

/// Whether the eye sees the mirrored side.
bool showsBack(const Point3 corner[4]) {
  Point3 a{corner[1].x - corner[0].x, corner[1].y - corner[0].y, corner[1].z - corner[0].z};
  Point3 b{corner[3].x - corner[0].x, corner[3].y - corner[0].y, corner[3].z - corner[0].z};
  Point3 normal{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
  if (projection.eyeDistance == 0) return normal.z < 0;
  return normal.x * corner[0].x + normal.y * corner[0].y + normal.z * corner[0].z < 0;
}

int32_t rounded(double v) { return static_cast<int32_t>(std::llround(std::clamp(v, -2147483648.0, 2147483647.0))); }

/// In 1/4096 pixel, with w = eye distance / depth.
RasterVertex project(Point3 p) {
  if (projection.eyeDistance == 0) return {p.x + projection.centreX, p.y + projection.centreY, 1, 0, 0};
  double depth = std::max({p.z, static_cast<double>(projection.nearDistance), 1.0});
  double w = projection.eyeDistance / depth;
  return {p.x * w + projection.centreX, p.y * w + projection.centreY, w, 0, 0};
}

/// Neither turned nor scaled nor moved in depth.
bool isUpright(const ImagePlacement& at, const SpaceTransform* group) {
  return !group && at.rx % fullTurn == 0 && at.ry % fullTurn == 0 && at.rz % fullTurn == 0 && at.zoom == zoomOne &&
         at.aspect == 0 && (projection.eyeDistance == 0 || int64_t{at.z} - at.cz == 0);
}

struct Offset {
  int64_t x, y;  // of the left top corner, 1/4096 pixel
};

/// The halves of frame and picture are whole pixels, each truncated.
Offset uprightOffset(const ImageRegion& region, const ImagePlacement& at) {
  auto along = [](int32_t centre, int32_t size, int32_t position, int32_t pivot) {
    int64_t middle = int64_t{centre / subPixel - size / 2} * subPixel;
    return middle + position - (pivot - int64_t{size} * (subPixel / 2));
  };
  return {along(projection.centreX, region.width, at.x, at.cx), along(projection.centreY, region.height, at.y, at.cy)};
}

}  // namespace

int drawImageInSpace(const HostFunctionTable* host, const ImageTarget* target, const ImageRegion& region,
                     const ImagePlacement& at, const SpaceTransform* group, uint32_t flags, int32_t corners[8]) {
  if (region.width <= 0 || region.height <= 0) return 0;
  RasterVertex vertices[4];
  bool upright = isUpright(at, group), back = false;
  Offset offset{};
  if (upright) {
    offset = uprightOffset(region, at);
    double x = static_cast<double>(offset.x), y = static_cast<double>(offset.y);
    double right = x + double{subPixel} * region.width, bottom = y + double{subPixel} * region.height;
    const double places[4][2] = {{x, y}, {right, y}, {right, bottom}, {x, bottom}};
    for (int i = 0; i < 4; i++) vertices[i] = {places[i][0], places[i][1], 1, 0, 0};
  } else {
    Point3 space[4];
    placeCorners(region, at, group, space);
    back = showsBack(space);
    for (int i = 0; i < 4; i++) vertices[i] = project(space[i]);
  }
  for (int i = 0; i < 4; i++) {
    corners[2 * i] = rounded(vertices[i].x);
    corners[2 * i + 1] = rounded(vertices[i].y);
  }
  if ((flags & drawHideBack) && back) return 0;
  if (!target || at.zoom == 0 || at.transparency >= fullAlpha) return 1;
  if (upright && offset.x % subPixel == 0 && offset.y % subPixel == 0) {
    int64_t x = offset.x / subPixel, y = offset.y / subPixel;
    if (x <= -region.width || y <= -region.height || x >= target->width || y >= target->height) return 1;
    blendCopy(host, *target, static_cast<int>(x), static_cast<int>(y), region, at.transparency, flags);
    return 1;
  }
  for (int i = 0; i < 4; i++) {
    vertices[i].x /= subPixel;
    vertices[i].y /= subPixel;
    vertices[i].u = region.x + (i == 1 || i == 2 ? region.width : 0);
    vertices[i].v = region.y + (i >= 2 ? region.height : 0);
  }
  fillVertices(host, *target, vertices, 4, region, at.transparency, flags);
  return 1;
}

}  // namespace zenlay
