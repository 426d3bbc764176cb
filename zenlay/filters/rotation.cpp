// "Rotation": turns the object about its three axes.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

namespace {

enum RotationTrack { trackX, trackY, trackZ };

int32_t turn(int32_t hundredths) {
  return static_cast<int32_t>(int64_t{hundredths % degreesPerTurn} * fullTurn / degreesPerTurn);
}

int processRotation(EffectDefinition* effect, EffectProcessInfo* info) {
  info->rx += turn(effect->track[trackX]);
  info->ry += turn(effect->track[trackY]);
  info->rz += turn(effect->track[trackZ]);
  return 1;
}

constinit TrackColumns tracks({angleTrack("X", 1), angleTrack("Y", 1), angleTrack("Z", -2)});

}  // namespace

constinit EffectDefinition rotationEffect = defineEffect({
    .flag = effectFilter | effectBasic,
    .name = "Rotation",
    .tracks = tracks,
    .proc = processRotation,
});

}  // namespace zenlay
