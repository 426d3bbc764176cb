#include "zenlay/media/image_loading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/media/effect_stage.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"
#include "zenlay/media/bmp_reader.h"
#include "zenlay/render/convert.h"
#include "zenlay/render/image_cache.h"

namespace zenlay::test {
namespace {

namespace fs = std::filesystem;
using Bytes = std::string;

struct BmpFields {
  int width = 3, height = 2, bits = 24;
  uint32_t compression = 0, headerSize = 40, offset = 54, colorsUsed = 0;
  const char* magic = "BM";
};

Bytes bmp(const BmpFields& f, const Bytes& rest) {
  Bytes b = f.magic;
  const uint32_t size = 54 + static_cast<uint32_t>(rest.size());
  for (uint32_t value : {size, 0u, f.offset, f.headerSize, uint32_t(f.width), uint32_t(f.height), 1u | f.bits << 16,
                         f.compression, 0u, 2835u, 2835u, f.colorsUsed, 0u})
    ::test::append(b, value, 4);
  return b + rest;
}

// Stored bottom row: red, green, blue; top row: white, black, grey 128.
const Bytes rows24(
    "\x00\x00\xFF\x00\xFF\x00\xFF\x00\x00\0\0\0"
    "\xFF\xFF\xFF\x00\x00\x00\x80\x80\x80\0\0\0",
    24);
const Bytes rows32(
    "\x00\x00\xFF\xFF\x00\xFF\x00\x80\xFF\x00\x00\x00"
    "\xFF\xFF\xFF\xFF\x00\x00\x00\xFF\x80\x80\x80\xFF",
    24);
// 5 bits a component: red 7C00, green 03E0, blue 001F; white 7FFF, 0, grey 16 = 4210.
const Bytes rows16(
    "\x00\x7C\xE0\x03\x1F\x00\0\0"
    "\xFF\x7F\x00\x00\x10\x42\0\0",
    16);

struct ImageLoading : testing::Test {
  ::test::ScratchFolder scratch;
  fs::path folder = scratch.path();
  std::vector<ObjectPixel> image;
  int32_t width = -1, height = -1;

  void SetUp() override {
    resetFakeHost(64, 48);
    initialiseImageCache(4);
    image.assign(static_cast<size_t>(environment.workStride) * environment.workRows, ObjectPixel{-1, -1, -1, -1});
  }
  void TearDown() override {
    unloadImagePlugins();
    freeImageCache();
  }
  std::string file(const std::string& name, const Bytes& content) {
    std::ofstream(folder / name, std::ios::binary) << content;
    return folder / name;
  }
  int load(const std::string& path, const ImageClip* clip = nullptr, uint32_t flags = 0) {
    width = height = -1;
    return loadImage(image.data(), path.c_str(), &width, &height, clip, flags);
  }
  ObjectPixel at(int x, int y) { return image[static_cast<size_t>(y) * environment.workStride + x]; }
  void expectColours(const std::vector<std::vector<std::vector<int>>>& rgba) {
    ASSERT_EQ(height, static_cast<int>(rgba.size()));
    ASSERT_EQ(width, static_cast<int>(rgba[0].size()));
    for (int y = 0; y < height; y++)
      for (int x = 0; x < width; x++) {
        const std::vector<int>& c = rgba[y][x];
        ObjectPixel expected = toYcbcr(c[0], c[1], c[2]);
        if (c.size() > 3) expected.a = c[3];
        EXPECT_EQ(parts(at(x, y)), parts(expected)) << x << "," << y;
      }
  }
};

const std::vector<std::vector<std::vector<int>>> sample = {{{255, 255, 255}, {0, 0, 0}, {128, 128, 128}},
                                                           {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}}};

TEST_F(ImageLoading, ReadsUncompressedBitmaps) {
  ASSERT_TRUE(load(file("a.bmp", bmp({}, rows24))));
  expectColours(sample);
  EXPECT_EQ(at(3, 0).a, -1) << "nothing right of the picture is touched";

  ASSERT_TRUE(load(file("b.BMP", bmp({.bits = 32}, rows32))));
  EXPECT_EQ(at(0, 1).a, 4096);
  EXPECT_NEAR(at(1, 1).a, 128 * 4096 / 255, 1);
  EXPECT_EQ(at(2, 1).a, 0);

  ASSERT_TRUE(load(file("c.bmp", bmp({.bits = 16}, rows16))));
  expectColours({{{255, 255, 255}, {0, 0, 0}, {132, 132, 132}}, {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}}});

