// Drawing an image in space: projection onto the frame and the rasteriser of the projected quadrilateral.
//
// Positions are in 1/4096 pixel from the frame's centre, x right, y down, z away from the viewer; angles 65536 per
// turn, positive rz turns clockwise on screen.
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
inline constexpr int32_t defaultNearPercent = 5;
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
/// corners (x, y) in 1/4096 pixel, rounded: those of the picture's left top, right top, right bottom and left bottom.
/// 0 when there is nothing to draw: an empty region or a hidden back. A null target, zoom 0 and full transparency only
/// compute the corners.
///
/// The front is the side on which the picture is not mirrored: that of an unturned picture. A corner nearer than the
/// near distance is projected as if it lay there. A picture without turn, with zoom 1, aspect 0 and depth 0 keeps its
/// pixels: the halves of frame and picture are whole pixels, each truncated, and a whole-pixel position (less the
/// centre's offset from the picture's middle) is a plain blendCopy.
int drawImageInSpace(const HostFunctionTable*, const ImageTarget*, const ImageRegion&, const ImagePlacement&,
                     const SpaceTransform* group, uint32_t flags, int32_t corners[8]);

/// Fills a polygon of 3..16 vertices with perspective-correct, bilinear, alpha-weighted sampling; `u`, `v` are pixels
/// of the image (not of the region), which bounds what is sampled. The polygon is convex; another one, and one whose
/// texture is not a plane's, is drawn as triangles. Both turning senses are drawn. Nothing is drawn for other counts,
/// vertices that are not finite or have w <= 0, or an empty region.
///
/// Where a picture shrinks, the area of the source that a pixel covers is averaged (at most 256 taps a direction).
///
/// Edges: one that lies on the border of the region is an edge of the picture and anti-aliased: the alpha is multiplied
/// by the area of the pixel inside of the polygon; two such polygons meeting in an edge cover 1/4096 exactly full
/// together, which an adding mode (blendAccumulate) shows. One that cuts through the picture is shared with a
/// neighbour: a pixel belongs to the polygon that holds its centre, whole, so that the pieces of one picture leave
/// neither gap nor overlap in any mode. Faces that meet without being pieces of one picture say so by
/// `drawSharedEdges`. Neighbours fit when they have the vertices of the edge in common, bit by bit.
void fillPolygon(const HostFunctionTable*, const ImageTarget&, const DrawVertex*, int count, const ImageRegion&,
                 int transparency, uint32_t flags);

/// Flags of fillPolygon and drawImageInSpace beside BlendFlag.
enum DrawFlag : uint32_t {
  drawSharedEdges = 0x200000,  // all edges are shared with neighbours
};

}  // namespace zenlay
