#include "zenlay/media/image_data.h"

#include "zenlay/media/effect_messages.h"

namespace zenlay {

int checkImageFile(EffectDefinition* effect, uint32_t message, intptr_t wparam, intptr_t lparam) {
  const char* file = fileOf(extraData<ImageData>(effect));
  if (!asksForFileCheck(message, wparam, lparam) || !*file) return 0;
  return effect->services->loadImage(nullptr, file, nullptr, nullptr, nullptr, loadImageExists);
}

}  // namespace zenlay
