#include "zenlay/render/live_objects.h"

#include <algorithm>
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/render/binding.h"
#include "zenlay/render/group_control.h"
#include "zenlay/render/time_control.h"

namespace zenlay {

namespace {

/// Entries of layerOrder that hold a layer, for scenes that are not the current one.
LayerRange foreignRange(int scene, int layer) {
  ObjectRecord** first = layerOrder + sceneObjectCount;
  ObjectRecord** last = layerOrder + objectCount;
  auto before = [=](const ObjectRecord* o, int layer) {
    return o->scene != scene ? o->scene < scene : o->homeLayer < layer;
  };
  ObjectRecord** low = std::lower_bound(first, last, layer, before);
  if (low == last || (*low)->scene != scene || (*low)->homeLayer != layer) return {0, -1};
  ObjectRecord** high = std::lower_bound(low, last, layer + 1, before);
  return {static_cast<int>(low - layerOrder), static_cast<int>(high - layerOrder) - 1};
}

/// Last entry of a layer that starts at or before the frame, range.first - 1 when there is none. `guess` is any number;
/// from frame to frame the entry mostly stays or is the next one, and a right guess spares the search.
int lastStarted(const LayerRange& range, int frame, int guess) {
  for (int i : {guess, guess + 1}) {
    if (i < range.first - 1 || i > range.last) continue;
    bool started = i < range.first || layerOrder[i]->start <= frame;
    if (started && (i == range.last || layerOrder[i + 1]->start > frame)) return i;
  }
  ObjectRecord** after = std::upper_bound(layerOrder + range.first, layerOrder + range.last + 1, frame,
                                          [](int frame, const ObjectRecord* o) { return frame < o->start; });
  return static_cast<int>(after - layerOrder) - 1;
}

/// The section of the object's chain that holds `time` (hundredths of a frame).
ObjectRecord* sectionHolding(ObjectRecord* object, int64_t time) {
  int next;
  while ((int64_t{object->end} + 1) * 100 < time && (next = nextSection(indexOf(object))) >= 0) object = objects + next;
  while (int64_t{object->start} * 100 > time && (next = previousSection(indexOf(object))) >= 0) object = objects + next;
  return object;
}

/// The group control that governs an object on `layer`: the nearest above that reaches the layer and takes the object.
ObjectRecord* governingGroup(ObjectRecord* const* controls, int count, const ObjectRecord* object, int layer) {
  for (int i = count - 1; i >= 0; i--) {
    const ObjectRecord* control = controls[i];
    if (governedEnd(control, control->homeLayer) > layer && groupTakes(control, object)) return controls[i];
  }
  return nullptr;
}

void markClipping(RenderLevel* level, const LayerRecord* sceneLayers, int limit) {
  int above = -1;  // nearest drawable object on an earlier layer
  for (int layer = 0; layer < limit; layer++) {
    const ObjectRecord* object = level->live[layer];
    if (!object) continue;
    if (object->flags & objectDrawn) {
      if (sceneLayers[layer].flags & layerClipAbove || object->flags & objectClipAbove) {
        if (above >= 0) level->clipFlags[above] |= clipSource;
        level->clipFlags[layer] |= clipped;
        level->info.clipFlags = level->clipFlags;
      }
      above = layer;
    } else if (!(object->flags & (objectFilterEffect | objectControl))) {
      above = -1;
    }
  }
}

}  // namespace

ObjectRecord* liveObject(int scene, int layer, int frame) {
  static constinit int lastFound[layersPerScene]{};
  bool current = scene == currentScene;
  LayerRange range = current ? layerRanges[layer] : foreignRange(scene, layer);
  if (range.first > range.last) return nullptr;
  int none = range.first - 1;
  int at = lastStarted(range, frame, current ? lastFound[layer] : none);
  if (current) lastFound[layer] = at;
  return at != none && layerOrder[at]->end >= frame ? layerOrder[at] : nullptr;
}

bool isFilterObject(const ObjectRecord* object) {
  return (object->flags & (objectFilterEffect | objectControl)) == objectFilterEffect;
}

bool slotIsEnabled(const ObjectRecord* object, int slot) { return slotFlagsOf(indexOf(object), slot) & slotEnabled; }

int governedEnd(const ObjectRecord* control, int layer) {
  int32_t range = 0;
  const uint8_t* data = control->flags & objectLayerRange ? extraDataOf(indexOf(control), 0) : nullptr;
  if (data) memcpy(&range, data, sizeof range);
  return range <= 0 || range >= layersPerScene ? layersPerScene : std::min(layer + 1 + range, layersPerScene);
}

void collectLayers(RenderLevel* level, int scene, int sceneFrame, int sceneSubFrame, int limit) {
  EffectProcessInfo& info = level->info;
  const LayerRecord* sceneLayers = layerTable + scene * layersPerScene;
  memset(level->live, 0, sizeof level->live);
  memset(level->groups, 0, sizeof level->groups);
  memset(level->clipFlags, 0, sizeof level->clipFlags);
  memset(level->layerTime, 0, sizeof level->layerTime);
  info.layerTime = level->layerTime;
  info.clipFlags = nullptr;
  info.layerObjects = nullptr;
  info.layerGroups = nullptr;
  level->previousWanted = false;

  int frame = sceneFrame, subFrame = sceneSubFrame, timeEnd = 0;
  ObjectRecord* groupControls[layersPerScene];
  int groupCount = 0;
  for (int layer = 0; layer < limit; layer++) {
    if (layer == timeEnd) frame = sceneFrame, subFrame = sceneSubFrame;
    if (sceneLayers[layer].flags & layerHidden) continue;
    ObjectRecord* object = liveObject(scene, layer, frame);
    ObjectRecord* control = frame == sceneFrame ? object : liveObject(scene, layer, sceneFrame);
    int time = subFrame + (frame + info.frameOffset) * 100;
    if (control && slotEffect(control, 0) == &timeControl && slotIsEnabled(control, 0)) {
      int position = controlledTime(control, sceneFrame, sceneSubFrame);
      frame = position / 100;
      subFrame = position % 100;
      timeEnd = governedEnd(control, layer);
    }
    if (!object || object->flags & objectAudio) continue;
    object = sectionHolding(object, time);
    level->live[layer] = object;
    level->layerTime[layer] = time;
    if (isFilterObject(object)) info.layerObjects = level->live;
    if (slotEffect(object, 0) == &previousObjectMedia) level->previousWanted = true;
    level->groups[layer] = governingGroup(groupControls, groupCount, object, layer);
    if (slotEffect(object, 0) == &groupControl && slotIsEnabled(object, 0)) {
      if (!affectedByUpperGroup(object)) level->groups[layer] = nullptr;
      groupControls[groupCount++] = object;
      info.layerGroups = level->groups;
    }
  }
  markClipping(level, sceneLayers, limit);
}

}  // namespace zenlay
