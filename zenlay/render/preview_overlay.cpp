#include "zenlay/render/preview_overlay.h"

#include <algorithm>
#include <cstring>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"

namespace zenlay {

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

void fillRect(const ImageTarget& target, PixelRect r, FramePixel colour) {
  r = intersect(r, {0, 0, target.width, target.height});
  for (int y = r.top; y < r.bottom; y++) std::fill(rowOf(target, y) + r.left, rowOf(target, y) + r.right, colour);
}

void drawButtons(const ImageTarget& target, int value) {
  int top = target.height - zoomButtonHeight;
  const HostFunctionTable* host = environment.hostFunctions;
  for (int i = 0; i < zoomButtons; i++) {
    int left = i * zoomButtonWidth;
    fillRect(target, {left + 1, top + 1, left + zoomButtonWidth - 1, target.height - 1},
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

void drawGrid(const ImageTarget& target, int cellWidth, int cellHeight) {
  int middleX = target.width / 2, middleY = target.height / 2;
  if (cellWidth > 0)
    for (int x = middleX % cellWidth; x < target.width; x += cellWidth)
      for (int y = 0; y < target.height; y++) mixGrid(rowOf(target, y) + x);
  if (cellHeight > 0)
    for (int y = middleY % cellHeight; y < target.height; y += cellHeight)
      for (int x = 0; x < target.width; x++) mixGrid(rowOf(target, y) + x);
}

void drawZoomedOut(EffectProcessInfo* info) {
  int value = zoomedOutValue(preferences.grid.out_of_scale);
  int width = static_cast<int>(int64_t{info->host.width} * wholeSize / value);
  int height = static_cast<int>(int64_t{info->host.height} * wholeSize / value);
  const HostFunctionTable* host = environment.hostFunctions;
  if (value != wholeSize && width > 0 && height > 0 && host->resizeImage && info->host.scratch) {
    ImageTarget shown{info->host.scratch, info->host.width, info->host.height, info->host.lineBytes};
    fillRect(shown, {0, 0, shown.width, shown.height}, {0, 0, 0});
    FramePixel* corner = rowOf(shown, (shown.height - height) / 2) + (shown.width - width) / 2;
    host->resizeImage(corner, width, height, info->host.frame, 0, 0, info->host.width, info->host.height);
    std::swap(info->host.frame, info->host.scratch);
  }
  drawButtons(frameTarget(info), value);
}

void drawPreviewOverlay(EffectProcessInfo* info) {
  const GridSettings& grid = preferences.grid;
  if (grid.grid2d) drawGrid(frameTarget(info), grid.grid2d_w, grid.grid2d_h);
  if (grid.out_of_area) drawZoomedOut(info);
}

}  // namespace zenlay
