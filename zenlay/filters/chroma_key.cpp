// "Chroma Key": what is close to a picked colour in hue and chroma becomes transparent.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"

namespace zenlay {

namespace {

enum ChromaKeyTrack { trackHue, trackChroma, trackEdge };
enum ChromaKeyCheck { checkChromatic, checkTransmission, checkPickColor };

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

}  // namespace

constinit EffectDefinition chromaKeyEffect = defineEffect({
    .flag = effectFilter,
    .name = "Chroma Key",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(KeyColor),
    .exdata_fields = keyColorFields,
});

}  // namespace zenlay
