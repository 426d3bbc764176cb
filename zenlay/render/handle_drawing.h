// Drawing the handles of the last frame.
#pragma once

#include "zenlay/render/targets.h"

namespace zenlay {

/// Over the scene's picture as shownScene says it is shown. The picture has FramePixels.
void drawHandles(const ImageTarget&);

}  // namespace zenlay
