// "Ripple": circular waves leave a centre.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum RippleTrack { trackX, trackY, trackWidth, trackHeight, trackSpeed };
enum RippleCheck { checkAdvanced };

// The centre in pixels; width, height and speed (a second) in tenths of a pixel.
constexpr TrackColumns tracks({
    {"Center X", 0, -4000, 4000, 1, -2000, 2000, 1},
    {"Center Y", 0, -4000, 4000, 1, -2000, 2000, -1},
    {"Width", 300, 10, 4000, 10, 10, 1000},
    {"Height", 150, -4000, 4000, 10, -1000, 1000},
    {"Speed", 1500, -20000, 20000, 10, -5000, 5000},
});
constexpr CheckColumns checks({
    {"Advanced Setting", checkButton},
});

}  // namespace

constinit EffectDefinition rippleEffect = defineEffect({
    .flag = effectFilter,
    .name = "Ripple",
    .tracks = tracks,
    .checks = checks,
});

}  // namespace zenlay
