// Moving the edges of objects, with the neighbours that touch them.
#include <algorithm>
#include <climits>

#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/snapping.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

int entryOf(int object) {
  return entriesMeeting(objects[object].start, objects[object].start, objects[object].layer).begin;
}

/// First frame that the layer leaves free before the object, and the last one behind it.
int freeFrom(int object) {
  int entry = entryOf(object);
  return entry > layerRanges[objects[object].layer].first ? layerOrder[entry - 1]->end + 1 : 0;
}
int freeUntil(int object) {
  int entry = entryOf(object);
  return entry < layerRanges[objects[object].layer].last ? layerOrder[entry + 1]->start - 1 : INT_MAX;
}

int snappedStart(const ObjectRecord& o, int frames, bool snaps) {
  int start = o.start + frames;
  if (snaps) snapToTarget(start, o.layer, true);
  return start;
}
int snappedEnd(const ObjectRecord& o, int frames, bool snaps) {
  int behind = o.end + 1 + frames;
  if (snaps) snapToTarget(behind, o.layer, true);
  return behind - 1;
}

/// How far the object's edge may go and goes.
int edgeShift(const EdgePair& pair, int frames, bool snaps) {
  const ObjectRecord& o = objects[pair.object];
  if (timelineView.dragMode == dragStart) {
    int from = pair.partner >= 0 ? objects[pair.partner].start + 1 : freeFrom(pair.object);
    return std::clamp(snappedStart(o, frames, snaps), std::min(from, o.end), o.end) - o.start;
  }
  int until = pair.partner >= 0 ? objects[pair.partner].end - 1 : freeUntil(pair.object);
  return std::clamp(snappedEnd(o, frames, snaps), o.start, std::max(until, o.start)) - o.end;
}

void moveEdge(const EdgePair& pair, int frames) {
  if (timelineView.dragMode == dragStart) {
    objects[pair.object].start += frames;
    if (pair.partner >= 0) objects[pair.partner].end += frames;
  } else {
    objects[pair.object].end += frames;
    if (pair.partner >= 0) objects[pair.partner].start += frames;
  }
}

/// With Shift the boundary keeps its place in the later object: that one slides with the sections behind it.
bool slides() { return drag.shiftAtPress && !drag.edges.empty() && drag.edges.front().partner >= 0; }

struct Slide {
  int stretched, first, last;  // the object whose end follows; the sections that slide
};
Slide slideOf(const EdgePair& pair) {
  bool start = timelineView.dragMode == dragStart;
  int first = start ? pair.object : pair.partner, last = first;
  while (nextSection(last) >= 0) last = nextSection(last);
  return {start ? pair.partner : pair.object, first, last};
}

int slideShift(const EdgePair& pair, const Slide& slide, int frames, bool snaps) {
  const ObjectRecord& o = objects[pair.object];
  frames = timelineView.dragMode == dragStart ? snappedStart(o, frames, snaps) - o.start
                                              : snappedEnd(o, frames, snaps) - o.end;
  const ObjectRecord& stretched = objects[slide.stretched];
  return std::clamp(frames, stretched.start - stretched.end, freeUntil(slide.last) - objects[slide.last].end);
}

void moveSlide(const Slide& slide, int frames) {
  objects[slide.stretched].end += frames;
  for (int section = slide.first; section >= 0; section = nextSection(section)) {
    objects[section].start += frames;
    objects[section].end += frames;
  }
}

void recordSlideUndo(const Slide& slide) {
  std::vector<int> moved{slide.stretched};
  for (int section = slide.first; section >= 0; section = nextSection(section)) moved.push_back(section);
  recordDragUndo(moved);
}

bool slideEdge(int frames, bool snaps) {
  const EdgePair& pair = drag.edges.front();
  Slide slide = slideOf(pair);
  frames = slideShift(pair, slide, frames, snaps);
  if (frames == 0) return false;
  recordSlideUndo(slide);
  moveSlide(slide, frames);
  drag.grabFrame += frames;
  rebuildOrder();
  redrawChain(pair.object);
  redrawObjects(selection());
  return true;
}

/// The object that touches the edge, if it moves along: by preference, or as a section of the same object.
int partnerOf(int object, DragMode mode) {
  const ObjectRecord& o = objects[object];
  int frame = mode == dragStart ? o.start - 1 : o.end + 1;
  int neighbour = frame < 0 ? -1 : objectAt(frame, o.layer);
  if (neighbour < 0) return -1;
  bool sameChain = o.chainHead >= 0 && objects[neighbour].chainHead == o.chainHead;
  return preferences.pair_move || sameChain ? neighbour : -1;
}

void addEdge(int object, DragMode mode) {
  int partner = partnerOf(object, mode);
  if (partner >= 0) addToSelection(partner);
  drag.edges.push_back({object, partner});
}

}  // namespace

void takeEdges(int object, DragMode mode) {
  const ObjectRecord& o = objects[object];
  addEdge(object, mode);
  int group = objects[headOf(object)].group;
  if (group == 0) return;
  for (int layer = 0; layer < layersInUse; layer++) {
    int other = layer == o.layer ? -1 : objectAt(mode == dragStart ? o.start : o.end, layer);
    if (other < 0 || objects[headOf(other)].group != group) continue;
    bool aligned = mode == dragStart ? objects[other].start == o.start : objects[other].end == o.end;
    if (aligned && addToSelection(other)) addEdge(other, mode);
  }
}

bool moveEdges(int frames, bool snaps) {
  if (slides()) return slideEdge(frames, snaps);
  // The edge under the mouse says how far; the others follow as far as they can, and none goes on without it.
  for (const EdgePair& pair : drag.edges)
    if (pair.object == drag.grabbed) frames = edgeShift(pair, frames, snaps);
  if (frames == 0) return false;
  recordDragUndo(selection());
  for (const EdgePair& pair : drag.edges) {
    if (int shift = edgeShift(pair, frames, false)) moveEdge(pair, shift);
  }
  drag.grabFrame += frames;
  rebuildOrder();
  redrawObjects(selection());
  return true;
}

}  // namespace zenlay
