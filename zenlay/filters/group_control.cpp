// Group control: adds a common transform, and the effects that follow it in its own chain, to the objects it governs.
// The pipeline applies the transform where those objects are placed.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/filters/placement_tracks.h"
#include "zenlay/filters/shared_extra_data.h"

namespace zenlay {

namespace {

enum { x, y, z };
constexpr uint32_t boxHandle = 0x1;
constexpr int handleSize = 8;  // pixels

constexpr TrackColumns tracks({
    positionTrack("X", 1),
    positionTrack("Y", 1),
    positionTrack("Z", -2),
    zoomTrack("Zoom%"),
    angleTrack("X-Spin"),
    angleTrack("Y-Spin"),
    angleTrack("Z-Spin"),
});
constexpr CheckColumns checks({{"Affected by the upper group control", 0}, {"Apply to objects in the same group", 1}});
constexpr int32_t coordinates[coordinateSlots] = {0, 1, 2, 4, 5, 6, -1, -1, -1, 3, -1, -1};

/// On its own layer it only shows its handle. For an object it governs it lets the effects behind it run.
int proc(EffectDefinition* effect, EffectProcessInfo* info) {
  if (info->host.flags & processLaterTarget) return 1;
  if (info->host.flags & processHandles && !(info->host.flags & processNested)) {
    constexpr int16_t parameters[4] = {};
    effect->services->addHandle3d(effect->object_ref, x, y, info->host.width / 2 + effect->track[x] / 10,
                                  info->host.height / 2 + effect->track[y] / 10, handleSize, handleSize, parameters,
                                  boxHandle, effect->track[z]);
  }
  return 0;
}

}  // namespace

constinit EffectDefinition groupControl = defineEffect({
    .flag = effectControl | effectFilter | effectPreview,
    .name = "Group control",
    .tracks = tracks,
    .checks = checks,
    .proc = proc,
    .exdata_size = sizeof(LayerRange),
    .exdata_fields = layerRangeFields,
    .coordinate_map = coordinates,
    .cameraTarget = true,
});

}  // namespace zenlay
