// "Displacement map": a figure displaces the picture's pixels.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/figure_mask.h"
#include "zenlay/filters/placement_tracks.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/figures.h"

namespace zenlay {

namespace {

enum DisplacementMapTrack {
  trackParam0,
  trackParam1,
  trackX,
  trackY,
  trackRotation,
  trackSize,
  trackAspect,
  trackBlur
};
enum DisplacementMapCheck { checkFigure, checkTransform, checkOriginalSize };

struct DisplacementMapData {
  int32_t type;       // index into figureList
  char name[256];     // as in FigureMask
  int32_t mode;       // FigureSceneBit
  int32_t transform;  // index into transformList
};
static_assert(sizeof(DisplacementMapData) == 268);

constexpr char transformList[] =
    "Move transform\0"
    "Scale transform\0"
    "Spin transform\0";

// param0 and param1 are the displacement's two components, tenths of what the transform moves by.
constexpr TrackColumns tracks({
    {"param0", 0, -40000, 40000, 10, -10000, 10000},
    {"param1", 0, -40000, 40000, 10, -10000, 10000},
    {"X", 0, -40000, 40000, 10, -20000, 20000, 1},
    {"Y", 0, -40000, 40000, 10, -20000, 20000, -1},
    angleTrack("Rotation"),
    {"Size", 200, 0, 4000, 1, 0, 1000},
    aspectTrack(),
    {"Blur", 5, 0, 1000, 1, 0, 300},
});
constinit CheckColumns checks({
    {figureList, checkDropDown},
    {transformList, checkDropDown},
    {"Match with original size", 0},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(DisplacementMapData::type), "type"},
    {exdataString, sizeof(DisplacementMapData::name), "name"},
    {exdataInteger, sizeof(DisplacementMapData::mode), "mode"},
    {exdataInteger, sizeof(DisplacementMapData::transform), "transform"},
};
constexpr ExtraControl controls[] = {
    {checkFigure, extraFigure, offsetof(DisplacementMapData, type), offsetof(DisplacementMapData, name)},
    {checkTransform, extraList, offsetof(DisplacementMapData, transform)},
};

}  // namespace

constinit EffectDefinition displacementMapEffect = defineEffect({
    .flag = effectFilter | effectPreparatory,
    .name = "Displacement map",
    .tracks = tracks,
    .checks = checks,
    .init = listFigures<checks>,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(DisplacementMapData),
    .exdata_fields = fields,
});

}  // namespace zenlay
