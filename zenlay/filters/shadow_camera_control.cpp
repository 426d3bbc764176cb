// "Shadow (camera control)": the light that casts shadows in front of the camera.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum CameraShadowTrack { trackX, trackY, trackZ, trackThickness, trackAccuracy };

constexpr TrackColumns tracks({
    {"Light X", 10000, -200000, 200000, 10, -20000, 20000, 1},
    {"Light Y", -20000, -200000, 200000, 10, -20000, 20000, 1},
    {"Light Z", -20000, -200000, 200000, 10, -20000, 20000, -2},
    {"Thickness", 400, 0, 1000, 10, 0, 1000},
    {"Accuracy", 50, 20, 100, 1, 20, 100},
});
constexpr int32_t coordinateMap[coordinateSlots] = {0, 1, 2, -1, -1, -1, -1, -1, -1, -1, -1, -1};

}  // namespace

constinit EffectDefinition shadowCameraControl = defineEffect({
    .flag = effectControl | effectPreview,
    .name = "Shadow (camera control)",
    .tracks = tracks,
    .coordinate_map = coordinateMap,
});

}  // namespace zenlay
