// "Resize": changes the number of pixels of the object image.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ResizeTrack { trackZoom, trackX, trackY };
enum ResizeCheck { checkNoInterpolation, checkDots };

constexpr TrackColumns tracks({
    {"Zoom%", 10000, 0, 500000, 100, 0, 80000},
    {"X", 10000, 0, 500000, 100, 0, 80000},
    {"Y", 10000, 0, 500000, 100, 0, 80000},
});
constexpr CheckColumns checks({
    {"No interpolation", 0},
    {"Specified size by the number of dots", 0},
});

}  // namespace

constinit EffectDefinition resizeEffect = defineEffect({
    .flag = effectFilter | effectBasic,
    .name = "Resize",
    .tracks = tracks,
    .checks = checks,
});

}  // namespace zenlay
