// "Color compensation": lightness, contrast, hue, luminance and chroma of the picture.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum ColorCompensationTrack { trackLightness, trackContrast, trackHue, trackLuminance, trackChroma };
enum ColorCompensationCheck { checkSaturated };

// Gains of 1000 = 1.0; the hue in tenths of a degree.
constexpr TrackColumns tracks({
    {"Lightness", 1000, 0, 2000, 10, 0, 2000},
    {"Contrast", 1000, 0, 2000, 10, 0, 2000},
    {"Hue", 0, -36000, 36000, 10, -3600, 3600},
    {"Luminance", 1000, 0, 2000, 10, 0, 2000},
    {"Chroma", 1000, 0, 2000, 10, 0, 2000},
});
constexpr CheckColumns checks({
    {"Saturated", 0},
});

}  // namespace

constinit EffectDefinition colorCompensationEffect = defineEffect({
    .flag = effectFilter,
    .name = "Color compensation",
    .tracks = tracks,
    .checks = checks,
});

constinit EffectDefinition colorCompensationObject = defineEffect({
    .name = "Color compensation",
    .tracks = tracks,
    .checks = checks,
});

}  // namespace zenlay
