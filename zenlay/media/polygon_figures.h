// Regular polygons and the star, filled or outlined, with anti-aliased edges.
//
// A pixel's alpha is the exact area of it that the figure covers (x 4096, rounded): edges add signed areas to the
// pixels they cross, and a running sum over the row gives the covered part of each. Rows are independent.
#pragma once

#include "zenlay/effects/pixels.h"

namespace zenlay {

inline constexpr int maxFigureSide = 16384;  // pixels
inline constexpr int maxFigureCorners = 10;

struct FigurePolygon {
  struct Corner {
    double x, y;  // pixels from the image's top-left corner
  };
  int corners;
  Corner outer[maxFigureCorners];
  Corner inner[maxFigureCorners];  // the edge of the hole
  bool hole;
};

/// The figure inscribed in the circle of a side x side square, first corner on top. `star`: corners alternate between
/// that circle and the one on which a pentagram's edges cross. 0 < lineWidth, 2 * lineWidth < side leaves an outline of
/// that width; a line as wide as the figure fills it.
FigurePolygon regularFigure(int corners, bool star, int side, int lineWidth);
/// Rows first..last - 1 of `width` pixels: every pixel takes the colour, the alpha is the coverage.
void fillFigureRows(const FigurePolygon&, ObjectPixel* image, int line, int width, int first, int last,
                    ObjectPixel colour);

}  // namespace zenlay
