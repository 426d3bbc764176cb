#include "zenlay/render/handles.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/binding.h"
#include "zenlay/render/placement.h"
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

/// Whether a track keeps its start value: it would jump to the end value with a next section, and there is none.
bool jumpsNowhere(const EffectDefinition* effect, int track) {
  return (effect->track_modes[track] & modeNumber) == modeTeleport && nextSection(objectOfRef(effect->object_ref)) < 0;
}

/// What a track has at one end of its section; of a movement whose values are a range, that end of the range.
int32_t valueAtEnd(const EffectDefinition* effect, const EffectProcessInfo* info, int track, bool end) {
  const int32_t first = effect->track_begin_values[track], last = effect->track_end_values[track];
  switch (effect->track_modes[track] & modeNumber) {
    case modeNone:
      return first;
    case modeTeleport:
      return end && !jumpsNowhere(effect, track) ? last : first;
    case modeAmount: {
      const int64_t chainStart = int64_t{info->absoluteFrame} - info->host.frameNumber;
      const int64_t value = first + last * ((end ? effect->frame_end : effect->frame_begin) - chainStart);
      return static_cast<int32_t>(std::clamp<int64_t>(value, INT32_MIN, INT32_MAX));
    }
    default:
      return end ? last : first;
  }
}

HandleAxes axesAt(const EffectDefinition* effect, const EffectProcessInfo* info, const int32_t (&position)[3]) {
  constexpr int step = 16;  // pixels
  const ScenePoint here = anchorAt(effect, info, position);
  HandleAxes axes;
  for (int slot : {slotX, slotY}) {
    const int track = effect->coordinate_map[slot];
    if (track < 0) continue;
    int32_t moved[3] = {position[0], position[1], position[2]};
    moved[slot] += step * trackScale(effect, track);
    const ScenePoint there = anchorAt(effect, info, moved);
    double* axis = slot == slotX ? axes.across : axes.down;
    axis[0] = (there.x - here.x) / step;
    axis[1] = (there.y - here.y) / step;
  }
  return axes;
}

void addPosition(const EffectDefinition* effect, const EffectProcessInfo* info, uint32_t kind) {
  int32_t position[3]{};
  for (int slot : {slotX, slotY, slotZ})
    if (int track = effect->coordinate_map[slot]; track >= 0)
      position[slot] = valueAtEnd(effect, info, track, kind == handleEnd);
  const ScenePoint at = anchorAt(effect, info, position);
  recordHandle({.ref = effect->object_ref,
                .coordinate1 = effect->coordinate_map[slotX],
                .coordinate2 = effect->coordinate_map[slotY],
                .x = static_cast<int32_t>(std::lround(at.x)),
                .y = static_cast<int32_t>(std::lround(at.y)),
                .kind = kind,
                .axes = axesAt(effect, info, position)});
}

void addBox(const EffectDefinition* effect, const EffectProcessInfo* info, const int32_t corners[8]) {
  int32_t position[3]{};
  if (effect->coordinate_map)
    for (int slot : {slotX, slotY, slotZ})
      if (int track = effect->coordinate_map[slot]; track >= 0) position[slot] = effect->track[track];
  auto size = [](int32_t pixels) { return static_cast<int16_t>(std::min<int32_t>(pixels, INT16_MAX)); };
  auto [left, right] = std::minmax({corners[0], corners[2], corners[4], corners[6]});
  auto [top, bottom] = std::minmax({corners[1], corners[3], corners[5], corners[7]});
  PreviewHandle box{.ref = effect->object_ref,
                    .coordinate1 = -1,
                    .coordinate2 = -1,
                    .x = left >> 12,
                    .y = top >> 12,
                    .w = (right - left) >> 12,
                    .h = (bottom - top) >> 12,
                    .parameters = {size(info->objectWidth), size(info->objectHeight)},
                    .kind = handleObject};
  std::copy_n(corners, 8, box.corners);
  if (effect->coordinate_map) box.axes = axesAt(effect, info, position);
  recordHandle(box);
}

bool positionMoves(const EffectDefinition* effect) {
  if (!effect->coordinate_map || !effect->track_modes) return false;
  for (int slot : {slotX, slotY, slotZ}) {
    int track = effect->coordinate_map[slot];
    if (track >= 0 && (effect->track_modes[track] & modeNumber) != modeNone && !jumpsNowhere(effect, track))
      return true;
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
  if (shown) addBox(effect, info, corners);
  if (!positionMoves(effect)) return;
  addPosition(effect, info, handleStart);
  addPosition(effect, info, handleEnd);
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
