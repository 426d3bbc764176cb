#include "platform/picture.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <string>

#include "platform/paths.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace platform {
namespace {

using ::test::append;
using ::test::ScratchFolder;
using Pixel = std::array<int, 4>;  // red, green, blue, alpha

/// Rows count from the top.
Pixel pixelAt(const Picture& p, int x, int y) {
  const uint8_t* at = p.pixels.data() + (size_t(p.height - 1 - y) * p.width + x) * 4;
  return {at[2], at[1], at[0], at[3]};
}

struct Bitmap {
  int width, height, bits, compression;
  std::vector<uint32_t> colours;  // palette, or bit masks for compression 3
  std::string rows;               // bottom-up, padded
};

std::string bitmapFile(const Bitmap& b) {
  bool masks = b.compression == 3;
  std::string file = "BM";
  uint32_t offset = 14 + 40 + 4 * static_cast<uint32_t>(b.colours.size());
  const uint32_t rows = static_cast<uint32_t>(b.rows.size()), colours = static_cast<uint32_t>(b.colours.size());
  for (uint32_t value : {offset + rows, 0u, offset, 40u, uint32_t(b.width), uint32_t(b.height), 1u | b.bits << 16,
                         uint32_t(b.compression), rows, 0u, 0u, masks ? 0u : colours, 0u})
    append(file, value, 4);
  for (uint32_t colour : b.colours) append(file, colour, 4);
  return file + b.rows;
}

// Each is red, white over blue, black (32-bit with alpha: blue half transparent).
TEST(Pictures, BitmapsOfEveryDepth) {
  using namespace std::string_literals;
  const std::vector<uint32_t> palette = {0x0000FF, 0x000000, 0xFF0000, 0xFFFFFF};  // blue, black, red, white
  const Bitmap bitmaps[] = {
      {2, 2, 4, 0, palette, "\x01\0\0\0\x23\0\0\0"s},
      {2, 2, 8, 0, palette, "\0\x01\0\0\x02\x03\0\0"s},
      {2, 2, 8, 1, palette, "\x01\0\x01\x01\0\0\x01\x02\x01\x03\0\x01"s},  // run lengths
      {2, 2, 16, 0, {}, "\x1F\0\0\0\0\x7C\xFF\x7F"s},
      {2, 2, 16, 3, {0xF800, 0x07E0, 0x001F}, "\x1F\0\0\0\0\xF8\xFF\xFF"s},
      {2, 2, 24, 0, {}, "\xFF\0\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\0\0"s},
      {2, 2, 32, 0, {}, "\xFF\0\0\0\0\0\0\0\0\0\xFF\0\xFF\xFF\xFF\0"s},
  };
  ScratchFolder scratch;
  for (const Bitmap& bitmap : bitmaps) {
    scratch.write("p.bmp", bitmapFile(bitmap));
    Picture p;
    SCOPED_TRACE(std::to_string(bitmap.bits) + " bits, compression " + std::to_string(bitmap.compression));
    ASSERT_TRUE(decodePicture(scratch / "P.BMP", &p));
    ASSERT_EQ(p.width * 100 + p.height, 202);
    EXPECT_EQ(pixelAt(p, 0, 0), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(p, 1, 0), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(pixelAt(p, 0, 1), (Pixel{0, 0, 255, 255}));
    EXPECT_EQ(pixelAt(p, 1, 1), (Pixel{0, 0, 0, 255}));
  }
  scratch.write("p.bmp", bitmapFile({9, 1, 1, 0, {0x112233, 0x445566}, "\x80\x80\0\0"s}));
  Picture p;
  ASSERT_TRUE(decodePicture(scratch / "p.bmp", &p));
  EXPECT_EQ(pixelAt(p, 0, 0), (Pixel{0x44, 0x55, 0x66, 255}));
  EXPECT_EQ(pixelAt(p, 7, 0), (Pixel{0x11, 0x22, 0x33, 255}));
  EXPECT_EQ(pixelAt(p, 8, 0), (Pixel{0x44, 0x55, 0x66, 255}));
  // Top-down rows: a negative height.
  scratch.write("p.bmp", bitmapFile({1, -2, 24, 0, {}, "\x01\x02\x03\0\x04\x05\x06\0"s}));
  ASSERT_TRUE(decodePicture(scratch / "p.bmp", &p));
  EXPECT_EQ(pixelAt(p, 0, 0), (Pixel{3, 2, 1, 255}));
}

bool makePicture(const ScratchFolder& scratch, const std::string& format, const std::string& size,
                 const std::string& bytes, const std::string& name, const std::string& options = "") {
  scratch.write("in.raw", bytes);
  std::string command = "ffmpeg -v error -y -f rawvideo -pix_fmt " + format + " -s " + size + " -i " +
                        (scratch / "in.raw") + " -frames:v 1 " + options + " " + (scratch / name);
  return std::system(command.c_str()) == 0;
}

TEST(Pictures, LosslessFormatsKeepEveryValue) {
  std::string rgba;
  for (int i = 0; i < 256; i++) rgba += {char(i), char(255 - i), char(i * 7), char(i ^ 0x55)};
  ScratchFolder scratch;
  for (const char* name : {"a.png", "a.tga", "a.tiff", "a.webp"}) {
    SCOPED_TRACE(name);
    std::string options = std::string(name) == "a.webp" ? "-c:v libwebp -lossless 1 -pix_fmt bgra" : "-pix_fmt rgba";
    if (std::string(name) == "a.tga") options = "-pix_fmt bgra";
    ASSERT_TRUE(makePicture(scratch, "rgba", "16x16", rgba, name, options));
    Picture p;
    ASSERT_TRUE(decodePicture(scratch / name, &p));
    ASSERT_EQ(p.pixels.size(), 1024u);
    for (int i = 0; i < 256; i++) {
      if (std::string(name) == "a.webp" && (i ^ 0x55) == 0) continue;  // its encoder drops colours nobody sees
      ASSERT_EQ(pixelAt(p, i % 16, i / 16), (Pixel{i, 255 - i, (i * 7) & 255, i ^ 0x55})) << i;
    }
  }
}

TEST(Pictures, GreyAndDeepComponentsRound) {
  ScratchFolder scratch;
  std::string grey, greyAlpha, deep;
  for (int i = 0; i < 256; i++) {
    grey += char(i);
    greyAlpha += {char(i), char(255 - i)};
    for (int c : {i * 257, std::min(65535, i * 257 + 128), std::max(0, i * 257 - 128)})
      append(deep, c, 2);  // all nearest to i
  }
  struct Row {
    const char* format;
    const std::string& bytes;
    int alpha;
  };
  for (const Row& row : {Row{"gray", grey, 0}, Row{"ya8", greyAlpha, 1}, Row{"rgb48le", deep, 0}}) {
    SCOPED_TRACE(row.format);
    std::string options = std::string(row.format) == "rgb48le" ? "-pix_fmt rgb48be" : "";
    ASSERT_TRUE(makePicture(scratch, row.format, "16x16", row.bytes, "g.png", options));
    Picture p;
    ASSERT_TRUE(decodePicture(scratch / "g.png", &p));
    for (int i = 0; i < 256; i++)
      ASSERT_EQ(pixelAt(p, i % 16, i / 16), (Pixel{i, i, i, row.alpha ? 255 - i : 255})) << i;
  }
}

TEST(Pictures, PhotographsAndAnimations) {
  ScratchFolder scratch;
  std::string flat;
  for (int i = 0; i < 33 * 17; i++) flat += {char(255), 0, 0};
  for (const char* name : {"f.jpg", "f.gif"}) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(makePicture(scratch, "rgb24", "33x17", flat, name, "-q:v 1"));
    Picture p;
    ASSERT_TRUE(decodePicture(scratch / name, &p));
    ASSERT_EQ(p.width * 100 + p.height, 3317);
    for (auto [x, y] : {std::pair{0, 0}, {32, 16}, {16, 8}}) {
      Pixel c = pixelAt(p, x, y);
      EXPECT_NEAR(c[0], 255, 4);
      EXPECT_NEAR(c[1], 0, 4);
      EXPECT_NEAR(c[2], 0, 4);
      EXPECT_EQ(c[3], 255);
    }
  }
}

TEST(Pictures, OtherFilesAreRefused) {
  ScratchFolder scratch;
  scratch.write("empty.png", "");
  scratch.write("text.bmp", "no picture");
  scratch.write("text.tga", "no");
  scratch.write("half.bmp", bitmapFile({64, 64, 24, 0, {}, std::string(3000, 'x')}));
  ASSERT_EQ(std::system(("ffmpeg -v error -f lavfi -i testsrc=d=1:s=64x64 " + (scratch / "film.png.avi")).c_str()), 0);
  ASSERT_EQ(rename((scratch / "film.png.avi").c_str(), (scratch / "film.png").c_str()), 0);
  for (const char* name : {"empty.png", "text.bmp", "text.tga", "half.bmp", "film.png", "none.png"})
    EXPECT_FALSE(decodePicture(scratch / name, nullptr)) << name;
  EXPECT_FALSE(decodePicture(scratch.path(), nullptr));
}

TEST(Pictures, CutAnywhereNeverCrashes) {
  ScratchFolder scratch;
  std::string noise;
  for (int i = 0; i < 32 * 32 * 3; i++) noise += char(i * i >> 3);
  for (const char* name : {"n.png", "n.jpg", "n.gif", "n.bmp", "n.tiff"}) {
    ASSERT_TRUE(makePicture(scratch, "rgb24", "32x32", noise, name));
    std::string bytes;
    ASSERT_TRUE(readFile(scratch / name, bytes));
    Picture p;
    EXPECT_TRUE(decodePicture(scratch / name, &p)) << name;
    for (size_t cut = 0; cut < bytes.size(); cut += 1 + bytes.size() / 61) {
      scratch.write("cut", bytes.substr(0, cut));
      bool readCut = decodePicture(scratch / "cut", &p);
      EXPECT_TRUE(!readCut || p.pixels.size() == 4u * p.width * p.height);
      std::string flipped = bytes;
      flipped[cut] = static_cast<char>(~flipped[cut]);
      scratch.write("flipped", flipped);
      bool readFlipped = decodePicture(scratch / "flipped", &p);
      EXPECT_TRUE(!readFlipped || p.pixels.size() == 4u * p.width * p.height);
    }
  }
}

long peakKilobytes() {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST(Pictures, HugePromisesCostNothing) {
  ScratchFolder scratch;
  std::string bytes;
  ASSERT_TRUE(makePicture(scratch, "rgb24", "4x4", std::string(48, 'x'), "s.png"));
  ASSERT_TRUE(readFile(scratch / "s.png", bytes));
  bytes.replace(16, 8, std::string("\0\0\x40\0\0\0\x40\0", 8));  // 16384 x 16384
  scratch.write("huge.png", bytes);
  scratch.write("huge.bmp", bitmapFile({30000, 30000, 24, 0, {}, "abc"}));
  long before = peakKilobytes();
  EXPECT_FALSE(decodePicture(scratch / "huge.png", nullptr));
  EXPECT_FALSE(decodePicture(scratch / "huge.bmp", nullptr));
  EXPECT_LT(peakKilobytes() - before, 64 * 1024);

  scratch.write("wide.bmp", bitmapFile({101, 1, 24, 0, {}, std::string(304, 'x')}));
  EXPECT_TRUE(decodePicture(scratch / "wide.bmp", nullptr, 101));
  EXPECT_FALSE(decodePicture(scratch / "wide.bmp", nullptr, 100));
}

}  // namespace
}  // namespace platform
