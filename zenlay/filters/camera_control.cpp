// "Camera control": the camera that the layers in its range are drawn through.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/placement_tracks.h"
#include "zenlay/filters/shared_extra_data.h"

namespace zenlay {

namespace {

enum CameraTrack {
  trackX,
  trackY,
  trackZ,
  trackTargetX,
  trackTargetY,
  trackTargetZ,
  trackTargetLayer,
  trackSlope,
  trackDepthBlur,
  trackView
};
enum CameraCheck { checkZBuffer };

// Positions in tenths of a pixel, angles in hundredths of a degree. View 0 keeps the default eye distance.
constexpr TrackColumns tracks({
    positionTrack("X", 1),
    positionTrack("Y", 1),
    positionTrack("Z", -2, -10240),
    positionTrack("Target X", 1),
    positionTrack("Target Y", 1),
    positionTrack("Target Z", -2),
    {"Target ly", 0, 0, 100, 1, 0, 100},
    angleTrack("Slope"),
    {"Depth blur", 0, 0, 100, 10, 0, 100},
    {"<View", 0, 0, 12000, 100, 100, 9000},
});
constexpr CheckColumns checks({
    {"Enable Z-buffer / shadow map", 1},
});
constexpr int32_t coordinateMap[coordinateSlots] = {0, 1, 2, -1, -1, -1, -1, -1, -1, -1, -1, -1};

}  // namespace

constinit EffectDefinition cameraControl = defineEffect({
    .flag = effectControl | effectCamera | effectPreview,
    .name = "Camera control",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(LayerRange),
    .exdata_fields = layerRangeFields,
    .coordinate_map = coordinateMap,
});

}  // namespace zenlay
