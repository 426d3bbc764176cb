#include "zenlay/ui/timeline/ranges.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "zenlay/effects/registry.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/layout.h"

namespace zenlay {

std::vector<RangeMark> rangeMarks;

namespace {

int lastLayerOf(int object) {
  int32_t range = 0;
  if (const uint8_t* data = extraDataOf(object, 0)) memcpy(&range, data, sizeof range);
  int64_t last = objects[object].layer + int64_t{range > 0 ? range : layersPerScene};
  return static_cast<int>(std::min<int64_t>(last, layersPerScene - 1));
}

int kindOf(int object) {
  switch (objects[object].slots[0].effect) {
    case effectTimeControl:
      return rangeTime;
    case effectGroupControl:
      return rangeGroup;
    default:
      return rangeOther;
  }
}

/// `object` is the head of its chain.
void collect(int object) {
  if (rangeMarks.size() >= maxRangeMarks || !(slotFlagsOf(object, 0) & slotEnabled)) return;
  int lastLayer = lastLayerOf(object);
  if (lastLayer < timelineView.topLayer) return;
  FrameRange frames = chainRange(object);
  rangeMarks.push_back({object, xOfFrame(frames.first), xOfFrame(frames.last + 1), lastLayer, kindOf(object)});
}

}  // namespace

void collectRangeMarks() {
  rangeMarks.clear();
  if (!preferences.object_range) return;
  int layers = std::min(layersInUse, timelineView.topLayer + timelineView.visibleRows);
  for (int layer = 0; layer < layers; layer++) {
    if (zenlay::layers[layer].flags & layerHidden) continue;
    EntryRange shown = entriesMeeting(timelineView.leftFrame, timelineView.rightFrame, layer);
    int seen = -1;
    for (int i = shown.begin; i < shown.end; i++) {
      if (!(layerOrder[i]->flags & objectLayerRange)) continue;
      int head = headOf(indexOf(layerOrder[i]));
      if (head != seen) collect(head);
      seen = head;
    }
  }
}

std::vector<TintedSpan> tintedSpans(int layer) {
  std::vector<TintedSpan> spans;
  std::vector<std::array<int16_t, 3>> change;  // marks of each kind that begin minus those that end at a column
  int columns = std::max(timelineView.clientWidth - headerWidth, 0);
  for (const RangeMark& mark : rangeMarks) {
    if (objects[mark.object].layer >= layer || mark.lastLayer < layer) continue;
    change.resize(static_cast<size_t>(columns) + 1);
    int kind = mark.kind == rangeTime ? 0 : mark.kind == rangeGroup ? 1 : 2;
    change[static_cast<size_t>(std::clamp(mark.x0 - headerWidth, 0, columns))][kind]++;
    change[static_cast<size_t>(std::clamp(mark.x1 - headerWidth, 0, columns))][kind]--;
  }
  std::array<int, 3> open{};
  for (size_t x = 0; x < change.size(); x++) {
    if (change[x] == std::array<int16_t, 3>{} && x > 0) continue;
    for (int kind = 0; kind < 3; kind++) open[kind] += change[x][kind];
    int at = static_cast<int>(x) + headerWidth;
    if (!spans.empty() && spans.back().x1 == 0) spans.back().x1 = at;
    int kinds = (open[0] > 0) + (open[1] > 0) + (open[2] > 0);
    if (kinds > 0) spans.push_back({at, 0, kinds});
  }
  return spans;
}

}  // namespace zenlay
