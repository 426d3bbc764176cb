#include "zenlay/model/checker.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <map>

#include "zenlay/effects/registry.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"

namespace zenlay {
namespace {

std::string fault(int object, const char* what) { return "object " + std::to_string(object) + ": " + what; }

std::string placeFault(int i, const ObjectRecord& o) {
  if (o.scene < 0 || o.scene >= maxScenes) return fault(i, "scene out of range");
  if (o.homeLayer < 0 || o.homeLayer >= layersPerScene) return fault(i, "home layer out of range");
  if (o.layer != (o.scene == currentScene ? o.homeLayer : -1)) return fault(i, "layer does not follow the scene");
  if (o.start < 0 || o.end < o.start) return fault(i, "frames out of order");
  if (!memchr(o.name, 0, sizeof o.name)) return fault(i, "name without end");
  if (!(o.flags & objectInUse)) return fault(i, "flags without the in-use bit");
  if (o.group < 0) return fault(i, "group marked for renumbering");
  return "";
}

std::string packingFault(int i, const ObjectRecord& o) {
  int tracks = 0, checks = 0, bytes = 0, used = usedSlots(i);
  if (used == 0) return fault(i, "no effect");
  for (int k = 0; k < maxSlots; k++) {
    const EffectSlot& slot = o.slots[k];
    if (k >= used) {
      if (slot.effect != -1) return fault(i, "effect behind the end of the chain");
      continue;
    }
    const EffectDefinition* d = effectList[slot.effect];
    if (slot.firstTrack != tracks || slot.firstCheck != checks) return fault(i, "tracks or checks not packed");
    if (slot.extraDataOffset != bytes) return fault(i, "extra data not packed");
    tracks += d->track_count;
    checks += d->check_count;
    bytes += extraDataBytes(d);
  }
  if (tracks != o.trackCount || checks != o.checkCount) return fault(i, "wrong totals");
  if (tracks > maxTracks || checks > maxChecks || bytes > maxExtraData) return fault(i, "limit exceeded");
  bool head = headOf(i) == i;
  if (o.extraDataSize != (head ? static_cast<uint32_t>(bytes) : 0)) return fault(i, "wrong extra-data size");
  return "";
}

/// Every block of the region belongs to one object and is long enough; everything else is free.
std::string regionFault() {
  ExtraDataRegion region = extraDataRegion();
  std::map<uint32_t, int> owners;
  for (int i = 0; i < objectCapacity; i++)
    if (objects[i].flags && objects[i].extraDataSize && !owners.emplace(objects[i].extraDataBlock, i).second)
      return fault(i, "shares its extra-data block");
  for (uint32_t at = 0; at < region.size;) {
    uint32_t length;
    memcpy(&length, region.bytes + at, sizeof length);
    auto owner = owners.find(at);
    if (length == 0) {
      if (owner != owners.end()) return fault(owner->second, "extra-data block is free");
      at += extraDataUnit;
      continue;
    }
    if (length % extraDataUnit || length > region.size - at) return "extra-data region: bad block length";
    if (owner == owners.end()) return "extra-data region: block without owner";
    if (objects[owner->second].extraDataSize + sizeof length > length) return fault(owner->second, "block too short");
    owners.erase(owner);
    at += length;
  }
  return owners.empty() ? "" : fault(owners.begin()->second, "extra-data block outside the region");
}

std::string chainFault(int i, const ObjectRecord& o) {
  int next = nextSection(i), previous = previousSection(i);
  if (o.chainHead < 0) {
    if (o.chainHead != -1) return fault(i, "provisional chain head");
    return next >= 0 || previous >= 0 ? fault(i, "linked without a chain") : "";
  }
  if (o.chainHead >= objectCapacity || !objects[o.chainHead].flags) return fault(i, "chain head is free");
  if (objects[o.chainHead].chainHead != o.chainHead) return fault(i, "chain head is not a head");
  if ((o.chainHead == i) != (previous < 0)) return fault(i, "chain does not begin at its head");
  if (next >= 0 && previousSection(next) != i) return fault(i, "section links disagree");
  const ObjectRecord& head = objects[o.chainHead];
  if (o.scene != head.scene || o.homeLayer != head.homeLayer) return fault(i, "section on another layer");
  if (o.group != head.group || o.flags != head.flags) return fault(i, "section differs from its head");
  for (int k = 0; k < maxSlots; k++) {
    if (o.slots[k].effect != head.slots[k].effect) return fault(i, "section with other effects");
    if (o.slotFlags[k] != head.slotFlags[k]) return fault(i, "section with other slot flags");
  }
  if (next >= 0 && objects[next].start != o.end + 1) return fault(i, "gap between sections");
  if (next < 0 && previous < 0) return fault(i, "chain of one section");
  return "";
}

/// What a chain's sections have in common, and where their tracks meet.
std::string chainValuesFault(int i, const ObjectRecord& o) {
  if (o.chainHead < 0) return "";
  const ObjectRecord& head = objects[o.chainHead];
  if (!std::equal(o.modes, o.modes + o.trackCount, head.modes)) return fault(i, "section with other modes");
  if (!std::equal(o.params, o.params + o.trackCount, head.params)) return fault(i, "section with other parameters");
  if (!std::equal(o.checks, o.checks + o.checkCount, head.checks)) return fault(i, "section with other checks");
  int next = nextSection(i);
  for (int t = 0; t < o.trackCount; t++) {
    TrackCourse course = courseOf(o.modes[t]);
    bool sameStart = o.startValues[t] == head.startValues[t], sameEnd = o.endValues[t] == head.endValues[t];
    if (course == courseStill && (!sameStart || o.endValues[t] != o.startValues[t]))
      return fault(i, "still track with several values");
    if (course == courseWholeChain && (!sameStart || !sameEnd)) return fault(i, "whole-chain track differs");
    if (course == courseContinuous && next >= 0 && objects[next].startValues[t] != o.endValues[t])
      return fault(i, "moving track jumps between sections");
  }
  return "";
}

int rankOf(const ObjectRecord& o) { return o.layer >= 0 ? o.layer : layersPerScene * (o.scene + 1) + o.homeLayer; }

std::string orderFault(int inUse) {
  if (inUse != objectCount) return "order: object count is wrong";
  int inScene = 0;
  for (int e = 0; e < objectCount; e++) {
    const ObjectRecord& o = *layerOrder[e];
    inScene += o.layer >= 0;
    if (o.layer >= 0 && (e < layerRanges[o.layer].first || e > layerRanges[o.layer].last))
      return fault(indexOf(&o), "outside its layer's range");
    if (e == 0) continue;
    const ObjectRecord& before = *layerOrder[e - 1];
    if (rankOf(before) > rankOf(o)) return fault(indexOf(&o), "layers out of order");
    if (rankOf(before) == rankOf(o) && before.end >= o.start) return fault(indexOf(&o), "overlaps another");
  }
  if (inScene != sceneObjectCount) return "order: scene object count is wrong";
  int listed = 0;
  for (int layer = 0; layer < layersPerScene; layer++) {
    int n = layerRanges[layer].last - layerRanges[layer].first + 1;
    if (n > 0 && layer >= layersInUse) return "order: layers in use is wrong";
    if (n > 0) listed += n;
  }
  if (listed != inScene) return "order: layer ranges are wrong";
  return layersInUse > 0 && layerRanges[layersInUse - 1].first > layerRanges[layersInUse - 1].last
             ? "order: the top layer in use is empty"
             : "";
}

}  // namespace

std::string modelFault() {
  int inUse = 0;
  if (objectCapacity > maxObjects) return "object table larger than its limit";
  if (currentScene < 0 || currentScene >= maxScenes) return "current scene out of range";
  if (layers != layerTable + currentScene * layersPerScene) return "layer pointer is not the current scene's";
  if (currentObject >= objectCapacity || (currentObject >= 0 && !objects[currentObject].flags))
    return "current object is free";
  for (int i = 0; i < objectCapacity; i++) {
    const ObjectRecord& o = objects[i];
    if (!o.flags) continue;
    inUse++;
    for (auto check : {placeFault, packingFault, chainFault, chainValuesFault})
      if (std::string f = check(i, o); !f.empty()) return f;
  }
  for (int s = 0; s < maxScenes; s++) {
    if (scenes[s].name && strlen(scenes[s].name) >= maxName) return "scene name too long";
    if (scenes[s].topLayer < 0 || scenes[s].topLayer >= layersPerScene) return "top layer out of range";
  }
  if (std::string f = orderFault(inUse); !f.empty()) return f;
  return regionFault();
}

}  // namespace zenlay
