#include "cinora/picture/planes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "tests/support/every_target.h"

namespace cinora {
namespace {

using zenlay::Bgr;
using zenlay::Bgra;
using zenlay::FramePixel;
using zenlay::ObjectPixel;
using zenlay::test::onEveryTarget;

constexpr Chroma everyChroma[] = {Chroma::half, Chroma::halfWide, Chroma::full, Chroma::none};
constexpr int untouched = 0xA5;

/// A picture in planes with padded rows; what lies beside the picture holds `untouched`.
template <class Sample>
struct Picture {
  int width, height;
  Chroma chroma;
  bool fullRange;
  int stride[4];
  std::vector<Sample> planes[4];

  Picture(int width, int height, Chroma chroma, bool fullRange)
      : width(width), height(height), chroma(chroma), fullRange(fullRange) {
    for (int i = 0; i < 4; ++i) {
      stride[i] = (planeWidth(i) + 5) * static_cast<int>(sizeof(Sample));
      planes[i].assign((planeWidth(i) + 5) * planeHeight(i), static_cast<Sample>(untouched));
    }
  }
  bool subsampled(int plane) const { return plane == 1 || plane == 2; }
  int planeWidth(int plane) const {
    if (!subsampled(plane)) return width;
    return chroma == Chroma::none ? 0 : chroma == Chroma::full ? width : (width + 1) / 2;
  }
  int planeHeight(int plane) const { return subsampled(plane) && chroma == Chroma::half ? (height + 1) / 2 : height; }
  Sample& at(int plane, int x, int y) { return planes[plane][y * stride[plane] / sizeof(Sample) + x]; }
  void randomise(std::mt19937* random) {
    for (int i = 0; i < 4; ++i) {
      for (int y = 0; y < planeHeight(i); ++y) {
        for (int x = 0; x < planeWidth(i); ++x) at(i, x, y) = static_cast<Sample>((*random)());
      }
    }
  }
  PlanesIn in() { return all<PlanesIn>(); }
  PlanesOut out() { return all<PlanesOut>(); }
  template <class Planes>
  Planes all() {
    Planes result{{}, {}, chroma, fullRange};
    for (int i = 0; i < 4; ++i) {
      result.data[i] = reinterpret_cast<uint8_t*>(planes[i].data());
      result.stride[i] = stride[i];
    }
    return result;
  }
};

template <class Check>
void forEveryFormat(Check check) {
  for (Chroma chroma : everyChroma) {
    for (bool fullRange : {false, true}) {
      SCOPED_TRACE(testing::Message() << "chroma " << static_cast<int>(chroma) << " full range " << fullRange);
      check(chroma, fullRange);
    }
  }
}

void expectTheSamePictureBack() {
  std::mt19937 random(1);
  forEveryFormat([&](Chroma chroma, bool fullRange) {
    const int sizes[][2] = {{300, 12}, {67, 7}, {33, 1}, {1, 3}};
    for (auto [width, height] : sizes) {
      Picture<uint8_t> picture(width, height, chroma, fullRange), back = picture, backWithAlpha = picture;
      picture.randomise(&random);
      for (int x = 0; x < 256 && x < width; ++x) {
        for (int plane = 0; plane < 4; ++plane) {
          if (x < picture.planeWidth(plane)) picture.at(plane, x, 0) = static_cast<uint8_t>(x);
        }
      }
      const int pitch = width + 3, split = height / 4 * 2;
      std::vector<FramePixel> frame(pitch * height);
      std::vector<ObjectPixel> object(pitch * height);
      for (auto [first, last] : {std::pair{split, height}, std::pair{0, split}}) {
        planesToFrame(picture.in(), frame.data(), pitch, width, first, last);
        planesToObject(picture.in(), object.data(), pitch, width, first, last);
        frameToPlanes(frame.data(), pitch, back.out(), width, first, last);
        frameWithAlphaToPlanes(object.data(), pitch, backWithAlpha.out(), width, first, last);
      }
      EXPECT_EQ(backWithAlpha.planes[3], picture.planes[3]);
      for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(back.planes[i], picture.planes[i]) << "plane " << i << " of " << width << " x " << height;
        ASSERT_EQ(backWithAlpha.planes[i], picture.planes[i]) << "plane " << i << " of " << width << " x " << height;
      }
    }
  });
}
TEST(Planes, eightBitPicturesComeBack) { onEveryTarget(expectTheSamePictureBack); }

TEST(Planes, greyWithoutAlphaIsOpaque) {
  const uint8_t grey = 77;
  ObjectPixel p;
  planesToObject({{&grey, nullptr, nullptr, nullptr}, {1, 0, 0, 0}, Chroma::none, true}, &p, 1, 1, 0, 1);
  EXPECT_EQ(p.cb, 0);
  EXPECT_EQ(p.a, 4096);
}

double halfUp(double v) { return std::floor(v + 0.5); }

template <class Sample>
void expectNearestOfEverySample(void (*convert)(const PlanesIn&, ObjectPixel*, int, int, int, int)) {
  constexpr int levels = 1 << (8 * sizeof(Sample)), unit = levels / 256;
  std::vector<ObjectPixel> row(levels);
  for (bool fullRange : {false, true}) {
    Picture<Sample> ramp(levels, 1, Chroma::full, fullRange);
    for (int x = 0; x < levels; ++x) {
      for (int plane = 0; plane < 4; ++plane)
        ramp.at(plane, x, 0) = static_cast<Sample>(plane == 2 ? levels - 1 - x : x);
    }
    convert(ramp.in(), row.data(), levels, levels, 0, 1);
    const double black = fullRange ? 0 : 16 * unit, luma = fullRange ? levels - 1 : 219 * unit,
                 chroma = fullRange ? levels - 1 : 224 * unit;
    for (int x = 0; x < levels; ++x) {
      ASSERT_EQ(row[x].y, halfUp((x - black) * 4096 / luma)) << x;
      ASSERT_EQ(row[x].cb, halfUp((x - 128 * unit) * 4096 / chroma)) << x;
      ASSERT_EQ(row[x].cr, halfUp((levels - 1 - x - 128 * unit) * 4096 / chroma)) << x;
      ASSERT_EQ(row[x].a, halfUp(x * 4096.0 / (levels - 1))) << x;
    }
  }
}
TEST(Planes, everySampleGoesToTheNearestLevel) {
  onEveryTarget([] {
    expectNearestOfEverySample<uint8_t>(planesToObject);
    expectNearestOfEverySample<uint16_t>(planes16ToObject);
  });
}

TEST(Planes, chromaIsTheMeanRoundedOnce) {
  // Limited range: a step of one is 4096 / 224 = 18.3.
  const FramePixel rows[] = {{4096, 2048, 9}, {0, 0, 9}, {9000, -2048, 2048},  //
                             {4096, 0, 10},   {0, 0, 9}, {-400, 0, 0},         //
                             {2048, 0, 0},    {0, 0, 0}, {0, 2048, -9000}};
  uint8_t y[9], cb[4], cr[4];
  frameToPlanes(rows, 3, {{y, cb, cr, nullptr}, {3, 2, 2, 0}, Chroma::half, false}, 3, 0, 3);
  const uint8_t luma[] = {235, 16, 255, 235, 16, 0, 126, 16, 16};
  EXPECT_EQ(0, std::memcmp(y, luma, 9));
  EXPECT_EQ(cb[0], 156);  // 2048 / 4: 128 + 28
  EXPECT_EQ(cr[0], 129);  // 37 / 4 is half a step, and a little more; 9 would not be
  EXPECT_EQ(cb[1], 72);   // the right column stands twice: -1024
  EXPECT_EQ(cr[1], 184);
  EXPECT_EQ(cb[2], 128);
  EXPECT_EQ(cb[3], 240);  // the corner stands for all four
  EXPECT_EQ(cr[3], 0);
  frameToPlanes(rows, 3, {{y, cb, cr, nullptr}, {3, 2, 2, 0}, Chroma::halfWide, false}, 3, 0, 1);
  EXPECT_EQ(cb[0], 184);
  EXPECT_EQ(cb[1], 16);
}

std::vector<FramePixel> anyFrame(int n) {
  std::mt19937 random(5);
  std::vector<FramePixel> frame(n);
  for (auto& p : frame) {
    p = {static_cast<int16_t>(random()), static_cast<int16_t>(random()), static_cast<int16_t>(random())};
  }
  return frame;
}

// What the vectors leave of a row is done by the plain code, so other widths and processors would differ.
TEST(Planes, everyProcessorGivesTheSameSamples) {
  constexpr int width = 131, height = 6;
  const std::vector<FramePixel> frame = anyFrame(width * height);
  std::vector<ObjectPixel> object(frame.size());
  for (size_t i = 0; i < frame.size(); ++i) object[i] = {frame[i].y, frame[i].cb, frame[i].cr, frame[i].cb};
  std::vector<std::vector<uint8_t>> results;
  onEveryTarget([&] {
    std::vector<uint8_t> all;
    const auto keep = [&all](const auto& samples) {
      const auto* bytes = reinterpret_cast<const uint8_t*>(samples.data());
      all.insert(all.end(), bytes, bytes + samples.size() * sizeof samples[0]);
    };
    forEveryFormat([&](Chroma chroma, bool fullRange) {
      Picture<uint8_t> a(width, height, chroma, fullRange), b = a;
      frameToPlanes(frame.data(), width, a.out(), width, 0, height);
      frameWithAlphaToPlanes(object.data(), width, b.out(), width, 0, height);
      for (int i = 0; i < 4; ++i) keep(a.planes[i]), keep(b.planes[i]);
      if (chroma != Chroma::full && chroma != Chroma::none) return;
      Picture<uint16_t> c(width, height, chroma, fullRange), d = c;
      frameToPlanes16(frame.data(), width, c.out(), width, 0, height);
      frameWithAlphaToPlanes16(object.data(), width, d.out(), width, 0, height);
      for (int i = 0; i < 4; ++i) keep(c.planes[i]), keep(d.planes[i]);
    });
    std::vector<Bgr> bgr(frame.size());
    std::vector<Bgra> bgra(frame.size());
    std::vector<FramePixel> matrixed = frame;
    std::vector<ObjectPixel> objectMatrixed = object;
    frameToBgrRow(bgr.data(), frame.data(), width * height);
    objectToBgraRow(bgra.data(), object.data(), width * height);
    bt709ToBt601Row(matrixed.data(), width * height);
    bt601ToBt709Row(objectMatrixed.data(), width * height);
    keep(bgr), keep(bgra), keep(matrixed), keep(objectMatrixed);
    results.push_back(all);
  });
  for (const auto& result : results) EXPECT_TRUE(result == results.back());
}

TEST(Planes, frameSurvivesSixteenBits) {
  std::vector<ObjectPixel> row;
  for (int i = -299; i <= 4480; ++i) {
    row.push_back({static_cast<int16_t>(i), static_cast<int16_t>(i / 2), static_cast<int16_t>(-i / 2),
                   static_cast<int16_t>(std::min(std::max(i, 0), 4096))});
  }
  const int n = static_cast<int>(row.size());
  std::vector<ObjectPixel> back(n);
  Picture<uint16_t> picture(n, 1, Chroma::full, false);
  frameWithAlphaToPlanes16(row.data(), n, picture.out(), n, 0, 1);
  EXPECT_EQ(picture.at(0, 299, 0), 4096);
  EXPECT_EQ(picture.at(0, 299 + 4096, 0), 60160);
  EXPECT_EQ(picture.at(1, 299 + 4096, 0), 61440);
  EXPECT_EQ(picture.at(3, 299 + 4096, 0), 65535);
  planes16ToObject(picture.in(), back.data(), n, n, 0, 1);
  EXPECT_EQ(0, std::memcmp(row.data(), back.data(), n * sizeof row[0]));
}

void expectEveryColourBack() {
  std::vector<Bgr> in(1 << 16), out(in.size());
  std::vector<Bgra> inAlpha(in.size()), outAlpha(in.size());
  std::vector<FramePixel> frame(in.size());
  std::vector<ObjectPixel> object(in.size());
  const int n = static_cast<int>(in.size());
  for (int red = 0; red < 256; ++red) {
    for (int i = 0; i < n; ++i) {
      in[i] = {static_cast<uint8_t>(i), static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(red)};
      inAlpha[i] = {in[i].b, in[i].g, in[i].r, static_cast<uint8_t>(i + red)};
    }
    bgrToFrameRow(frame.data(), in.data(), n);
    frameToBgrRow(out.data(), frame.data(), n);
    ASSERT_EQ(0, std::memcmp(in.data(), out.data(), n * sizeof in[0])) << red;
    bgraToObjectRow(object.data(), inAlpha.data(), n);
    objectToBgraRow(outAlpha.data(), object.data(), n);
    ASSERT_EQ(0, std::memcmp(inAlpha.data(), outAlpha.data(), n * sizeof inAlpha[0])) << red;
  }
}
TEST(Planes, everyPackedColourComesBack) { onEveryTarget(expectEveryColourBack); }

TEST(Planes, packedColoursAreNearest) {
  std::vector<Bgr> colours;
  for (int i = 0; i < 256; ++i) {
    const uint8_t v = static_cast<uint8_t>(i), w = static_cast<uint8_t>(255 - i), half = static_cast<uint8_t>(i / 2);
    colours.insert(colours.end(), {{v, v, v}, {v, 0, 0}, {0, v, 0}, {0, 0, v}, {w, v, half}});
  }
  const int n = static_cast<int>(colours.size());
  std::vector<FramePixel> row(n);
  bgrToFrameRow(row.data(), colours.data(), n);
  for (int i = 0; i < n; ++i) {
    const double r = colours[i].r / 255.0, g = colours[i].g / 255.0, b = colours[i].b / 255.0;
    const double y = 0.299 * r + 0.587 * g + 0.114 * b;
    ASSERT_NEAR(row[i].y, 4096 * y, 0.502) << i;
    ASSERT_NEAR(row[i].cb, 4096 * (b - y) / 1.772, 0.502) << i;
    ASSERT_NEAR(row[i].cr, 4096 * (r - y) / 1.402, 0.502) << i;
    if (i % 5) continue;
    ASSERT_EQ(row[i].cb, 0);
    ASSERT_EQ(row[i].cr, 0);
  }
  EXPECT_EQ(row[255 * 5].y, 4096);
}

TEST(Planes, matrixTurnsPrimariesIntoPrimaries) {
  for (int colour = 0; colour < 8; ++colour) {
    const double r = colour & 1, g = colour >> 1 & 1, b = colour >> 2;
    const auto pixel = [&](double kr, double kb) {
      const double y = kr * r + (1 - kr - kb) * g + kb * b;
      return FramePixel{static_cast<int16_t>(halfUp(4096 * y)), static_cast<int16_t>(halfUp(2048 * (b - y) / (1 - kb))),
                        static_cast<int16_t>(halfUp(2048 * (r - y) / (1 - kr)))};
    };
    const FramePixel in709 = pixel(0.2126, 0.0722), in601 = pixel(0.299, 0.114);
    std::vector<FramePixel> row(40, in709);
    const auto expectNear = [&](const FramePixel& expected) {
      for (const FramePixel& p : {row.front(), row.back()}) {
        EXPECT_NEAR(p.y, expected.y, 1) << colour;
        EXPECT_NEAR(p.cb, expected.cb, 1) << colour;
        EXPECT_NEAR(p.cr, expected.cr, 1) << colour;
      }
    };
    bt709ToBt601Row(row.data(), 40);
    expectNear(in601);
    row.assign(40, in601);
    bt601ToBt709Row(row.data(), 40);
    expectNear(in709);
  }
}

}  // namespace
}  // namespace cinora
