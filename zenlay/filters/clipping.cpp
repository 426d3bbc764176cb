// "Clipping": cuts strips off the sides of the object image.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ClippingTrack { trackTop, trackBottom, trackLeft, trackRight };

constexpr TrackColumns tracks({
    {"Top", 0, 0, 4000, 1, 0, 1000},
    {"Bottom", 0, 0, 4000, 1, 0, 1000},
    {"Left", 0, 0, 4000, 1, 0, 1000},
    {"Right", 0, 0, 4000, 1, 0, 1000},
});

}  // namespace

constinit EffectDefinition clippingEffect = defineEffect({
    .flag = effectFilter,
    .name = "Clipping",
    .tracks = tracks,
});

}  // namespace zenlay
