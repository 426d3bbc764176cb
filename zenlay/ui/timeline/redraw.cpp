#include "zenlay/ui/timeline/redraw.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/paint.h"
#include "zenlay/ui/timeline/ranges.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

using platform::Canvas;
using platform::Color;

namespace {

constexpr char invitation[] = "Right-click for a new project, or drop a file here";

/// A vertical line over ruler and rows, with ticks below the ruler over the rest of its frame.
struct FrameLine {
  int x, behind;
  bool operator==(const FrameLine&) const = default;
};

struct Redraw {
  int depth;  // of messages being dealt with
  bool all, ruler, lines;
  bool layers[layersPerScene];
  std::optional<FrameLine> cursor, playback;  // as they stand on the canvas
};
Redraw redraw;

std::optional<FrameLine> lineAt(int frame) {
  int x = xOfFrame(frame);
  if (timelineView.sceneLength < 1 || frame < 0 || x < headerWidth || x >= timelineView.clientWidth) return {};
  return FrameLine{x, std::min(xOfFrame(frame + 1), timelineView.clientWidth)};
}

void invertLine(Canvas* canvas, const std::optional<FrameLine>& line, Color color) {
  if (!line) return;
  platform::xorLine(canvas, {line->x, rulerTop}, {line->x, timelineView.clientHeight}, color);
  for (int y = rulerBottom - 1; y <= rulerBottom; y++)
    if (line->x + 1 < line->behind) platform::xorLine(canvas, {line->x + 1, y}, {line->behind, y}, color);
}

void invertLines(Canvas* canvas) {
  platform::clearClip(canvas);
  invertLine(canvas, redraw.cursor, colorEditCursor);
  invertLine(canvas, redraw.playback, colorPlayback);
}

void showLines(Canvas* canvas) {
  redraw.cursor = lineAt(timelineView.cursorFrame);
  redraw.playback = lineAt(timelineView.playbackFrame);
  invertLines(canvas);
}

/// Where nothing is open yet: how to begin.
void paintInvitation(Canvas* canvas) {
  if (timelineView.sceneLength > 0) return;
  platform::Size size = platform::textSize(invitation);
  int layer = layerAtY((rowsTop + rowsBottom()) / 2), top = rowTop(layer);
  platform::Rect area{headerWidth, top, timelineView.clientWidth - headerWidth, rowTop(layer + 1) - top};
  platform::Point at{area.x + (area.width - size.width) / 2, area.y + (area.height - size.height) / 2};
  platform::clearClip(canvas);
  platform::drawText(canvas, at, area, invitation, platform::systemColor(platform::colorGreyText));
}

void paintRubberBand(Canvas* canvas) {
  if (timelineView.dragMode != dragRange) return;
  platform::Point a = pressInView(), b = drag.last;
  platform::setClip(canvas, {headerWidth, rulerTop, timelineView.clientWidth - headerWidth, timelineView.clientHeight});
  platform::drawFrame(canvas,
                      {std::min(a.x, b.x), std::min(a.y, b.y), std::abs(a.x - b.x) + 1, std::abs(a.y - b.y) + 1},
                      colorDottedFrame, platform::lineDotted);
  platform::clearClip(canvas);
}

void paintAll(Canvas* canvas) {
  platform::clearClip(canvas);
  collectRangeMarks();
  Painting painting = beginPainting(canvas);
  int last = std::min(timelineView.topLayer + timelineView.visibleRows, layersPerScene);
  for (int layer = timelineView.topLayer; layer < last; layer++) paintRow(painting, layer);
  platform::clearClip(canvas);
  platform::fillRect(canvas, {0, rowsBottom(), timelineView.clientWidth, timelineView.clientHeight - rowsBottom()},
                     painting.colors.visible);
  paintRuler(painting);
  paintHeaderBox(painting);
  paintInvitation(canvas);
  showLines(canvas);
  paintRubberBand(canvas);
}

void paintParts(Canvas* canvas) {
  bool parts =
      redraw.ruler || std::find(std::begin(redraw.layers), std::end(redraw.layers), true) != std::end(redraw.layers);
  if (!parts && !redraw.lines) return;
  bool overlaid = timelineView.dragMode == dragRange || timelineView.sceneLength < 1;
  if (parts && overlaid) return paintAll(canvas);
  invertLines(canvas);
  if (parts) {
    Painting painting = beginPainting(canvas);
    for (int layer = 0; layer < layersPerScene; layer++)
      if (redraw.layers[layer]) paintRow(painting, layer);
    if (redraw.ruler) paintRuler(painting);
  }
  showLines(canvas);
}

void drawUnlessNoted() {
  if (redraw.depth == 0) flushTimeline();
}

bool changesRanges(int object) { return preferences.object_range && objects[object].flags & objectLayerRange; }

}  // namespace

void flushTimeline() {
  if (Canvas* canvas = platform::windowCanvas(environment.timelineWindow))
    redraw.all ? paintAll(canvas) : paintParts(canvas);
  redraw.all = redraw.ruler = redraw.lines = false;
  std::fill(std::begin(redraw.layers), std::end(redraw.layers), false);
}

void beginTimelineMessage() { redraw.depth++; }

void endTimelineMessage() {
  flushTimeline();
  redraw.depth--;
}

void paintTimeline() {
  redraw.cursor = redraw.playback = {};
  redrawTimeline();
}

void noteCursorMoved() {
  redraw.lines = true;
  drawUnlessNoted();
}

void redrawTimeline() {
  redraw.all = true;
  drawUnlessNoted();
}

void redrawLayers(const bool (&touched)[layersPerScene]) {
  for (int layer = 0; layer < layersPerScene; layer++) redraw.layers[layer] |= touched[layer];
  drawUnlessNoted();
}

void redrawObjects(std::span<const int> list) {
  for (int object : list) {
    if (!onTimeline(object)) continue;
    redraw.layers[objects[object].layer] = true;
    redraw.all |= changesRanges(object);
  }
  drawUnlessNoted();
}

void redrawChain(int object) { redrawObjects(std::span(&object, 1)); }

void redrawRuler() {
  redraw.ruler = true;
  drawUnlessNoted();
}

}  // namespace zenlay
