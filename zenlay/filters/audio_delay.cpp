// "Audio delay": a single echo.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum AudioDelayTrack { trackStrength, trackDelay };

constexpr TrackColumns tracks({
    {"Strength", 500, 0, 1000, 10, 0, 1000},
    {"Delay (ms)", 100, 0, 1000, 1, 0, 1000},
});

}  // namespace

constinit EffectDefinition audioDelayEffect = defineEffect({
    .flag = effectFilter | effectAudio,
    .name = "Audio delay",
    .tracks = tracks,
});

constinit EffectDefinition audioDelayObject = defineEffect({
    .flag = effectAudio,
    .name = "Audio delay",
    .tracks = tracks,
});

}  // namespace zenlay