  ASSERT_TRUE(load(file("d.bmp", bmp({.height = -2}, rows24))));  // rows top-down
  expectColours({sample[1], sample[0]});

  ASSERT_TRUE(load(file("e.bmp", bmp({.offset = 60}, "gap..." + rows24))));
  expectColours(sample);
}

TEST_F(ImageLoading, TheBuiltInReaderLeavesOtherFilesAlone) {
  std::vector<Bytes> files;
  for (int bits : {0, 1, 4, 8, 15, 48}) files.push_back(bmp({.bits = bits}, rows24));
  for (uint32_t compression : {1u, 3u}) files.push_back(bmp({.compression = compression}, rows24));
  for (auto [w, h] :
       {std::pair{0, 2}, {-3, 2}, {3, 0}, {32768, 1}, {INT32_MAX, INT32_MAX}, {3, INT32_MIN}, {32767, 32767}, {3, 3}})
    files.push_back(bmp({.width = w, .height = h}, rows24));
  for (uint32_t offset : {0u, 53u, 55u, 78u, 0xFFFFFFFFu}) files.push_back(bmp({.offset = offset}, rows24));
  for (uint32_t headerSize : {0u, 12u, 39u, 125u, 0xFFFFFFFFu})
    files.push_back(bmp({.headerSize = headerSize}, rows24));
  files.push_back(bmp({.magic = "PK"}, rows24));
  for (size_t length : {0, 1, 13, 53, 77}) files.push_back(bmp({}, rows24).substr(0, length));
  for (size_t i = 0; i < files.size(); i++) {
    std::string path = file(std::to_string(i) + ".bmp", files[i]);
    EXPECT_FALSE(readBmp(path.c_str(), path.c_str()).data) << i;
    EXPECT_FALSE(findImage(path.c_str()).data) << i;
  }
  EXPECT_FALSE(readBmp((folder / "none.bmp").c_str(), "n").data);
}

TEST_F(ImageLoading, A16BitPictureMayFillTheFrameBufferAndNoMore) {
  // 48 rows of 72 frame pixels are 20736 bytes: 144 rows of 144 bytes (48 pixels of 24 bits)
  for (auto [h, expected] : {std::pair{144, true}, {145, false}}) {
    const Bytes rows(static_cast<size_t>(h) * 96, '\0');
    std::string path = file("tall.bmp", bmp({.width = 48, .height = h, .bits = 16}, rows));
    EXPECT_EQ(readBmp(path.c_str(), nullptr).data != nullptr, expected) << h;
  }
}

TEST_F(ImageLoading, TheDecoderReadsWhatTheBuiltInReaderRefuses) {
  Bytes palette("\x00\x00\xFF\x00\xFF\xFF\xFF\x00", 8);  // red, white
  const BmpFields f{.bits = 4, .offset = 62, .colorsUsed = 2};
  ASSERT_TRUE(load(file("four.bmp", bmp(f, palette + Bytes("\x01\x00\0\0\x11\x00\0\0", 8)))));
  expectColours({{{255, 255, 255}, {255, 255, 255}, {255, 0, 0}}, {{255, 0, 0}, {255, 255, 255}, {255, 0, 0}}});
}

TEST_F(ImageLoading, TheCacheKeepsThePictureUnderItsPath) {
  std::string path = file("kept.bmp", bmp({}, rows24));
  ASSERT_TRUE(loadImage(nullptr, path.c_str(), &width, &height, nullptr, 0));
  EXPECT_EQ(std::pair(width, height), std::pair(3, 2));
  fs::remove(path);
  ASSERT_TRUE(load(path));
  expectColours(sample);
  EXPECT_TRUE(load(path, nullptr, loadImageExists));
  EXPECT_EQ(environment.missingFiles, 0);
}

