// "Particle output": emits copies of the object image that move, turn, grow and fade.
#include "zenlay/effects/blend_modes.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/placement_tracks.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum ParticleTrack {
  trackX,
  trackY,
  trackZ,
  trackRate,
  trackSpeed,
  trackAcceleration,
  trackDirection,
  trackDiffuse,
  trackTransmittance,
  trackTransmittanceSpeed,
  trackZoom,
  trackZoomSpeed,
  trackRotation,
  trackRotationSpeed,
  trackGravity,
  trackSurvival
};
enum ParticleCheck { checkMovementDirection, checkMovementRange, checkRandom3d, checkBlend, checkDisappear };

// Positions and speeds (a second) in tenths of a pixel, rates and survival in tenths, directions in tenths of a degree,
// rotation in hundredths of a degree, its speed in hundredths of a turn.
constexpr TrackColumns tracks({
    positionTrack("X", 1),
    positionTrack("Y", 1),
    positionTrack("Z", -2),
    {"fOutput", 200, 0, 5000, 10, 0, 1000},
    {"vOutput", 4000, 0, 200000, 10, 0, 20000},
    {"dv/dt", 0, -200000, 200000, 10, -20000, 20000},
    {"Output>>", 0, -36000, 36000, 10, -3600, 3600},
    {"<Diffuse", 300, 0, 3600, 10, 0, 3600},
    {"Transmittance", 0, 0, 1000, 10, 0, 1000},
    {"vTransmit", 0, -2000, 2000, 10, -1000, 1000},
    {"Zoom%", 10000, 0, 80000, 100, 0, 80000},
    {"vSpread", 0, -80000, 80000, 100, -40000, 40000},
    angleTrack("<Rotate"),
    {"vRotation", 0, -1000, 1000, 100, -1000, 1000},
    {"Gravity", 0, -20000, 20000, 10, -20000, 20000},
    {"tSurvival", 0, 0, 6000, 10, 0, 1000},
});
constexpr CheckColumns checks({
    {"Output direction based on movement direction", 0},
    {"Random output from movement range", 0},
    {"3D random rotation", 0},
    {blendModeList, checkDropDown},
    {"Adjusted to fully disappear at end point", 1},
});
constexpr int32_t coordinateMap[coordinateSlots] = {0, 1, 2, -1, -1, -1, -1, -1, -1, -1, -1, -1};
constexpr ExtraControl controls[] = {
    {checkBlend, extraList, offsetof(BlendChoice, blend)},
};

}  // namespace

constinit EffectDefinition particleOutputDrawing = defineEffect({
    .flag = effectDrawing | effectTakesOpaque | effectPreview,
    .name = "Particle output",
    .tracks = tracks,
    .checks = checks,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(BlendChoice),
    .exdata_fields = blendChoiceFields,
    .coordinate_map = coordinateMap,
});

}  // namespace zenlay
