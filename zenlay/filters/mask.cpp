// "Mask": a figure limits what is seen of the object.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/figure_mask.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/figures.h"

namespace zenlay {

namespace {

enum MaskCheck { checkFigure, checkInvert, checkOriginalSize };

constinit CheckColumns checks({
    {figureList, checkDropDown},
    {"Invert mask", 0},
    {"Match with original size", 0},
});
constexpr ExtraControl controls[] = {
    {checkFigure, extraFigure, offsetof(FigureMask, type), offsetof(FigureMask, name)},
};

}  // namespace

constinit EffectDefinition maskEffect = defineEffect({
    .flag = effectFilter | effectPreparatory,
    .name = "Mask",
    .tracks = figureMaskTracks,
    .checks = checks,
    .init = listFigures<checks>,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(FigureMask),
    .exdata_fields = figureMaskFields,
});

}  // namespace zenlay
