#include "zenlay/model/undo.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "zenlay/model/extra_data.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"

namespace zenlay {
namespace {

constexpr int areaBytes = 3840000;                        // what the history may hold
constexpr int reservedBytes = areaBytes + areaBytes / 4;  // so that forgetting old steps need not move the rest
constexpr int maxRecords = 15000;

/// Records lie back to back in the area; their size tells the kinds apart when they are put back.
struct UndoRecord {
  int32_t step, target, size;  // size in bytes, header included
  uint32_t flags;
  int32_t layer, start, end;  // of a position record, otherwise 0
};
static_assert(sizeof(UndoRecord) == 28);
constexpr int sceneTarget = 0x2000000;  // bit of a record's target with undoNewScene
constexpr int otherTargets = undoLayerTarget | sceneTarget;
struct LayerPayload {
  uint32_t flags;
  int32_t name;  // offset in the name pool or -1
};
constexpr int headerSize = sizeof(UndoRecord);
constexpr int layerSize = headerSize + sizeof(LayerPayload);
constexpr int snapshotSize = headerSize + sizeof(ObjectRecord);

struct UndoLog {
  uint8_t* area;
  int starts[maxRecords];  // ascending offsets
  int begin;               // of the oldest record
  int used, count;         // used: end of the newest record; both -1 while disabled
  int step;
  bool batch;
};
constinit UndoLog undoLog{nullptr, {}, 0, -1, -1, 0, false};

UndoRecord headerAt(int record) {
  UndoRecord header;
  memcpy(&header, undoLog.area + undoLog.starts[record], sizeof header);
  return header;
}

void disable() { undoLog.used = undoLog.count = -1; }

/// Drops the oldest step; when it is all there is, the history is disabled.
bool dropOldestStep() {
  int kept = 0;
  if (undoLog.count > 0)
    for (int step = headerAt(0).step; kept < undoLog.count && headerAt(kept).step == step;) kept++;
  if (kept >= undoLog.count) {
    disable();
    return false;
  }
  undoLog.count -= kept;
  memmove(undoLog.starts, undoLog.starts + kept, static_cast<size_t>(undoLog.count) * sizeof undoLog.starts[0]);
  undoLog.begin = undoLog.starts[0];
  return true;
}

void moveToFront() {
  undoLog.used -= undoLog.begin;
  memmove(undoLog.area, undoLog.area + undoLog.begin, static_cast<size_t>(undoLog.used));
  for (int i = 0; i < undoLog.count; i++) undoLog.starts[i] -= undoLog.begin;
  undoLog.begin = 0;
}

bool makeRoom(int size) {
  if (!undoLog.area && mayGrow()) undoLog.area = static_cast<uint8_t*>(malloc(reservedBytes));
  if (!undoLog.area) {
    disable();
    return false;
  }
  while (undoLog.count >= maxRecords || undoLog.used - undoLog.begin + size > areaBytes)
    if (!dropOldestStep()) return false;
  if (undoLog.used + size > reservedBytes) moveToFront();
  return true;
}

uint8_t* append(const UndoRecord& header) {
  if (!makeRoom(header.size)) return nullptr;
  uint8_t* at = undoLog.area + undoLog.used;
  memcpy(at, &header, sizeof header);
  undoLog.starts[undoLog.count++] = undoLog.used;
  undoLog.used += header.size;
  return at + headerSize;
}

void recordSnapshot(int object) {
  const ObjectRecord& o = objects[object];
  int size = snapshotSize + static_cast<int>(o.extraDataSize);
  uint8_t* payload = append({undoLog.step, object, size, 0, 0, 0, 0});
  if (!payload) return;
  memcpy(payload, &o, sizeof o);
  if (o.extraDataSize) memcpy(payload + sizeof o, extraDataBlockOf(object), o.extraDataSize);
}

void recordLayer(int target) {
  int layer = target & ~undoLayerTarget;
  if (layer < 0 || layer >= layersPerScene) return;
  LayerPayload saved{layers[layer].flags, nameOffset(layers[layer].name)};
  if (uint8_t* payload = append({undoLog.step, layer | undoLayerTarget, layerSize, 0, 0, 0, 0}))
    memcpy(payload, &saved, sizeof saved);
}

void restoreLayer(const UndoRecord& header, const uint8_t* payload) {
  LayerPayload saved;
  memcpy(&saved, payload, sizeof saved);
  layers[header.target & ~undoLayerTarget] = {saved.flags, nameAt(saved.name)};
}

bool sameEffects(const ObjectRecord& a, const ObjectRecord& b) {
  for (int k = 0; k < maxSlots; k++)
    if (a.slots[k].effect != b.slots[k].effect) return false;
  return true;
}

enum Restored { restoredNothing, restoredInPlace, restoredAnew };

/// Room for the extra data that the newest step puts back; false when it cannot be had.
bool makeRoomForStep() {
  std::vector<uint32_t> sizes;
  for (int record = undoLog.count; record > 0 && headerAt(record - 1).step == undoLog.step; record--) {
    UndoRecord header = headerAt(record - 1);
    if (header.target & otherTargets || header.size <= headerSize) continue;
    const ObjectRecord& o = objects[header.target];
    const auto size = static_cast<uint32_t>(header.size - snapshotSize);
    if (!o.flags || o.extraDataSize != size) sizes.push_back(size);
  }
  return makeExtraDataRoom(sizes);
}

/// There is room for the extra data.
Restored restoreSnapshot(const UndoRecord& header, const uint8_t* payload) {
  int object = header.target;
  ObjectRecord saved;
  memcpy(&saved, payload, sizeof saved);
  bool inPlace = objects[object].flags && sameEffects(objects[object], saved);
  if (objects[object].flags && !inPlace) dropObject(object);
  objects[object].flags = saved.flags;  // the slot is taken before anything else can have it
  reserveExtraData(object, saved.extraDataSize);
  uint32_t block = objects[object].extraDataBlock;
  objects[object] = saved;
  objects[object].layer = layerInView(saved);  // another scene may be shown than when it was recorded
  objects[object].extraDataBlock = block;
  if (saved.extraDataSize) memcpy(extraDataBlockOf(object), payload + sizeof saved, saved.extraDataSize);
  return inPlace ? restoredInPlace : restoredAnew;
}

void restorePosition(const UndoRecord& header) {
  ObjectRecord& o = objects[header.target];
  o.flags = header.flags;
  if (header.layer >= 0) o.homeLayer = header.layer;
  o.layer = layerInView(o);
  o.start = header.start;
  o.end = header.end;
}

Restored restore(const UndoRecord& header, const uint8_t* payload) {
  if (header.target & undoLayerTarget) {
    restoreLayer(header, payload);
    return restoredNothing;
  }
  if (header.target & sceneTarget) {
    scenes[header.target & ~sceneTarget] = {};
    return restoredNothing;
  }
  if (header.size > headerSize) return restoreSnapshot(header, payload);
  if (!objects[header.target].flags) return restoredNothing;
  bool created = header.flags == 0;
  if (created)
    dropObject(header.target);
  else
    restorePosition(header);
  return created ? restoredNothing : restoredInPlace;
}

/// Takes the newest step out of the history, of which the records from `record` on were put back.
void forgetStep(int record) {
  while (record > 0 && headerAt(record - 1).step == undoLog.step) record--;
  if (record < undoLog.count) undoLog.used = undoLog.starts[record];
  undoLog.count = record;
  undoLog.step--;
}

/// The object becomes current when none is; the current one is shown anew.
void showRestored(int object) {
  if (object < 0 || !objects[object].flags) return;
  if (currentObject < 0) currentObject = object;
  if (object == currentObject && modelHooks.objectChanged) modelHooks.objectChanged(object);
}

}  // namespace

void beginUndoStep() {
  if (undoLog.count <= 0) undoLog.begin = undoLog.used = undoLog.count = 0;
  undoLog.step++;
}

void recordUndo(int target, int kind) {
  if (undoLog.count < 0 || (undoLog.batch && !(kind & undoCreated))) return;
  if (kind & undoLayer) {
    recordLayer(target);
    return;
  }
  if (kind & undoNewScene) {
    append({undoLog.step, target | sceneTarget, headerSize, 0, 0, 0, 0});
    return;
  }
  if (target < 0 || target >= objectCapacity || (!(kind & undoCreated) && !objects[target].flags)) return;
  const ObjectRecord& o = objects[target];
  if (kind & undoChain && o.chainHead >= 0) {
    for (int section = headOf(target); section >= 0; section = nextSection(section))
      recordUndo(section, kind & ~undoChain);
    return;
  }
  if (kind & undoCreated)
    append({undoLog.step, target, headerSize, 0, 0, 0, 0});
  else if (kind & undoPosition)
    append({undoLog.step, target, headerSize, o.flags, o.layer, o.start, o.end});
  else
    recordSnapshot(target);
}

void beginUndoBatch() { undoLog.batch = true; }
void endUndoBatch() { undoLog.batch = false; }

void undo() {
  if (undoLog.count <= 0) return;
  if (!makeRoomForStep()) {
    tellExtraDataRefused();
    return;
  }
  bool batch = undoLog.batch;
  undoLog.batch = true;
  int record = undoLog.count, shown = -1;
  std::vector<int> reloaded;
  while (record > 0 && headerAt(record - 1).step == undoLog.step) {
    UndoRecord header = headerAt(--record);
    Restored result = restore(header, undoLog.area + undoLog.starts[record] + headerSize);
    if (result == restoredNothing) continue;
    if (result == restoredAnew) reloaded.push_back(header.target);
    bool visible = objects[header.target].layer >= 0;
    if (visible && (currentObject < 0 || header.target == currentObject)) shown = header.target;
  }
  forgetStep(record);
  undoLog.batch = batch;
  rebuildOrder();
  for (int object : reloaded)
    if (objects[object].flags && headOf(object) == object) notifyEffects(object, objectLoaded);
  if (inUse(shown) && std::find(reloaded.begin(), reloaded.end(), headOf(shown)) == reloaded.end())
    notifyEffects(headOf(shown), objectLoaded);
  showRestored(shown);
}

int undoSteps() { return undoLog.count > 0 ? undoLog.step - headerAt(0).step + 1 : 0; }

void resetUndo() { disable(); }

void freeUndo() {
  disable();
  free(undoLog.area);
  undoLog.area = nullptr;
}

void moveUndoNames(int (*newOffset)(int oldOffset)) {
  for (int record = 0; record < undoLog.count; record++) {
    if (!(headerAt(record).target & undoLayerTarget)) continue;
    uint8_t* at = undoLog.area + undoLog.starts[record] + headerSize;
    LayerPayload saved;
    memcpy(&saved, at, sizeof saved);
    if (saved.name < 0) continue;
    saved.name = newOffset(saved.name);
    memcpy(at, &saved, sizeof saved);
  }
}

}  // namespace zenlay
