// "Luminance Key": dark or bright parts, or both, become transparent.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum LuminanceKeyTrack { trackReference, trackBlur };
enum LuminanceKeyCheck { checkKey };

constexpr char keyList[] =
    "Through Dark\0"
    "Through Bright\0"
    "Through Contrast\0"
    "Through Contrast(No Blur)\0";

// Luma units, 4096 = white.
constexpr TrackColumns tracks({
    {"RefLuminance", 2048, -4096, 8192, 1, 0, 4096},
    {"Blur", 512, 0, 4096, 1, 0, 4096},
});
constexpr CheckColumns checks({
    {keyList, checkDropDown},
});
constexpr ExtraControl controls[] = {
    {checkKey, extraList, offsetof(ListChoice, type)},
};

}  // namespace

constinit EffectDefinition luminanceKeyEffect = defineEffect({
    .flag = effectFilter,
    .name = "Luminance Key",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ListChoice),
    .exdata_fields = listChoiceFields,
});

}  // namespace zenlay
