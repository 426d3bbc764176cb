// "Monaural": mixes both channels into one.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum MonauralTrack { trackRatio };

constexpr TrackColumns tracks({
    {"Ratio", 0, -1000, 1000, 10, -1000, 1000},
});

}  // namespace

constinit EffectDefinition monauralEffect = defineEffect({
    .flag = effectFilter | effectAudio,
    .name = "Monaural",
    .tracks = tracks,
});

}  // namespace zenlay
