// "Monochromatic": moves every pixel toward one colour.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

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
constexpr ExtraControl controls[] = {
    {checkColor, extraColor, offsetof(ColorChoice, color)},
};

}  // namespace

constinit EffectDefinition monochromaticEffect = defineEffect({
    .flag = effectFilter,
    .name = "Monochromatic",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ColorChoice),
    .exdata_default = &whiteColor,
    .exdata_fields = colorChoiceFields,
});

constinit EffectDefinition monochromaticObject = defineEffect({
    .name = "Monochromatic",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ColorChoice),
    .exdata_default = &whiteColor,
    .exdata_fields = colorChoiceFields,
});

}  // namespace zenlay
