// "Edge extraction": keeps the edges of luminance or of transparency.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum EdgeExtractionTrack { trackStrength, trackThreshold };
enum EdgeExtractionCheck { checkLuminance, checkTransparency, checkColor };

constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 10000, 10, 0, 2000},
    {"Threshold", 0, -10000, 10000, 100, -10000, 10000},
});
constexpr CheckColumns checks({
    {"Extract luminance edge", 1},
    {"Extract transparency edge", 0},
    {"Color settings", checkButton},
});
constexpr ExtraControl controls[] = {
    {checkColor, extraColor, offsetof(ColorChoice, color)},
};

}  // namespace

constinit EffectDefinition edgeExtractionEffect = defineEffect({
    .flag = effectFilter,
    .name = "Edge extraction",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ColorChoice),
    .exdata_default = &whiteColor,
    .exdata_fields = colorChoiceFields,
});

}  // namespace zenlay
