// "Image tiling": repeats the picture in rows and columns that may scroll.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ImageTilingTrack { trackColumns, trackRows, trackSpeedX, trackSpeedY };
enum ImageTilingCheck { checkIndividual };

constexpr TrackColumns tracks({
    {"Hx#", 1, 1, 400, 1, 1, 100},
    {"Vy#", 1, 1, 400, 1, 1, 100},
    {"Speed X", 0, -10000, 10000, 10, -5000, 5000},
    {"Speed Y", 0, -10000, 10000, 10, -5000, 5000},
});
constexpr CheckColumns checks({
    {"Individual objects", 0},
});

}  // namespace

constinit EffectDefinition imageTilingEffect = defineEffect({
    .flag = effectFilter,
    .name = "Image tiling",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition imageTilingObject = defineEffect({
    .name = "Image tiling",
    .tracks = tracks,
});

}  // namespace zenlay
