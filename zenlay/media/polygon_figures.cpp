#include "zenlay/media/polygon_figures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

namespace zenlay {

namespace {

using Corner = FigurePolygon::Corner;

constexpr double starInnerRadius = 0.38196601125010515;  // (3 - sqrt 5) / 2: a pentagram in the unit circle

/// Adds the area right of a piece of edge that runs from x0 to x1 over `height` of one row (the sign is the area's):
/// cells[i] is the change of coverage at pixel i. 0 <= x0, x1 <= width, and cells has width + 2 entries.
void addEdgePiece(float* cells, double x0, double x1, double height) {
  if (x0 > x1) std::swap(x0, x1);
  int first = static_cast<int>(x0), end = static_cast<int>(std::ceil(x1));
  if (end <= first + 1) {
    double right = (x0 + x1) / 2 - first;  // mean distance of the edge from the pixel's left side
    cells[first] += static_cast<float>(height * (1 - right));
    cells[first + 1] += static_cast<float>(height * right);
    return;
  }
  // Over several pixels: covered area up to the right side of each pixel, a parabola at both ends and a line between.
  double slope = height / (x1 - x0);
  double before = 0;
  for (int i = first; i < end; i++) {
    double left = std::max(x0, static_cast<double>(i)), right = std::min(x1, i + 1.0);
    double begun = (left - x0) * slope;                                   // edge height passed so far
    double area = (right - left) * (begun + (right - left) * slope / 2);  // under the slanted part
    area += (i + 1 - right) * height;                                     // behind its end
    cells[i] += static_cast<float>(area - before);
    before = area;
  }
  cells[end] += static_cast<float>(height - before);
}

void addEdges(float* cells, const Corner* corners, int count, int row, double width, double sign) {
  for (int i = 0; i < count; i++) {
    Corner a = corners[i], b = corners[(i + 1) % count];
    double direction = sign;
    if (a.y > b.y) {
      std::swap(a, b);
      direction = -sign;
    }
    double top = std::max(a.y, static_cast<double>(row)), bottom = std::min(b.y, row + 1.0);
    if (bottom <= top) continue;
    double slope = (b.x - a.x) / (b.y - a.y);
    double x0 = std::clamp(a.x + (top - a.y) * slope, 0.0, width);
    double x1 = std::clamp(a.x + (bottom - a.y) * slope, 0.0, width);
    addEdgePiece(cells, x0, x1, direction * (bottom - top));
  }
}

}  // namespace

FigurePolygon regularFigure(int corners, bool star, int side, int lineWidth) {
  FigurePolygon figure{};
  figure.corners = corners;
  double radius = side / 2.0, step = 2 * std::numbers::pi / corners;
  // Distance of the edges' lines from the centre; a line width moves them in, which shrinks the figure.
  double edgeDistance = radius * (star ? std::cos(2 * step) : std::cos(step / 2));
  double inner = 1 - lineWidth / edgeDistance;
  figure.hole = lineWidth > 0 && 2 * lineWidth < side && inner > 0;
  for (int i = 0; i < corners; i++) {
    double reach = star && i % 2 ? radius * starInnerRadius : radius;
    double x = reach * std::sin(i * step), y = -reach * std::cos(i * step);
    figure.outer[i] = {radius + x, radius + y};
    figure.inner[i] = {radius + x * inner, radius + y * inner};
  }
  return figure;
}

void fillFigureRows(const FigurePolygon& figure, ObjectPixel* image, int line, int width, int first, int last,
                    ObjectPixel colour) {
  float cells[maxFigureSide + 2];
  for (int y = first; y < last; y++) {
    std::fill_n(cells, width + 2, 0.0f);
    // Corners run clockwise: right-hand edges go down, so the left ones open the covered part with the other sign.
    addEdges(cells, figure.outer, figure.corners, y, width, -1);
    if (figure.hole) addEdges(cells, figure.inner, figure.corners, y, width, 1);
    ObjectPixel* d = image + static_cast<ptrdiff_t>(y) * line;
    float covered = 0;
    for (int x = 0; x < width; x++) {
      covered += cells[x];
      colour.a = static_cast<int16_t>(std::clamp(covered, 0.0f, 1.0f) * fullAlpha + 0.5f);
      d[x] = colour;
    }
  }
}

}  // namespace zenlay
