#include "zenlay/model/slots.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "zenlay/effects/registry.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/undo.h"

namespace zenlay {
namespace {

/// Effects of one object and their slot flags, before packing.
struct SlotList {
  EffectSlot slots[maxSlots];
  uint8_t flags[maxSlots];
  int count;
};

struct Totals {
  int tracks, checks, extraBytes;
};

Totals totalsOf(const EffectSlot* slots, int count) {
  Totals t{};
  for (int k = 0; k < count; k++) {
    const EffectDefinition* d = effectList[slots[k].effect];
    t.tracks += d->track_count;
    t.checks += d->check_count;
    t.extraBytes += extraDataBytes(d);
  }
  return t;
}

bool withinLimits(const Totals& t) {
  return t.tracks <= maxTracks && t.checks <= maxChecks && t.extraBytes <= maxExtraData;
}

bool valid(int effect) { return effect >= 0 && effect < effectCount; }
uint32_t flagOf(const EffectSlot& slot) { return valid(slot.effect) ? effectList[slot.effect]->flag : 0; }

bool ownsExtraData(int object) { return headOf(object) == object; }

SlotList slotsOf(const ObjectRecord& o) {
  SlotList list;
  memcpy(list.slots, o.slots, sizeof list.slots);
  memcpy(list.flags, o.slotFlags, sizeof list.flags);
  list.count = usedSlots(indexOf(&o));
  return list;
}

void storeSlots(ObjectRecord& o, const SlotList& list) {
  memcpy(o.slots, list.slots, sizeof list.slots);
  memcpy(o.slotFlags, list.flags, sizeof list.flags);
}

void openGap(SlotList& list, int at) {
  for (int k = list.count; k > at; k--) {
    list.slots[k] = list.slots[k - 1];
    list.flags[k] = list.flags[k - 1];
  }
  list.count++;
}

/// Where the effect goes: in place of a slot, or into a gap. -1 when all slots are used.
struct Place {
  int slot;
  bool replaces;
};
Place placeFor(const SlotList& list, uint32_t flag, bool drawnObject) {
  int n = list.count;
  if (n > 0 && flag & effectMedia) {
    bool drawingAlone = n == 1 && flagOf(list.slots[0]) & effectDrawing;
    return {0, !drawingAlone};
  }
  if (n > 0 && flag & effectDrawing && flagOf(list.slots[n - 1]) & effectDrawing) return {n - 1, true};
  if (n == maxSlots) return {-1, false};
  return {n > 1 && drawnObject ? n - 1 : n, false};
}

void closeGap(SlotList& list, int at) {
  list.count--;
  for (int k = at; k < list.count; k++) {
    list.slots[k] = list.slots[k + 1];
    list.flags[k] = list.flags[k + 1];
  }
  list.slots[list.count] = {-1, 0, 0, 0};
  list.flags[list.count] = 0;
}

/// The extra controls of a slot of the current object's chain leave the settings window.
void hideControls(int head, int slot) {
  const EffectDefinition* d = effectList[objects[head].slots[slot].effect];
  if (!isBuiltIn(d) || !d->hide_controls || currentObject < 0 || headOf(currentObject) != head) return;
  if (modelHooks.hideControls)
    modelHooks.hideControls(currentObject, slot);
  else
    d->hide_controls();
}

/// `count` values from `from` of an array of `size`; what lies outside reads as 0.
template <class T>
void copyPart(T* to, const T* source, int size, int from, int count) {
  for (int i = 0; i < count; i++) to[i] = from + i >= 0 && from + i < size ? source[from + i] : T{};
}

}  // namespace

int usedSlots(int object) {
  const ObjectRecord& o = objects[object];
  int n = 0;
  while (n < maxSlots && valid(o.slots[n].effect)) n++;
  return n;
}

int lastSlot(int object) { return std::max(usedSlots(object) - 1, 0); }

int repack(int object) {
  ObjectRecord& o = objects[object];
  int used = usedSlots(object);
  Totals totals = totalsOf(o.slots, used);
  if (!withinLimits(totals)) return 0;
  bool head = ownsExtraData(object);
  std::vector<uint8_t> extra;
  if (head) {
    if (const uint8_t* block = extraDataBlockOf(object)) extra.assign(block, block + o.extraDataSize);
    if (!reserveExtraData(object, static_cast<uint32_t>(totals.extraBytes))) return 0;
  }
  uint8_t* packed = head ? extraDataBlockOf(object) : nullptr;
  const ObjectRecord old = o;
  Totals at{};
  for (int k = 0; k < used; k++) {
    const EffectDefinition* d = effectList[o.slots[k].effect];
    EffectSlot& slot = o.slots[k];
    for (auto values :
         {&ObjectRecord::startValues, &ObjectRecord::endValues, &ObjectRecord::modes, &ObjectRecord::params})
      copyPart(o.*values + at.tracks, old.*values, maxTracks, slot.firstTrack, d->track_count);
    copyPart(o.checks + at.checks, old.checks, maxChecks, slot.firstCheck, d->check_count);
    if (packed)
      copyPart(packed + at.extraBytes, extra.data(), static_cast<int>(extra.size()), slot.extraDataOffset,
               extraDataBytes(d));
    slot.firstTrack = static_cast<int16_t>(at.tracks);
    slot.firstCheck = static_cast<int16_t>(at.checks);
    slot.extraDataOffset = at.extraBytes;
    at.tracks += d->track_count;
    at.checks += d->check_count;
    at.extraBytes += extraDataBytes(d);
  }
  o.trackCount = static_cast<uint16_t>(at.tracks);
  o.checkCount = static_cast<uint16_t>(at.checks);
  return 1;
}

int addEffect(int object, int effect) {
  if (!valid(effect)) return -1;
  int head = headOf(object);
  ObjectRecord& o = objects[head];
  const SlotList before = slotsOf(o);
  SlotList list = before;
  Place place = placeFor(list, effectList[effect]->flag, o.flags & objectDrawn);
  if (place.slot < 0) return -1;
  if (!place.replaces) openGap(list, place.slot);
  list.slots[place.slot] = {effect, 0, 0, 0};
  list.flags[place.slot] = newSlotFlags;
  if (!withinLimits(totalsOf(list.slots, list.count))) return -1;
  storeSlots(o, list);
  if (!repack(head)) {
    storeSlots(o, before);
    tellExtraDataRefused();
    return -1;
  }
  // The sections carry the same effects but pack their own values.
  for (int section = nextSection(head); section >= 0; section = nextSection(section)) {
    SlotList own = slotsOf(objects[section]);
    if (!place.replaces) openGap(own, place.slot);
    own.slots[place.slot] = {effect, 0, 0, 0};
    own.flags[place.slot] = newSlotFlags;
    storeSlots(objects[section], own);
    repack(section);
  }
  return place.slot;
}

void removeEffect(int object, int slot) {
  int head = headOf(object);
  if (slot < 0 || slot >= usedSlots(head) || usedSlots(head) == 1) return;
  recordUndo(object, undoSnapshot | undoChain);
  hideControls(head, slot);
  if (modelHooks.sendCommand) modelHooks.sendCommand(head, slot, commandObjectEvent, objectSlotRemoved);
  for (int section : sectionsOf(object)) {
    SlotList list = slotsOf(objects[section]);
    closeGap(list, slot);
    storeSlots(objects[section], list);
    repack(section);
  }
}

bool canMoveSlot(int object, int from, int delta) {
  const int last = lastSlot(object), to = from + delta;
  if (from < 0 || from > last || to < 0 || to > last) return false;
  const uint32_t flags = objects[object].flags;
  const int first = flags & (objectDrawn | objectControl) ? 1 : 0, end = flags & objectDrawn ? last - 1 : last;
  return std::min(from, to) >= first && std::max(from, to) <= end;
}

int moveSlot(int object, int from, int delta) {
  if (!canMoveSlot(object, from, delta)) return 0;
  recordUndo(object, undoSnapshot | undoChain);
  for (int section : sectionsOf(object)) {
    ObjectRecord& o = objects[section];
    std::swap(o.slots[from], o.slots[from + delta]);
    std::swap(o.slotFlags[from], o.slotFlags[from + delta]);
    repack(section);
  }
  return 1;
}

void setSlotDefaults(int object, int slot) {
  ObjectRecord& o = objects[object];
  if (slot < 0 || slot >= usedSlots(object)) return;
  const EffectDefinition* d = effectList[o.slots[slot].effect];
  for (int t = 0; t < d->track_count; t++) {
    int i = trackOf(o, slot, t);
    o.startValues[i] = o.endValues[i] = d->track_defaults ? d->track_defaults[t] : 0;
    o.modes[i] = o.params[i] = 0;
  }
  for (int c = 0; c < d->check_count; c++)
    o.checks[checkOf(o, slot, c)] = d->check_defaults && d->check_defaults[c] == 1;
  uint8_t* extra = ownsExtraData(object) ? extraDataOf(object, slot) : nullptr;
  if (!extra) return;
  // A host filter has no default of its own: its extra data as it stands serves.
  const void* initial = isBuiltIn(d) ? d->exdata_default : d->exdata;
  if (initial)
    memcpy(extra, initial, static_cast<size_t>(extraDataBytes(d)));
  else
    memset(extra, 0, static_cast<size_t>(extraDataBytes(d)));
}

void setChainSlotDefaults(int object, int slot) {
  for (int section : sectionsOf(object)) setSlotDefaults(section, slot);
}

void setSlotFlags(int object, int slot, uint8_t flags) {
  for (int section : sectionsOf(object)) objects[section].slotFlags[slot] = flags;
}

uint8_t* extraDataOf(int object, int slot) {
  int head = headOf(object);
  if (slot < 0 || slot >= usedSlots(head)) return nullptr;
  const EffectSlot& s = objects[head].slots[slot];
  int bytes = extraDataBytes(effectList[s.effect]);
  uint8_t* block = bytes > 0 ? extraDataBlockOf(head) : nullptr;
  if (!block || s.extraDataOffset < 0 || int64_t{s.extraDataOffset} + bytes > objects[head].extraDataSize)
    return nullptr;
  return block + s.extraDataOffset;
}

uint8_t slotFlagsOf(int object, int slot) { return objects[headOf(object)].slotFlags[slot]; }

}  // namespace zenlay
