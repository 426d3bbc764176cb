// "Gradient": blends two colours over the object.
#include "zenlay/effects/blend_modes.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum GradientTrack { trackStrength, trackX, trackY, trackAngle, trackWidth };
enum GradientCheck { checkBlend, checkShape, checkStart, checkEnd };

struct GradientData {
  int32_t blend;      // BlendMode
  uint8_t color[3];   // start: red, green, blue
  uint8_t no_color;   // 1 = the other colour, transparent
  uint8_t color2[3];  // end
  uint8_t no_color2;
  int32_t type;  // index into shapeList
};
static_assert(sizeof(GradientData) == 16);

constexpr char shapeList[] =
    "Line\0"
    "Circle\0"
    "Square\0"
    "Convex\0";

// Pixels; the angle in tenths of a degree.
constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 1000, 10, 0, 1000},
    {"Center X", 0, -2000, 2000, 1, -2000, 2000, 1},
    {"Center Y", 0, -2000, 2000, 1, -2000, 2000, -1},
    {"Angle", 0, -36000, 36000, 10, -3600, 3600},
    {"Width", 100, 0, 2000, 1, 0, 1000},
});
constexpr CheckColumns checks({
    {blendModeList, checkDropDown},
    {shapeList, checkDropDown},
    {"Starting color", checkButton},
    {"Ending color", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(GradientData::blend), "blend"},
    {exdataBytes, sizeof(GradientData::color), "color"},
    {exdataInteger, sizeof(GradientData::no_color), "no_color"},
    {exdataBytes, sizeof(GradientData::color2), "color2"},
    {exdataInteger, sizeof(GradientData::no_color2), "no_color2"},
    {exdataInteger, sizeof(GradientData::type), "type"},
};
constexpr GradientData defaults = {0, {255, 255, 255}, 0, {0, 0, 0}, 0, 0};
constexpr ExtraControl controls[] = {
    {checkBlend, extraList, offsetof(GradientData, blend)},
    {checkShape, extraList, offsetof(GradientData, type)},
    {checkStart, extraOptionalColor, offsetof(GradientData, color)},
    {checkEnd, extraOptionalColor, offsetof(GradientData, color2)},
};

}  // namespace

constinit EffectDefinition gradientEffect = defineEffect({
    .flag = effectFilter,
    .name = "Gradient",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(GradientData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
