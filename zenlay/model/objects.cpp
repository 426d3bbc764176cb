#include "zenlay/model/objects.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"

namespace zenlay {

ObjectRecord* objects;
int objectCapacity;
int currentObject = -1;
int objectUnderEdit = -1;
ModelHooks modelHooks;

namespace {

constexpr int newObjectWidth = 500000;  // 50 pixels in units of the zoom table

int searchFrom;  // no free record lies below, unless one was freed behind the table's back

int findFree(int from) {
  for (int i = from; i < objectCapacity; i++)
    if (!objects[i].flags) return i;
  return -1;
}

bool growTable() {
  if (objectCapacity >= maxObjects || !mayGrow()) return false;
  // Address space for the whole table is taken at once, so that records never move; pages are backed when touched.
  if (!objects) objects = static_cast<ObjectRecord*>(calloc(maxObjects, sizeof(ObjectRecord)));
  if (!objects) return false;
  objectCapacity += objectGrowth;
  return true;
}

int defaultLength() { return newObjectWidth / std::max(timelineView.zoom, 1) + 1; }

/// Companion that a lone first effect needs, and whether the effect belongs behind it.
int companionOf(const EffectDefinition* d) {
  if (!isBuiltIn(d)) return -1;
  bool audio = d->flag & effectAudio;
  if (d->flag & effectMedia) return audio ? effectStandardPlayback : effectStandardDrawing;
  if (d->flag & effectDrawing) return audio ? effectAudioFile : effectGraphic;
  return -1;
}

void joinChain(ObjectRecord& object, int from) {
  ObjectRecord& chain = objects[from];
  if (chain.chainHead < 0) chain.chainHead = from;
  const ObjectRecord& head = objects[headOf(from)];
  object.chainHead = headOf(from);
  object.group = head.group;
  object.flags = head.flags;
  memcpy(object.slotFlags, head.slotFlags, sizeof object.slotFlags);
}

/// Frames first..last free on the layer at or after `frame`; false when there are none.
bool findRoom(int frame, int layer, int length, FrameRange* room) {
  int start = frame;
  for (int found; (found = objectAt(start, layer)) >= 0;) {
    start = objects[found].end + 1;
    if (start >= timelineView.sceneLength) return false;
  }
  int end = static_cast<int>(std::min<int64_t>(int64_t{start} + length - 1, INT32_MAX));
  for (int found; end >= start && (found = objectsInRange(start, end, layer)) >= 0;) end = objects[found].start - 1;
  *room = {start, end};
  return end >= start;
}

/// Extra data of the effect and its companion together.
uint32_t bytesWithCompanion(int effect) {
  int companion = companionOf(effectList[effect]), bytes = extraDataBytes(effectList[effect]);
  if (companion >= 0 && companion < effectCount) bytes += extraDataBytes(effectList[companion]);
  return static_cast<uint32_t>(bytes);
}

void addCompanion(int object, int effect) {
  int companion = companionOf(effectList[effect]);
  if (companion < 0 || companion >= effectCount) return;
  int slot = addEffect(object, companion);
  if (slot >= 0) setSlotDefaults(object, slot);
}

void forget(int object) {
  if (currentObject == object) {
    if (modelHooks.objectReleased) modelHooks.objectReleased(object);
    currentObject = -1;
  }
  if (objectUnderEdit == object) objectUnderEdit = -1;
}

void discard(int object) {
  if (modelHooks.objectDeleted) modelHooks.objectDeleted(object);
  forget(object);
  releaseObject(object);
}

}  // namespace

void tellExtraDataRefused() { showMessage("Unable to reserve the extended region for object", boxWarning); }

int takeFreeObject() {
  int free = findFree(searchFrom);
  if (free < 0) free = findFree(0);
  if (free < 0) {
    free = objectCapacity;
    if (!growTable()) {
      showMessage("Unable to add more object", boxWarning);
      return -1;
    }
  }
  searchFrom = free;
  ObjectRecord& o = objects[free];
  memset(&o, 0, sizeof o);
  o.chainHead = -1;
  for (EffectSlot& slot : o.slots) slot.effect = -1;
  return free;
}

void releaseObject(int object) {
  releaseExtraData(object);
  objects[object].flags = 0;
  searchFrom = std::min(searchFrom, object);
}

void dropObject(int object) {
  if (objects[object].chainHead < 0 || objects[object].chainHead == object) notifyEffects(object, objectDeleted);
  discard(object);
}

uint32_t objectFlagsOf(const EffectDefinition* d) {
  uint32_t flags = objectInUse;
  if (d->flag & effectFilter) flags |= objectFilterEffect;
  if (d->flag & effectControl) flags |= objectControl;
  if (d->flag & (effectMedia | effectDrawing)) flags |= objectDrawn;
  if (d->flag & effectAudio) flags |= objectAudio;
  const ExdataField* field = isBuiltIn(d) ? d->exdata_fields : nullptr;
  if (d->flag & effectControl && field && field->name && strcmp(field->name, "range") == 0) flags |= objectLayerRange;
  return flags;
}

int createObject(int frame, int layer, int effect, int chainFrom) {
  if (layer < 0 || layer >= layersPerScene || effect < 0 || effect >= effectCount) return -1;
  const EffectDefinition* d = effectList[effect];
  FrameRange room;
  if (!findRoom(frame, layer, defaultLength(), &room)) return -1;
  int index = takeFreeObject();
  if (index < 0) return -1;
  ObjectRecord& o = objects[index];
  o.flags = objectFlagsOf(d);
  const uint32_t bytes = chainFrom < 0 ? static_cast<uint32_t>(extraDataBytes(d)) : 0;
  // A block that its companion fits into as well, so that the object is made whole or not at all.
  if ((chainFrom < 0 && !reserveExtraData(index, bytesWithCompanion(effect))) || !reserveExtraData(index, bytes)) {
    releaseObject(index);
    tellExtraDataRefused();
    return -1;
  }
  o.slots[0] = {effect, 0, 0, 0};
  o.slotFlags[0] = newSlotFlags;
  o.trackCount = static_cast<uint16_t>(d->track_count);
  o.checkCount = static_cast<uint16_t>(d->check_count);
  o.start = room.first;
  o.end = room.last;
  o.layer = o.homeLayer = layer;
  o.scene = currentScene;
  if (chainFrom >= 0) joinChain(o, chainFrom);
  addToOrder(index);
  recordUndo(index, undoCreated);
  setSlotDefaults(index, 0);
  if (chainFrom < 0) addCompanion(index, effect);
  return index;
}

void deleteObject(int object) {
  if (!inUse(object)) return;
  int next = nextSection(object), head = headOf(object);
  if (next >= 0 && object != head && !makeExtraDataRoom(objects[head].extraDataSize)) {
    tellExtraDataRefused();
    return;
  }
  recordUndo(object, undoSnapshot | undoChain);
  if (object == head) notifyEffects(object, objectDeleted);
  if (next >= 0) detachSections(next, object == head);
  if (objects[head].chainHead == head && nextSection(head) == object) objects[head].chainHead = -1;
  discard(object);
  rebuildOrder();
}

void deleteObjects(std::span<const int> list) {
  for (int object : list) {
    if (!inUse(object)) continue;
    recordUndo(object, undoSnapshot | undoChain);
    for (int section : sectionsOf(object)) dropObject(section);
  }
  rebuildOrder();
}

void deleteAllObjects() {
  for (int i = 0; i < objectCapacity; i++) {
    if (!objects[i].flags) continue;
    recordUndo(i, undoSnapshot);
    dropObject(i);
  }
  rebuildOrder();
}

void freeObjects() {
  free(objects);
  objects = nullptr;
  objectCapacity = searchFrom = 0;
  currentObject = objectUnderEdit = -1;
  freeExtraData();
  freeUndo();
  rebuildOrder();
}

int objectsInRange(int first, int last, int layer) {
  if (layer < 0 || layer >= layersPerScene) return -1;
  EntryRange found = entriesMeeting(first, last, layer);
  return found.begin < found.end ? indexOf(layerOrder[found.begin]) : -1;
}

int objectAt(int frame, int layer) { return objectsInRange(frame, frame, layer); }

const char* objectDisplayName(int object) {
  static char shown[2 * maxName + 8];
  const ObjectRecord& o = objects[headOf(object)];
  if (o.name[0]) return o.name;
  auto nameOf = [&](int slot) {
    int effect = o.slots[slot].effect;
    return effect >= 0 && effect < effectCount ? effectList[effect]->name : "";
  };
  const char* behind = nullptr;
  if (o.flags & objectFilterEffect && !(o.flags & objectControl))
    behind = "Media object";
  else if (o.flags & objectDrawn)
    behind = nameOf(lastSlot(object));
  if (!behind) return nameOf(0);
  snprintf(shown, sizeof shown, "%s[%s]", nameOf(0), behind);
  return shown;
}

int headOf(int object) {
  int head = objects[object].chainHead;
  return head >= 0 && head < objectCapacity && objects[head].flags ? head : object;
}

FrameRange chainRange(int object) {
  int first = object, last = object;
  for (int section; (section = previousSection(first)) >= 0;) first = section;
  for (int section; (section = nextSection(last)) >= 0;) last = section;
  return {objects[first].start, objects[last].end};
}

std::vector<int> sectionsOf(int object) {
  std::vector<int> sections;
  for (int section = headOf(object); section >= 0; section = nextSection(section)) sections.push_back(section);
  return sections;
}

int sectionAt(int object, int frame) {
  while (frame < objects[object].start && previousSection(object) >= 0) object = previousSection(object);
  while (frame > objects[object].end && nextSection(object) >= 0) object = nextSection(object);
  return object;
}

void notifyEffects(int object, ObjectEvent event) {
  if (!modelHooks.sendCommand) return;
  for (int slot = 0; slot < usedSlots(object); slot++) modelHooks.sendCommand(object, slot, commandObjectEvent, event);
}

}  // namespace zenlay
