// "Color Key": what is close to a picked colour becomes transparent.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum ColorKeyTrack { trackLuminance, trackDifference, trackEdge };
enum ColorKeyCheck { checkPickColor };

constexpr TrackColumns tracks({
    {"~Luminance", 0, 0, 4096, 1, 0, 4096},
    {"~DColor", 0, 0, 4096, 1, 0, 4096},
    {"dEdge", 0, 0, 5, 1, 0, 5},
});
constexpr CheckColumns checks({
    {"Get key color", checkButton},
});
constexpr ExtraControl controls[] = {
    {checkPickColor, extraKeyColor, offsetof(KeyColor, color_yc)},
};

}  // namespace

constinit EffectDefinition colorKeyEffect = defineEffect({
    .flag = effectFilter,
    .name = "Color Key",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(KeyColor),
    .exdata_fields = keyColorFields,
});

}  // namespace zenlay
