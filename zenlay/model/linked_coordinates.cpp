#include <cstring>

#include "zenlay/effects/registry.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"

namespace zenlay {
namespace {

constexpr CoordinateSlot linked[] = {slotX, slotY, slotZ};

/// Where time runs to from an object to its neighbour.
enum Direction { forward, backward };

/// The track of the object's drawing effect that supplies the coordinate, or -1.
int coordinateTrack(int object, CoordinateSlot coordinate) {
  const ObjectRecord& o = objects[object];
  const int slot = lastSlot(object);
  const EffectDefinition* d = effectList[o.slots[slot].effect];
  if (!(d->flag & effectDrawing) || !isBuiltIn(d) || !d->coordinate_map) return -1;
  const int track = d->coordinate_map[coordinate];
  return track < 0 ? -1 : trackOf(o, slot, track);
}

/// Whether the start (seen forward) or the end of the movement is a point of its course.
bool hasPoint(int32_t mode, Direction from) {
  const int number = mode & modeNumber;
  if (number == modeRandom || number == modeRepeat) return false;
  return from == forward || number != modeAmount;
}

/// The object's section at which its course begins, seen in that direction.
int enteredSection(int object, Direction direction) {
  return sectionAt(object, direction == forward ? chainRange(object).first : chainRange(object).last);
}

int32_t& pointOf(ObjectRecord& o, int track, Direction direction) {
  const bool still = courseOf(o.modes[track]) == courseStill;
  return direction == forward || still ? o.startValues[track] : o.endValues[track];
}

constexpr Direction opposite(Direction direction) { return direction == forward ? backward : forward; }

/// The object that touches this one in the direction, or -1.
int touching(int object, Direction direction) {
  const FrameRange range = chainRange(object);
  return direction == forward ? objectAt(range.last + 1, objects[object].layer)
                              : objectAt(range.first - 1, objects[object].layer);
}

/// Makes `object` begin (or, backward, end) where its neighbour in time ends (begins); whether something changed.
bool follow(int object, int neighbour, Direction direction, bool recordsUndo) {
  const int to = enteredSection(object, direction), from = enteredSection(neighbour, opposite(direction));
  bool changed = false;
  for (CoordinateSlot coordinate : linked) {
    const int track = coordinateTrack(to, coordinate), lead = coordinateTrack(from, coordinate);
    if (track < 0 || lead < 0) continue;
    if (!hasPoint(objects[to].modes[track], direction)) continue;
    if (!hasPoint(objects[from].modes[lead], opposite(direction))) continue;
    const int32_t value = pointOf(objects[from], lead, opposite(direction));
    int32_t& point = pointOf(objects[to], track, direction);
    if (point == value) continue;
    if (!changed && recordsUndo) recordUndo(object, undoSnapshot | undoChain);
    point = value;
    changed = true;
  }
  if (changed) syncChain(to);
  return changed;
}

bool isLinked(int object) { return onTimeline(object) && layers[objects[object].layer].flags & layerCoordinateLink; }

}  // namespace

void alignLinkedCoordinates(int layer) {
  if (layer < 0 || layer >= layersPerScene || !(layers[layer].flags & layerCoordinateLink)) return;
  for (int e = layerRanges[layer].first; e < layerRanges[layer].last; e++) {
    const int object = indexOf(layerOrder[e]), next = indexOf(layerOrder[e + 1]);
    if (headOf(object) != headOf(next) && objects[object].end + 1 == objects[next].start)
      follow(next, object, forward, true);
  }
}

void followLinkedCoordinates(int object, bool recordsUndo) {
  if (!isLinked(object)) return;
  for (Direction direction : {forward, backward})
    for (int at = object, next; (next = touching(at, direction)) >= 0; at = next)
      if (!follow(next, at, direction, recordsUndo)) break;
}

void recordLinkedCoordinates(int object) {
  if (!isLinked(object)) return;
  for (Direction direction : {forward, backward})
    for (int next = object; (next = touching(next, direction)) >= 0;) recordUndo(next, undoSnapshot | undoChain);
}

}  // namespace zenlay
