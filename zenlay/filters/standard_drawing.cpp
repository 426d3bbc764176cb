// "Standard drawing": places the object's image into the scene, turned about the view axis only.
#include "zenlay/effects/blend_modes.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/filters/placement_tracks.h"
#include "zenlay/filters/shared_extra_data.h"
#include "zenlay/media/extra_controls.h"

namespace zenlay {

namespace {

enum StandardDrawingCheck { checkBlend };
constexpr uint32_t standardOptions = 0x111;

int processStandardDrawing(EffectDefinition* effect, EffectProcessInfo* info) {
  uint32_t options = standardOptions | blendFlags(extraData<BlendChoice>(effect).blend & 31);
  return effect->services->placeObject(effect, info, options);
}

constinit TrackColumns tracks({
    positionTrack("X", 1),
    positionTrack("Y", 1),
    positionTrack("Z", -2),
    zoomTrack("Zoom%"),
    clearnessTrack(),
    angleTrack("Rotation"),
});
constinit CheckColumns checks({{blendModeList, checkDropDown}});
constexpr int32_t coordinates[coordinateSlots] = {0, 1, 2, -1, -1, 5, -1, -1, -1, 3, -1, 4};
constexpr ExtraControl controls[] = {
    {checkBlend, extraList, offsetof(BlendChoice, blend)},
};

}  // namespace

constinit EffectDefinition standardDrawing = defineEffect({
    .flag = effectDrawing | effectTakesOpaque | effectNotListed | effectPreview,
    .name = "Standard drawing",
    .tracks = tracks,
    .checks = checks,
    .proc = processStandardDrawing,
    .window_proc = operateRows<controls>,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(BlendChoice),
    .exdata_fields = blendChoiceFields,
    .coordinate_map = coordinates,
});

}  // namespace zenlay
