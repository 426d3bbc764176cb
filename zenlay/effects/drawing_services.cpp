#include "zenlay/effects/drawing_services.h"

#include <algorithm>
#include <cstring>

#include "zenlay/host/environment.h"
#include "zenlay/render/blend.h"
#include "zenlay/render/convert.h"
#include "zenlay/render/draw.h"
#include "zenlay/render/flattening.h"
#include "zenlay/render/group_control.h"
#include "zenlay/render/targets.h"

namespace zenlay {

namespace {

constexpr int maxPolygon = 16;

const EffectProcessInfo* currentInfo() { return sceneDepth >= 0 ? &renderLevels[sceneDepth].info : nullptr; }

bool isFrame(const EffectProcessInfo* info, const void* pixels) {
  return info && (pixels == info->host.frame || pixels == info->host.scratch);
}

/// Geometry of an image that is only known by its address.
ImageTarget targetAt(void* pixels, uint32_t flags) {
  const EffectProcessInfo* info = currentInfo();
  ImageTarget target{pixels, environment.workW, environment.workH, environment.workLineBytes};
  if (info && (!(flags & blendDestinationAlpha) || flags & (blendClip3d | blendClipSecondary))) {
    target.width = info->host.width;
    target.height = info->host.height;
  }
  if (!(flags & blendDestinationAlpha))
    target.lineBytes =
        isFrame(info, pixels) ? info->host.lineBytes : environment.bufferWidth * static_cast<int>(sizeof(FramePixel));
  return target;
}

int sourceLine(const void* pixels, uint32_t flags) {
  const EffectProcessInfo* info = currentInfo();
  if (isFrame(info, pixels)) return info->host.lineBytes;
  if (flags & blendSourceAlpha) return environment.workLineBytes;
  if (info && (pixels == info->objectImage || pixels == info->workImage)) return environment.workLineBytes;
  return environment.bufferWidth * static_cast<int>(sizeof(FramePixel));
}

PixelRect insideTarget(const ImageTarget& target, int x, int y, int w, int h) {
  auto end = [](int at, int size) { return static_cast<int>(std::min<int64_t>(int64_t{at} + size, INT32_MAX)); };
  return intersect({x, y, end(x, w), end(y, h)}, {0, 0, target.width, target.height});
}

/// Drawing onto the frame while an object is flattened: see frameFlags.
uint32_t flagsFor(const ImageTarget* target, uint32_t flags) {
  const EffectProcessInfo* info = currentInfo();
  return target && info && target->pixels == info->host.frame ? frameFlags(info, flags) : flags;
}

}  // namespace

const int32_t* drawImage3d(const ImageTarget* target, const ImageRegion* region, const ImagePlacement* placement,
                           uint32_t flags, int32_t corners[8]) {
  static constinit int32_t drawn[8]{};
  const EffectProcessInfo* info = currentInfo();
  SpaceTransform group;
  bool turned;
  double zoom;
  bool grouped = target && info && target->pixels == info->host.frame && groupTransform(info, &group, &turned, &zoom);
  if (!drawImageInSpace(environment.hostFunctions, target, *region, *placement, grouped ? &group : nullptr,
                        flagsFor(target, flags), drawn))
    return nullptr;
  if (target) noteDrawn(target->pixels, intersect(drawnBounds(drawn), {0, 0, target->width, target->height}));
  if (corners) memcpy(corners, drawn, sizeof drawn);
  return drawn;
}

void blendCopyAt(void* destination, int x, int y, const void* source, int sx, int sy, int w, int h, int transparency,
                 uint32_t flags) {
  ImageTarget target = targetAt(destination, flags);
  noteDrawn(destination, insideTarget(target, x, y, w, h));
  blendCopy(environment.hostFunctions, target, x, y, {source, sx, sy, w, h, sourceLine(source, flags)}, transparency,
            flagsFor(&target, flags));
}

/// A target with alpha takes the colour with its alpha as it is; an opaque one is mixed with it. Other modes than
/// Normal blend on both.
void fillArea(void* destination, int x, int y, int w, int h, ObjectPixel colour, uint32_t flags) {
  ImageTarget target = targetAt(destination, flags);
  PixelRect area = insideTarget(target, x, y, w, h);
  noteDrawn(destination, area);
  flags = flagsFor(&target, flags);
  const BlendKernels& kernels = blendKernels(blendModeOf(flags));
  overRows(environment.hostFunctions, area.bottom - area.top, [&](int first, int last) {
    constexpr int chunk = 64;
    ObjectPixel run[chunk];
    std::fill_n(run, chunk, colour);
    for (int row = area.top + first; row < area.top + last; row++) {
      uint8_t* line = static_cast<uint8_t*>(target.pixels) + static_cast<ptrdiff_t>(row) * target.lineBytes;
      for (int at = area.left; at < area.right; at += chunk) {
        int n = std::min(chunk, area.right - at);
        if (!(flags & blendDestinationAlpha))
          kernels.toFrame(reinterpret_cast<FramePixel*>(line) + at, run, n, fullAlpha);
        else if (flags & blendModeBits)
          kernels.toObject(reinterpret_cast<ObjectPixel*>(line) + at, run, n, fullAlpha);
        else
          memcpy(reinterpret_cast<ObjectPixel*>(line) + at, run, n * sizeof(ObjectPixel));
      }
    }
  });
}

void drawPolygon(const ImageTarget* target, const DrawVertex* vertices, int count, const ImageRegion* region,
                 int transparency, uint32_t flags) {
  if (count < 3 || count > maxPolygon) return;
  // Corners may lie far outside; casting them to pixels needs them inside the target first.
  auto within = [](float v, int limit) { return static_cast<int>(std::clamp(v, -2.0f, limit + 2.0f)); };
  PixelRect bounds{target->width, target->height, 0, 0};
  for (int i = 0; i < count; i++) {
    int x = within(vertices[i].x, target->width), y = within(vertices[i].y, target->height);
    bounds = {std::min(bounds.left, x - 1), std::min(bounds.top, y - 1), std::max(bounds.right, x + 2),
              std::max(bounds.bottom, y + 2)};
  }
  noteDrawn(target->pixels, intersect(bounds, {0, 0, target->width, target->height}));
  fillPolygon(environment.hostFunctions, *target, vertices, count, *region, transparency, flagsFor(target, flags));
}

void convertRgb(ObjectPixel* destination, const void* source, int width, int height, int bits) {
  if (bits != 24 && bits != 32) return;
  ptrdiff_t line = (static_cast<ptrdiff_t>(width) * bits / 8 + 3) / 4 * 4;
  overRows(environment.hostFunctions, height, [=](int first, int last) {
    for (int y = first; y < last; y++) {
      ObjectPixel* to = destination + static_cast<ptrdiff_t>(y) * environment.workStride;
      const uint8_t* from = static_cast<const uint8_t*>(source) + line * (height - 1 - y);
      if (bits == 24)
        bgrToObjectRow(to, reinterpret_cast<const Bgr*>(from), width);
      else
        bgraToObjectRow(to, reinterpret_cast<const Bgra*>(from), width);
    }
  });
}

}  // namespace zenlay
