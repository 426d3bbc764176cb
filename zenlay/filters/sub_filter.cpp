// "Sub-filter": lets the effects behind it act on a figure's area of the frame.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/figure_mask.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/figures.h"

namespace zenlay {

namespace {

enum SubFilterCheck { checkFigure, checkInvert };

constinit CheckColumns checks({
    {figureList, checkDropDown},
    {"Invert mask", 0},
});
constexpr ExtraControl controls[] = {
    {checkFigure, extraFigure, offsetof(FigureMask, type), offsetof(FigureMask, name)},
};

}  // namespace

constinit EffectDefinition subFilterObject = defineEffect({
    .flag = effectPreview | effectTimelineOnly,
    .name = "Sub-filter",
    .tracks = figureMaskTracks,
    .checks = checks,
    .init = listFigures<checks>,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(FigureMask),
    .exdata_fields = figureMaskFields,
});

}  // namespace zenlay
