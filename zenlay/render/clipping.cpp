#include "zenlay/render/clipping.h"

#include <algorithm>
#include <cstring>

#include "platform/system.h"
#include "zenlay/host/environment.h"
#include "zenlay/render/image_cache.h"
#include "zenlay/render/placement.h"

namespace zenlay {

namespace {

/// Rows `width` pixels apart, from the image cache. With a single slot the pictures of the clipped object could push
/// the clip source out before it is used: then, and without slots, the level keeps an image of its own.
ObjectPixel* clipMemory(EffectProcessInfo* info, bool* found) {
  int width = info->host.width, height = info->host.height;
  *found = false;
  if (imageCacheSlots() > 1)
    return static_cast<ObjectPixel*>(
        effectImage(clipCacheKey, width, height, 8 * sizeof(ObjectPixel), info->depth, found));
  WorkImage& own = levelOf(info).clipImage;
  size_t bytes = static_cast<size_t>(environment.workBufferBytes);
  *found = own.memory && own.bytes == bytes;
  if (!*found) {
    if (own.memory) platform::releaseMemory(own.memory, own.bytes);
    own = {};
    own.memory = reserveRenderMemory(bytes);
    own.bytes = bytes;
  }
  return static_cast<ObjectPixel*>(own.memory);
}

ObjectPixel* objectRow(const EffectProcessInfo* info, int y) {
  return info->objectImage + static_cast<ptrdiff_t>(y) * info->bufferLine;
}

template <class Pixel>
Pixel* frameRow(const EffectProcessInfo* info, int y) {
  return reinterpret_cast<Pixel*>(reinterpret_cast<uint8_t*>(info->host.frame) +
                                  static_cast<ptrdiff_t>(y) * info->host.lineBytes);
}

template <class Frame>
void storeRow(const EffectProcessInfo* info, const PixelRect& area, int y, ObjectPixel* clip) {
  const ObjectPixel* object = objectRow(info, y);
  const Frame* frame = frameRow<Frame>(info, y);
  for (int x = area.left; x < area.right; x++) clip[x] = {frame[x].y, frame[x].cb, frame[x].cr, object[x].a};
}

/// The same where `kept` holds earlier pieces of the object: their colours stay, the alphas add up.
template <class Frame>
void addRow(const EffectProcessInfo* info, const PixelRect& object, const PixelRect& kept, int y, ObjectPixel* clip) {
  const ObjectPixel* pixels = objectRow(info, y);
  const Frame* frame = frameRow<Frame>(info, y);
  PixelRect area = unite(object, kept);
  auto holds = [y](const PixelRect& r, int x) { return y >= r.top && y < r.bottom && x >= r.left && x < r.right; };
  for (int x = area.left; x < area.right; x++) {
    int alpha = holds(object, x) ? pixels[x].a : 0;
    int before = holds(kept, x) ? clip[x].a : 0;
    if (before > 0)
      clip[x].a = static_cast<int16_t>(combineTransparency(before, alpha));
    else
      clip[x] = {frame[x].y, frame[x].cb, frame[x].cr, static_cast<int16_t>(alpha)};
  }
}

template <class Frame>
void storeRows(const EffectProcessInfo* info, const PixelRect& kept, ObjectPixel* clip, int clipWidth) {
  PixelRect object = objectCoverage(info), area = unite(kept, object);
  overRows(environment.hostFunctions, area.bottom - area.top, [&](int first, int last) {
    for (int y = area.top + first; y < area.top + last; y++) {
      ObjectPixel* row = clip + static_cast<ptrdiff_t>(y) * clipWidth;
      if (isEmpty(kept))
        storeRow<Frame>(info, object, y, row);
      else
        addRow<Frame>(info, object, kept, y, row);
    }
  });
}

void clearAlpha(ObjectPixel* row, int first, int last) {
  for (int x = first; x < last; x++) row[x].a = 0;
}

/// `area` is the object's; only the part `inside` meets the clip source.
template <class Frame>
void applyRows(const EffectProcessInfo* info, const PixelRect& area, const PixelRect& inside, const ObjectPixel* clip) {
  overRows(environment.hostFunctions, area.bottom - area.top, [&](int first, int last) {
    for (int y = area.top + first; y < area.top + last; y++) {
      ObjectPixel* object = objectRow(info, y);
      if (y < inside.top || y >= inside.bottom) {
        clearAlpha(object, area.left, area.right);
        continue;
      }
      clearAlpha(object, area.left, inside.left);
      clearAlpha(object, inside.right, area.right);
      const ObjectPixel* source = clip + static_cast<ptrdiff_t>(y) * info->host.width;
      Frame* frame = frameRow<Frame>(info, y);
      for (int x = inside.left; x < inside.right; x++) clipPixel(object[x], source[x], frame[x]);
    }
  });
}

}  // namespace

void storeClip(EffectProcessInfo* info) {
  RenderLevel& level = levelOf(info);
  bool found;
  ObjectPixel* clip = clipMemory(info, &found);
  PixelRect kept = level.individualsDrawn && info->clipValid && found ? level.clipArea : PixelRect{};
  info->clipValid = 0;
  if (!clip) return;
  if (frameHasAlpha(info))
    storeRows<ObjectPixel>(info, kept, clip, info->host.width);
  else
    storeRows<FramePixel>(info, kept, clip, info->host.width);
  level.clipArea = unite(kept, objectCoverage(info));
  info->clipValid = 1;
}

void applyClip(EffectProcessInfo* info) {
  RenderLevel& level = levelOf(info);
  PixelRect area = objectCoverage(info), inside{};
  const ObjectPixel* clip = nullptr;
  if (info->clipValid) {
    bool found;
    clip = clipMemory(info, &found);
    if (clip && found) inside = intersect(level.clipArea, area);
  }
  if (frameHasAlpha(info))
    applyRows<ObjectPixel>(info, area, inside, clip);
  else
    applyRows<FramePixel>(info, area, inside, clip);
}

}  // namespace zenlay
