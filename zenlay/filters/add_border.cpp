// "Add border": an outline around the object's shape.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum AddBorderTrack { trackSize, trackBlur };
enum AddBorderCheck { checkColor, checkPattern };

constexpr TrackColumns tracks({
    {"Size", 3, 0, 500, 1, 0, 100},
    {"Blur", 10, 0, 100, 1, 0, 100},
});
constexpr CheckColumns checks({
    {"Setting the border color", checkButton},
    {"Pattern image file", checkButton},
});
constexpr ExtraControl controls[] = {
    {checkColor, extraColor, offsetof(PatternChoice, color)},
    {checkPattern, extraPicture, offsetof(PatternChoice, file)},
};

}  // namespace

constinit EffectDefinition addBorderEffect = defineEffect({
    .flag = effectFilter | effectPreview,
    .name = "Add border",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(PatternChoice),
    .exdata_fields = patternChoiceFields,
});

}  // namespace zenlay
