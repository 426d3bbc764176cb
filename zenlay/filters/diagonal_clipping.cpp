// "Diagonal clipping": cuts the object along a line or a strip.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum DiagonalClippingTrack { trackX, trackY, trackAngle, trackBlur, trackWidth };

// Pixels; the angle in tenths of a degree.
constexpr TrackColumns tracks({
    {"Center X", 0, -2000, 2000, 1, -2000, 2000, 1},
    {"Center Y", 0, -2000, 2000, 1, -2000, 2000, -1},
    {"Angle", 0, -36000, 36000, 10, -3600, 3600},
    {"Blur", 1, 0, 2000, 1, 0, 300},
    {"Width", 0, -2000, 2000, 1, -2000, 2000},
});

}  // namespace

constinit EffectDefinition diagonalClippingEffect = defineEffect({
    .flag = effectFilter,
    .name = "Diagonal clipping",
    .tracks = tracks,
});

}  // namespace zenlay
