// "Shadow": a soft shadow of the object's shape beside it.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum ShadowTrack { trackX, trackY, trackThickness, trackDiffusion };
enum ShadowCheck { checkSeparate, checkColor, checkPattern };

constexpr TrackColumns tracks({
    {"X", -40, -1000, 1000, 1, -200, 200, 1},
    {"Y", 24, -1000, 1000, 1, -200, 200, -1},
    {"Thickness", 400, 0, 1000, 10, 0, 1000},
    {"Diffusion", 10, 0, 500, 1, 0, 200},
});
constexpr CheckColumns checks({
    {"Draw shadow as separate object", 0},
    {"Setting shadow color", checkButton},
    {"Pattern image file", checkButton},
});
constexpr ExtraControl controls[] = {
    {checkColor, extraColor, offsetof(PatternChoice, color)},
    {checkPattern, extraPicture, offsetof(PatternChoice, file)},
};

}  // namespace

constinit EffectDefinition shadowEffect = defineEffect({
    .flag = effectFilter | effectPreview,
    .name = "Shadow",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(PatternChoice),
    .exdata_fields = patternChoiceFields,
});

}  // namespace zenlay
