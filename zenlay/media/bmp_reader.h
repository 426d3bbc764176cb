// Uncompressed device-independent bitmaps: ".bmp" files, and what image plug-ins deliver.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zenlay/render/image_cache.h"

namespace zenlay {

/// The 40-byte information header, little-endian.
struct BitmapHeader {
  uint32_t size;  // bytes, 40..124
  int32_t width;
  int32_t height;  // negative: rows top-down
  uint16_t planes;
  uint16_t bits;         // per pixel
  uint32_t compression;  // 0 = none
  uint32_t imageBytes;
  int32_t pixelsPerMetreX, pixelsPerMetreY;
  uint32_t colorsUsed;  // palette entries, 0 = 1 << bits
  uint32_t colorsImportant;
};
static_assert(sizeof(BitmapHeader) == 40);

inline constexpr int maxPictureSide = 32767;

/// Bytes of a row padded to 4 bytes.
constexpr size_t bitmapLineBytes(int width, int bits) {
  return (static_cast<size_t>(width) * static_cast<size_t>(bits) + 31) / 32 * 4;
}
/// Whether a picture of that header can be stored: 1, 4, 8, 16, 24 or 32 bits, uncompressed, sides within
/// 1..maxPictureSide.
bool usableBitmap(const BitmapHeader&);
/// Entries (blue, green, red, 0) that stand between the header and the pixels; 0 from 16 bits on.
size_t paletteEntries(const BitmapHeader&);
/// A new cache entry with the picture, bottom-up: 24 and 32 bits as they are, fewer converted to 24. data is null when
/// the header is not usable, a converted 16-bit picture is larger than the host's frame buffer, or memory is short.
/// `pixels` holds |height| rows of bitmapLineBytes.
CachedImage storeBitmap(const BitmapHeader&, const uint8_t* palette, const uint8_t* pixels, const char* name);

/// Reads an uncompressed ".bmp" of 16, 24 or 32 bits into a new cache entry; data is null for any other file.
CachedImage readBmp(const char* path, const char* name);

}  // namespace zenlay
