// "Mirror": adds the object's reflection at one side.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/placement_tracks.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum MirrorTrack { trackClearness, trackAttenuate, trackEdge };
enum MirrorCheck { checkSide, checkCenter };

constexpr char sideList[] =
    "Top\0"
    "Bottom\0"
    "Left\0"
    "Right\0";

constexpr TrackColumns tracks({
    clearnessTrack(),
    {"Attenuate", 0, 0, 5000, 10, 0, 5000},
    {"dEdge", 0, -2000, 2000, 1, -500, 500},
});
constexpr CheckColumns checks({
    {sideList, checkDropDown},
    {"Change the center position", 0},
});
constexpr ExtraControl controls[] = {
    {checkSide, extraList, offsetof(ListChoice, type)},
};

}  // namespace

constinit EffectDefinition mirrorEffect = defineEffect({
    .flag = effectFilter,
    .name = "Mirror",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ListChoice),
    .exdata_fields = listChoiceFields,
});

}  // namespace zenlay
