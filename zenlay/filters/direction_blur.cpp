// "Direction blur": blurs along a line.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum DirectionBlurTrack { trackRange, trackAngle };
enum DirectionBlurCheck { checkFixedSize };

// The angle in tenths of a degree.
constexpr TrackColumns tracks({
    {"Range", 20, 0, 500, 1, 0, 300},
    {"Angle", 500, -36000, 36000, 10, -3600, 3600},
});
constexpr CheckColumns checks({
    {"Fixed Size", 0},
});

}  // namespace

constinit EffectDefinition directionBlurEffect = defineEffect({
    .flag = effectFilter,
    .name = "Direction blur",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition directionBlurObject = defineEffect({
    .flag = effectPreview,
    .name = "Direction blur",
    .tracks = tracks,
});

}  // namespace zenlay
