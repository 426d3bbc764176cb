// "Polar coordinate conversion": bends the picture into a ring, with a whirlpool.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum PolarTrack { trackWidth, trackZoom, trackRotation, trackWhirlpool };

// Rotation in tenths of a degree, the whirlpool in hundredths of a turn.
constexpr TrackColumns tracks({
    {"Center width", 0, 0, 2000, 1, 0, 1000},
    {"Zoom%", 1000, 1000, 8000, 10, 1000, 8000},
    {"Rotation", 0, -36000, 36000, 10, -3600, 3600},
    {"Whirlpool", 0, -800, 800, 100, -800, 800},
});

}  // namespace

constinit EffectDefinition polarCoordinateConversionEffect = defineEffect({
    .flag = effectFilter,
    .name = "Polar coordinate conversion",
    .tracks = tracks,
});

}  // namespace zenlay
