// "Frame buffer": the frame composed so far becomes the object's image.
#include <algorithm>
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"

namespace zenlay {

namespace {

enum FrameBufferCheck { checkClear };

int processFrameBuffer(EffectDefinition* effect, EffectProcessInfo* info) {
  int width = std::min(info->host.width, info->maxWidth), height = std::min(info->host.height, info->maxHeight);
  bool alpha = info->host.flags & processFlattening;  // the frame of a scene with an alpha channel
  bool clear = effect->check[checkClear] != 0;
  ptrdiff_t objectLine = info->bufferLine * sizeof(ObjectPixel);
  size_t bytes = width * (alpha ? sizeof(ObjectPixel) : sizeof(FramePixel));
  auto* to = reinterpret_cast<uint8_t*>(info->objectImage);
  auto* frame = reinterpret_cast<uint8_t*>(info->host.frame);
  overRows(effect->host_functions, height, [&](int first, int last) {
    for (ptrdiff_t y = first; y < last; y++) {
      uint8_t* from = frame + y * info->host.lineBytes;
      memcpy(to + y * objectLine, from, bytes);
      if (clear) memset(from, 0, bytes);  // black; transparent with alpha
    }
  });
  info->objectWidth = width;
  info->objectHeight = height;
  info->opaqueImage = !alpha;
  if (!alpha && !(info->host.flags & processTakesOpaque)) effect->services->addAlpha(info);
  return 1;
}

constinit CheckColumns checks({{"Clear frame buffer", 0}});

}  // namespace

constinit EffectDefinition frameBufferMedia = defineEffect({
    .flag = effectMedia,
    .name = "Frame buffer",
    .checks = checks,
    .proc = processFrameBuffer,
});

}  // namespace zenlay
