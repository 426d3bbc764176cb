// The sound pipeline: the audio objects of a scene that are alive on a frame, mixed into a block of samples.
#pragma once

#include "zenlay/effects/process_info.h"

namespace zenlay {

/// The current scene and three nested ones.
inline constexpr int maxMixes = 4;

/// Adds the sound of `scene` at the record's frame to its audio buffer. Nothing happens for a scene without frames, a
/// record without samples, a clip without sound or when maxMixes are running already.
void mixSceneSound(const FrameProcessInfo&, int scene);
/// EffectServiceTable::mixScene: the same into `samples`. 0 when nothing could be mixed.
int mixScene(EffectProcessInfo*, int scene, int frame, int16_t* samples, int count);
void freeSoundBuffers();

}  // namespace zenlay
