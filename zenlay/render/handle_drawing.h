// Drawing the handles of the last frame onto a picture of FramePixels.
#pragma once

#include "zenlay/render/targets.h"

namespace zenlay {

/// The part of the rectangle that lies on the picture.
void fillPixels(const ImageTarget&, PixelRect, FramePixel);
/// Over the scene's picture as shownScene says it is shown.
void drawHandles(const ImageTarget&);

}  // namespace zenlay
