// "Region expansion": adds strips to the sides of the object image.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum RegionExpansionTrack { trackTop, trackBottom, trackLeft, trackRight };
enum RegionExpansionCheck { checkFill };

constexpr TrackColumns tracks({
    {"Top", 0, 0, 4000, 1, 0, 1000},
    {"Bottom", 0, 0, 4000, 1, 0, 1000},
    {"Left", 0, 0, 4000, 1, 0, 1000},
    {"Right", 0, 0, 4000, 1, 0, 1000},
});
constexpr CheckColumns checks({
    {"Fill", 0},
});

}  // namespace

constinit EffectDefinition regionExpansionEffect = defineEffect({
    .flag = effectFilter | effectBasic,
    .name = "Region expansion",
    .tracks = tracks,
    .checks = checks,
});

}  // namespace zenlay
