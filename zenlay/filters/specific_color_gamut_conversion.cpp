// "Specific color gamut conversion": replaces colours near a picked one by another.
#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum GamutConversionTrack { trackHue, trackChroma, trackEdge };
enum GamutConversionCheck { checkBefore, checkAfter };

struct GamutConversionData {
  int16_t color_yc[3];  // Y, Cb, Cr
  uint8_t reserved[2];
  int32_t status;        // 1 = a colour was picked
  int16_t color_yc2[3];  // the colour after conversion
  uint8_t reserved2[2];
  int32_t status2;
};
static_assert(sizeof(GamutConversionData) == 24);

constexpr TrackColumns tracks({
    {"~Hue", 8, 0, 256, 1, 0, 256},
    {"~Chroma", 8, 0, 256, 1, 0, 256},
    {"dEdge", 2, 0, 8, 1, 0, 8},
});
constexpr CheckColumns checks({
    {"Get color before conversion", checkButton},
    {"Get color after conversion", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(GamutConversionData::color_yc), "color_yc"},
    {exdataReserved, sizeof(GamutConversionData::reserved), nullptr},
    {exdataInteger, sizeof(GamutConversionData::status), "status"},
    {exdataBytes, sizeof(GamutConversionData::color_yc2), "color_yc2"},
    {exdataReserved, sizeof(GamutConversionData::reserved2), nullptr},
    {exdataInteger, sizeof(GamutConversionData::status2), "status2"},
};
constexpr ExtraControl controls[] = {
    {checkBefore, extraKeyColor, offsetof(GamutConversionData, color_yc)},
    {checkAfter, extraKeyColor, offsetof(GamutConversionData, color_yc2)},
};

}  // namespace

constinit EffectDefinition specificColorGamutConversionEffect = defineEffect({
    .flag = effectFilter,
    .name = "Specific color gamut conversion",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(GamutConversionData),
    .exdata_fields = fields,
});

}  // namespace zenlay
