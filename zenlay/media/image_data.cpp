#include "zenlay/media/image_data.h"

#include "zenlay/media/effect_messages.h"

namespace zenlay {

int checkImageFile(EffectDefinition* effect, uint32_t message, intptr_t wparam, intptr_t lparam) {
  const ImageData& data = extraData<ImageData>(effect);
  if (!asksForFileCheck(message, wparam, lparam) || !data.file[0]) return 0;
  return effect->services->loadImage(nullptr, data.file, nullptr, nullptr, nullptr, loadImageExists);
}

}  // namespace zenlay
