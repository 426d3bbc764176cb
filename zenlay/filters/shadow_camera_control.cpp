// "Shadow (camera control)": the light that casts shadows in front of the camera.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

namespace {

enum CameraShadowTrack { trackX, trackY, trackZ, trackThickness, trackAccuracy };

constexpr TrackColumns tracks({
    sightTrack("Light X", 1, 10000),
    sightTrack("Light Y", 1, -20000),
    sightTrack("Light Z", -2, -20000),
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
