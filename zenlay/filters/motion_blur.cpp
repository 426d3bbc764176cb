// "Motion blur": blurs across time.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum MotionBlurTrack { trackInterval, trackResolution };
enum MotionBlurCheck { checkAfterimage, checkOffScreen, checkExport };
enum MotionBlurObjectCheck { objectAfterimage, objectExport };

constexpr TrackColumns tracks({
    {"Interval", 1, 0, 100, 1, 0, 100},
    {"Resolution", 10, 1, 25, 1, 1, 25},
});
constexpr CheckColumns checks({
    {"Afterimage", 0},
    {"Off-screen drawing", 0},
    {"Increase resolution during export", 0},
});
constexpr CheckColumns objectChecks({
    {"Afterimage", 0},
    {"Increase resolution during export", 0},
});

}  // namespace

constinit EffectDefinition motionBlurEffect = defineEffect({
    .flag = effectFilter,
    .name = "Motion blur",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition motionBlurObject = defineEffect({
    .name = "Motion blur",
    .tracks = tracks,
    .checks = objectChecks,
});

}  // namespace zenlay
