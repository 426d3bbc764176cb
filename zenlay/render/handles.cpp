#include "zenlay/render/handles.h"

#include <algorithm>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/targets.h"

namespace zenlay {

constinit PreviewHandle previewHandles[maxHandles]{};
constinit int previewHandleCount = 0;

namespace {

bool isLocked(ObjectRef ref) {
  int object = objectOfRef(ref);
  if (object < 0 || object >= objectCapacity) return false;
  const ObjectRecord& o = objects[object];
  return layerTable[o.scene * layersPerScene + o.homeLayer].flags & layerLocked;
}

/// Position on the frame, pixels, of one end of the section.
void addPosition(const EffectDefinition* effect, const EffectProcessInfo* info, const int32_t* values, uint32_t kind) {
  auto at = [&](int slot) {
    int track = effect->coordinate_map[slot];
    return track < 0 ? 0 : values[track] / trackScale(effect, track);
  };
  recordHandle({effect->object_ref,
                effect->coordinate_map[slotX],
                effect->coordinate_map[slotY],
                info->host.width / 2 + at(slotX),
                info->host.height / 2 + at(slotY),
                0,
                0,
                {},
                kind,
                0});
}

}  // namespace

void clearHandles() { previewHandleCount = 0; }

void recordHandle(const PreviewHandle& handle) {
  if (sceneDepth > 0 || previewHandleCount >= maxHandles || isLocked(handle.ref)) return;
  previewHandles[previewHandleCount++] = handle;
}

void addPlacementHandles(const EffectDefinition* effect, const EffectProcessInfo* info, const int32_t corners[8]) {
  auto [left, right] = std::minmax({corners[0], corners[2], corners[4], corners[6]});
  auto [top, bottom] = std::minmax({corners[1], corners[3], corners[5], corners[7]});
  if (info->objectWidth > 0 && info->objectHeight > 0)
    recordHandle({effect->object_ref,
                  -1,
                  -1,
                  left >> 12,
                  top >> 12,
                  (right - left) >> 12,
                  (bottom - top) >> 12,
                  {},
                  handleObject,
                  0});
  if (!effect->coordinate_map || !effect->track_modes) return;
  bool moves = false;
  for (int slot : {slotX, slotY, slotZ}) {
    int track = effect->coordinate_map[slot];
    if (track >= 0 && (effect->track_modes[track] & modeNumber) != modeNone) moves = true;
  }
  if (!moves) return;
  addPosition(effect, info, effect->track_begin_values, handleStart);
  addPosition(effect, info, effect->track_end_values, handleEnd);
}

}  // namespace zenlay
