#include <algorithm>
#include <cstring>
#include <vector>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/project_block.h"
#include "zenlay/files/project_layout.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/draw.h"

namespace zenlay {
namespace {

/// Which scenes and layers hold objects, and where each object stands in the stored order.
struct Census {
  bool layerHolds[maxScenes * layersPerScene] = {};
  bool sceneHolds[maxScenes] = {};
  int layers = 0, scenes = 0;
  std::vector<int> position;  // by object index
};

Census takeCensus() {
  Census c;
  c.position.assign(static_cast<size_t>(objectCapacity), -1);
  for (int i = 0; i < objectCount; i++) {
    const ObjectRecord& o = *layerOrder[i];
    c.position[static_cast<size_t>(indexOf(&o))] = i;
    bool& layer = c.layerHolds[o.scene * layersPerScene + o.homeLayer];
    c.layers += !layer;
    c.scenes += !c.sceneHolds[o.scene];
    layer = c.sceneHolds[o.scene] = true;
  }
  return c;
}

int positionOf(const Census& c, int object) {
  return object >= 0 && object < objectCapacity ? c.position[static_cast<size_t>(object)] : -1;
}

int64_t blockSize(const Census& c) {
  int64_t size = sizeof(ProjectHeader) + int64_t{c.layers} * sizeof(StoredLayer) + c.scenes * sizeof(StoredScene) +
                 int64_t{movementScriptCount()} * scriptNameBytes + effectCount * sizeof(StoredEffect);
  for (int i = 0; i < objectCount; i++) size += sizeof(ObjectRecord) + layerOrder[i]->extraDataSize;
  return size;
}

template <size_t N>
void copyName(char (&to)[N], const char* from) {
  if (from) memcpy(to, from, std::min(strlen(from), N - 1));
}

ProjectHeader headerOf(const Census& c) {
  ProjectHeader h{};
  memcpy(h.magic, projectMagic, sizeof h.magic);
  h.effectCount = effectCount;
  h.objectCount = objectCount;
  h.zoomLevel = timelineView.zoomLevel;
  h.viewFrame = timelineView.leftFrame;
  h.currentObject = positionOf(c, currentObject);
  h.recordSize = sizeof(ObjectRecord);
  h.tracks = maxTracks;
  h.checks = maxChecks;
  h.slots = maxSlots;
  h.version = projectVersion;
  h.grid = preferences.grid;
  h.nearDistance = nearPercent;
  h.currentScene = currentScene;
  h.sceneCount = c.scenes;
  h.layerCount = c.layers;
  h.sceneSize = sizeof(StoredScene);
  h.layerSize = sizeof(StoredLayer);
  h.topLayer = timelineView.topLayer;
  h.scriptCount = movementScriptCount();
  return h;
}

StoredLayer storedLayer(int entry) {
  StoredLayer s{entry / layersPerScene, entry % layersPerScene, layerTable[entry].flags, {}};
  copyName(s.name, layerTable[entry].name);
  return s;
}

StoredScene storedScene(const Census& c, int scene) {
  SceneRecord view = sceneView(scene);
  StoredScene s{};
  s.scene = scene;
  s.flags = view.flags;
  copyName(s.name, view.name);
  s.width = view.width;
  s.height = view.height;
  s.length = view.length;
  s.currentFrame = view.currentFrame;
  s.zoomLevel = view.zoomLevel;
  s.viewFrame = view.viewFrame;
  s.currentObject = positionOf(c, view.currentObject);
  s.selectionStart = view.selectionStart;
  s.selectionEnd = view.selectionEnd;
  s.topLayer = view.topLayer;
  return s;
}

StoredEffect storedEffect(const EffectDefinition* d) {
  StoredEffect s{d->flag, d->track_count, d->check_count, extraDataBytes(d), {}, {}};
  copyName(s.name, d->name);
  copyName(s.category, d->category);
  return s;
}

}  // namespace

int saveProject(HostFilterRecord*, EditHandle, void* data, int32_t* size) {
  if (objectCount == 0) return 0;
  Census census = takeCensus();
  int64_t bytes = blockSize(census);
  if (bytes > INT32_MAX) return 0;
  *size = static_cast<int32_t>(bytes);
  if (!data) return 1;

  uint8_t* at = static_cast<uint8_t*>(data);
  auto put = [&](const void* from, size_t count) {
    memcpy(at, from, count);
    at += count;
  };
  auto putRecord = [&](const auto& record) { put(&record, sizeof record); };
  putRecord(headerOf(census));
  for (int entry = 0; entry < maxScenes * layersPerScene; entry++)
    if (census.layerHolds[entry]) putRecord(storedLayer(entry));
  for (int scene = 0; scene < maxScenes; scene++)
    if (census.sceneHolds[scene]) putRecord(storedScene(census, scene));
  for (int script = 0; script < movementScriptCount(); script++) {
    char name[scriptNameBytes] = {};
    copyName(name, movementScriptName(script));
    putRecord(name);
  }
  for (int effect = 0; effect < effectCount; effect++) putRecord(storedEffect(effectList[effect]));
  for (int i = 0; i < objectCount; i++) {
    const ObjectRecord& o = *layerOrder[i];
    putRecord(o);
    if (o.extraDataSize) put(extraDataBlockOf(indexOf(&o)), o.extraDataSize);
  }
  return 1;
}

}  // namespace zenlay
