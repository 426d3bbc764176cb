// "Reversal": turns the picture upside down or left to right.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ReversalCheck { checkVertical, checkHorizontal };

constexpr CheckColumns checks({
    {"Vertical", 0},
    {"Horizontal", 0},
});

}  // namespace

constinit EffectDefinition reversalEffect = defineEffect({
    .flag = effectFilter | effectBasic,
    .name = "Reversal",
    .checks = checks,
});

constinit EffectDefinition reversalObject = defineEffect({
    .name = "Reversal",
    .checks = checks,
});

}  // namespace zenlay