TEST_F(ImageLoading, ClipsAndLimits) {
  std::string path = file("clip.bmp", bmp({}, rows24));
  ImageClip clip{1, 1, 3, 2};
  ASSERT_TRUE(load(path, &clip));
  expectColours({{{0, 255, 0}, {0, 0, 255}}});
  clip = {-5, -5, 1, 99};
  ASSERT_TRUE(load(path, &clip));
  expectColours({{{255, 255, 255}}, {{255, 0, 0}}});
  clip = {2, 1, 1, 0};  // turned about: empty
  ASSERT_TRUE(load(path, &clip));
  EXPECT_EQ(width * height, 0);

  Bytes rows;  // larger than the largest image (64 x 48): the rows below are dropped
  for (int y = 49; y >= 0; y--) rows += Bytes(240, static_cast<char>(y));
  path = file("large.bmp", bmp({.width = 80, .height = 50}, rows));
  ASSERT_TRUE(loadImage(nullptr, path.c_str(), &width, &height, nullptr, 0));
  EXPECT_EQ(std::pair(width, height), std::pair(80, 50));
  ASSERT_TRUE(load(path));
  EXPECT_EQ(std::pair(width, height), std::pair(64, 48));
  EXPECT_EQ(parts(at(63, 47)), parts(toYcbcr(47, 47, 47)));
  EXPECT_EQ(at(64, 0).a, -1);
}

TEST_F(ImageLoading, MissingAndUnreadableFilesAreCounted) {
  std::string text = file("text.png", "no picture");
  EXPECT_FALSE(load(folder / "gone.png"));
  EXPECT_FALSE(load(text));
  EXPECT_EQ(environment.missingFiles, 2);
  EXPECT_TRUE(load(text, nullptr, loadImageExists));
  EXPECT_FALSE(load(folder / "gone.png", nullptr, loadImageExists));
  EXPECT_EQ(environment.missingFiles, 3);
  EXPECT_FALSE(load(""));
  EXPECT_EQ(environment.missingFiles, 3);
  EXPECT_TRUE(shownMessages().empty());

  environment.projectFolder = folder.string() + "/";
  file("moved.bmp", bmp({}, rows24));
  ASSERT_TRUE(load("D:\\pictures\\moved.bmp"));
  expectColours(sample);
  EXPECT_TRUE(load("/gone/moved.bmp", nullptr, loadImageExists));
}

TEST_F(ImageLoading, AnEffectsImageIsNoPicture) {
  createImage(4, 4, 64, "*cache");
  EXPECT_FALSE(load("*cache"));
}

TEST_F(ImageLoading, ImagePluginsDecodeTheirExtensions) {
  EXPECT_STREQ(imageFileFilter(), "ImageFile (*.bmp;*.png;*.jpg;)");
  std::string path = file("picture.TST", Bytes(1, 24));
  EXPECT_FALSE(load(path)) << "no plug-in is loaded";
  loadImagePlugins(BINARY_DIR "/test_modules/images/");
  const std::vector<std::vector<int>> red = {{0, 0, 255}, {0, 0, 255}, {255, 0, 0}},
                                      low = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
  for (int bits : {4, 8, 16, 24}) {
    path = file(std::to_string(bits) + ".tst", Bytes(1, static_cast<char>(bits)));
    ASSERT_TRUE(load(path)) << bits;
    expectColours({red, low});
  }
  ASSERT_TRUE(load(file("one.tst", Bytes(1, 1))));
  expectColours({{{255, 0, 0}, {255, 0, 0}, {255, 0, 0}}, {{255, 0, 0}, {0, 255, 0}, {255, 0, 0}}});
  ASSERT_TRUE(load(file("alpha.tst", Bytes(1, 32))));
  EXPECT_NEAR(at(0, 0).a, 128 * 4096 / 255, 1);
  EXPECT_EQ(at(2, 0).a, 4096);
  ASSERT_TRUE(load(file("down.tst", Bytes(1, 99))));
  expectColours({low, red});

  EXPECT_FALSE(load(file("refused.tst", Bytes(1, 0))));
  EXPECT_FALSE(load(file("odd.tst", Bytes(1, 5)))) << "no such depth";
  EXPECT_FALSE(load(file("other.xyz", Bytes(1, 24)))) << "no plug-in lists it";

  const char* filter = imageFileFilter();
  const char* expected[] = {"ImageFile (*.bmp;*.png;*.jpg;*.ts2;*.tst)", "*.bmp;*.png;*.jpg;*.ts2;*.tst",
                            "AllFile (*.*)", "*.*", ""};
  for (const char* text : expected) {
    EXPECT_STREQ(filter, text);
    filter += strlen(filter) + 1;
  }
}

}  // namespace
}  // namespace zenlay::test
