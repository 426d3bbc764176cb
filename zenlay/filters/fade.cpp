// "Fade": the object fades in at its first frame and out toward its last.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum FadeTrack { trackIn, trackOut };

// Hundredths of a second.
constexpr TrackColumns tracks({
    {"In", 50, 0, 1000, 100, 0, 1000},
    {"Out", 50, 0, 1000, 100, 0, 1000},
});

}  // namespace

constinit EffectDefinition fadeEffect = defineEffect({
    .flag = effectFilter,
    .name = "Fade",
    .tracks = tracks,
});

}  // namespace zenlay
