// "Monochromatic": moves every pixel toward one colour.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"

namespace zenlay {

namespace {

enum MonochromaticTrack { trackStrength };
enum MonochromaticCheck { checkColor, checkKeepLuminance };

constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 1000, 10, 0, 1000},
});
constexpr CheckColumns checks({
    {"Color settings", checkButton},
    {"Keep luminance", 1},
});

}  // namespace

constinit EffectDefinition monochromaticEffect = defineEffect({
    .flag = effectFilter,
    .name = "Monochromatic",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(ColorChoice),
    .exdata_default = &whiteColor,
    .exdata_fields = colorChoiceFields,
});

constinit EffectDefinition monochromaticObject = defineEffect({
    .name = "Monochromatic",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(ColorChoice),
    .exdata_default = &whiteColor,
    .exdata_fields = colorChoiceFields,
});

}  // namespace zenlay
