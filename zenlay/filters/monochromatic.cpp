// "Monochromatic": moves every pixel toward one colour.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum MonochromaticTrack { trackStrength };
enum MonochromaticCheck { checkColor, checkKeepLuminance };

struct MonochromaticData {
  uint8_t color[3];  // red, green, blue
  uint8_t reserved;
};
static_assert(sizeof(MonochromaticData) == 4);

constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 1000, 10, 0, 1000},
});
constexpr CheckColumns checks({
    {"Color settings", checkButton},
    {"Keep luminance", 1},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(MonochromaticData::color), "color"},
    {exdataReserved, sizeof(MonochromaticData::reserved), nullptr},
};
constexpr MonochromaticData defaults = {{255, 255, 255}, 0};

}  // namespace

constinit EffectDefinition monochromaticEffect = defineEffect({
    .flag = effectFilter,
    .name = "Monochromatic",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(MonochromaticData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

constinit EffectDefinition monochromaticObject = defineEffect({
    .name = "Monochromatic",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(MonochromaticData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
