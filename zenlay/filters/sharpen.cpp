// "Sharpen": unsharp masking.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum SharpenTrack { trackStrength, trackRange };

constexpr TrackColumns tracks({
    {"Strength", 500, 0, 8000, 10, 0, 2000},
    {"Range", 5, 0, 100, 1, 0, 100},
});

}  // namespace

constinit EffectDefinition sharpenEffect = defineEffect({
    .flag = effectFilter,
    .name = "Sharpen",
    .tracks = tracks,
});

}  // namespace zenlay
