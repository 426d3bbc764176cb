// "Radial Blur": blurs toward a centre.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum RadialBlurTrack { trackRange, trackX, trackY };
enum RadialBlurCheck { checkFixedSize };

constexpr TrackColumns tracks({
    {"Range", 200, 0, 750, 10, 0, 750},
    {"X", 0, -2000, 2000, 1, -2000, 2000, 1},
    {"Y", 0, -2000, 2000, 1, -2000, 2000, -1},
});
constexpr TrackColumns objectTracks({
    {"Range", 200, 0, 1000, 10, 0, 1000},
    {"X", 0, -2000, 2000, 1, -2000, 2000, 1},
    {"Y", 0, -2000, 2000, 1, -2000, 2000, -1},
});
constexpr CheckColumns checks({
    {"Fixed Size", 0},
});

}  // namespace

constinit EffectDefinition radialBlurEffect = defineEffect({
    .flag = effectFilter,
    .name = "Radial Blur",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition radialBlurObject = defineEffect({
    .flag = effectPreview,
    .name = "Radial Blur",
    .tracks = objectTracks,
});

}  // namespace zenlay
