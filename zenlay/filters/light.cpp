// "Light": lights the object from in front or behind.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum LightTrack { trackStrength, trackDiffusion, trackRatio };
enum LightCheck { checkBacklight, checkColor };

struct LightData {
  uint8_t color[3];  // red, green, blue
  uint8_t reserved;
};
static_assert(sizeof(LightData) == 4);

constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 3000, 10, 0, 2000},
    {"Diffusion", 25, 0, 500, 1, 0, 200},
    {"Ratio", 0, -1000, 1000, 10, -1000, 1000},
});
constexpr CheckColumns checks({
    {"Backlight", 0},
    {"Color settings", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(LightData::color), "color"},
    {exdataReserved, sizeof(LightData::reserved), nullptr},
};
constexpr LightData defaults = {{255, 255, 255}, 0};

}  // namespace

constinit EffectDefinition lightEffect = defineEffect({
    .flag = effectFilter,
    .name = "Light",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(LightData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
