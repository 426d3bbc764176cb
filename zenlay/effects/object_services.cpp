#include "zenlay/effects/object_services.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/binding.h"
#include "zenlay/render/live_objects.h"

namespace zenlay {

namespace {

constexpr const char* cameraEffects[] = {"Shadow (camera control)", "Camera effect", "Script (camera control)"};

bool validSlot(ObjectRef ref) { return slotOfRef(ref) < maxSlots; }

ObjectRef sameSlot(int object, ObjectRef ref) { return object < 0 ? 0 : makeObjectRef(object, slotOfRef(ref)); }

bool isCameraEffect(const EffectDefinition* d) {
  return std::any_of(std::begin(cameraEffects), std::end(cameraEffects),
                     [d](const char* name) { return strcmp(name, d->name) == 0; });
}

bool matches(const ObjectRecord* object, const EffectDefinition* d, const char* name, uint32_t filter) {
  if (name && strcmp(name, d->name) != 0) return false;
  constexpr uint32_t kinds = findMedia | findDrawing | findFilterEffect;
  if (filter & kinds && !(d->flag & filter & kinds)) return false;
  if (filter & findCameraTarget && !(object->flags & objectCameraTarget)) return false;
  if (filter & findCamera && !(d->flag & effectCamera)) return false;
  if (filter & findCameraEffect && !isCameraEffect(d)) return false;
  if (filter & findNotAudio && d->flag & effectAudio) return false;
  if (filter & findAudio && !(d->flag & effectAudio)) return false;
  return true;
}

}  // namespace

ObjectRecord* objectOf(ObjectRef ref) {
  int object = objectOfRef(ref);
  if (object < 0 || object >= objectCapacity || !(objects[object].flags & objectInUse)) return nullptr;
  return &objects[object];
}

void objectChangedService(ObjectRef ref) {
  if (!objectOf(ref)) return;
  syncChain(objectOfRef(ref));
  if (modelHooks.objectChanged) modelHooks.objectChanged(objectOfRef(ref));
}

int getObjectData(ObjectRef ref, ObjectData* data) {
  ObjectRecord* object = objectOf(ref);
  int slot = slotOfRef(ref);
  if (!object || !validSlot(ref) || !slotEffect(object, slot)) return 0;
  int track = object->slots[slot].firstTrack;
  *data = {object->start,
           object->end + (nextSection(indexOf(object)) >= 0),
           object->startValues + track,
           object->endValues + track,
           object->modes + track,
           object->checks + object->slots[slot].firstCheck,
           extraDataOf(indexOf(object), slot),
           object->params + track};
  return 1;
}

ObjectRef nextSectionRef(ObjectRef ref) { return objectOf(ref) ? sameSlot(nextSection(objectOfRef(ref)), ref) : 0; }

ObjectRef previousSectionRef(ObjectRef ref) {
  return objectOf(ref) ? sameSlot(previousSection(objectOfRef(ref)), ref) : 0;
}

ObjectRef chainHeadRef(ObjectRef ref) { return objectOf(ref) ? sameSlot(headOf(objectOfRef(ref)), ref) : 0; }

ObjectRef chainHeadViaLastRef(ObjectRef ref) {
  if (!objectOf(ref)) return 0;
  int last = objectOfRef(ref);
  for (int next; (next = nextSection(last)) >= 0;) last = next;
  return sameSlot(objects[last].chainHead, ref);
}

int chainLength(ObjectRef ref) {
  if (!objectOf(ref)) return 0;
  int count = 1;
  for (int section = headOf(objectOfRef(ref)); (section = nextSection(section)) >= 0;) count++;
  return count;
}

ObjectRef findObjectRef(int frame, int layer, int scene, const char* name, uint32_t filter) {
  if (layer < 0 || layer >= layersPerScene || scene < 0 || scene >= maxScenes) return 0;
  if (layerTable[scene * layersPerScene + layer].flags & layerHidden) return 0;
  const ObjectRecord* object = liveObject(scene, layer, frame);
  if (!object) return 0;
  for (int slot = 0; slot < maxSlots; slot++) {
    const EffectDefinition* d = slotEffect(object, slot);
    if (!d) break;
    if (slotIsEnabled(object, slot) && matches(object, d, name, filter)) return makeObjectRef(indexOf(object), slot);
  }
  return 0;
}

ObjectRef findNextSlotRef(ObjectRef ref, const char* name, uint32_t filter) {
  const ObjectRecord* object = objectOf(ref);
  if (!object || !validSlot(ref)) return 0;
  for (int step = 1; step < maxSlots; step++) {
    int slot = (slotOfRef(ref) + step) % maxSlots;
    const EffectDefinition* d = slotEffect(object, slot);
    if (d && slotIsEnabled(object, slot) && matches(object, d, name, filter))
      return makeObjectRef(indexOf(object), slot);
  }
  return 0;
}

int setObjectNameService(ObjectRef ref, const char* name) {
  if (!objectOf(ref) || slotOfRef(ref) != 0 || !name || strlen(name) >= maxName) return 0;
  ObjectRecord& head = objects[headOf(objectOfRef(ref))];
  strcpy(head.name, name);
  objectChangedService(ref);
  return 1;
}

int getTrackValues(ObjectRef ref, int frame, int subFrame, int32_t* values, intptr_t which) {
  const ObjectRecord* object = objectOf(ref);
  int slot = slotOfRef(ref);
  if (!object || !validSlot(ref)) return 0;
  const EffectDefinition* d = slotEffect(object, slot);
  if (!d) return 0;
  int section = sectionAt(objectOfRef(ref), frame);
  int first = objects[section].slots[slot].firstTrack;
  if (which == 0) {
    evaluateTracks(values, frame, subFrame, section, 0, first, d->track_count, d);
    return d->track_count;
  }
  constexpr intptr_t lastNumber = 255;
  intptr_t track = which - 1;
  if (which < 0 || which > lastNumber) {
    const char* name = reinterpret_cast<const char*>(which);
    for (track = 0; track < d->track_count && strcmp(d->track_names[track], name) != 0;) track++;
  }
  if (track >= d->track_count) return 0;
  evaluateTracks(values, frame, subFrame, section, 0, first, evaluateSingle ^ static_cast<int32_t>(track), d);
  return 1;
}

int changeObjectLength(ObjectRef ref, int length, uint32_t) {
  if (!objectOf(ref)) return 0;
  int last = objectOfRef(ref);
  for (int next; (next = nextSection(last)) >= 0;) last = next;
  ObjectRecord& section = objects[last];
  int first = chainRange(last).first;
  int64_t end = std::clamp<int64_t>(int64_t{first} + length - 1, section.start, INT32_MAX - 1);
  for (int i = 0; i < objectCount; i++) {
    const ObjectRecord* other = layerOrder[i];
    if (other->scene == section.scene && other->homeLayer == section.homeLayer && other->start > section.end)
      end = std::min<int64_t>(end, other->start - 1);
  }
  if (section.end != end) {
    section.end = static_cast<int32_t>(end);
    rebuildOrder();
    objectChangedService(ref);
  }
  return section.end - first + 1;
}

void recordUndoService(ObjectRef ref) {
  const ObjectRecord* object = objectOf(ref);
  if (!object) return;
  beginUndoStep();
  recordUndo(indexOf(object), object->chainHead >= 0 ? undoChain : undoSnapshot);
}

int isSelectedRef(ObjectRef ref) {
  return objectOf(ref) && currentObject >= 0 && headOf(objectOfRef(ref)) == headOf(currentObject);
}

ObjectRef companionRef(ObjectRef ref, const char* name) {
  const ObjectRecord* object = objectOf(ref);
  if (!object) return 0;
  int own = headOf(indexOf(object));
  bool current = object->scene == currentScene;
  ObjectRecord** at = layerOrder + (current ? 0 : sceneObjectCount);
  ObjectRecord** end = layerOrder + (current ? sceneObjectCount : objectCount);
  ObjectRef found = 0;
  for (; at != end && indexOf(*at) != own; at++) {
    const ObjectRecord& other = **at;
    if (other.scene != object->scene || other.start != objects[own].start) continue;
    const EffectDefinition* d = slotEffect(&other, 0);
    if (headOf(indexOf(&other)) == indexOf(&other) && d && strcmp(d->name, name) == 0)
      found = makeObjectRef(indexOf(&other), 0);
  }
  return found;
}

}  // namespace zenlay
