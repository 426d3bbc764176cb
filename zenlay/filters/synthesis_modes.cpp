#include "zenlay/filters/synthesis_modes.h"

#include <algorithm>
#include <cstring>

namespace zenlay {

namespace {

constexpr int normalZoom = 1000;

int16_t lumaAsAlpha(int16_t y) { return static_cast<int16_t>(std::clamp<int>(y, 0, fullAlpha)); }

template <class Source>
void combineRow(ObjectPixel* d, const Source* s, int n, SynthesisMode mode) {
  switch (mode) {
    case synthesisLumaAsAlpha:
      for (int i = 0; i < n; i++) d[i].a = lumaAsAlpha(s[i].y);
      break;
    case synthesisLumaTimesAlpha:
      for (int i = 0; i < n; i++) d[i].a = static_cast<int16_t>(d[i].a * lumaAsAlpha(s[i].y) >> 12);
      break;
    default:
      for (int i = 0; i < n; i++) d[i] = {s[i].y, s[i].cb, s[i].cr, d[i].a};
  }
}

void clearAlpha(ObjectPixel* d, int n) {
  for (int i = 0; i < n; i++) d[i].a = 0;
}

int wrap(int value, int size) {
  int rest = value % size;
  return rest < 0 ? rest + size : rest;
}

/// One row of the object, `row` being the picture's.
template <class Source>
void combineObjectRow(ObjectPixel* d, int width, const Source* row, const SynthesisPicture& picture,
                      SynthesisMode mode) {
  if (picture.tiled) {
    int from = wrap(-picture.x, picture.width);
    for (int x = 0; x < width;) {
      int n = std::min(picture.width - from, width - x);
      combineRow(d + x, row + from, n, mode);
      x += n;
      from = 0;
    }
    return;
  }
  int begin = std::clamp(picture.x, 0, width);
  int end = std::clamp(picture.x + picture.width, begin, width);
  clearAlpha(d, begin);
  combineRow(d + begin, row + (begin - picture.x), end - begin, mode);
  clearAlpha(d + end, width - end);
}

template <class Source>
void combineRows(EffectProcessInfo* info, const SynthesisPicture& picture, SynthesisMode mode, int first, int last) {
  for (int y = first; y < last; y++) {
    ObjectPixel* d = info->objectImage + static_cast<ptrdiff_t>(y) * info->bufferLine;
    int from = y - picture.y;
    if (picture.tiled) from = wrap(from, picture.height);
    if (from < 0 || from >= picture.height) {
      clearAlpha(d, info->objectWidth);
      continue;
    }
    const auto* line = static_cast<const uint8_t*>(picture.pixels) + static_cast<ptrdiff_t>(from) * picture.lineBytes;
    combineObjectRow(d, info->objectWidth, reinterpret_cast<const Source*>(line), picture, mode);
  }
}

}  // namespace

void combinePicture(const HostFunctionTable* host, EffectProcessInfo* info, const SynthesisPicture& picture,
                    SynthesisMode mode) {
  overRows(host, info->objectHeight, [&](int first, int last) {
    if (picture.alpha)
      combineRows<ObjectPixel>(info, picture, mode, first, last);
    else
      combineRows<FramePixel>(info, picture, mode, first, last);
  });
}

int zoomedSize(int size, int zoom, int limit) {
  return static_cast<int>(std::clamp<int64_t>(int64_t{size} * zoom / normalZoom, 1, limit));
}

SynthesisPicture scalePicture(EffectDefinition* effect, EffectProcessInfo* info, const SynthesisPicture& picture,
                              int width, int height) {
  SynthesisPicture scaled = picture;
  scaled.pixels = info->workImage;
  scaled.lineBytes = info->bufferLine * static_cast<int>(sizeof(ObjectPixel));
  scaled.width = width;
  scaled.height = height;
  size_t pixelBytes = picture.alpha ? sizeof(ObjectPixel) : sizeof(FramePixel);
  auto* rows = reinterpret_cast<uint8_t*>(info->workImage);
  for (ptrdiff_t y = 0; y < height; y++) memset(rows + y * scaled.lineBytes, 0, width * pixelBytes);

  float w = static_cast<float>(width), h = static_cast<float>(height);
  float u = static_cast<float>(picture.width), v = static_cast<float>(picture.height);
  DrawVertex corners[4] = {{0, 0, 1, 0, 0}, {w, 0, 1, u, 0}, {w, h, 1, u, v}, {0, h, 1, 0, v}};
  ImageTarget target{info->workImage, width, height, scaled.lineBytes};
  ImageRegion source{picture.pixels, 0, 0, picture.width, picture.height, picture.lineBytes};
  uint32_t flags = picture.alpha ? blendSourceAlpha | blendDestinationAlpha : 0;
  effect->services->drawPolygon(&target, corners, 4, &source, 0, flags);
  return scaled;
}

SynthesisPicture keepPicture(EffectDefinition* effect, const SynthesisPicture& picture) {
  SynthesisPicture kept = picture;
  size_t rowBytes = picture.width * (picture.alpha ? sizeof(ObjectPixel) : sizeof(FramePixel));
  kept.lineBytes = static_cast<int>(rowBytes);
  bool created;
  auto* to = static_cast<uint8_t*>(
      effect->services->workMemory(effect->object_ref, rowBytes * static_cast<size_t>(picture.height), &created));
  kept.pixels = to;
  if (!to) return kept;
  const auto* from = static_cast<const uint8_t*>(picture.pixels);
  for (ptrdiff_t y = 0; y < picture.height; y++)
    memcpy(to + y * kept.lineBytes, from + y * picture.lineBytes, rowBytes);
  return kept;
}

}  // namespace zenlay
