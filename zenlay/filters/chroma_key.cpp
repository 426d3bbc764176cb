// "Chroma Key": what is close to a picked colour in hue and chroma becomes transparent.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

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
constexpr ExtraControl controls[] = {
    {checkPickColor, extraKeyColor, offsetof(KeyColor, color_yc)},
};

}  // namespace

constinit EffectDefinition chromaKeyEffect = defineEffect({
    .flag = effectFilter,
    .name = "Chroma Key",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(KeyColor),
    .exdata_fields = keyColorFields,
});

}  // namespace zenlay
