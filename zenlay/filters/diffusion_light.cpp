// "Diffusion light": bright parts spread and are added back.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum DiffusionLightTrack { trackStrength, trackDiffusion };
enum DiffusionLightCheck { checkFixedSize };

constexpr TrackColumns tracks({
    {"Strength", 500, 0, 1000, 10, 0, 1000},
    {"Diffusion", 12, 0, 500, 1, 0, 200},
});
constexpr CheckColumns checks({
    {"Fixed Size", 0},
});

}  // namespace

constinit EffectDefinition diffusionLightEffect = defineEffect({
    .flag = effectFilter,
    .name = "Diffusion light",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition diffusionLightObject = defineEffect({
    .name = "Diffusion light",
    .tracks = tracks,
});

}  // namespace zenlay
