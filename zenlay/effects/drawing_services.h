// The services that draw into images (EffectServiceTable tells what each does). Images are known by their address
// alone; what is drawn is noted in the image it reaches, and the object being flattened keeps its blend mode for later.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

const int32_t* drawImage3d(const ImageTarget*, const ImageRegion*, const ImagePlacement*, uint32_t flags,
                           int32_t corners[8]);
void blendCopyAt(void* destination, int x, int y, const void* source, int sx, int sy, int w, int h, int transparency,
                 uint32_t flags);
void fillArea(void* destination, int x, int y, int w, int h, ObjectPixel colour, uint32_t flags);
void drawPolygon(const ImageTarget*, const DrawVertex*, int count, const ImageRegion*, int transparency,
                 uint32_t flags);
void convertRgb(ObjectPixel*, const void* source, int width, int height, int bits);

}  // namespace zenlay
