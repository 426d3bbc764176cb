// "Color shift": moves two of the three primaries apart.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum ColorShiftTrack { trackGap, trackAngle, trackStrength };
enum ColorShiftCheck { checkPlanes };
enum ColorShiftObjectCheck { objectPlanes };

constexpr char planeList[] =
    "Red-Green A\0"
    "Red-Blue A\0"
    "Green-Blue A\0"
    "Red-Green B\0"
    "Red-Blue B\0"
    "Green-Blue B\0";
constexpr char objectPlaneList[] =
    "Red-Green A\0"
    "Red-Blue A\0"
    "Green-Blue A\0";

// The gap in pixels, the angle in tenths of a degree, the strength in percent.
constexpr TrackColumns tracks({
    {"Gap width", 5, 0, 2000, 1, 0, 200},
    {"Angle", 0, -36000, 36000, 10, -3600, 3600},
    {"Strength", 100, 0, 100, 1, 0, 100},
});
constexpr CheckColumns checks({
    {planeList, checkDropDown},
});
constexpr CheckColumns objectChecks({
    {objectPlaneList, checkDropDown},
});
constexpr ExtraControl controls[] = {
    {checkPlanes, extraList, offsetof(ListChoice, type)},
};

}  // namespace

constinit EffectDefinition colorShiftEffect = defineEffect({
    .flag = effectFilter,
    .name = "Color shift",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ListChoice),
    .exdata_fields = listChoiceFields,
});

constinit EffectDefinition colorShiftObject = defineEffect({
    .name = "Color shift",
    .tracks = tracks,
    .checks = objectChecks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ListChoice),
    .exdata_fields = listChoiceFields,
});

}  // namespace zenlay
