// An image plug-in. A file "*.tst" holds one byte: the bits per pixel to deliver a 3 x 2 picture in; 0 refuses. With 99
// the height is negative (rows top-down, 24 bits).
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int topDown = 99;

struct Header {
  uint32_t size;
  int32_t width, height;
  uint16_t planes, bits;
  uint32_t compression, rest[5];
  uint8_t palette[3][4];
};

// Stored row 0: red, green, blue; row 1: blue, blue, red.
constexpr int picture[2][3] = {{0, 1, 2}, {2, 2, 0}};
constexpr uint8_t colours[3][4] = {{0, 0, 255, 255}, {0, 255, 0, 255}, {255, 0, 0, 128}};

void putPixel(uint8_t* row, int x, int bits, int index) {
  if (bits < 16) {
    int perByte = 8 / bits;
    row[x / perByte] |= index << (8 - bits * (x % perByte + 1));
  } else if (bits == 16) {
    uint16_t value = index == 0 ? 31 << 10 : index == 1 ? 31 << 5 : 31;
    memcpy(row + 2 * x, &value, 2);
  } else {
    memcpy(row + x * bits / 8, colours[index], bits / 8);
  }
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) int GetPluginInfo(int number, char* buffer, int length) {
  return snprintf(buffer, length, "%s", number == 1 ? "Test pictures" : "*.ts2;*.tst");
}

__attribute__((visibility("default"))) int GetPicture(const char* name, long offset, unsigned flag, void** header,
                                                      void** pixels) {
  if (offset != 0 || flag != 0) return -1;
  std::FILE* file = fopen(name, "rb");
  if (!file) return 1;
  int bits = fgetc(file);
  fclose(file);
  if (bits <= 0) return 2;
  bool flipped = bits == topDown;
  if (flipped) bits = 24;
  auto* info = static_cast<Header*>(calloc(1, sizeof(Header)));
  *info = {40, 3, flipped ? -2 : 2, 1, static_cast<uint16_t>(bits), 0, {}, {}};
  if (bits < 16) {
    info->rest[3] = bits == 1 ? 2 : 3;
    memcpy(info->palette, colours, sizeof colours);
  }
  size_t line = (3 * bits + 31) / 32 * 4;
  auto* rows = static_cast<uint8_t*>(calloc(2, line));
  for (int y = 0; y < 2; y++)
    for (int x = 0; x < 3; x++) putPixel(rows + y * line, x, bits, bits == 1 ? picture[y][x] & 1 : picture[y][x]);
  *header = info;
  *pixels = rows;
  return 0;
}
}
