// "Mosaic": fills square blocks with their average.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum MosaicTrack { trackSize };
enum MosaicCheck { checkTileStyle };

constexpr TrackColumns tracks({
    {"Size", 12, 1, 2000, 1, 1, 200},
});
constexpr CheckColumns checks({
    {"Tile style", 0},
});

}  // namespace

constinit EffectDefinition mosaicEffect = defineEffect({
    .flag = effectFilter,
    .name = "Mosaic",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition mosaicObject = defineEffect({
    .name = "Mosaic",
    .tracks = tracks,
    .checks = checks,
});

}  // namespace zenlay
