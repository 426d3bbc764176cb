// "Boundary blurring": blurs only near the edges of the object image.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

namespace {

enum BoundaryBlurringTrack { trackRange, trackAspect };
enum BoundaryBlurringCheck { checkTransparency };

constexpr TrackColumns tracks({
    {"Range", 5, 0, 2000, 1, 0, 300},
    aspectTrack(),
});
constexpr CheckColumns checks({
    {"Boundary blur of transparency", 0},
});

}  // namespace

constinit EffectDefinition boundaryBlurringEffect = defineEffect({
    .flag = effectFilter,
    .name = "Boundary blurring",
    .tracks = tracks,
    .checks = checks,
});

}  // namespace zenlay
