// "Previous object": shows again what was drawn last, with its placement.
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"

namespace zenlay {

namespace {

void copyImage(const HostFunctionTable* host, EffectProcessInfo* info, const PreviousObject& previous) {
  if (previous.image == info->objectImage) return;
  ptrdiff_t lineBytes = info->bufferLine * sizeof(ObjectPixel);
  size_t bytes = previous.width * (previous.opaqueImage ? sizeof(FramePixel) : sizeof(ObjectPixel));
  auto* to = reinterpret_cast<uint8_t*>(info->objectImage);
  const auto* from = static_cast<const uint8_t*>(previous.image);
  overRows(host, previous.height, [&](int first, int last) {
    for (ptrdiff_t y = first; y < last; y++) memcpy(to + y * lineBytes, from + y * lineBytes, bytes);
  });
}

int processPreviousObject(EffectDefinition* effect, EffectProcessInfo* info) {
  const PreviousObject* previous = effect->services->previousObject();
  if (!previous || !previous->image) return 0;
  copyImage(effect->host_functions, info, *previous);
  info->objectWidth = previous->width;
  info->objectHeight = previous->height;
  info->opaqueImage = previous->opaqueImage;
  info->ox = previous->ox;
  info->oy = previous->oy;
  info->oz = previous->oz;
  info->rx = previous->rx;
  info->ry = previous->ry;
  info->rz = previous->rz;
  info->cx = previous->cx;
  info->cy = previous->cy;
  info->cz = previous->cz;
  info->zoom = previous->zoom;
  info->aspect = previous->aspect;
  info->transparency = previous->transparency;
  if (info->opaqueImage && !(info->host.flags & processTakesOpaque)) effect->services->addAlpha(info);
  return 1;
}

}  // namespace

constinit EffectDefinition previousObjectMedia = defineEffect({
    .flag = effectMedia,
    .name = "Previous object",
    .proc = processPreviousObject,
});

}  // namespace zenlay
