// "Edge extraction": keeps the edges of luminance or of transparency.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum EdgeExtractionTrack { trackStrength, trackThreshold };
enum EdgeExtractionCheck { checkLuminance, checkTransparency, checkColor };

struct EdgeExtractionData {
  uint8_t color[3];  // red, green, blue
  uint8_t reserved;
};
static_assert(sizeof(EdgeExtractionData) == 4);

constexpr TrackColumns tracks({
    {"Strength", 1000, 0, 10000, 10, 0, 2000},
    {"Threshold", 0, -10000, 10000, 100, -10000, 10000},
});
constexpr CheckColumns checks({
    {"Extract luminance edge", 1},
    {"Extract transparency edge", 0},
    {"Color settings", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(EdgeExtractionData::color), "color"},
    {exdataReserved, sizeof(EdgeExtractionData::reserved), nullptr},
};
constexpr EdgeExtractionData defaults = {{255, 255, 255}, 0};

}  // namespace

constinit EffectDefinition edgeExtractionEffect = defineEffect({
    .flag = effectFilter,
    .name = "Edge extraction",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(EdgeExtractionData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
