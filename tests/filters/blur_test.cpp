#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "tests/render/drawing_pictures.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/box_blur.h"
#include "zenlay/filters/light_domain.h"

namespace zenlay {
namespace {

using test::FramePicture;
using test::ObjectPicture;
using test::twoThreads;

template <class P>
P noisy(int width, int height, int seed) {
  P picture(width, height);
  std::mt19937 random(seed);
  for (auto& p : picture.pixels) {
    p.y = static_cast<int16_t>(random() % 8193);
    p.cb = static_cast<int16_t>(random() % 4096 - 2048);
    p.cr = static_cast<int16_t>(random() % 4096 - 2048);
    if constexpr (requires { p.a; }) p.a = random() % 3 ? static_cast<int16_t>(random() % 4097) : 0;
  }
  return picture;
}

template <class P>
void expectPlainBits(int width, int height, int rx, int ry, BoxEdge edge) {
  P from = noisy<P>(width, height, width + rx);
  std::mt19937 random(height + ry);
  for (size_t i = random() % 16; i < from.pixels.size(); i += 1 + random() % 32) {  // now and then any bits
    const uint32_t bits[2] = {static_cast<uint32_t>(random()), static_cast<uint32_t>(random())};
    memcpy(&from.pixels[i], bits, sizeof from.pixels[i]);
  }
  int grow = edge == boxGrow ? 2 : 0;
  P fast(width + grow * rx, height + grow * ry), plain = fast;
  bool alpha = sizeof(from.pixels[0]) == sizeof(ObjectPixel);
  boxRound(twoThreads(), fast.target(), from.target(), rx, ry, edge, alpha);
  boxRoundPlain(plain.target(), from.target(), rx, ry, edge, alpha);
  ASSERT_EQ(memcmp(fast.pixels.data(), plain.pixels.data(), fast.pixels.size() * sizeof fast.pixels[0]), 0)
      << width << 'x' << height << ' ' << rx << ',' << ry << " edge " << edge << " alpha " << alpha;
}

TEST(BoxBlur, RoundsGiveTheBitsOfThePlainDefinition) {
  for (auto [width, height] : {std::pair{1, 1}, {3, 5}, {17, 70}, {64, 64}, {101, 130}}) {
    for (auto [rx, ry] : {std::pair{0, 0}, {1, 0}, {0, 1}, {2, 3}, {40, 7}, {150, 200}}) {
      for (BoxEdge edge : {boxKeep, boxGrow}) {
        expectPlainBits<ObjectPicture>(width, height, rx, ry, edge);
        if (edge == boxKeep) expectPlainBits<FramePicture>(width, height, rx, ry, edge);
      }
    }
  }
}

/// An object image in buffers of the pipeline's shape, and the effect bound to its values.
struct Blurred {
  static constexpr int line = 72, lines = 64;
  std::vector<ObjectPixel> a, b;
  EffectProcessInfo info{};
  EffectServiceTable services{};
  int32_t tracks[3], checks[1];
  EffectDefinition effect = blurEffect;

