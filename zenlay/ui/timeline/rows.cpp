// One layer's row: background, grid, objects and header.
#include <algorithm>
#include <cstdio>

#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/beat_grid.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/paint.h"
#include "zenlay/ui/timeline/ranges.h"

namespace zenlay {

using platform::Canvas;
using platform::Color;

namespace {

constexpr int fetchAhead = 8;  // objects

/// Records are far apart, and waiting for what a bar shows of them takes longer than painting it.
void fetch(const ObjectRecord& object) {
  __builtin_prefetch(&object.start);
  __builtin_prefetch(&object.chainHead);
}

std::vector<GridLine> beatGridLines() {
  std::vector<GridLine> lines;
  BeatLines kind = beatLines();
  if (kind == beatLinesNone || timelineView.sceneLength < 1) return lines;
  bool bars = kind == beatLinesBars;
  auto indexAt = [&](int x) { return bars ? barIndex(frameAtX(x)) : beatIndex(frameAtX(x)); };
  int64_t before = indexAt(headerWidth - 1);
  for (int x = headerWidth; x < timelineView.clientWidth; x++) {
    int64_t index = indexAt(x);
    if (index != before) lines.push_back({x, bars || beginsBar(index) ? colorBar : colorBeat});
    before = index;
  }
  return lines;
}

void paintRangeEdges(const Painting& painting, int layer, int top, int bottom) {
  const RowColors& colors = painting.colors;
  for (const RangeMark& mark : rangeMarks) {
    if (objects[mark.object].layer >= layer || mark.lastLayer < layer) continue;
    int left = std::max(mark.x0, headerWidth), right = std::min(mark.x1, timelineView.clientWidth);
    if (left >= right) continue;
    if (mark.lastLayer == layer) {
      platform::fillRect(painting.canvas, {left, bottom - 2, right - left, 1}, colors.rangeInner);
      platform::fillRect(painting.canvas, {left, bottom - 1, right - left, 1}, colors.rangeOuter);
    }
    for (int x : {mark.x0, mark.x1 - 1})
      if (x >= left && x < right) platform::fillRect(painting.canvas, {x, top, 1, bottom - top}, colors.rangeInner);
  }
}

void paintBackground(const Painting& painting, int layer, Color base) {
  Canvas* canvas = painting.canvas;
  int top = rowTop(layer), height = timelineView.layerHeight, width = timelineView.clientWidth - headerWidth;
  int inner = top + 1, innerHeight = height - 2;
  platform::fillRect(canvas, {headerWidth, inner, width, innerHeight}, base);
  for (const TintedSpan& span : tintedSpans(layer))
    platform::fillRect(canvas, {span.x0, inner, span.x1 - span.x0, innerHeight}, tinted(base, span.kinds));
  for (const GridLine& line : painting.gridLines)
    platform::drawLine(canvas, {line.x, inner}, {line.x, inner + innerHeight}, line.color, platform::lineDotted);
  platform::fillRect(canvas, {painting.sceneEnd, inner, 1, innerHeight}, colorSceneEnd);
  paintRangeEdges(painting, layer, inner, inner + innerHeight);
  platform::fillRect(canvas, {headerWidth, top, width, 1}, platform::systemColor(platform::colorLightEdge));
  platform::fillRect(canvas, {headerWidth, top + height - 1, width, 1}, platform::systemColor(platform::colorDarkEdge));
  for (int x : {headerWidth, timelineView.clientWidth - 1})
    platform::fillRect(canvas, {x, top, 1, height}, platform::systemColor(platform::colorDarkEdge));
}

void paintHeader(const Painting& painting, int layer, Color base) {
  Canvas* canvas = painting.canvas;
  const LayerRecord& record = layers[layer];
  bool hidden = record.flags & layerHidden;
  int top = rowTop(layer), height = timelineView.layerHeight;
  platform::fillRect(canvas, {0, top, headerWidth, height}, base);

  char label[16];
  snprintf(label, sizeof label, "Layer %2d", layer + 1);
  const char* name = record.name ? record.name : label;
  platform::Size size = platform::textSize(name);
  platform::Point at{std::max(2, (headerWidth - size.width) / 2), top + (height - size.height) / 2};
  platform::drawText(canvas, at, {1, top, 62, height}, name,
                     platform::systemColor(hidden ? platform::colorGreyText : platform::colorText));

  platform::drawEdge(canvas, {0, top, headerWidth, height}, hidden ? platform::edgeSunken : platform::edgeEtched);
  const platform::Point lock[] = {{53, top}, {62, top}, {62, top + 9}};
  if (record.flags & layerLocked) platform::fillPolygon(canvas, lock, 3, colorLock);
  int bar = 1;
  if (record.flags & layerCoordinateLink) {
    platform::fillRect(canvas, {bar, top, 3, height - 1}, colorLink);
    bar += 3;
  }
  if (record.flags & layerClipAbove) platform::fillRect(canvas, {bar, top, 3, height - 1}, colorClip);
}

}  // namespace

Painting beginPainting(Canvas* canvas) {
  return {canvas, rowColors(), beatGridLines(), xOfFrame(timelineView.sceneLength), platform::textSize("0").height};
}

void paintRow(const Painting& painting, int layer) {
  if (!layerVisible(layer)) return;
  Color base = layers[layer].flags & layerHidden ? painting.colors.hidden : painting.colors.visible;
  platform::setClip(painting.canvas,
                    {headerWidth, rowTop(layer), timelineView.clientWidth - headerWidth, timelineView.layerHeight});
  paintBackground(painting, layer, base);
  EntryRange shown = entriesMeeting(frameAtX(headerWidth - 1), frameAtX(timelineView.clientWidth), layer);
  for (int i = shown.begin; i < shown.end; i++) {
    if (i + fetchAhead < shown.end) fetch(*layerOrder[i + fetchAhead]);
    paintObject(painting, indexOf(layerOrder[i]));
  }
  platform::setClip(painting.canvas, {0, rowTop(layer), timelineView.clientWidth, timelineView.layerHeight});
  paintHeader(painting, layer, base);
}

}  // namespace zenlay
