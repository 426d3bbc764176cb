// "Resize": changes the number of pixels of the object image.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

namespace {

enum ResizeTrack { trackZoom, trackX, trackY };
enum ResizeCheck { checkNoInterpolation, checkDots };

constexpr TrackColumns tracks({
    zoomTrack("Zoom%"),
    zoomTrack("X"),
    zoomTrack("Y"),
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
