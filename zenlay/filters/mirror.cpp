// "Mirror": adds the object's reflection at one side.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum MirrorTrack { trackClearness, trackAttenuate, trackEdge };
enum MirrorCheck { checkSide, checkCenter };

struct MirrorData {
  int32_t type;  // index into sideList
};
static_assert(sizeof(MirrorData) == 4);

constexpr char sideList[] =
    "Top\0"
    "Bottom\0"
    "Left\0"
    "Right\0";

constexpr TrackColumns tracks({
    {"Clearness", 0, 0, 1000, 10, 0, 1000},
    {"Attenuate", 0, 0, 5000, 10, 0, 5000},
    {"dEdge", 0, -2000, 2000, 1, -500, 500},
});
constexpr CheckColumns checks({
    {sideList, checkDropDown},
    {"Change the center position", 0},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(MirrorData::type), "type"},
};

}  // namespace

constinit EffectDefinition mirrorEffect = defineEffect({
    .flag = effectFilter,
    .name = "Mirror",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(MirrorData),
    .exdata_fields = fields,
});

}  // namespace zenlay
