// "Vibration": shakes the picture.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum VibrationTrack { trackX, trackY, trackZ, trackPeriod };
enum VibrationCheck { checkRandom, checkComplex };

// Amplitudes in pixels, the period in frames.
constexpr TrackColumns tracks({
    {"X", 10, -500, 500, 1, -500, 500, 1},
    {"Y", 10, -500, 500, 1, -500, 500, 1},
    {"Z", 0, -500, 500, 1, -500, 500, -2},
    {"Period", 1, 1, 100, 1, 1, 100},
});
constexpr CheckColumns checks({
    {"Change the strength at random", 0},
    {"Complex vibration", 0},
});

}  // namespace

constinit EffectDefinition vibrationEffect = defineEffect({
    .flag = effectFilter,
    .name = "Vibration",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition vibrationObject = defineEffect({
    .name = "Vibration",
    .tracks = tracks,
    .checks = checks,
});

}  // namespace zenlay
