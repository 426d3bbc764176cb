#include "zenlay/model/order.h"

#include <algorithm>
#include <cstring>
#include <tuple>

#include "zenlay/model/objects.h"

namespace zenlay {

ObjectRecord* layerOrder[maxObjects];
LayerRange layerRanges[layersPerScene];
int layersInUse;
int sceneObjectCount;
int objectCount;

namespace {

struct Links {
  int next, previous;
};
constinit Links links[maxObjects]{};

/// What the order depends on, taken out of the 1480-byte records once. `rank` is the layer for objects of the current
/// scene; those of other scenes follow by scene, then home layer.
struct OrderKey {
  int32_t rank, start, index;
  friend bool operator<(const OrderKey& a, const OrderKey& b) {
    return std::tie(a.rank, a.start, a.index) < std::tie(b.rank, b.start, b.index);
  }
};
constinit OrderKey keys[maxObjects]{};

int rankOf(const ObjectRecord& o) {
  return o.layer >= 0 ? o.layer : layersPerScene + o.scene * layersPerScene + o.homeLayer;
}
OrderKey keyOf(int index) { return {rankOf(objects[index]), objects[index].start, index}; }

void resolveMarkers() {
  int32_t before = 0;  // the previous entry's marker as it was
  for (int i = 0; i < objectCount; i++) {
    ObjectRecord& o = *layerOrder[i];
    int32_t marker = o.chainHead;
    if (marker < -1) {
      if (i > 0 && before == marker)
        o.chainHead = layerOrder[i - 1]->chainHead;
      else if (i + 1 < objectCount && layerOrder[i + 1]->chainHead == marker)
        o.chainHead = keys[i].index;
      else
        o.chainHead = -1;
    }
    before = marker;
  }
}

void linkEntry(int entry) {
  if (entry < 0 || entry >= objectCount) return;
  int index = keys[entry].index, head = layerOrder[entry]->chainHead;
  bool follows = entry + 1 < objectCount && layerOrder[entry + 1]->chainHead == head;
  bool leads = entry > 0 && layerOrder[entry - 1]->chainHead == head;
  links[index].next = head >= 0 && follows ? keys[entry + 1].index : -1;
  links[index].previous = head >= 0 && head != index && leads ? keys[entry - 1].index : -1;
}

void countLayersInUse() {
  layersInUse = layersPerScene;
  while (layersInUse > 0 && layerRanges[layersInUse - 1].first > layerRanges[layersInUse - 1].last) layersInUse--;
}

}  // namespace

void rebuildOrder() {
  objectCount = 0;
  for (int i = 0; i < objectCapacity; i++)
    if (objects[i].flags && objects[i].layer >= -1 && objects[i].layer < layersPerScene) keys[objectCount++] = keyOf(i);
  if (!std::is_sorted(keys, keys + objectCount)) std::sort(keys, keys + objectCount);

  sceneObjectCount = 0;
  int entry = 0;
  for (int layer = 0; layer < layersPerScene; layer++) {
    layerRanges[layer].first = entry;
    while (entry < objectCount && keys[entry].rank == layer) entry++;
    layerRanges[layer].last = entry - 1;
  }
  sceneObjectCount = entry;
  for (int i = 0; i < objectCount; i++) layerOrder[i] = objects + keys[i].index;
  countLayersInUse();
  resolveMarkers();
  for (int i = 0; i < objectCount; i++) linkEntry(i);
}

void addToOrder(int object) {
  OrderKey key = keyOf(object);
  int at = static_cast<int>(std::lower_bound(keys, keys + objectCount, key) - keys);
  memmove(keys + at + 1, keys + at, (objectCount - at) * sizeof(OrderKey));
  memmove(layerOrder + at + 1, layerOrder + at, (objectCount - at) * sizeof(ObjectRecord*));
  keys[at] = key;
  layerOrder[at] = objects + object;
  objectCount++;
  int layer = objects[object].layer;
  if (layer >= 0) {
    sceneObjectCount++;
    layerRanges[layer].last++;
    for (int i = layer + 1; i < layersPerScene; i++) layerRanges[i].first++, layerRanges[i].last++;
    layersInUse = std::max(layersInUse, layer + 1);
  }
  for (int i = at - 1; i <= at + 1; i++) linkEntry(i);
}

void relinkAround(int object) {
  int at = static_cast<int>(std::lower_bound(keys, keys + objectCount, keyOf(object)) - keys);
  for (int i = at - 1; i <= at + 1; i++) linkEntry(i);
}

EntryRange entriesMeeting(int firstFrame, int lastFrame, int layer) {
  ObjectRecord** begin = layerOrder + layerRanges[layer].first;
  ObjectRecord** end = layerOrder + layerRanges[layer].last + 1;
  ObjectRecord** from =
      std::lower_bound(begin, end, firstFrame, [](const ObjectRecord* o, int frame) { return o->end < frame; });
  ObjectRecord** to =
      std::upper_bound(from, end, lastFrame, [](int frame, const ObjectRecord* o) { return frame < o->start; });
  return {static_cast<int>(from - layerOrder), static_cast<int>(to - layerOrder)};
}

int nextSection(int object) { return object >= 0 && object < objectCapacity ? links[object].next : -1; }
int previousSection(int object) { return object >= 0 && object < objectCapacity ? links[object].previous : -1; }

}  // namespace zenlay
