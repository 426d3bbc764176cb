// "Color Key": what is close to a picked colour becomes transparent.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ColorKeyTrack { trackLuminance, trackDifference, trackEdge };
enum ColorKeyCheck { checkPickColor };

struct ColorKeyData {
  int16_t color_yc[3];  // Y, Cb, Cr
  uint8_t reserved[2];
  int32_t status;  // 1 = a colour was picked
};
static_assert(sizeof(ColorKeyData) == 12);

constexpr TrackColumns tracks({
    {"~Luminance", 0, 0, 4096, 1, 0, 4096},
    {"~DColor", 0, 0, 4096, 1, 0, 4096},
    {"dEdge", 0, 0, 5, 1, 0, 5},
});
constexpr CheckColumns checks({
    {"Get key color", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(ColorKeyData::color_yc), "color_yc"},
    {exdataReserved, sizeof(ColorKeyData::reserved), nullptr},
    {exdataInteger, sizeof(ColorKeyData::status), "status"},
};

}  // namespace

constinit EffectDefinition colorKeyEffect = defineEffect({
    .flag = effectFilter,
    .name = "Color Key",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(ColorKeyData),
    .exdata_fields = fields,
});

}  // namespace zenlay
