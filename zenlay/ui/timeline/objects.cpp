// One object's bar on its row.
#include "zenlay/model/objects.h"

#include <algorithm>

#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/paint.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

using platform::Canvas;
using platform::Color;
using platform::Rect;

namespace {

constexpr int edgeGlow = 20;  // columns over which a dragged edge shines
constexpr int textInset = 5;
constexpr int clipStrip = 3;  // height

/// A bar as it would be without the window's edges, and what of it shows.
struct Bar {
  int object;
  Rect whole, shown;
  bool hasPrevious, hasNext;
};

bool placeBar(int object, Bar& bar) {
  PixelSpan span = spanOf(object);
  int first = std::max(span.first, headerWidth), last = std::min(span.last, timelineView.clientWidth - 1);
  if (first > last) return false;
  int top = rowTop(objects[object].layer) + timelineView.markHeight + 3;
  int height = timelineView.layerHeight - timelineView.markHeight - 4;
  bar = {object,
         {span.first, top, span.last - span.first + 1, height},
         {first, top, last - first + 1, height},
         previousSection(object) >= 0,
         nextSection(object) >= 0};
  return true;
}

void fillBar(Canvas* canvas, const Bar& bar, const ColorTriple& color) {
  Color mid = meanColor(color.dark, color.normal);
  const Rect& r = bar.whole;
  ObjectEdge edge = bar.object == currentObject ? edgeNone : draggedEdgeOf(bar.object);
  if (edge == edgeStart) {
    platform::fillRect(canvas, bar.shown, mid);
    platform::fillGradient(canvas, {r.x, r.y, edgeGlow, r.height}, color.bright, mid);
  } else if (edge == edgeEnd) {
    platform::fillRect(canvas, bar.shown, mid);
    platform::fillGradient(canvas, {r.x + r.width - edgeGlow, r.y, edgeGlow, r.height}, mid, color.bright);
  } else if (bar.object != currentObject && isSelected(bar.object)) {
    platform::fillRect(canvas, bar.shown, color.bright);
  } else if (bar.hasPrevious && bar.hasNext) {
    platform::fillRect(canvas, bar.shown, mid);
  } else {
    platform::fillGradient(canvas, r, bar.hasPrevious ? mid : color.dark, bar.hasNext ? mid : color.normal);
  }
}

void frameCurrent(Canvas* canvas, const Bar& bar) {
  const Rect& r = bar.shown;
  int right = r.x + r.width - 1, bottom = r.y + r.height - 1;
  for (int y : {r.y, bottom})
    platform::drawLine(canvas, {r.x, y}, {right + 1, y}, colorDottedFrame, platform::lineDotted);
  if (r.x == bar.whole.x) platform::drawLine(canvas, {r.x, r.y}, {r.x, bottom}, colorDottedFrame, platform::lineDotted);
  if (right == bar.whole.x + bar.whole.width - 1)
    platform::drawLine(canvas, {right, r.y}, {right, bottom}, colorDottedFrame, platform::lineDotted);
}

/// Triangles above the ends at which sections meet.
void paintSectionMarks(Canvas* canvas, const Bar& bar, const ColorTriple& color) {
  Color fill = clickPosition.section == bar.object ? color.bright : color.normal;
  int size = timelineView.markHeight, top = bar.whole.y - size - 1;
  int left = bar.whole.x, right = bar.whole.x + bar.whole.width - 1;
  const platform::Point begin[] = {{left, top}, {left, top + size}, {left + size, top}};
  const platform::Point end[] = {{right, top}, {right, top + size}, {right - size, top}};
  if (bar.hasPrevious) platform::fillPolygon(canvas, begin, 3, fill);
  if (bar.hasNext) platform::fillPolygon(canvas, end, 3, fill);
}

void paintName(const Painting& painting, const Bar& bar) {
  int head = headOf(bar.object);
  int x = head == bar.object ? bar.whole.x : xOfFrame(objects[head].start);
  int right = bar.shown.x + bar.shown.width;
  if (x + textInset >= right) return;
  bool dimmed = layers[objects[bar.object].layer].flags & layerHidden || !(slotFlagsOf(head, 0) & slotEnabled);
  platform::Point at{x + textInset, bar.shown.y + (bar.shown.height - painting.textHeight) / 2};
  platform::drawText(painting.canvas, at, bar.shown, objectDisplayName(bar.object),
                     dimmed ? colorDimmedText : colorObjectText);
}

}  // namespace

void paintObject(const Painting& painting, int object) {
  Bar bar;
  if (!placeBar(object, bar)) return;
  const ObjectRecord& o = objects[object];
  bool grey = currentScene != 0 && scenes[currentScene].flags & sceneHasAlpha;
  const ColorTriple& color = objectColors(o.flags, grey);
  platform::setClip(painting.canvas, bar.shown);
  fillBar(painting.canvas, bar, color);
  if (o.flags & objectClipAbove)
    platform::fillRect(painting.canvas,
                       {bar.shown.x, bar.shown.y + bar.shown.height - clipStrip, bar.shown.width, clipStrip},
                       colorClip);
  if (object == currentObject) frameCurrent(painting.canvas, bar);
  paintName(painting, bar);
  if (!bar.hasPrevious && !bar.hasNext) return;
  platform::setClip(painting.canvas,
                    {headerWidth, rowTop(o.layer), timelineView.clientWidth - headerWidth, timelineView.layerHeight});
  paintSectionMarks(painting.canvas, bar, color);
}

}  // namespace zenlay
