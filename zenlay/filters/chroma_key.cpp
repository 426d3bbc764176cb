// "Chroma Key": what is close to a picked colour in hue and chroma becomes transparent.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ChromaKeyTrack { trackHue, trackChroma, trackEdge };
enum ChromaKeyCheck { checkChromatic, checkTransmission, checkPickColor };

struct ChromaKeyData {
  int16_t color_yc[3];  // Y, Cb, Cr
  uint8_t reserved[2];
  int32_t status;  // 1 = a colour was picked
};
static_assert(sizeof(ChromaKeyData) == 12);

constexpr TrackColumns tracks({
    {"~Hue", 24, 0, 256, 1, 0, 256},
    {"~Chroma", 96, 0, 256, 1, 0, 256},
    {"dEdge", 1, 0, 5, 1, 0, 5},
});
constexpr CheckColumns checks({
    {"Chromatic correction", 0},
    {"Transmission correction", 0},
    {"Get key color", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataBytes, sizeof(ChromaKeyData::color_yc), "color_yc"},
    {exdataReserved, sizeof(ChromaKeyData::reserved), nullptr},
    {exdataInteger, sizeof(ChromaKeyData::status), "status"},
};

}  // namespace

constinit EffectDefinition chromaKeyEffect = defineEffect({
    .flag = effectFilter,
    .name = "Chroma Key",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(ChromaKeyData),
    .exdata_fields = fields,
});

}  // namespace zenlay
