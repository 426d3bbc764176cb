// "Volume fade": fades the sound in and out.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum VolumeFadeTrack { trackIn, trackOut };

// Hundredths of a second.
constexpr TrackColumns tracks({
    {"In", 50, 0, 1000, 100, 0, 1000},
    {"Out", 50, 0, 1000, 100, 0, 1000},
});

}  // namespace

constinit EffectDefinition volumeFadeEffect = defineEffect({
    .flag = effectFilter | effectAudio,
    .name = "Volume fade",
    .tracks = tracks,
});

}  // namespace zenlay
