// Drawing an image in space: projection onto the frame and the rasteriser of the projected quadrilateral.
//
// Positions are in 1/4096 pixel from the frame's centre, x right, y down, z away from the viewer; angles 65536 per turn,
// positive rz turns clockwise on screen.
#pragma once

#include <cstdint>

#include "zenlay/effects/effect_services.h"

namespace zenlay {

inline constexpr int32_t defaultEyeDistance = 0x400000;  // 1024 pixels

/// The projection in force; reset to the default camera before every effect call.
struct Projection {
  int32_t centreX, centreY;  // screen centre, 1/4096 pixel
  int32_t eyeDistance;       // 0 = orthographic
  int32_t nearDistance;
};
extern Projection projection;
extern int32_t nearPercent;  // near distance in percent of the eye distance, 5 after start-up

void resetProjection(int frameWidth, int frameHeight);

/// A transform applied to the object's corners before projection (group control): p' = scale * R * p + translation.
struct SpaceTransform {
  double rotation[3][3];  // rotation and zoom
  double x, y, z;         // 1/4096 pixel
};
/// M = zoom * Rx * Ry * Rz.
void rotationMatrix(double m[3][3], int rx, int ry, int rz, double zoom);

/// Projects and fills `region` of an image (BlendFlags, mode in bits 24..28). `group` may be null. Writes the four
/// corners (x, y) in 1/4096 pixel, rounded; 0 when nothing can be drawn. A null target only computes the corners.
int drawImageInSpace(const HostFunctionTable*, const ImageTarget*, const ImageRegion&, const ImagePlacement&,
                     const SpaceTransform* group, uint32_t flags, int32_t corners[8]);

/// Fills a convex polygon of 3..16 vertices with perspective-correct, bilinear, alpha-weighted sampling, anti-aliased
/// edges without seams between polygons that share an edge, and area filtering below half size.
void fillPolygon(const HostFunctionTable*, const ImageTarget&, const DrawVertex*, int count, const ImageRegion&,
                 int transparency, uint32_t flags);

}  // namespace zenlay