  Blurred(int width, int height, int range, int aspect = 0, int light = 0, bool fixedSize = false)
      : a(line * lines, ObjectPixel{77, 77, 77, 77}), b(a), tracks{range, aspect, light}, checks{fixedSize} {
    info.objectImage = a.data();
    info.workImage = b.data();
    info.objectWidth = width;
    info.objectHeight = height;
    info.bufferLine = line;
    info.bufferHeight = lines;
    info.maxWidth = info.maxHeight = 64;
    effect.track = tracks;
    effect.check = checks;
    effect.host_functions = twoThreads();
    effect.services = &services;
    fill({});
  }
  ObjectPixel& at(int x, int y) { return info.objectImage[y * line + x]; }
  void fill(ObjectPixel p) {
    for (int y = 0; y < info.objectHeight; y++) std::fill_n(&at(0, y), info.objectWidth, p);
  }
  /// Blurs this frame in place of an object's image.
  template <class P>
  void workOn(P& frame) {
    effect.flag = blurObject.flag;
    info.host.frame = reinterpret_cast<FramePixel*>(frame.pixels.data());
    info.host.width = frame.width;
    info.host.height = frame.height;
    info.host.lineBytes = frame.lineBytes();
  }
  int run() { return effect.proc(&effect, &info); }
};

TEST(Blur, SpreadsAPixelIntoATent) {
  // Range 2: rounds of radius 1 and 1 an axis, the weights 1 2 3 2 1 / 9; alphas are truncated after every pass.
  Blurred blur(5, 5, 2);
  blur.at(2, 2) = {4000, 100, -100, 4096};
  EXPECT_EQ(blur.run(), 1);
  ASSERT_EQ(blur.info.objectWidth, 9);
  ASSERT_EQ(blur.info.objectHeight, 9);
  EXPECT_EQ(blur.at(4, 4).a, 455);  // 4096 / 9
  EXPECT_EQ(blur.at(2, 4).a, 151);  // 4096 / 27
  EXPECT_EQ(blur.at(2, 2).a, 50);   // 4096 / 81
  EXPECT_EQ(blur.at(1, 4).a, 0);
  EXPECT_NEAR(blur.at(2, 2).y, 4000, 81);  // what weighing 50 / 4096 leaves
}

TEST(Blur, WhatTheSizeBecomes) {
  struct Row {
    int width, height, range, aspect;
    bool fixedSize;
    int newWidth, newHeight;
  } rows[] = {
      {20, 10, 0, 0, false, 20, 10},   {20, 10, 1, 0, false, 22, 12},     {20, 10, 3, 1000, false, 26, 10},
      {20, 10, 4, 500, false, 28, 14}, {20, 10, 4, -1000, false, 20, 18}, {20, 10, 5, -333, false, 26, 20},
      {20, 10, 5, 0, true, 20, 10},    {20, 10, 1000, 0, false, 64, 64},  {64, 10, 4, 0, false, 64, 18},
      {61, 64, 4, 0, false, 63, 64},   {1, 1, 7, 0, false, 15, 15},       {64, 64, 9, 0, true, 64, 64},
  };
  for (const Row& row : rows) {
    Blurred blur(row.width, row.height, row.range, row.aspect, 0, row.fixedSize);
    blur.fill({1000, 0, 0, 4096});
    EXPECT_EQ(blur.run(), 1);
    EXPECT_EQ(blur.info.objectWidth, row.newWidth) << row.width << ' ' << row.range << ' ' << row.aspect;
    EXPECT_EQ(blur.info.objectHeight, row.newHeight) << row.height << ' ' << row.range << ' ' << row.aspect;
    // Weighing by a small alpha costs up to one step of colour in alpha.
    ObjectPixel middle = blur.at(row.newWidth / 2, row.newHeight / 2);
    EXPECT_NEAR(middle.y, 1000, 2 * 4096 / middle.a) << row.width << ' ' << row.range;
  }
}

TEST(Blur, EdgesSoftenWhereTheImageGrowsAndKeepWhereItDoesNot) {
  Blurred grows(20, 20, 2), keeps(20, 20, 2, 0, 0, true);
  for (Blurred* blur : {&grows, &keeps}) {
    blur->fill({3000, 200, -200, 4096});
    blur->run();
  }
  // A row of the grown image: 1, 3, 6, 8, 9 ninths.
  const int ninths[5] = {1, 3, 6, 8, 9};
  for (int x = 0; x < 5; x++) {
    EXPECT_NEAR(grows.at(x, 12).a, 4096 * ninths[x] / 9, 1) << x;
    EXPECT_NEAR(grows.at(x, 12).y, 3000, 8) << x;
  }
  for (int y = 0; y < 20; y++) {
    for (int x = 0; x < 20; x++) {
      ASSERT_EQ(keeps.at(x, y).a, 4096);
      ASSERT_EQ(keeps.at(x, y).y, 3000);
    }
  }
}

TEST(Blur, TransparentImagesKeepTheirColours) {
  Blurred blur(6, 6, 3, 0, 0, true);
  for (int i = 0; i < 36; i++) blur.at(i % 6, i / 6) = {static_cast<int16_t>(i), 5, -5, 0};
  blur.run();
  for (int i = 0; i < 36; i++) {
    EXPECT_EQ(blur.at(i % 6, i / 6).y, i);
    EXPECT_EQ(blur.at(i % 6, i / 6).a, 0);
  }
}

TEST(Blur, RangeOneRunsOnePassAnAxis) {
  Blurred blur(9, 9, 1, 0, 0, true);
  blur.at(4, 4) = {4096, 0, 0, 4096};
  blur.run();
  EXPECT_EQ(blur.at(4, 4).a, 455);
  EXPECT_EQ(blur.at(5, 5).a, 455);
  EXPECT_EQ(blur.at(6, 4).a, 0);
}

TEST(Blur, FrameIsAveragedInsideItself) {
  constexpr int width = 12, height = 8;
  FramePicture frame(width, height);
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) frame.at(x, y) = {static_cast<int16_t>(x < 6 ? 0 : 3000), -300, 300};
  }
  Blurred blur(1, 1, 2, 1000);  // horizontally only
  blur.workOn(frame);
  EXPECT_EQ(blur.run(), 1);
  // 1 2 3 2 1 ninths across the step.
  const int expected[6] = {0, 333, 1000, 2000, 2666, 3000};
  for (int i = 0; i < 6; i++) EXPECT_NEAR(frame.at(3 + i, 3).y, expected[i], 1) << i;
  EXPECT_EQ(frame.at(0, 0).cb, -300);
  EXPECT_EQ(frame.at(11, 7).y, 3000);
  // Larger than half the frame: radii 6 and 4, nothing outside is read.
  blur.tracks[0] = 1000;
  blur.tracks[1] = 0;
  blur.run();
  EXPECT_EQ(frame.at(5, 4).cr, 300);
}

