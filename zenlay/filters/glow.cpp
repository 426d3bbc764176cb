// "Glow": the light of bright parts spreads evenly or in streaks.
#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum GlowTrack { trackStrength, trackDiffusion, trackThreshold, trackBlur };
enum GlowCheck { checkShape, checkLightColor, checkLightOnly };

struct GlowData {
  uint8_t color[3];  // red, green, blue
  uint8_t no_color;  // 1 = each pixel keeps its own colour
  int32_t type;      // index into shapeList
};
static_assert(sizeof(GlowData) == 8);

constexpr char shapeList[] =
    "Normal\0"
    "4Cross\0"
    "4Diagonal-Cross\0"
    "8Cross\0"
    "Line-H\0"
    "Line-V\0";

constexpr TrackColumns tracks({
    {"Strength", 400, 0, 4000, 10, 0, 2000},
    {"Diffusion", 30, 0, 200, 1, 0, 200},
    {"Threshold", 400, 0, 2000, 10, 0, 2000},
    {"Blur", 1, 0, 50, 1, 0, 50},
});
constexpr CheckColumns checks({
    {shapeList, checkDropDown},
    {"Set light color", checkButton},
    {"Light only", 0},
});
constexpr CheckColumns objectChecks({
    {shapeList, checkDropDown},
    {"Set light color", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(GlowData::color), "color"},
    {exdataInteger, sizeof(GlowData::no_color), "no_color"},
    {exdataInteger, sizeof(GlowData::type), "type"},
};
constexpr GlowData defaults = {{255, 255, 255}, 1, 0};
constexpr ExtraControl controls[] = {
    {checkShape, extraList, offsetof(GlowData, type)},
    {checkLightColor, extraOptionalColor, offsetof(GlowData, color)},
};

}  // namespace

constinit EffectDefinition glowEffect = defineEffect({
    .flag = effectFilter,
    .name = "Glow",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(GlowData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

constinit EffectDefinition glowObject = defineEffect({
    .name = "Glow",
    .tracks = tracks,
    .checks = objectChecks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(GlowData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
