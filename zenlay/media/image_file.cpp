// "Image file": shows a still picture; of one larger than the largest image, the part nearest to the object's position.
#include <algorithm>

#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/image_data.h"

namespace zenlay {

namespace {

enum ImageFileCheck { checkReference };
constexpr int positionScale = 10;  // of the drawing effects' X and Y

/// X and Y of the object's drawing effect in pixels; 0, 0 without one.
void objectPosition(EffectDefinition* effect, EffectProcessInfo* info, int32_t* x, int32_t* y) {
  const EffectServiceTable* services = effect->services;
  ObjectRef drawing = services->findNextSlot(effect->object_ref, nullptr, findDrawing);
  int32_t value = 0;
  *x = *y = 0;
  if (!drawing) return;
  if (services->getTrackValues(drawing, info->absoluteFrame, info->subFrame, &value, slotX + 1))
    *x = value / positionScale;
  if (services->getTrackValues(drawing, info->absoluteFrame, info->subFrame, &value, slotY + 1))
    *y = value / positionScale;
}

/// First pixel of the window of `limit` pixels that shows the part nearest to `position`.
int32_t windowStart(int32_t size, int32_t limit, int32_t position) {
  return size <= limit ? 0 : std::clamp((size - limit) / 2 - position, 0, size - limit);
}

int32_t centreOffset(int32_t size, int32_t limit, int32_t start) {
  return size <= limit ? 0 : ((size - limit) / 2 - start) * subPixel;
}

int processImageFile(EffectDefinition* effect, EffectProcessInfo* info) {
  const EffectServiceTable* services = effect->services;
  const char* file = fileOf(extraData<ImageData>(effect));
  if (!*file) return 0;
  int32_t width, height;
  if (!services->loadImage(nullptr, file, &width, &height, nullptr, 0)) return 0;
  ImageClip window{0, 0, width, height};
  if (width > info->maxWidth || height > info->maxHeight) {
    int32_t x, y;
    objectPosition(effect, info, &x, &y);
    window.left = windowStart(width, info->maxWidth, x);
    window.top = windowStart(height, info->maxHeight, y);
    window.right = std::min(window.left + info->maxWidth, width);
    window.bottom = std::min(window.top + info->maxHeight, height);
    info->cx = centreOffset(width, info->maxWidth, window.left);
    info->cy = centreOffset(height, info->maxHeight, window.top);
  }
  info->opaqueImage = 0;
  return services->loadImage(info->objectImage, file, &info->objectWidth, &info->objectHeight, &window, 0);
}

constexpr ExtraControl controls[] = {
    {checkReference, extraPicture, offsetof(ImageData, file)},
};

int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition* effect) {
  return operateControls(effect, controls, std::size(controls), message, wparam, lparam) ||
         checkImageFile(effect, message, wparam, lparam);
}

constinit CheckColumns checks({{"Reference file", checkButton}});

}  // namespace

constinit EffectDefinition imageFileMedia = defineEffect({
    .flag = effectMedia,
    .name = "Image file",
    .checks = checks,
    .proc = processImageFile,
    .window_proc = handleMessage,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ImageData),
    .exdata_fields = imageDataFields,
});

}  // namespace zenlay
