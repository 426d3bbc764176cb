#include "zenlay/media/image_loading.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/paths.h"
#include "platform/picture.h"
#include "zenlay/host/environment.h"
#include "zenlay/media/bmp_reader.h"
#include "zenlay/media/image_plugins.h"
#include "zenlay/media/media_handles.h"
#include "zenlay/render/convert.h"
#include "zenlay/render/image_cache.h"

namespace zenlay {

namespace {

constexpr size_t maxCacheName = 259;
constexpr int maxDecodedSide = 16384;  // a small file can hold a picture of any size: at most 1 GiB
constexpr char filterFormat[] = "*.bmp;*.png;*.jpg;";

/// Pictures only: a path may be spelled like the name of an effect's image.
CachedImage findPicture(const char* path) {
  CachedImage image = findImage(path);
  return image.bits == 24 || image.bits == 32 ? image : CachedImage{};
}

CachedImage readWithDecoder(const char* path, const char* name) {
  platform::Picture picture;
  if (!platform::decodePicture(path, &picture, maxDecodedSide)) return {};
  void* stored = createImage(picture.width, picture.height, 32, name);
  if (!stored) return {};
  memcpy(stored, picture.pixels.data(), picture.pixels.size());
  return {stored, picture.width, picture.height, 32};
}

CachedImage decode(const char* path) {
  const char* name = strlen(path) <= maxCacheName ? path : nullptr;
  CachedImage image{};
  if (platform::equalNoCase(platform::extensionOf(path), ".bmp")) image = readBmp(path, name);
  if (!image.data) image = readWithDecoder(path, name);
  if (!image.data) image = readWithPlugins(path, name);
  return image;
}

/// From the cache or decoded; data is null, and the missing file counted, when there is no such picture.
CachedImage obtain(const char* path) {
  if (CachedImage image = findPicture(path); image.data) return image;
  CachedImage image{};
  if (const char* moved = movedFile(path); *moved) {
    image = findPicture(moved);
    if (!image.data) image = decode(moved);
  } else {
    image = decode(path);
  }
  if (!image.data) environment.missingFiles++;
  return image;
}

int testExistence(const char* path) {
  if (findPicture(path).data || platform::fileExists(path) || *movedFile(path)) return 1;
  environment.missingFiles++;
  return 0;
}

ImageClip clampedClip(const CachedImage& image, const ImageClip* clip) {
  if (!clip) return {0, 0, image.width, image.height};
  ImageClip c;
  c.left = std::clamp(clip->left, 0, image.width);
  c.top = std::clamp(clip->top, 0, image.height);
  c.right = std::clamp(clip->right, c.left, image.width);
  c.bottom = std::clamp(clip->bottom, c.top, image.height);
  return c;
}

void convertRows(ObjectPixel* destination, const CachedImage& image, int left, int top, int width, int height) {
  size_t lineBytes = bitmapLineBytes(image.width, image.bits);
  size_t pixelBytes = static_cast<size_t>(image.bits) / 8;
  const auto* pixels = static_cast<const uint8_t*>(image.data) + static_cast<size_t>(left) * pixelBytes;
  overRows(environment.hostFunctions, height, [&](int first, int last) {
    for (int y = first; y < last; y++) {
      const uint8_t* from = pixels + static_cast<size_t>(image.height - 1 - top - y) * lineBytes;
      ObjectPixel* to = destination + static_cast<ptrdiff_t>(y) * environment.workStride;
      if (image.bits == 24)
        bgrToObjectRow(to, reinterpret_cast<const Bgr*>(from), width);
      else
        bgraToObjectRow(to, reinterpret_cast<const Bgra*>(from), width);
    }
  });
}

}  // namespace

int loadImage(ObjectPixel* destination, const char* path, int32_t* width, int32_t* height, const ImageClip* clip,
              uint32_t flags) {
  if (!path || !*path) return 0;
  if (flags & loadImageExists) return testExistence(path);
  CachedImage image = obtain(path);
  if (!image.data) return 0;
  ImageClip area = clampedClip(image, clip);
  int32_t areaWidth = area.right - area.left, areaHeight = area.bottom - area.top;
  if (destination) {
    areaWidth = std::min(areaWidth, environment.workW);
    areaHeight = std::min(areaHeight, environment.workH);
    convertRows(destination, image, area.left, area.top, areaWidth, areaHeight);
  }
  if (width) *width = areaWidth;
  if (height) *height = areaHeight;
  return 1;
}

const char* imageFileFilter() {
  static constinit std::string filter;
  std::string patterns = filterFormat + imagePluginPatterns();
  std::string label = "ImageFile (" + patterns + ")";
  if (filter.compare(0, label.size(), label) != 0) {  // built once a set of plug-ins
    filter = label;
    filter += '\0';
    filter += patterns;
    filter.append("\0AllFile (*.*)\0*.*\0", 19);
  }
  return filter.c_str();
}

}  // namespace zenlay
