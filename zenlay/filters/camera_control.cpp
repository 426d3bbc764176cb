// "Camera control": the camera that the layers in its range are drawn through.
#include "zenlay/effects/definitions.h"

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

struct CameraData {
  int32_t range;  // layers governed below its own, 0 = all
  uint8_t reserved[16];
};
static_assert(sizeof(CameraData) == 20);

// Positions in tenths of a pixel, angles in hundredths of a degree. View 0 keeps the default eye distance.
constexpr TrackColumns tracks({
    {"X", 0, -999999, 999999, 10, -20000, 20000, 1},
    {"Y", 0, -999999, 999999, 10, -20000, 20000, 1},
    {"Z", -10240, -999999, 999999, 10, -20000, 20000, -2},
    {"Target X", 0, -999999, 999999, 10, -20000, 20000, 1},
    {"Target Y", 0, -999999, 999999, 10, -20000, 20000, 1},
    {"Target Z", 0, -999999, 999999, 10, -20000, 20000, -2},
    {"Target ly", 0, 0, 100, 1, 0, 100},
    {"Slope", 0, -360000, 360000, 100, -36000, 36000},
    {"Depth blur", 0, 0, 100, 10, 0, 100},
    {"<View", 0, 0, 12000, 100, 100, 9000},
});
constexpr CheckColumns checks({
    {"Enable Z-buffer / shadow map", 1},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(CameraData::range), "range"},
    {exdataReserved, sizeof(CameraData::reserved), nullptr},
};
constexpr int32_t coordinateMap[coordinateSlots] = {0, 1, 2, -1, -1, -1, -1, -1, -1, -1, -1, -1};

}  // namespace

constinit EffectDefinition cameraControl = defineEffect({
    .flag = effectControl | effectCamera | effectPreview,
    .name = "Camera control",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(CameraData),
    .exdata_fields = fields,
    .coordinate_map = coordinateMap,
});

}  // namespace zenlay
