#include "zenlay/files/project_block.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <utility>
#include <vector>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/project_layout.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/draw.h"

namespace zenlay {

namespace {

/// Definition flags that make two effects of one name the same effect.
constexpr uint32_t identityFlags = effectBuiltIn | effectAudio | effectMedia | effectDrawing | effectFilter;
constexpr int scriptShift = 16;
constexpr int32_t oldNearDistance = 50;
constexpr RecordShape oldShape{584, 32, 16, 8};

/// One block being loaded. Offsets are checked against `size` once, for all the arrays in front of the objects.
struct Load {
  const uint8_t* data;
  size_t size;
  ProjectHeader header;
  RecordShape shape;
  size_t oldLayersAt, layersAt, scenesAt, scriptsAt, effectsAt, objectsAt;
  std::vector<StoredEffect> effects;
  std::vector<int> mapped;                               // stored effect -> effectList, -1 unmapped
  std::vector<int> scripts;                              // stored script -> current number
  std::vector<int> loaded;                               // stored object -> object or -1
  std::map<std::pair<int32_t, int32_t>, int32_t> taken;  // (scene and layer, start) -> end
  bool filtersChanged = false;
};

bool readHeader(Load& l) {
  if (l.size < sizeof(ProjectHeader)) return false;
  memcpy(&l.header, l.data, sizeof l.header);
  ProjectHeader& h = l.header;
  auto orOld = [](int32_t value, int32_t old) { return value ? value : old; };
  l.shape = {orOld(h.recordSize, oldShape.size), orOld(h.tracks, oldShape.tracks), orOld(h.checks, oldShape.checks),
             orOld(h.slots, oldShape.slots)};
  auto within = [](int32_t value, int32_t limit) { return value >= 0 && value <= limit; };
  if (memcmp(h.magic, projectMagic, sizeof h.magic) != 0 || !recordShapeFits(l.shape)) return false;
  if (!within(h.objectCount, maxObjects) || !within(h.effectCount, maxEffects)) return false;
  if (!within(h.scriptCount, maxStoredScripts) || !within(h.currentScene, maxScenes - 1)) return false;
  size_t at = sizeof(ProjectHeader);
  auto array = [&](size_t* begin, int32_t count, int32_t bytes) {
    *begin = at;
    if (count < 0 || bytes < 0 || (count > 0 && bytes == 0)) return false;
    uint64_t all = static_cast<uint64_t>(count) * static_cast<uint64_t>(bytes);
    if (all > l.size - at) return false;
    at += all;
    return true;
  };
  bool complete = array(&l.oldLayersAt, h.oldLayerCount, sizeof(StoredOldLayer)) &&
                  array(&l.layersAt, h.layerCount, h.layerSize) && array(&l.scenesAt, h.sceneCount, h.sceneSize) &&
                  array(&l.scriptsAt, h.scriptCount, scriptNameBytes) &&
                  array(&l.effectsAt, h.effectCount, sizeof(StoredEffect));
  l.objectsAt = at;
  return complete;
}

/// A record of an array whose stored records may be shorter or longer than ours; what is missing is 0.
template <class Record>
Record recordAt(const Load& l, size_t array, int index, int32_t bytes) {
  Record record{};
  memcpy(&record, l.data + array + static_cast<size_t>(index) * static_cast<size_t>(bytes),
         std::min(sizeof record, static_cast<size_t>(bytes)));
  return record;
}

template <size_t N>
const char* terminated(char (&text)[N]) {
  text[N - 1] = 0;
  return text;
}

void readLayers(const Load& l) {
  for (int i = 0; i < std::min(l.header.oldLayerCount, layersPerScene); i++) {
    StoredOldLayer s = recordAt<StoredOldLayer>(l, l.oldLayersAt, i, sizeof s);
    layerTable[i].flags = s.flags;
    setLayerName(0, i, terminated(s.name));
  }
  for (int i = 0; i < l.header.layerCount; i++) {
    StoredLayer s = recordAt<StoredLayer>(l, l.layersAt, i, l.header.layerSize);
    if (s.scene < 0 || s.scene >= maxScenes || s.layer < 0 || s.layer >= layersPerScene) continue;
    layerTable[s.scene * layersPerScene + s.layer].flags = s.flags;
    setLayerName(s.scene, s.layer, terminated(s.name));
  }
}

void readScenes(const Load& l) {
  for (int i = 0; i < l.header.sceneCount; i++) {
    StoredScene s = recordAt<StoredScene>(l, l.scenesAt, i, l.header.sceneSize);
    if (s.scene < 0 || s.scene >= maxScenes) continue;
    SceneRecord& scene = scenes[s.scene];
    scene.flags = s.flags;
    setSceneName(s.scene, terminated(s.name));
    scene.width = std::max(s.width, 0);
    scene.height = std::max(s.height, 0);
    scene.length = std::max(s.length, 0);
    scene.currentFrame = std::max(s.currentFrame, 0);
    scene.zoomLevel = std::clamp(s.zoomLevel, 0, zoomLevels - 1);
    scene.viewFrame = std::max(s.viewFrame, 0);
    scene.currentObject = s.currentObject;  // a position until the objects are loaded
    scene.selectionStart = s.selectionStart;
    scene.selectionEnd = s.selectionEnd;
    scene.grid = l.header.version >= versionWithGrid ? l.header.grid : preferences.grid;
    if (l.header.version >= scenesWithTopLayer) scene.topLayer = std::clamp(s.topLayer, 0, layersPerScene - 1);
  }
}

bool sameCategory(const char* stored, const char* current) {
  return strncmp(stored, current ? current : "", categoryBytes - 1) == 0;
}

int mapEffect(const StoredEffect& stored) {
  for (int i = 0; i < effectCount; i++) {
    const EffectDefinition* d = effectList[i];
    if (!((d->flag ^ stored.flags) & identityFlags) && strcmp(d->name, stored.name) == 0 &&
        sameCategory(stored.category, d->category))
      return i;
  }
  return -1;
}

void readLists(Load& l) {
  for (int i = 0; i < l.header.scriptCount; i++) {
    char name[scriptNameBytes];
    memcpy(name, l.data + l.scriptsAt + static_cast<size_t>(i) * scriptNameBytes, sizeof name);
    l.scripts.push_back(movementScriptNumber(terminated(name)));
  }
  for (int i = 0; i < l.header.effectCount; i++) {
    StoredEffect stored = recordAt<StoredEffect>(l, l.effectsAt, i, sizeof stored);
    terminated(stored.name);
    terminated(stored.category);
    bool sane = stored.tracks >= 0 && stored.tracks <= maxTracks && stored.checks >= 0 && stored.checks <= maxChecks &&
                stored.extraBytes >= 0 && stored.extraBytes <= maxExtraData;
    l.effects.push_back(stored);
    l.mapped.push_back(sane ? mapEffect(stored) : -1);
  }
}

/// Slots in use when every one is mapped and lies within the stored arrays, else -1.
int storedSlots(const Load& l, const ObjectRecord& o) {
  int used = 0;
  for (; used < l.shape.slots && o.slots[used].effect != -1; used++) {
    const EffectSlot& slot = o.slots[used];
    if (slot.effect < 0 || slot.effect >= l.header.effectCount || l.mapped[slot.effect] < 0) return -1;
    const StoredEffect& d = l.effects[slot.effect];
    if (slot.firstTrack < 0 || slot.firstTrack + d.tracks > l.shape.tracks) return -1;
    if (slot.firstCheck < 0 || slot.firstCheck + d.checks > l.shape.checks) return -1;
  }
  return used > 0 ? used : -1;
}

bool placeIsSound(const Load& l, const ObjectRecord& o) {
  if (!(o.flags & objectInUse) || o.scene < 0 || o.scene >= maxScenes) return false;
  if (o.homeLayer < 0 || o.homeLayer >= layersPerScene || o.start < 0 || o.end < o.start) return false;
  int32_t lane = o.scene * layersPerScene + o.homeLayer;
  auto behind = l.taken.upper_bound({lane, o.end});
  if (behind == l.taken.begin()) return true;
  --behind;
  return behind->first.first != lane || behind->second < o.start;
}

/// Whether the stored section goes on where `before` ends, with the same effects.
bool continues(const Load& l, const ObjectRecord& o, int used, const ObjectRecord& before, int object) {
  if (o.scene != before.scene || o.homeLayer != before.homeLayer || int64_t{before.end} + 1 != o.start) return false;
  if (usedSlots(object) != used) return false;
  for (int k = 0; k < used; k++)
    if (l.mapped[o.slots[k].effect] != before.slots[k].effect) return false;
  return true;
}

int32_t mappedMode(const Load& l, int32_t mode) {
  if ((mode & modeNumber) != modeScript) return mode;
  uint32_t script = static_cast<uint32_t>(mode) >> scriptShift;
  if (script >= l.scripts.size()) return mode;
  int number = l.scripts[script];
  return number < 0 ? modeNone : static_cast<int32_t>((mode & 0xFFFF) | static_cast<uint32_t>(number) << scriptShift);
}

void copySlotValues(Load& l, const ObjectRecord& stored, ObjectRecord& o, int slot) {
  const StoredEffect& was = l.effects[stored.slots[slot].effect];
  const EffectDefinition* d = effectList[o.slots[slot].effect];
  if (was.tracks != d->track_count || was.checks != d->check_count || was.extraBytes != extraDataBytes(d))
    l.filtersChanged = true;
  for (int t = 0; t < std::min(was.tracks, d->track_count); t++) {
    int from = stored.slots[slot].firstTrack + t, to = trackOf(o, slot, t);
    o.startValues[to] = stored.startValues[from];
    o.endValues[to] = stored.endValues[from];
    o.modes[to] = mappedMode(l, stored.modes[from]);
    o.params[to] = stored.params[from];
  }
  for (int c = 0; c < std::min(was.checks, d->check_count); c++)
    o.checks[checkOf(o, slot, c)] = stored.checks[stored.slots[slot].firstCheck + c];
}

struct StoredObject {
  ObjectRecord record;
  const uint8_t* extra;
  int used;
};

void copyExtraData(const Load& l, const StoredObject& s, int object, int slot) {
  uint8_t* to = extraDataOf(object, slot);
  const EffectSlot& from = s.record.slots[slot];
  int bytes = l.effects[from.effect].extraBytes;
  if (!to || bytes == 0 || from.extraDataOffset < 0) return;
  if (int64_t{from.extraDataOffset} + bytes > s.record.extraDataSize) return;
  bytes = std::min(bytes, extraDataBytes(effectList[objects[object].slots[slot].effect]));
  memcpy(to, s.extra + from.extraDataOffset, static_cast<size_t>(bytes));
}

bool withinLimits(const Load& l, const StoredObject& s) {
  int tracks = 0, checks = 0, bytes = 0;
  for (int k = 0; k < s.used; k++) {
    const EffectDefinition* d = effectList[l.mapped[s.record.slots[k].effect]];
    tracks += d->track_count;
    checks += d->check_count;
    bytes += extraDataBytes(d);
  }
  return tracks <= maxTracks && checks <= maxChecks && bytes <= maxExtraData;
}

/// The object, -1 when the table or the region is exhausted.
int placeObject(Load& l, const StoredObject& s, int chainFrom) {
  int object = takeFreeObject();
  if (object < 0) return -1;
  ObjectRecord& o = objects[object];
  o = s.record;
  terminated(o.name);
  o.chainHead = -1;
  o.extraDataSize = 0;
  o.layer = -1;
  o.group = std::max(o.group, 0);
  for (int k = 0; k < maxSlots; k++) {
    if (k < s.used)
      o.slots[k] = {l.mapped[s.record.slots[k].effect], 0, 0, 0};
    else
      o.slots[k].effect = -1;
  }
  if (chainFrom >= 0) {
    ObjectRecord& before = objects[chainFrom];
    if (before.chainHead < 0) before.chainHead = chainFrom;
    o.chainHead = before.chainHead;
    o.flags = before.flags;
    o.group = before.group;
  }
  if (!repack(object)) {
    showMessage("Unable to reserve the extended region for object", boxWarning);
    releaseObject(object);
    return -1;
  }
  // Packing moved what lies behind the used values; it is kept as it was stored.
  for (auto values :
       {&ObjectRecord::startValues, &ObjectRecord::endValues, &ObjectRecord::modes, &ObjectRecord::params})
    memcpy(o.*values, s.record.*values, sizeof(o.*values));
  memcpy(o.checks, s.record.checks, sizeof o.checks);
  for (int k = 0; k < s.used; k++) {
    setSlotDefaults(object, k);
    copySlotValues(l, s.record, o, k);
    if (chainFrom < 0) copyExtraData(l, s, object, k);
  }
  l.taken[{o.scene * layersPerScene + o.homeLayer, o.start}] = o.end;
  return object;
}

/// Reads the stored object at `at` and steps behind it; false when the block ends before it does.
bool readStored(const Load& l, size_t& at, StoredObject* s) {
  if (l.size - at < static_cast<size_t>(l.shape.size)) return false;
  s->record = convertRecord(l.data + at, l.shape);
  at += static_cast<size_t>(l.shape.size);
  if (s->record.extraDataSize > l.size - at) return false;
  s->extra = l.data + at;
  at += s->record.extraDataSize;
  s->used = storedSlots(l, s->record);
  return true;
}

void readObjects(Load& l) {
  size_t at = l.objectsAt;
  int previous = -1, previousHead = -1;
  l.loaded.assign(static_cast<size_t>(l.header.objectCount), -1);
  for (int i = 0; i < l.header.objectCount; i++) {
    StoredObject s;
    if (!readStored(l, at, &s)) return;
    int head = s.record.chainHead;
    bool section = head >= 0 && head == previousHead;
    int from = section ? previous : -1;
    previousHead = head;
    previous = -1;
    bool sound = s.used > 0 && placeIsSound(l, s.record) && withinLimits(l, s);
    if (section) sound = sound && from >= 0 && continues(l, s.record, s.used, objects[from], from);
    if (!sound) {
      l.filtersChanged = true;
      continue;
    }
    previous = placeObject(l, s, from);
    if (previous < 0) return;
    l.loaded[static_cast<size_t>(i)] = previous;
  }
}

int objectAtPosition(const Load& l, int position) {
  return position >= 0 && static_cast<size_t>(position) < l.loaded.size() ? l.loaded[static_cast<size_t>(position)]
                                                                          : -1;
}

void restoreView(const Load& l) {
  const ProjectHeader& h = l.header;
  nearPercent = h.version >= versionWithNear ? std::max(h.nearDistance, defaultNearPercent) : oldNearDistance;
  if (h.version >= versionWithGrid) preferences.grid = h.grid;
  setZoomLevel(h.zoomLevel);
  timelineView.topLayer = std::clamp(h.topLayer, 0, layersPerScene - 1);
  timelineView.leftFrame = std::max(h.viewFrame, 0);
  int object = objectAtPosition(l, h.currentObject);
  if (object < 0 || objects[object].scene != currentScene) return;
  currentObject = object;
  if (modelHooks.objectChanged) modelHooks.objectChanged(object);
}

}  // namespace

int loadProject(HostFilterRecord*, EditHandle, const void* data, int32_t size) {
  Load l{};
  l.data = static_cast<const uint8_t*>(data);
  l.size = data && size > 0 ? static_cast<size_t>(size) : 0;
  bool onScreen = environment.timelineWindow != nullptr;
  if (!readHeader(l)) {
    if (onScreen)
      showMessage(
          "Unable to read data due to mixing of different Zenlay version data\n\n"
          "*You may try exproting and re-importing the object file",
          boxWarning);
    return 0;
  }
  resetUndo();
  deleteAllObjects();
  clearScenes();
  readLayers(l);
  readScenes(l);
  readLists(l);
  readObjects(l);
  for (SceneRecord& scene : scenes) scene.currentObject = objectAtPosition(l, scene.currentObject);
  selectScene(l.header.currentScene);
  settleChains();
  if (scenes[currentScene].length > 0) timelineView.sceneLength = scenes[currentScene].length;
  environment.missingFiles = 0;
  for (int i = 0; i < objectCapacity; i++)
    if (objects[i].flags && headOf(i) == i) notifyEffects(i, objectLoaded);
  if (!onScreen) return 1;
  restoreView(l);
  if (l.filtersChanged)
    showMessage(
        "Some filters has been changed. Objects may not be read correctly.\n\n"
        "*You may try to export the object in a normally working environment and re-import here",
        boxWarning);
  if (environment.missingFiles > 0) showMessage("Some files specified by the objects were missing", boxWarning);
  return 1;
}

}  // namespace zenlay
