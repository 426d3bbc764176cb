// "Flash": rays of light that leave a point through the object's silhouette.
#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum FlashTrack { trackStrength, trackX, trackY };
enum FlashCheck { checkMix, checkLightColor, checkFixedSize };

struct FlashData {
  int32_t mode;      // index into mixList
  uint8_t color[3];  // red, green, blue
  uint8_t no_color;  // 1 = each pixel keeps its own colour
};
static_assert(sizeof(FlashData) == 8);

constexpr char mixList[] =
    "Mix in front\0"
    "Mix in back\0"
    "Only light\0";

constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 1000, 10, 0, 1000},
    {"X", 0, -2000, 2000, 1, -2000, 2000, 1},
    {"Y", 0, -2000, 2000, 1, -2000, 2000, -1},
});
constexpr CheckColumns checks({
    {mixList, checkDropDown},
    {"Set light color", checkButton},
    {"Fixed Size", 0},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(FlashData::mode), "mode"},
    {exdataBytes, sizeof(FlashData::color), "color"},
    {exdataInteger, sizeof(FlashData::no_color), "no_color"},
};
constexpr FlashData defaults = {0, {255, 255, 255}, 1};
constexpr ExtraControl controls[] = {
    {checkMix, extraList, offsetof(FlashData, mode)},
    {checkLightColor, extraOptionalColor, offsetof(FlashData, color)},
};

}  // namespace

constinit EffectDefinition flashEffect = defineEffect({
    .flag = effectFilter,
    .name = "Flash",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(FlashData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
