// "Rotation": turns the object about its three axes.
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/process_info.h"
#include "zenlay/effects/scales_and_turns.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {

namespace {

enum RotationTrack { trackX, trackY, trackZ };

int processRotation(EffectDefinition* effect, EffectProcessInfo* info) {
  info->rx += turnUnits(effect->track[trackX]);
  info->ry += turnUnits(effect->track[trackY]);
  info->rz += turnUnits(effect->track[trackZ]);
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
