// What the host does to pixels: resampling, text, separating alpha, pictures for encoders.
#include <gtest/gtest.h>

#include "cinora/command/progress_bar.h"
#include "cinora/export/encoder.h"
#include "cinora/export/frame_writer.h"
#include "cinora/host/frame_renderer.h"
#include "cinora/picture/frame_converter.h"
#include "cinora/picture/resize_image.h"
#include "cinora/support/failure.h"

namespace cinora {
namespace {

using zenlay::FramePixel;
using zenlay::ObjectPixel;

std::vector<int> lumas(const std::vector<FramePixel>& pixels) {
  std::vector<int> values;
  for (const FramePixel& pixel : pixels) values.push_back(pixel.y);
  return values;
}

std::vector<FramePixel> resized(const std::vector<int>& row, int width) {
  WorkerPool pool(1);
  std::vector<FramePixel> from, to(width);
  for (int value : row) from.push_back({static_cast<int16_t>(value), static_cast<int16_t>(-value / 2), 7});
  int size = static_cast<int>(row.size());
  resizeFrame(pool, to.data(), width, width, 1, {from.data(), size, size, 1});
  return to;
}

// Doubling puts new centres a quarter to each side of the old ones; halving weighs four pixels 1 3 3 1.
TEST(ResizeTest, WeightsAreTheTriangles) {
  EXPECT_EQ(lumas(resized({0, 800}, 4)), (std::vector<int>{0, 200, 600, 800}));
  EXPECT_EQ(lumas(resized({0, 800, 0, 0, 0, 0, 0, 0}, 4)), (std::vector<int>{300, 100, 0, 0}));
  EXPECT_EQ(lumas(resized({5, 6, 7}, 3)), (std::vector<int>{5, 6, 7}));
  std::vector<FramePixel> flat = resized(std::vector<int>(97, 4095), 13);
  for (const FramePixel& pixel : flat) {
    EXPECT_EQ(pixel.y, 4095);
    EXPECT_EQ(pixel.cb, -2047);
    EXPECT_EQ(pixel.cr, 7);
  }
}

TEST(ResizeTest, AThinLineKeepsItsLightWhereverItLies) {
  for (int at = 20; at < 80; at++) {
    std::vector<int> row(100, 0);
    row[at] = 4000;
    int sum = 0;
    for (const FramePixel& pixel : resized(row, 10)) sum += pixel.y;
    EXPECT_NEAR(sum, 400, 3) << at;
  }
}

TEST(ResizeTest, SourceAndDestinationMayBeTheSame) {
  WorkerPool pool(2);
  std::vector<FramePixel> image(200 * 100);
  for (int y = 0; y < 100; y++)
    for (int x = 0; x < 200; x++) image[y * 200 + x].y = static_cast<int16_t>(x * 10 + y);
  std::vector<FramePixel> apart(200 * 100);
  FrameArea area{&image[10 * 200 + 20], 200, 150, 80};
  resizeFrame(pool, apart.data(), 200, 75, 40, area);
  resizeFrame(pool, image.data(), 200, 75, 40, area);
  for (int y = 0; y < 40; y++)
    for (int x = 0; x < 75; x++) EXPECT_EQ(image[y * 200 + x].y, apart[y * 200 + x].y);
  // Halving a slope gives the slope between two pixels: (20 + 2x + 0.5) * 10 + 10 + 2y + 0.5.
  EXPECT_EQ(image[5 * 200 + 7].y, 345 + 21);
}

// Colour c at alpha a over background g: (c a + g (4096 - a)) / 4096.
TEST(AlphaTest, ColourAndAlphaComeBackFromTwoBackgrounds) {
  for (int alpha : {1, 100, 1024, 2048, 3000, 4095, 4096}) {
    for (ObjectPixel colour : {ObjectPixel{4096, 0, 0, 0}, {1000, -500, 700, 0}, {0, 2047, -2048, 0}}) {
      auto over = [&](int16_t background) {
        auto mix = [alpha](int c, int g) { return static_cast<int16_t>((c * alpha + g * (4096 - alpha)) / 4096); };
        return FramePixel{mix(colour.y, background), mix(colour.cb, 0), mix(colour.cr, 0)};
      };
      FramePixel black = over(0), white = over(4096);
      ObjectPixel out;
      separateAlpha(&black, &white, &out, 1);
      EXPECT_NEAR(out.a, alpha, 1);
      int tolerance = 4096 * 2 / alpha + 1;  // one step of the mixed value, made whole again
      EXPECT_NEAR(out.y, colour.y, tolerance) << alpha;
      EXPECT_NEAR(out.cb, colour.cb, tolerance) << alpha;
      EXPECT_NEAR(out.cr, colour.cr, tolerance) << alpha;
    }
  }
  FramePixel black{0, 0, 0}, white{4096, 0, 0}, bright{5000, 10, 10};
  ObjectPixel out;
  separateAlpha(&black, &white, &out, 1);
  EXPECT_EQ(out.a, 0);
  separateAlpha(&bright, &bright, &out, 1);
  EXPECT_EQ(out.a, 4096);
  EXPECT_EQ(out.y, 5000);
}

TEST(ConverterTest, TenBitFormatsComeFromSixteen) {
  WorkerPool pool(2);
  std::vector<ObjectPixel> rows(70 * 66, {2048, 512, -512, 1024});
  FrameConverter converter(pool, AV_PIX_FMT_YUVA444P10LE, 66, 66, false);
  AvFrame frame = converter.convert(rows.data(), 70);
  auto sample = [&](int plane, int x, int y) {
    return reinterpret_cast<const uint16_t*>(frame->data[plane] + y * frame->linesize[plane])[x];
  };
  for (auto [x, y] : {std::pair{0, 0}, {65, 65}, {33, 34}}) {
    EXPECT_NEAR(sample(0, x, y), 64 + 876 / 2, 1);   // Y 64..940
    EXPECT_NEAR(sample(1, x, y), 512 + 896 / 8, 1);  // Cb 64..960
    EXPECT_NEAR(sample(2, x, y), 512 - 896 / 8, 1);
    EXPECT_NEAR(sample(3, x, y), 1023 / 4, 1);
  }
  EXPECT_FALSE(FrameConverter::supports(AV_PIX_FMT_PAL8));
  EXPECT_FALSE(FrameConverter::supports(AV_PIX_FMT_VAAPI));
}

TEST(EncoderTest, FormatsSuitTheCodecAndTheSize) {
  const struct {
    const char* codec;
    bool alpha, picture;
    int width;
    AVPixelFormat format;
  } rows[] = {{"h264", false, false, 64, AV_PIX_FMT_YUV420P},
              {"h264", false, false, 65, AV_PIX_FMT_YUV444P},
              {"mpeg4", false, false, 65, AV_PIX_FMT_YUV420P},
              {"ffv1", false, false, 64, AV_PIX_FMT_YUV444P},
              {"prores", false, false, 64, AV_PIX_FMT_YUV422P10LE},
              {"prores", true, false, 64, AV_PIX_FMT_YUVA444P10LE},
              {"vp9", true, false, 64, AV_PIX_FMT_YUVA420P},
              {"png", false, true, 64, AV_PIX_FMT_RGB24},
              {"png", true, true, 64, AV_PIX_FMT_RGBA},
              {"mjpeg", false, true, 64, AV_PIX_FMT_YUVJ444P}};
  for (const auto& row : rows) {
    EncoderRequest request{
        .codec = row.codec, .alpha = row.alpha, .picture = row.picture, .width = row.width, .height = 64};
    EXPECT_EQ(choosePixelFormat(findEncoder(request), request), row.format) << row.codec << row.alpha << row.width;
  }
  EXPECT_THROW(findEncoder({.codec = "h264", .alpha = true, .width = 64, .height = 64}), WrongUsage);
  EXPECT_THROW(findEncoder({.codec = "", .width = 64, .height = 64}), WrongUsage);
}

TEST(WriterTest, NumbersStandWhereThePatternSays) {
  EXPECT_EQ(numberedName("f%05d.png", 7), "f00007.png");
  EXPECT_EQ(numberedName("f%d.png", 123), "f123.png");
  EXPECT_EQ(numberedName("f%3d.png", 7), "f  7.png");
  EXPECT_EQ(numberedName("100%%/%02d.png", 123), "100%/123.png");
  for (const char* pattern : {"f.png", "%d%d.png", "%s.png", "%5n.png", "%", "%99999999d.png", "%-3d.png", "%ld.png"})
    EXPECT_FALSE(numberedName(pattern, 7)) << pattern;
}

TEST(ProgressTest, TellsFramesRateAndTimeLeft) {
  std::string line = progressLine(150, 300, 5);
  for (const char* part : {"150/300", " 50%", "30.0 fps", "0:05 left", "###############---"})
    EXPECT_NE(line.find(part), line.npos) << line;
  EXPECT_NE(progressLine(1, 36001, 1).find("10:00:00 left"), line.npos);
  EXPECT_NE(progressLine(0, 300, 0).find("0/300"), line.npos);
}

}  // namespace
}  // namespace cinora
