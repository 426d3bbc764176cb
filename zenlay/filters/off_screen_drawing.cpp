// Off-screen drawing: places the object now, so that the effects behind it work on the frame-size picture.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"

namespace zenlay {

namespace {

int proc(EffectDefinition* effect, EffectProcessInfo* info) {
  if (effect->services->flattenObject(info)) return 1;
  effect->services->drawObject(info);
  return 0;
}

}  // namespace

constinit EffectDefinition offScreenDrawingEffect = defineEffect({
    .flag = effectFilter,
    .name = "Off-screen drawing",
    .proc = proc,
});

}  // namespace zenlay