TEST(Blur, FrameWithAlphaIsBlurredAsAnObjectImageOfFixedSize) {
  constexpr int width = 24, height = 16;
  ObjectPicture frame = noisy<ObjectPicture>(width, height, 5);
  Blurred onFrame(1, 1, 7, 300), onObject(width, height, 7, 300, 0, true);
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++) onObject.at(x, y) = frame.at(x, y);
  ASSERT_EQ(onObject.run(), 1);
  onFrame.workOn(frame);
  onFrame.info.host.flags = processFlattening;
  ASSERT_EQ(onFrame.run(), 1);
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) {
      ObjectPixel found = frame.at(x, y), expected = onObject.at(x, y);
      EXPECT_EQ(memcmp(&found, &expected, sizeof found), 0) << x << ',' << y;
    }
  }
}

TEST(Light, ConvertsThereAndBack) {
  for (int strength : {0, 1, 30, 60, 100, 999}) {
    ObjectPicture picture(64, 65);
    for (int i = 0; i < 64 * 65; i++) {
      picture.pixels[i] = {static_cast<int16_t>(std::min(i, 4096)), static_cast<int16_t>(16 * (i % 256 - 128)), 5,
                           4096};
    }
    picture.pixels[0].a = 0;
    ObjectPicture original = picture;
    toLight(twoThreads(), picture.target(), strength, true);
    fromLight(twoThreads(), picture.target(), strength, true);
    for (int i = 1; i < 64 * 65; i++) {
      ASSERT_EQ(picture.pixels[i].y, original.pixels[i].y) << strength;
      ASSERT_EQ(picture.pixels[i].cb, original.pixels[i].cb);
      ASSERT_EQ(picture.pixels[i].cr, 0);
    }
    ASSERT_EQ(picture.pixels[0].cb, 0);
  }
}

TEST(Light, BrightAreasSpreadFurther) {
  // The middle of an edge between black and white: half the luma, or luma 16 ln(k^256 / 2) / ln k of half the light.
  constexpr int width = 40, height = 4;
  for (int light : {0, 60}) {
    FramePicture frame(width, height);
    for (int i = 0; i < width * height; i++) frame.pixels[i] = {static_cast<int16_t>(i % width < 20 ? 0 : 4096), 0, 0};
    Blurred blur(1, 1, 10, 1000, light);
    blur.workOn(frame);
    blur.run();
    double middle = (frame.at(19, 2).y + frame.at(20, 2).y) / 2.0;
    EXPECT_NEAR(middle, light ? 4096 - 16 * std::log(2) / std::log(1.06) : 2048, 5) << light;
    EXPECT_EQ(frame.at(39, 2).y, 4096);
    EXPECT_EQ(frame.at(0, 2).y, 0);
  }
}

TEST(Light, RoundsAgreeWithTheBoxRoundsWhereLightIsNearlyLuma) {
  // With k = 1.001 the light is nearly linear in luma: the same windows, counts and alphas.
  for (BoxEdge edge : {boxKeep, boxGrow}) {
    ObjectPicture picture = noisy<ObjectPicture>(33, 70, 5);
    for (ObjectPixel& p : picture.pixels) p.y = 1000 + p.y % 200;
    int grow = edge == boxGrow ? 1 : 0;
    ObjectPicture plain(33 + 12 * grow, 70 + 8 * grow), light = plain;
    boxRoundPlain(plain.target(), picture.target(), 6, 4, edge, true);
    toLight(twoThreads(), picture.target(), 1, true);
    lightRound(twoThreads(), light.target(), picture.target(), 6, 4, edge, true);
    fromLight(twoThreads(), light.target(), 1, true);
    for (size_t i = 0; i < plain.pixels.size(); i++) {
      ASSERT_EQ(plain.pixels[i].a, light.pixels[i].a) << i;
      if (plain.pixels[i].a > 1000) {
        ASSERT_NEAR(plain.pixels[i].y, light.pixels[i].y, 12) << i;
      }
    }
  }
}

TEST(Light, ObjectsGrowAndStayExactWhereNothingChanges) {
  Blurred blur(20, 20, 4, 0, 60);
  blur.fill({2500, 160, -160, 4096});
  blur.run();
  EXPECT_EQ(blur.info.objectWidth, 28);
  for (int x = 4; x < 24; x++) EXPECT_EQ(blur.at(x, 14).y, 2500) << x;
  EXPECT_EQ(blur.at(14, 14).cb, 160);
  EXPECT_GT(blur.at(0, 14).a, 0);
  EXPECT_LT(blur.at(0, 14).a, 400);
}

}  // namespace
}  // namespace zenlay
