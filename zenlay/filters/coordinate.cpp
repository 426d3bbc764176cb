// "Coordinate": moves the object.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

namespace {

enum CoordinateTrack { trackX, trackY, trackZ };

int32_t offsetOf(int32_t tenths) { return static_cast<int32_t>(int64_t{tenths} * subPixel / positionScale); }

int processCoordinate(EffectDefinition* effect, EffectProcessInfo* info) {
  info->ox += offsetOf(effect->track[trackX]);
  info->oy += offsetOf(effect->track[trackY]);
  info->oz += offsetOf(effect->track[trackZ]);
  return 1;
}

constinit TrackColumns tracks({positionTrack("X", 1), positionTrack("Y", 1), positionTrack("Z", -2)});

}  // namespace

constinit EffectDefinition coordinateEffect = defineEffect({
    .flag = effectFilter | effectBasic,
    .name = "Coordinate",
    .tracks = tracks,
    .proc = processCoordinate,
});

}  // namespace zenlay
