// "Lens blur": blurs with a disc, bright parts spreading further.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum LensBlurTrack { trackRange, trackLightStrength };
enum LensBlurCheck { checkFixedSize };

constexpr TrackColumns tracks({
    {"Range", 5, 0, 1000, 1, 0, 300},
    {"Light Stre", 32, 0, 60, 1, 0, 60},
});
constexpr CheckColumns checks({
    {"Fixed Size", 1},
});

}  // namespace

constinit EffectDefinition lensBlurEffect = defineEffect({
    .flag = effectFilter,
    .name = "Lens blur",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition lensBlurObject = defineEffect({
    .name = "Lens blur",
    .tracks = tracks,
});

}  // namespace zenlay
