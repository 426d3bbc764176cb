#include "zenlay/render/targets.h"

#include <algorithm>
#include <cstring>

#include "platform/system.h"
#include "zenlay/host/environment.h"

namespace zenlay {

constinit RenderLevel renderLevels[maxSceneDepth]{};
constinit int sceneDepth = -1;
void* (*reserveRenderMemory)(size_t bytes) = platform::reserveMemory;

namespace {

constexpr int64_t minObjectImage = 2 * 1024 * 1024;
constexpr PixelRect nothing{};

size_t imageBytes() { return static_cast<size_t>(std::max(environment.workBufferBytes, minObjectImage)); }

/// Effects may read a little before the first pixel.
size_t imageMargin() { return (static_cast<size_t>(environment.workStride) + 1) * 32; }

PixelRect wholeImage(const WorkImage& image) { return {0, 0, image.lineBytes / image.pixelBytes, environment.workH}; }

void release(WorkImage* image) {
  if (image->memory) platform::releaseMemory(image->memory, image->bytes);
  *image = {};
}

int reserve(WorkImage* image, size_t margin) {
  size_t bytes = imageBytes() + margin;
  if (image->memory && image->bytes == bytes && image->lineBytes) return 1;
  release(image);
  image->memory = reserveRenderMemory(bytes);
  if (!image->memory) return 0;
  image->bytes = bytes;
  image->pixels = static_cast<uint8_t*>(image->memory) + margin;
  image->lineBytes = environment.workLineBytes;
  image->pixelBytes = sizeof(ObjectPixel);
  image->used = nothing;
  return 1;
}

WorkImage* find(RenderLevel& level, const void* pixels) {
  for (WorkImage& image : level.images)
    if (image.pixels == pixels) return &image;
  for (WorkImage& image : level.picture)
    if (image.pixels == pixels) return &image;
  return nullptr;
}

}  // namespace

PixelRect unite(const PixelRect& a, const PixelRect& b) {
  if (isEmpty(a)) return b;
  if (isEmpty(b)) return a;
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

PixelRect intersect(const PixelRect& a, const PixelRect& b) {
  PixelRect r{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
              std::min(a.bottom, b.bottom)};
  return isEmpty(r) ? nothing : r;
}

int prepareLevel(int depth) {
  for (WorkImage& image : renderLevels[depth].images)
    if (!reserve(&image, imageMargin())) return 0;
  return 1;
}

int preparePictures(int depth) {
  for (WorkImage& image : renderLevels[depth].picture)
    if (!reserve(&image, 0)) return 0;
  return 1;
}

int prepareRenderBuffers() { return prepareLevel(0); }

void freeRenderBuffers() {
  for (RenderLevel& level : renderLevels) {
    for (WorkImage& image : level.images) release(&image);
    for (WorkImage& image : level.picture) release(&image);
    release(&level.clipImage);
    level = {};
  }
}

ImageTarget frameTarget(const EffectProcessInfo* info) {
  return {info->host.frame, info->host.width, info->host.height, info->host.lineBytes};
}

ImageRegion objectRegion(const EffectProcessInfo* info) {
  return {info->objectImage,
          0,
          0,
          info->objectWidth,
          info->objectHeight,
          info->bufferLine * static_cast<int>(sizeof(ObjectPixel))};
}

void noteDrawn(const void* pixels, const PixelRect& rect) {
  if (sceneDepth < 0) return;
  WorkImage* image = find(renderLevels[sceneDepth], pixels);
  if (image) image->used = unite(image->used, intersect(rect, wholeImage(*image)));
}

PixelRect drawnBounds(const int32_t corners[8]) {
  int64_t left = corners[0], right = corners[0], top = corners[1], bottom = corners[1];
  for (int i = 2; i < 8; i += 2) {
    left = std::min<int64_t>(left, corners[i]);
    right = std::max<int64_t>(right, corners[i]);
    top = std::min<int64_t>(top, corners[i + 1]);
    bottom = std::max<int64_t>(bottom, corners[i + 1]);
  }
  // Corners are rounded: a pixel around is sure to hold what was drawn. Shifts round downwards.
  return {static_cast<int>((left >> 12) - 1), static_cast<int>((top >> 12) - 1),
          static_cast<int>(((right + subPixel - 1) >> 12) + 1), static_cast<int>(((bottom + subPixel - 1) >> 12) + 1)};
}

void noteTouched(const EffectProcessInfo* info, bool frame) {
  RenderLevel& level = levelOf(info);
  for (WorkImage& image : level.images)
    if (image.pixels == reinterpret_cast<uint8_t*>(info->objectImage) ||
        image.pixels == reinterpret_cast<uint8_t*>(info->workImage))
      image.used = wholeImage(image);
  if (!frame) return;
  for (WorkImage& image : level.picture)
    if (image.pixels) image.used = wholeImage(image);
}

PixelRect objectCoverage(const EffectProcessInfo* info) {
  PixelRect whole{0, 0, info->objectWidth, info->objectHeight};
  const WorkImage* image = find(levelOf(info), info->objectImage);
  return image ? intersect(image->used, whole) : whole;
}

void assignImages(EffectProcessInfo* info) {
  RenderLevel& level = levelOf(info);
  auto area = [](const WorkImage& image) {
    return isEmpty(image.used) ? 0 : int64_t{image.used.right - image.used.left} * (image.used.bottom - image.used.top);
  };
  int spare = 0;
  for (int i = 1; i < imagesPerLevel; i++)
    if (area(level.images[i]) < area(level.images[spare])) spare = i;
  if (level.previous.image && (level.previousWanted || !info->drawableObject))
    for (int i = 0; i < imagesPerLevel; i++)
      if (level.images[i].pixels == level.previous.image) spare = i;
  info->objectImage = reinterpret_cast<ObjectPixel*>(level.images[(spare + 1) % imagesPerLevel].pixels);
  info->workImage = reinterpret_cast<ObjectPixel*>(level.images[(spare + 2) % imagesPerLevel].pixels);
}

WorkImage* emptySpare(const EffectProcessInfo* info) {
  for (WorkImage& image : levelOf(info).images) {
    if (image.pixels == reinterpret_cast<uint8_t*>(info->objectImage) ||
        image.pixels == reinterpret_cast<uint8_t*>(info->workImage))
      continue;
    clearImage(&image, environment.workLineBytes, sizeof(ObjectPixel));
    return &image;
  }
  return nullptr;
}

void clearImage(WorkImage* image, int lineBytes, int pixelBytes) {
  if (!isEmpty(image->used)) {
    const PixelRect& used = image->used;
    size_t offset = static_cast<size_t>(used.left) * image->pixelBytes;
    size_t bytes = static_cast<size_t>(used.right - used.left) * image->pixelBytes;
    overRows(environment.hostFunctions, used.bottom - used.top, [&](int first, int last) {
      for (int y = first; y < last; y++)
        memset(image->pixels + static_cast<size_t>(used.top + y) * image->lineBytes + offset, 0, bytes);
    });
  }
  image->used = nothing;
  image->lineBytes = lineBytes;
  image->pixelBytes = pixelBytes;
}

}  // namespace zenlay
