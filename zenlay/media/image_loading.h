// Picture files: decoding, caching and conversion into work pixels.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

int loadImage(ObjectPixel* destination, const char* path, int32_t* width, int32_t* height, const ImageClip*,
              uint32_t flags);
const char* imageFileFilter();
/// Loads every "*.spi" of the folder; at most 32.
void loadImagePlugins(const char* folder);
void unloadImagePlugins();

}  // namespace zenlay
