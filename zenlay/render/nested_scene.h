// A scene as a picture of its own, for objects that show it.
#pragma once

#include "zenlay/render/pipeline.h"

namespace zenlay {

/// EffectServiceTable::renderScene: scene 1..49 on a black, or with an alpha channel empty, frame of the scene's size.
const void* renderScenePicture(EffectProcessInfo*, int scene, int frame, int subFrame, int32_t* width, int32_t* height,
                               int32_t* lineBytes, bool* alpha);

}  // namespace zenlay
