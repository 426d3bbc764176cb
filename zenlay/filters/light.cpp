// "Light": lights the object from in front or behind.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum LightTrack { trackStrength, trackDiffusion, trackRatio };
enum LightCheck { checkBacklight, checkColor };

constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 3000, 10, 0, 2000},
    {"Diffusion", 25, 0, 500, 1, 0, 200},
    {"Ratio", 0, -1000, 1000, 10, -1000, 1000},
});
constexpr CheckColumns checks({
    {"Backlight", 0},
    {"Color settings", checkButton},
});
constexpr ExtraControl controls[] = {
    {checkColor, extraColor, offsetof(ColorChoice, color)},
};

}  // namespace

constinit EffectDefinition lightEffect = defineEffect({
    .flag = effectFilter,
    .name = "Light",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ColorChoice),
    .exdata_default = &whiteColor,
    .exdata_fields = colorChoiceFields,
});

}  // namespace zenlay
