// "Shadow": a soft shadow of the object's shape beside it.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ShadowTrack { trackX, trackY, trackThickness, trackDiffusion };
enum ShadowCheck { checkSeparate, checkColor, checkPattern };

struct ShadowData {
  uint8_t color[3];  // red, green, blue
  uint8_t reserved;
  char file[256];  // pattern picture
};
static_assert(sizeof(ShadowData) == 260);

constexpr TrackColumns tracks({
    {"X", -40, -1000, 1000, 1, -200, 200, 1},
    {"Y", 24, -1000, 1000, 1, -200, 200, -1},
    {"Thickness", 400, 0, 1000, 10, 0, 1000},
    {"Diffusion", 10, 0, 500, 1, 0, 50},
});
constexpr CheckColumns checks({
    {"Draw shadow as separate object", 0},
    {"Setting shadow color", checkButton},
    {"Pattern image file", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(ShadowData::color), "color"},
    {exdataReserved, sizeof(ShadowData::reserved), nullptr},
    {exdataString, sizeof(ShadowData::file), "file"},
};

}  // namespace

constinit EffectDefinition shadowEffect = defineEffect({
    .flag = effectFilter | effectPreview,
    .name = "Shadow",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(ShadowData),
    .exdata_fields = fields,
});

}  // namespace zenlay
