// "Mask": a figure limits what is seen of the object.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/figure_mask.h"
#include "zenlay/media/figures.h"

namespace zenlay {

namespace {

enum MaskCheck { checkFigure, checkInvert, checkOriginalSize };

constinit CheckColumns checks({
    {figureList, checkDropDown},
    {"Invert mask", 0},
    {"Match with original size", 0},
});

}  // namespace

constinit EffectDefinition maskEffect = defineEffect({
    .flag = effectFilter | effectPreparatory,
    .name = "Mask",
    .tracks = figureMaskTracks,
    .checks = checks,
    .init = listFigures<checks>,
    .exdata_size = sizeof(FigureMask),
    .exdata_fields = figureMaskFields,
});

}  // namespace zenlay
