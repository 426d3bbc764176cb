// "Extended color setting": writes an animated colour into the colour field of the effect before it.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ExtendedColorTrack { trackR, trackG, trackB };
enum ExtendedColorCheck { checkHsv, checkStart, checkEnd };

constexpr TrackColumns tracks({
    {"R", 0, 0, 255, 1, 0, 255},
    {"G", 0, 0, 255, 1, 0, 255},
    {"B", 0, 0, 255, 1, 0, 255},
});
constexpr CheckColumns checks({
    {"RGB⇔HSV", 0},
    {"Starting color", checkButton},
    {"Ending color", checkButton},
});

}  // namespace

constinit EffectDefinition extendedColorSettingEffect = defineEffect({
    .flag = effectFilter | effectPreparatory,
    .name = "Extended color setting",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition extendedColorSettingObject = defineEffect({
    .flag = effectPreparatory,
    .name = "Extended color setting",
    .tracks = tracks,
    .checks = checks,
});

}  // namespace zenlay
