// "Raster": displaces rows or columns along a travelling wave.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum RasterTrack { trackWidth, trackHeight, trackPeriod };
enum RasterCheck { checkVertical, checkRandom };

// Pixels; the period in hundredths of a second.
constexpr TrackColumns tracks({
    {"Width", 100, 0, 2000, 1, 0, 1000},
    {"Height", 100, 0, 2000, 1, 0, 1000},
    {"Period", 100, -4000, 4000, 100, -1000, 1000},
});
constexpr CheckColumns checks({
    {"Vertical raster", 0},
    {"Random amplitude", 0},
});

}  // namespace

constinit EffectDefinition rasterEffect = defineEffect({
    .flag = effectFilter,
    .name = "Raster",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition rasterObject = defineEffect({
    .name = "Raster",
    .tracks = tracks,
    .checks = checks,
});

}  // namespace zenlay
