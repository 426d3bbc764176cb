#include "zenlay/render/preview_overlay.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/render/handle_drawing.h"
#include "zenlay/render/handles.h"

namespace zenlay {

constinit ShownScene shownScene{0, 0, 0, 0, 12, false};

namespace {

constexpr FramePixel gridColour{2048, 0, 0};
constexpr int gridStrength = 0xC00;
constexpr int wholeSize = 12, usualSize = 18;

struct ZoomButton {
  int value;
  const char* label;
};
constexpr ZoomButton buttons[zoomButtons] = {{12, "1/1"}, {18, "2/3"}, {36, "1/3"}};
constexpr FramePixel buttonColour{1024, 0, 0}, chosenColour{2560, 0, 0};
constexpr int labelLevel = 255;  // of red, green and blue

FramePixel* rowOf(const ImageTarget& target, int y) {
  return reinterpret_cast<FramePixel*>(static_cast<uint8_t*>(target.pixels) +
                                       static_cast<ptrdiff_t>(y) * target.lineBytes);
}

void mixGrid(FramePixel* p) {
  auto mix = [](int16_t now, int16_t line) { return static_cast<int16_t>(now + ((line - now) * gridStrength >> 12)); };
  *p = {mix(p->y, gridColour.y), mix(p->cb, gridColour.cb), mix(p->cr, gridColour.cr)};
}

/// Left top corner of button i in the scene's picture: at the lower left of what the host shows of it.
struct Corner {
  int x, y;
};
Corner buttonCorner(int i) {
  return {shownScene.offsetX + i * zoomButtonWidth, shownScene.height - shownScene.offsetY - zoomButtonHeight};
}

void drawButtons(const ImageTarget& target, int value) {
  const HostFunctionTable* host = environment.hostFunctions;
  for (int i = 0; i < zoomButtons; i++) {
    auto [left, top] = buttonCorner(i);
    fillPixels(target, {left + 1, top + 1, left + zoomButtonWidth - 1, top + zoomButtonHeight - 1},
               buttons[i].value == value ? chosenColour : buttonColour);
    if (!host->hostDrawText || top < 0 || left + zoomButtonWidth > target.width) continue;
    int32_t width = 0, height = 0;
    host->hostDrawText(nullptr, 0, 0, buttons[i].label, 0, 0, 0, 0, environment.font, &width, &height);
    host->hostDrawText(rowOf(target, 0), left + (zoomButtonWidth - width) / 2, top + (zoomButtonHeight - height) / 2,
                       buttons[i].label, labelLevel, labelLevel, labelLevel, 0, environment.font, &width, &height);
  }
}

}  // namespace

int zoomedOutValue(int stored) { return stored < wholeSize ? usualSize : stored; }

/// 64 bits: a cell may be as large as a number typed in the dialog, and the step past the picture is still taken.
void drawGrid(const ImageTarget& target, int cellWidth, int cellHeight) {
  int middleX = target.width / 2, middleY = target.height / 2;
  if (cellWidth > 0)
    for (int64_t x = middleX % cellWidth; x < target.width; x += cellWidth)
      for (int y = 0; y < target.height; y++) mixGrid(rowOf(target, y) + x);
  if (cellHeight > 0)
    for (int64_t y = middleY % cellHeight; y < target.height; y += cellHeight)
      for (int x = 0; x < target.width; x++) mixGrid(rowOf(target, static_cast<int>(y)) + x);
}

void drawZoomedOut(EffectProcessInfo* info) {
  int value = zoomedOutValue(preferences.grid.out_of_scale);
  int width = static_cast<int>(int64_t{info->host.width} * wholeSize / value);
  int height = static_cast<int>(int64_t{info->host.height} * wholeSize / value);
  const HostFunctionTable* host = environment.hostFunctions;
  if (value != wholeSize && width > 0 && height > 0 && host->resizeImage && info->host.scratch) {
    ImageTarget shown{info->host.scratch, info->host.width, info->host.height, info->host.lineBytes};
    fillPixels(shown, {0, 0, shown.width, shown.height}, {0, 0, 0});
    FramePixel* corner = rowOf(shown, (shown.height - height) / 2) + (shown.width - width) / 2;
    host->resizeImage(corner, width, height, info->host.frame, 0, 0, info->host.width, info->host.height);
    std::swap(info->host.frame, info->host.scratch);
    shownScene.value = value;
  }
  shownScene.buttons = true;
  drawButtons(frameTarget(info), value);
}

void drawPreviewOverlay(EffectProcessInfo* info) {
  const GridSettings& grid = preferences.grid;
  shownScene = {info->host.width, info->host.height, info->offsetX, info->offsetY, wholeSize, false};
  if (grid.grid2d) drawGrid(frameTarget(info), grid.grid2d_w, grid.grid2d_h);
  if (grid.out_of_area) drawZoomedOut(info);
  if (!imageAidsHidden) drawHandles(frameTarget(info));
}

int zoomButtonAt(int x, int y) {
  if (!shownScene.buttons) return 0;
  x += shownScene.offsetX;
  y += shownScene.offsetY;
  for (int i = 0; i < zoomButtons; i++) {
    auto [left, top] = buttonCorner(i);
    if (x >= left && x < left + zoomButtonWidth && y >= top && y < top + zoomButtonHeight) return buttons[i].value;
  }
  return 0;
}

ScenePoint sceneAt(int x, int y) {
  const ShownScene& s = shownScene;
  double scale = 1.0 * s.value / wholeSize;
  return {s.width / 2.0 + (x + s.offsetX - s.width / 2.0) * scale,
          s.height / 2.0 + (y + s.offsetY - s.height / 2.0) * scale};
}

ScenePoint shownAt(ScenePoint p) {
  const ShownScene& s = shownScene;
  double scale = 1.0 * wholeSize / s.value;
  return {s.width / 2.0 + (p.x - s.width / 2.0) * scale, s.height / 2.0 + (p.y - s.height / 2.0) * scale};
}

double markRadius() {
  constexpr double usualPicture = 320, smallest = 3;
  double radius = std::max(smallest, std::max(shownScene.width, shownScene.height) / usualPicture);
  return radius * shownScene.value / wholeSize;
}

double knobDistance() { return 8 * markRadius(); }

ScenePoint boxCorner(const PreviewHandle& box, int corner) {
  constexpr double unit = 4096;
  return {box.corners[2 * corner] / unit, box.corners[2 * corner + 1] / unit};
}

ScenePoint boxKnob(const PreviewHandle& box) {
  ScenePoint a = boxCorner(box, 0), b = boxCorner(box, 1), under = boxCorner(box, 3);
  ScenePoint middle{(a.x + b.x) / 2, (a.y + b.y) / 2};
  // Away from the lower edge, square to the upper one.
  double nx = b.y - a.y, ny = a.x - b.x, length = std::hypot(nx, ny);
  if (length == 0) return {middle.x, middle.y - knobDistance()};
  if (nx * (under.x - a.x) + ny * (under.y - a.y) > 0) length = -length;
  return {middle.x + nx / length * knobDistance(), middle.y + ny / length * knobDistance()};
}

}  // namespace zenlay
