// Scenes and parts of them as pictures of their own, for objects that show them.
#pragma once

#include "zenlay/render/pipeline.h"

namespace zenlay {

/// EffectServiceTable::renderScene: scene 1..49 on a black, or with an alpha channel empty, frame of the scene's size.
const void* renderScenePicture(EffectProcessInfo*, int scene, int frame, int subFrame, int32_t* width, int32_t* height,
                               int32_t* lineBytes, bool* alpha);
/// EffectServiceTable::renderLayersBelow.
const void* renderLayersBelow(EffectProcessInfo*, int frame, int32_t* lineBytes);

}  // namespace zenlay
