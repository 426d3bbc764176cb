// "Bevel": shades a border of the object as if lit from an angle.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum BevelTrack { trackWidth, trackHeight, trackAngle };

// Height in hundredths, the angle in tenths of a degree.
constexpr TrackColumns tracks({
    {"Width", 4, 0, 100, 1, 0, 100},
    {"Height", 100, 0, 300, 100, 0, 300},
    {"Angle", -450, -3600, 3600, 10, -3600, 3600},
});

}  // namespace

constinit EffectDefinition bevelEffect = defineEffect({
    .flag = effectFilter,
    .name = "Bevel",
    .tracks = tracks,
});

}  // namespace zenlay
