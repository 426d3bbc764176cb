// Filling projected polygons: edges, coverage and spans. See fillPolygon in draw.h for what is promised.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

inline constexpr int maxPolygonVertices = 16;

/// As DrawVertex, with room for coordinates of any zoom.
struct RasterVertex {
  double x, y, w, u, v;
};

void fillVertices(const HostFunctionTable*, const ImageTarget&, const RasterVertex*, int count, const ImageRegion&,
                  int transparency, uint32_t flags);

/// Half-plane a x + b y + c >= 0 with |a| + |b| = 1, so that a pixel with value e at its centre is inside for e >= 1/2.
struct HalfPlane {
  double a, b, c;
};
/// Area 0..1 of the pixel whose centre is (x, y) inside of all half-planes.
double pixelCoverage(const HalfPlane*, int count, double x, double y);

}  // namespace zenlay
