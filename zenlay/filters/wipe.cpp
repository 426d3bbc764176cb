// "Wipe": a growing shape reveals the object and hides it again.
#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum WipeTrack { trackIn, trackOut, trackBlur };
enum WipeCheck { checkFlipIn, checkFlipOut, checkShape };

struct WipeData {
  int32_t type;    // index into shapeList
  char name[256];  // picture of the transition folder; empty for the list's shapes
};
static_assert(sizeof(WipeData) == 260);

constexpr char shapeList[] =
    "Wipe(Circle)\0"
    "Wipe(Square)\0"
    "Wipe(Clock)\0"
    "Wipe(H)\0"
    "Wipe(V)\0";

// In and Out in hundredths of a second.
constexpr TrackColumns tracks({
    {"In", 50, 0, 1000, 100, 0, 1000},
    {"Out", 50, 0, 1000, 100, 0, 1000},
    {"Blur", 2, 0, 100, 1, 0, 100},
});
constexpr CheckColumns checks({
    {"Flip (in)", 0},
    {"Flip (out)", 0},
    {shapeList, checkDropDown},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(WipeData::type), "type"},
    {exdataString, sizeof(WipeData::name), "name"},
};
constexpr ExtraControl controls[] = {
    {checkShape, extraList, offsetof(WipeData, type)},
};

}  // namespace

constinit EffectDefinition wipeEffect = defineEffect({
    .flag = effectFilter,
    .name = "Wipe",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(WipeData),
    .exdata_fields = fields,
});

}  // namespace zenlay
