#include "zenlay/media/bmp_reader.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/paths.h"
#include "zenlay/effects/pixels.h"
#include "zenlay/host/environment.h"

namespace zenlay {

namespace {

constexpr size_t fileHeaderBytes = 14;
constexpr size_t pixelOffsetAt = 10;      // in the file header: where the pixels begin
constexpr uint32_t maxHeaderBytes = 124;  // of the longest known extension of the header
constexpr int minFileBits = 16;
constexpr size_t maxBitmapBytes = size_t{1} << 30;

constexpr uint8_t widen5(unsigned value) { return static_cast<uint8_t>(value << 3 | value >> 2); }

/// 5 bits a component, red on top.
void convert16(Bgr* d, const uint8_t* s, int width) {
  for (int x = 0; x < width; x++) {
    unsigned v = s[2 * x] | unsigned{s[2 * x + 1]} << 8;
    d[x] = {widen5(v & 31), widen5(v >> 5 & 31), widen5(v >> 10 & 31)};
  }
}

/// Indices packed from the high bits down; an index beyond the palette is black.
void convertIndexed(Bgr* d, const uint8_t* s, int width, int bits, const uint8_t* palette, size_t entries) {
  int perByte = 8 / bits;
  unsigned mask = (1u << bits) - 1;
  for (int x = 0; x < width; x++) {
    unsigned index = s[x / perByte] >> (8 - bits * (x % perByte + 1)) & mask;
    const uint8_t* entry = palette + size_t{4} * index;
    d[x] = index < entries ? Bgr{entry[0], entry[1], entry[2]} : Bgr{};
  }
}

bool fitsFrameBuffer(int width, int height) {
  size_t limit =
      static_cast<size_t>(environment.workH) * static_cast<size_t>(environment.bufferWidth) * sizeof(FramePixel);
  return bitmapLineBytes(width, 24) * static_cast<size_t>(height) <= limit;
}

}  // namespace

bool usableBitmap(const BitmapHeader& header) {
  constexpr uint16_t depths[] = {1, 4, 8, 16, 24, 32};
  if (header.size < sizeof(BitmapHeader) || header.size > maxHeaderBytes || header.compression != 0) return false;
  if (header.width < 1 || header.width > maxPictureSide) return false;
  if (header.height < -maxPictureSide || header.height > maxPictureSide || header.height == 0) return false;
  return std::find(std::begin(depths), std::end(depths), header.bits) != std::end(depths);
}

size_t paletteEntries(const BitmapHeader& header) {
  if (header.bits >= minFileBits) return 0;
  uint32_t all = 1u << header.bits;
  return header.colorsUsed == 0 ? all : std::min(header.colorsUsed, all);
}

CachedImage storeBitmap(const BitmapHeader& header, const uint8_t* palette, const uint8_t* pixels, const char* name) {
  if (!usableBitmap(header)) return {};
  int width = header.width, height = std::abs(header.height);
  if (header.bits == 16 && !fitsFrameBuffer(width, height)) return {};
  int bits = header.bits == 32 ? 32 : 24;
  size_t lineBytes = bitmapLineBytes(width, bits), sourceBytes = bitmapLineBytes(width, header.bits);
  if (lineBytes * static_cast<size_t>(height) > maxBitmapBytes) return {};
  auto* stored = static_cast<uint8_t*>(createImage(width, height, bits, name));
  if (!stored) return {};
  size_t entries = paletteEntries(header);
  for (int y = 0; y < height; y++) {
    int from = header.height < 0 ? height - 1 - y : y;
    const uint8_t* s = pixels + static_cast<size_t>(from) * sourceBytes;
    uint8_t* d = stored + static_cast<size_t>(y) * lineBytes;
    if (header.bits >= 24)
      memcpy(d, s, lineBytes);
    else if (header.bits == 16)
      convert16(reinterpret_cast<Bgr*>(d), s, width);
    else
      convertIndexed(reinterpret_cast<Bgr*>(d), s, width, header.bits, palette, entries);
  }
  return {stored, width, height, bits};
}

CachedImage readBmp(const char* path, const char* name) {
  std::FILE* stream = platform::openFile(path, "rb");
  if (!stream) return {};
  uint8_t start[fileHeaderBytes + sizeof(BitmapHeader)];
  bool read = fread(start, sizeof start, 1, stream) == 1 && start[0] == 'B' && start[1] == 'M';
  fclose(stream);
  if (!read) return {};
  BitmapHeader header;
  memcpy(&header, start + fileHeaderBytes, sizeof header);
  if (!usableBitmap(header) || header.bits < minFileBits) return {};

  uint32_t offset;
  memcpy(&offset, start + pixelOffsetAt, sizeof offset);
  size_t bytes = bitmapLineBytes(header.width, header.bits) * static_cast<size_t>(std::abs(header.height));
  std::string file;
  if (bytes > maxBitmapBytes || !platform::readFile(path, file, maxBitmapBytes)) return {};
  if (offset < sizeof start || offset > file.size() || file.size() - offset < bytes) return {};
  return storeBitmap(header, nullptr, reinterpret_cast<const uint8_t*>(file.data()) + offset, name);
}

}  // namespace zenlay
