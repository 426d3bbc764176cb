// "Sub-filter": lets the effects behind it act on a figure's area of the frame.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/figure_mask.h"

namespace zenlay {

namespace {

enum SubFilterCheck { checkFigure, checkInvert };

constexpr CheckColumns checks({
    {figureList, checkDropDown},
    {"Invert mask", 0},
});

}  // namespace

constinit EffectDefinition subFilterObject = defineEffect({
    .flag = effectPreview | effectTimelineOnly,
    .name = "Sub-filter",
    .tracks = figureMaskTracks,
    .checks = checks,
    .exdata_size = sizeof(FigureMask),
    .exdata_fields = figureMaskFields,
});

}  // namespace zenlay
