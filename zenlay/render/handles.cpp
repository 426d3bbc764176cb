#include "zenlay/render/handles.h"

#include <algorithm>
#include <cstring>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/binding.h"
#include "zenlay/render/targets.h"

namespace zenlay {

constinit PreviewHandle previewHandles[maxHandles]{};
constinit int previewHandleCount = 0;
constinit bool imageAidsHidden = false;
constinit DrawnObject drawnObjects[maxDrawnObjects]{};
constinit int drawnObjectCount = 0;

namespace {

bool isLocked(ObjectRef ref) {
  int object = objectOfRef(ref);
  if (!inUse(object)) return false;
  const ObjectRecord& o = objects[object];
  return layerTable[o.scene * layersPerScene + o.homeLayer].flags & layerLocked;
}

/// Position on the frame, pixels, of one end of the section.
void addPosition(const EffectDefinition* effect, const EffectProcessInfo* info, const int32_t* values, uint32_t kind) {
  auto at = [&](int slot) {
    int track = effect->coordinate_map[slot];
    return track < 0 ? 0 : values[track] / trackScale(effect, track);
  };
  recordHandle({.ref = effect->object_ref,
                .coordinate1 = effect->coordinate_map[slotX],
                .coordinate2 = effect->coordinate_map[slotY],
                .x = info->host.width / 2 + at(slotX),
                .y = info->host.height / 2 + at(slotY),
                .kind = kind});
}

void addBox(const EffectDefinition* effect, const int32_t corners[8]) {
  auto [left, right] = std::minmax({corners[0], corners[2], corners[4], corners[6]});
  auto [top, bottom] = std::minmax({corners[1], corners[3], corners[5], corners[7]});
  PreviewHandle box{.ref = effect->object_ref,
                    .coordinate1 = -1,
                    .coordinate2 = -1,
                    .x = left >> 12,
                    .y = top >> 12,
                    .w = (right - left) >> 12,
                    .h = (bottom - top) >> 12,
                    .kind = handleObject};
  std::copy_n(corners, 8, box.corners);
  recordHandle(box);
}

bool positionMoves(const EffectDefinition* effect) {
  if (!effect->coordinate_map || !effect->track_modes) return false;
  for (int slot : {slotX, slotY, slotZ}) {
    int track = effect->coordinate_map[slot];
    if (track >= 0 && (effect->track_modes[track] & modeNumber) != modeNone) return true;
  }
  return false;
}

}  // namespace

void clearHandles() { previewHandleCount = drawnObjectCount = 0; }

void recordHandle(const PreviewHandle& handle) {
  if (sceneDepth > 0 || previewHandleCount >= maxHandles || isLocked(handle.ref)) return;
  previewHandles[previewHandleCount++] = handle;
}

void recordPlacement(const EffectDefinition* effect, const EffectProcessInfo* info, const int32_t corners[8]) {
  if (info->depth > 0) return;
  bool shown = info->objectWidth > 0 && info->objectHeight > 0;
  if (shown && drawnObjectCount < maxDrawnObjects) {
    DrawnObject& drawn = drawnObjects[drawnObjectCount++];
    drawn.ref = effect->object_ref;
    std::copy_n(corners, 8, drawn.corners);
  }
  if (!(info->host.flags & processHandles)) return;
  if (shown) addBox(effect, corners);
  if (!positionMoves(effect)) return;
  addPosition(effect, info, effect->track_begin_values, handleStart);
  addPosition(effect, info, effect->track_end_values, handleEnd);
}

int coordinateTrack(ObjectRef ref, CoordinateSlot coordinate) {
  int object = objectOfRef(ref), slot = slotOfRef(ref);
  if (!inUse(object) || slot >= maxSlots) return -1;
  const EffectDefinition* effect = slotEffect(objects + object, slot);
  if (!effect || !effect->coordinate_map || effect->coordinate_map[coordinate] < 0) return -1;
  return objects[object].slots[slot].firstTrack + effect->coordinate_map[coordinate];
}

bool insideCorners(const int32_t corners[8], double x, double y) {
  constexpr double unit = 4096;
  int left = 0, right = 0;
  for (int i = 0; i < 4; i++) {
    const int32_t *a = corners + 2 * i, *b = corners + (2 * i + 2) % 8;
    double side = (b[0] - a[0]) / unit * (y - a[1] / unit) - (b[1] - a[1]) / unit * (x - a[0] / unit);
    if (side < 0) left++;
    if (side > 0) right++;
  }
  return (left == 0) != (right == 0);  // neither turns about a point: nothing is drawn there
}

}  // namespace zenlay
