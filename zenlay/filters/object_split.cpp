// "Object split": draws the object as separate pieces.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ObjectSplitTrack { trackRows, trackColumns };

constexpr TrackColumns tracks({
    {"Hy div#", 10, 1, 100, 1, 1, 100},
    {"Vx div#", 10, 1, 100, 1, 1, 100},
});

}  // namespace

constinit EffectDefinition objectSplitEffect = defineEffect({
    .flag = effectFilter,
    .name = "Object split",
    .tracks = tracks,
});

}  // namespace zenlay
