// "Emission": light above a threshold spreads in six widening rounds.
#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum EmissionTrack { trackStrength, trackDiffusion, trackThreshold, trackDiffusionSpeed };
enum EmissionCheck { checkLightColor, checkFixedSize };

struct EmissionData {
  uint8_t color[3];  // red, green, blue
  uint8_t no_color;  // 1 = each pixel keeps its own colour
};
static_assert(sizeof(EmissionData) == 4);

constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 2000, 10, 0, 2000},
    {"Diffusion", 250, 10, 2000, 1, 10, 500},
    {"Threshold", 800, 0, 2000, 10, 0, 2000},
    {"vDiffuse", 0, 0, 60, 1, 0, 60},
});
constexpr CheckColumns checks({
    {"Set light color", checkButton},
    {"Fixed Size", 0},
});
constexpr CheckColumns objectChecks({
    {"Set light color", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(EmissionData::color), "color"},
    {exdataInteger, sizeof(EmissionData::no_color), "no_color"},
};
constexpr EmissionData defaults = {{255, 255, 255}, 1};
constexpr ExtraControl controls[] = {
    {checkLightColor, extraOptionalColor, offsetof(EmissionData, color)},
};

}  // namespace

constinit EffectDefinition emissionEffect = defineEffect({
    .flag = effectFilter,
    .name = "Emission",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(EmissionData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

constinit EffectDefinition emissionObject = defineEffect({
    .name = "Emission",
    .tracks = tracks,
    .checks = objectChecks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(EmissionData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
