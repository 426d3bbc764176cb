// "Advanced drawing": places the object's image into the scene, turned about all axes and about a chosen centre.
#include "zenlay/effects/blend_modes.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/filters/placement_tracks.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum AdvancedDrawingCheck { checkBlend, checkHideBack };
constexpr uint32_t advancedOptions = 0x195;

int processAdvancedDrawing(EffectDefinition* effect, EffectProcessInfo* info) {
  uint32_t options = advancedOptions | blendFlags(extraData<BlendChoice>(effect).blend & 31);
  if (effect->check[checkHideBack]) options |= drawHideBack;
  return effect->services->placeObject(effect, info, options);
}

constinit TrackColumns tracks({
    positionTrack("X", 1),
    positionTrack("Y", 1),
    positionTrack("Z", -2),
    zoomTrack("Zoom%"),
    clearnessTrack(),
    aspectTrack(),
    angleTrack("X-Spin"),
    angleTrack("Y-Spin"),
    angleTrack("Z-Spin"),
    centreTrack("Center X"),
    centreTrack("Center Y"),
    centreTrack("Center Z"),
});
constinit CheckColumns checks({
    {blendModeList, checkDropDown},
    {"Do not show backside", 0},
});
constexpr int32_t coordinates[coordinateSlots] = {0, 1, 2, 6, 7, 8, 9, 10, 11, 3, 5, 4};
constexpr ExtraControl controls[] = {
    {checkBlend, extraList, offsetof(BlendChoice, blend)},
};

}  // namespace

constinit EffectDefinition advancedDrawing = defineEffect({
    .flag = effectDrawing | effectTakesOpaque | effectNotListed | effectPreview,
    .name = "Advanced drawing",
    .tracks = tracks,
    .checks = checks,
    .proc = processAdvancedDrawing,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(BlendChoice),
    .exdata_fields = blendChoiceFields,
    .coordinate_map = coordinates,
    .cameraTarget = true,
});

}  // namespace zenlay
