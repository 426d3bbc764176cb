#include "zenlay/render/flattening.h"

#include <algorithm>
#include <cstring>

#include "zenlay/host/environment.h"
#include "zenlay/render/blend.h"
#include "zenlay/render/convert.h"
#include "zenlay/render/object_render.h"

namespace zenlay {

namespace {

/// Top left corner of a flattened object on the frame.
void flattenedPosition(const EffectProcessInfo* info, int* x, int* y) {
  *x = (info->host.width - info->cx / subPixel - info->objectWidth) / 2 + info->ox / subPixel;
  *y = (info->host.height - info->cy / subPixel - info->objectHeight) / 2 + info->oy / subPixel;
}

bool coversFrame(const EffectProcessInfo* info) {
  return info->objectWidth == info->host.width && info->objectHeight == info->host.height && !info->ox && !info->oy &&
         !info->cx && !info->cy && !info->transparency;
}

void usePlacementUp(EffectProcessInfo* info) {
  info->ox = info->oy = info->oz = 0;
  info->rx = info->ry = info->rz = 0;
  info->cx = info->cy = info->cz = 0;
  info->zoom = zoomOne;
  info->aspect = 0;
  info->transparency = 0;
  info->objectWidth = info->host.width;
  info->objectHeight = info->host.height;
  info->opaqueImage = 0;
  info->state |= stateFlattened;
}

}  // namespace

uint32_t frameFlags(const EffectProcessInfo* info, uint32_t flags) {
  flags &= ~static_cast<uint32_t>(blendDestinationAlpha);
  if (frameHasAlpha(info)) flags |= blendDestinationAlpha;
  RenderLevel& level = levelOf(info);
  if (!level.flattening) return flags;
  level.flattenBlend = flags & blendModeBits;
  return flags & ~blendModeBits;
}

int flattenObject(EffectProcessInfo* info) {
  RenderLevel& level = levelOf(info);
  if (level.flattening || !info->drawableObject) return 0;
  if (!(info->state & stateFlattened) && drawingSlot(info->drawableObject) < 0) return 0;
  WorkImage* target = emptySpare(info);
  if (!target) return 0;
  FrameProcessInfo host = info->host;
  info->host.frame = reinterpret_cast<FramePixel*>(target->pixels);
  info->host.lineBytes = target->lineBytes;
  info->host.pixelBytes = target->pixelBytes;
  info->host.flags |= processFlattening;
  level.flattening = true;
  level.flattenBlend = info->blendBits;
  composite(info);
  level.flattening = false;
  // The drawing effect was bound meanwhile and left its frame numbers, which are the object's own.
  info->host = host;
  info->objectImage = reinterpret_cast<ObjectPixel*>(target->pixels);
  info->blendBits = level.flattenBlend;
  usePlacementUp(info);
  return 1;
}

int flattenForClipping(EffectProcessInfo* info) {
  if (info->state & stateFlattened && coversFrame(info)) return 1;
  return flattenObject(info);
}

void copyFlattened(EffectProcessInfo* info) {
  int x, y;
  flattenedPosition(info, &x, &y);
  PixelRect used = objectCoverage(info);
  if (isEmpty(used)) return;
  ImageRegion region = objectRegion(info);
  region.x = used.left;
  region.y = used.top;
  region.width = used.right - used.left;
  region.height = used.bottom - used.top;
  x += used.left;
  y += used.top;
  uint32_t flags = frameFlags(info, objectFormat(info) | (info->blendBits & blendModeBits));
  blendCopy(environment.hostFunctions, frameTarget(info), x, y, region, info->transparency, flags);
  noteDrawn(info->host.frame,
            intersect({x, y, x + region.width, y + region.height}, {0, 0, info->host.width, info->host.height}));
}

void addAlpha(EffectProcessInfo* info) {
  if (!info->opaqueImage) return;
  constexpr int chunk = 64;
  overRows(environment.hostFunctions, info->objectHeight, [=](int first, int last) {
    FramePixel opaque[chunk];
    for (int y = first; y < last; y++) {
      ObjectPixel* row = info->objectImage + static_cast<ptrdiff_t>(y) * info->bufferLine;
      const uint8_t* source = reinterpret_cast<const uint8_t*>(row);
      // From the end, as the wider pixels overlap the ones not read yet.
      for (int end = info->objectWidth; end > 0;) {
        int begin = std::max(0, end - chunk);
        memcpy(opaque, source + static_cast<size_t>(begin) * sizeof(FramePixel), (end - begin) * sizeof(FramePixel));
        frameToObjectRow(row + begin, opaque, end - begin);
        end = begin;
      }
    }
  });
  info->opaqueImage = 0;
}

}  // namespace zenlay
