// Group control: adds a common transform, and the effects that follow it in its own chain, to the objects it governs.
// The pipeline applies the transform where those objects are placed.
#include "zenlay/effects/effect_services.h"

namespace zenlay {

namespace {

enum { x, y, z };
constexpr uint32_t boxHandle = 0x1;
constexpr int handleSize = 8;  // pixels

struct Range {
  int32_t layers;  // governed below, 0 = all
  uint8_t reserved[16];
};
constexpr ExdataField fields[] = {{exdataInteger, 4, "range"}, {exdataReserved, 16, nullptr}};
static_assert(sizeof(Range) == 20);

constexpr TrackRow trackRows[] = {
    {"X", 0, -999999, 999999, 10, -20000, 20000, 1},    {"Y", 0, -999999, 999999, 10, -20000, 20000, 1},
    {"Z", 0, -999999, 999999, 10, -20000, 20000, -2},   {"Zoom%", 10000, 0, 500000, 100, 0, 80000},
    {"X-Spin", 0, -360000, 360000, 100, -36000, 36000}, {"Y-Spin", 0, -360000, 360000, 100, -36000, 36000},
    {"Z-Spin", 0, -360000, 360000, 100, -36000, 36000},
};
constexpr TrackColumns tracks(trackRows);
constexpr CheckRow checkRows[] = {{"Affected by the upper group control", 0},
                                  {"Apply to objects in the same group", 1}};
constexpr CheckColumns checks(checkRows);
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

extern EffectDefinition groupControl;
constinit EffectDefinition groupControl = defineEffect({
    .flag = effectControl | effectFilter | effectPreview,
    .name = "Group control",
    .tracks = tracks,
    .checks = checks,
    .proc = proc,
    .exdata_size = sizeof(Range),
    .exdata_fields = fields,
    .coordinate_map = coordinates,
    .cameraTarget = true,
});

}  // namespace zenlay
