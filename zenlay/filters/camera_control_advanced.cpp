// "Camera control (advanced drawing)": a camera with a line of sight in place of a target.
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/placement_tracks.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum CameraAdvancedTrack { trackX, trackY, trackZ, trackSightX, trackSightY, trackSightZ, trackSlope, trackDepthBlur };
enum CameraAdvancedCheck { checkOrigin, checkZBuffer };

struct CameraAdvancedData {
  int32_t target;  // index into originList
};
static_assert(sizeof(CameraAdvancedData) == 4);

constexpr char originList[] = "Coordinate of origin\0";

constexpr TrackColumns tracks({
    positionTrack("X", 1),
    positionTrack("Y", 1),
    positionTrack("Z", -2, -10240),
    sightTrack("LoS X", 1),
    sightTrack("LoS Y", 1),
    sightTrack("LoS Z", -2),
    angleTrack("Slope"),
    {"Depth blur", 0, 0, 100, 10, 0, 100},
});
constexpr CheckColumns checks({
    {originList, checkDropDown},
    {"Enable Z-buffer / shadow map", 1},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(CameraAdvancedData::target), "target"},
};
constexpr int32_t coordinateMap[coordinateSlots] = {0, 1, 2, -1, -1, -1, -1, -1, -1, -1, -1, -1};
constexpr ExtraControl controls[] = {
    {checkOrigin, extraList, offsetof(CameraAdvancedData, target)},
};

}  // namespace

constinit EffectDefinition cameraControlAdvanced = defineEffect({
    .flag = effectControl | effectCamera | effectPreview,
    .name = "Camera control (advanced drawing)",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(CameraAdvancedData),
    .exdata_fields = fields,
    .coordinate_map = coordinateMap,
});

}  // namespace zenlay
