// Camera control options: how the object faces the camera, and whether it throws a shadow.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"

namespace zenlay {

namespace {

constexpr CheckColumns checks({
    {"Face the camera", 0},
    {"Face the camera (Hx and Vy only)", 0},
    {"Face the camera (Hx only)", 0},
    {"Exclude from shadow", 0},
});
/// In the order of the checks.
constexpr uint32_t states[] = {stateFaceCamera, stateFaceCameraBoth, stateFaceCameraHorizontal, stateNoShadow};

int proc(EffectDefinition* effect, EffectProcessInfo* info) {
  for (int i = 0; i < effect->check_count; i++)
    if (effect->check[i]) info->state |= states[i];
  return 1;
}

}  // namespace

constinit EffectDefinition cameraControlOptionsEffect = defineEffect({
    .flag = effectFilter,
    .name = "Camera control options",
    .checks = checks,
    .proc = proc,
});

}  // namespace zenlay
