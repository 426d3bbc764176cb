// The time ruler and the header box beside it: scene button and zoom gauge.
#include <algorithm>
#include <cstdio>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/frame_selection.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/paint.h"

namespace zenlay {

using platform::Canvas;

namespace {

constexpr int stepUnit = 100000;  // divided by the zoom: frames in about 10 pixels
constexpr int minorsPerMajor = 10;
constexpr int majorTick = 12, minorTick = 6;
constexpr int selectionHeight = 12;
constexpr int rulerLeft = 61;  // where the header box ends; labels reach back to it
constexpr int labelTop = 14;
constexpr int gaugeBars = zoomLevels - 1;
constexpr platform::Rect sceneButton{0, 1, 61, 20};

void paintSelection(const Painting& painting) {
  const FrameRange selected = frameSelection();
  if (selected == noFrames) return;
  int from = xOfFrame(selected.first), to = std::max(xOfFrame(selected.last + 1) - 1, from);
  int top = rulerBottom + 1 - selectionHeight;
  platform::fillRect(painting.canvas, {from, top, to - from + 1, selectionHeight}, painting.colors.selection);
  for (int x : {from, to})
    platform::fillRect(painting.canvas, {x, top, 1, selectionHeight}, painting.colors.selectionEdge);
}

int floorDivide(int a, int b) { return a >= 0 ? a / b : -((b - 1 - a) / b); }

/// Nothing without a film: there is no rate.
std::string labelOf(int frame) {
  if (timelineView.sceneLength < 1) return {};
  return preferences.edit_time_type == 1 ? timeText(frame) : std::to_string(frame + 1);
}

void paintTicks(Canvas* canvas) {
  platform::Color color = platform::systemColor(platform::colorText);
  platform::Color faint = platform::systemColor(platform::colorGreyText);
  int minor = stepUnit / timelineView.zoom, major = minor * minorsPerMajor;
  int before = std::min(frameAtX(headerWidth - 1), timelineView.leftFrame - 1);
  for (int x = headerWidth; x < timelineView.clientWidth; x++) {
    int frame = frameAtX(x);
    if (int index = floorDivide(frame, major); index != floorDivide(before, major)) {
      platform::fillRect(canvas, {x, rulerBottom + 1 - majorTick, 1, majorTick}, color);
      platform::drawText(canvas, {std::max(x - 4, rulerLeft), labelTop},
                         {rulerLeft, rulerTop, timelineView.clientWidth - rulerLeft, rulerBottom - rulerTop},
                         labelOf(index * major).c_str(), color, platform::fontSmall);
    } else if (floorDivide(frame, minor) != floorDivide(before, minor)) {
      platform::fillRect(canvas, {x, rulerBottom + 1 - minorTick, 1, minorTick}, faint);
    }
    before = frame;
  }
}

}  // namespace

int64_t hundredthsOf(int frames) {
  const int64_t rate = environment.clip.rate, scale = environment.clip.scale;
  return rate > 0 ? 100 * int64_t{frames} * scale / rate : 0;
}

std::string timeText(int frame) {
  const int64_t hundredths = hundredthsOf(frame);
  char text[48];
  snprintf(text, sizeof text, "%02d:%02d:%02d.%02d", static_cast<int>(hundredths / 360000),
           static_cast<int>(hundredths % 360000 / 6000), static_cast<int>(hundredths % 6000 / 100),
           static_cast<int>(hundredths % 100));
  return text;
}

void paintRuler(const Painting& painting) {
  Canvas* canvas = painting.canvas;
  platform::setClip(canvas, {rulerLeft, rulerTop, timelineView.clientWidth - rulerLeft, rowsTop - rulerTop});
  platform::fillRect(canvas, {rulerLeft, rulerTop, timelineView.clientWidth - rulerLeft, rowsTop - rulerTop},
                     painting.colors.visible);
  platform::setClip(canvas, {headerWidth, rulerTop, timelineView.clientWidth - headerWidth, rowsTop - rulerTop});
  if (timelineView.sceneLength > 0)
    platform::fillRect(canvas, {painting.sceneEnd, rulerTop, 1, rowsTop - rulerTop}, colorSceneEnd);
  paintSelection(painting);
  platform::setClip(canvas, {rulerLeft, rulerTop, timelineView.clientWidth - rulerLeft, rowsTop - rulerTop});
  paintTicks(canvas);
}

void paintHeaderBox(const Painting& painting) {
  Canvas* canvas = painting.canvas;
  platform::setClip(canvas, {0, 0, headerWidth, rowsTop});
  platform::fillRect(canvas, {0, 0, rulerLeft, rowsTop}, painting.colors.visible);
  platform::fillRect(canvas, {rulerLeft, 0, headerWidth - rulerLeft, rulerTop}, painting.colors.visible);
  for (int i = 0; i < gaugeBars; i++)
    platform::fillRect(canvas, {5 + 2 * i, 26, 1, 13}, i < timelineView.zoomLevel ? colorGaugeBelow : colorGaugeAbove);
  const char* name = sceneName(currentScene);
  platform::Size size = platform::textSize(name);
  platform::Point at{std::max(2, sceneButton.x + (sceneButton.width - size.width) / 2),
                     sceneButton.y + (sceneButton.height - size.height) / 2};
  platform::drawText(canvas, at, {2, sceneButton.y + 1, sceneButton.width - 4, sceneButton.height - 2}, name,
                     platform::systemColor(platform::colorText));
  platform::drawEdge(canvas, sceneButton, platform::edgeEtched);
}

}  // namespace zenlay
