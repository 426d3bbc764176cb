// "Clearness": makes the object transparent.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

namespace {

int processClearness(EffectDefinition* effect, EffectProcessInfo* info) {
  int32_t clearness = effect->track[0];
  if (clearness != 0)
    info->transparency = fullAlpha - (fullAlpha - info->transparency) * (fullClearness - clearness) / fullClearness;
  return 1;
}

constinit TrackColumns tracks({clearnessTrack()});

}  // namespace

constinit EffectDefinition clearnessEffect = defineEffect({
    .flag = effectFilter | effectBasic,
    .name = "Clearness",
    .tracks = tracks,
    .proc = processClearness,
});

}  // namespace zenlay
