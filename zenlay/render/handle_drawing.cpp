#include "zenlay/render/handle_drawing.h"

#include <algorithm>
#include <cmath>

#include "zenlay/render/handles.h"
#include "zenlay/render/preview_overlay.h"

namespace zenlay {

namespace {

// Dark and light in turn show on every background.
constexpr FramePixel dark{0, 0, 0}, light{4096, 0, 0};
constexpr FramePixel startColour{2400, -1400, -1200}, endColour{1400, -600, 1900}, pointColour{2900, -1800, 500};
constexpr int dashLength = 4;  // pixels

FramePixel* rowOf(const ImageTarget& target, int y) {
  return reinterpret_cast<FramePixel*>(static_cast<uint8_t*>(target.pixels) +
                                       static_cast<ptrdiff_t>(y) * target.lineBytes);
}

void dot(const ImageTarget& target, int x, int y, FramePixel colour) {
  if (x >= 0 && y >= 0 && x < target.width && y < target.height) rowOf(target, y)[x] = colour;
}

/// Cuts the part of a..b out that lies on the picture (Liang and Barsky, 1984); false when none does.
bool clipLine(const ImageTarget& target, ScenePoint& a, ScenePoint& b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double p[] = {-dx, dx, -dy, dy}, q[] = {a.x, target.width - 1 - a.x, a.y, target.height - 1 - a.y};
  double from = 0, to = 1;
  for (int i = 0; i < 4; i++) {
    if (p[i] == 0 && q[i] < 0) return false;
    if (p[i] < 0) from = std::max(from, q[i] / p[i]);
    if (p[i] > 0) to = std::min(to, q[i] / p[i]);
  }
  if (from > to) return false;
  b = {a.x + to * dx, a.y + to * dy};
  a = {a.x + from * dx, a.y + from * dy};
  return true;
}

/// In scene points.
void drawDashes(const ImageTarget& target, ScenePoint from, ScenePoint to) {
  ScenePoint a = shownAt(from), b = shownAt(to);
  if (!clipLine(target, a, b)) return;
  int steps = std::max(1, static_cast<int>(std::max(std::abs(b.x - a.x), std::abs(b.y - a.y))));
  for (int i = 0; i <= steps; i++)
    dot(target, static_cast<int>(std::lround(a.x + (b.x - a.x) * i / steps)),
        static_cast<int>(std::lround(a.y + (b.y - a.y) * i / steps)), i / dashLength % 2 ? dark : light);
}

/// A square with a dark rim.
void drawMark(const ImageTarget& target, ScenePoint at, double radius, FramePixel colour) {
  ScenePoint centre = shownAt(at);
  constexpr double farAway = 1e6;
  if (std::abs(centre.x) > farAway || std::abs(centre.y) > farAway) return;
  int x = static_cast<int>(std::lround(centre.x)), y = static_cast<int>(std::lround(centre.y));
  int r = std::max(2, static_cast<int>(std::lround(radius * 12 / shownScene.value)));
  fillPixels(target, {x - r, y - r, x + r + 1, y + r + 1}, dark);
  fillPixels(target, {x - r + 1, y - r + 1, x + r, y + r}, colour);
}

void drawBox(const ImageTarget& target, const PreviewHandle& box) {
  for (int i = 0; i < 4; i++) drawDashes(target, boxCorner(box, i), boxCorner(box, (i + 1) % 4));
  if (coordinateTrack(box.ref, slotRz) >= 0) {
    ScenePoint a = boxCorner(box, 0), b = boxCorner(box, 1);
    drawDashes(target, {(a.x + b.x) / 2, (a.y + b.y) / 2}, boxKnob(box));
    drawMark(target, boxKnob(box), markRadius(), pointColour);
  }
  if (coordinateTrack(box.ref, slotZoom) >= 0)
    for (int i = 0; i < 4; i++) drawMark(target, boxCorner(box, i), markRadius(), light);
}

double radiusOf(const PreviewHandle& handle) { return std::max(markRadius(), std::max(handle.w, handle.h) / 2.0); }

FramePixel colourOf(const PreviewHandle& handle) {
  if (isFree(handle)) return pointColour;
  return handle.kind & handleStart ? startColour : handle.kind & handleEnd ? endColour : pointColour;
}

ScenePoint placeOf(const PreviewHandle& handle) { return {handle.x + 0.0, handle.y + 0.0}; }

}  // namespace

void fillPixels(const ImageTarget& target, PixelRect r, FramePixel colour) {
  r = intersect(r, {0, 0, target.width, target.height});
  for (int y = r.top; y < r.bottom; y++)
    if (r.left < r.right) std::fill(rowOf(target, y) + r.left, rowOf(target, y) + r.right, colour);
}

void drawHandles(const ImageTarget& target) {
  for (int i = 0; i < previewHandleCount; i++) {
    const PreviewHandle& handle = previewHandles[i];
    if (isBox(handle)) drawBox(target, handle);
    bool hasWay = handle.kind == handleStart && i + 1 < previewHandleCount && previewHandles[i + 1].kind == handleEnd;
    if (hasWay) drawDashes(target, placeOf(handle), placeOf(previewHandles[i + 1]));
  }
  for (int i = 0; i < previewHandleCount; i++) {
    const PreviewHandle& handle = previewHandles[i];
    if (!isBox(handle)) drawMark(target, placeOf(handle), radiusOf(handle), colourOf(handle));
  }
}

}  // namespace zenlay
