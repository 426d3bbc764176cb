#include "zenlay/render/raster.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "tests/render/drawing_pictures.h"
#include "zenlay/render/blend.h"
#include "zenlay/render/raster_sample.h"

namespace zenlay {
namespace {

using test::FramePicture;
using test::ObjectPicture;
using test::twoThreads;

std::vector<ObjectPixel> noise(int count, bool alpha) {
  std::mt19937 random(7);
  std::vector<ObjectPixel> pixels(count);
  for (ObjectPixel& p : pixels) {
    auto in = [&](int low, int high) {
      return static_cast<int16_t>(low + static_cast<int>(random() % (high - low + 1)));
    };
    p = {in(-500, 8192), in(-2048, 2047), in(-2048, 2047), alpha ? in(0, 4096) : in(4096, 4096)};
    if (alpha && random() % 4 == 0) p.a = 0;
  }
  return pixels;
}

TEST(Sample, VectorsGiveTheBitsOfThePlainDefinition) {
  for (auto [width, height] : {std::pair{37, 23}, {1, 9}, {9, 1}, {1, 1}, {2, 2}}) {
    for (bool alpha : {true, false}) {
      std::vector<ObjectPixel> objects = noise(width * height, true);
      std::vector<FramePixel> frames(objects.size());
      for (size_t i = 0; i < objects.size(); i++) frames[i] = {objects[i].y, objects[i].cb, objects[i].cr};
      SampleSource source{
          alpha ? reinterpret_cast<const uint8_t*>(objects.data()) : reinterpret_cast<const uint8_t*>(frames.data()),
          width, height, width * (alpha ? 8 : 6), alpha};
      for (int count : {1, 3, 4, 17, 256}) {
        for (SampleRun run : {SampleRun{-3.3, 2.1, 1, 0.31, -0.07, 0, count},
                              {4, 5, 2, 0.6, 0.4, 0.01, count},
                              {40000, 3, 1, -300, 1e9, 0, count},
                              {1, 1, 1, 0, 0, -0.5, count}}) {
          ObjectPixel fast[256], plain[256];
          sampleRun(source, run, fast);
          sampleRunPlain(source, run, plain);
          ASSERT_EQ(memcmp(fast, plain, count * sizeof(ObjectPixel)), 0) << width << ' ' << alpha << ' ' << count;
        }
      }
    }
  }
}

TEST(Sample, WeighsColoursByAlpha) {
  // Half way between opaque white and transparent garbage, and between opaque white and half-transparent black.
  ObjectPixel row[3] = {{4000, 100, 0, 4096}, {9999, 9999, 9999, 0}, {1000, -200, 0, 2048}};
  SampleSource source{reinterpret_cast<const uint8_t*>(row), 3, 1, sizeof row, true};
  ObjectPixel out[4];
  sampleRun(source, {1.0, 0.5, 1, 0, 0, 0, 4}, out);
  for (ObjectPixel p : out) {
    EXPECT_EQ(p.y, 4000);
    EXPECT_EQ(p.cb, 100);
    EXPECT_EQ(p.a, 2048);
  }
  row[1] = {1000, -200, 0, 2048};
  sampleRun(source, {1.0, 0.5, 1, 0, 0, 0, 4}, out);
  EXPECT_EQ(out[0].y, 3000);  // (4000 x 4096 + 1000 x 2048) / 6144
  EXPECT_EQ(out[0].cb, 0);
  EXPECT_EQ(out[0].a, 3072);
}

TEST(Raster, CoverageIsTheAreaInside) {
  // x + y >= 1 through pixel (0, 0): the half below the diagonal.
  HalfPlane diagonal{0.5, 0.5, -0.5}, right{1, 0, -0.5}, thin{-1, 0, 0.75};
  EXPECT_DOUBLE_EQ(pixelCoverage(&diagonal, 1, 0.5, 0.5), 0.5);
  EXPECT_DOUBLE_EQ(pixelCoverage(&right, 1, 0.5, 0.5), 0.5);
  HalfPlane both[] = {diagonal, right};
  EXPECT_DOUBLE_EQ(pixelCoverage(both, 2, 0.5, 0.5), 0.375);
  HalfPlane all[] = {diagonal, right, thin};
  EXPECT_DOUBLE_EQ(pixelCoverage(all, 3, 0.5, 0.5), 0.25 * 0.625);
  EXPECT_EQ(pixelCoverage(all, 3, 5.5, 0.5), 0);
}

/// The whole picture turned by `degrees` and scaled about the frame's middle; `at` maps picture to frame.
struct Turn {
  double angle, scale, middle, half;
  DrawVertex at(double u, double v) const {
    double x = (u - half) * scale, y = (v - half) * scale;
    return {static_cast<float>(middle + x * std::cos(angle) - y * std::sin(angle)),
            static_cast<float>(middle + x * std::sin(angle) + y * std::cos(angle)), 1, static_cast<float>(u),
            static_cast<float>(v)};
  }
};

ObjectPicture smoothPicture(int size) {
  ObjectPicture picture(size, size);
  for (int y = 0; y < size; y++) {
    for (int x = 0; x < size; x++) {
      picture.at(x, y) = {static_cast<int16_t>(2048 + 20 * x), static_cast<int16_t>(10 * y), static_cast<int16_t>(-x),
                          4096};
    }
  }
  return picture;
}

TEST(Raster, PiecesOfOnePictureMeetWithoutALine) {
  ObjectPicture picture = smoothPicture(64);
  std::mt19937 random(3);
  for (double degrees : {0.0, 7.0, 33.3, 45.0, 61.7, 90.0}) {
    for (int transparency : {0, 2048}) {
      Turn turn{degrees * M_PI / 180, 1.37, 64.3, 32};
      ObjectPicture whole(128, 128), pieces(128, 128);
      DrawVertex corners[4] = {turn.at(0, 0), turn.at(64, 0), turn.at(64, 64), turn.at(0, 64)};
      fillPolygon(twoThreads(), whole.target(), corners, 4, picture.region(), transparency,
                  blendSourceAlpha | blendDestinationAlpha);
      // A 5 x 5 grid whose inner vertices are moved about.
      constexpr int cells = 5;
      DrawVertex grid[cells + 1][cells + 1];
      for (int j = 0; j <= cells; j++) {
        for (int i = 0; i <= cells; i++) {
          auto moved = [&](int k) { return k == 0 || k == cells ? 0.0 : static_cast<int>(random() % 800) / 100.0 - 4; };
          grid[j][i] = turn.at(i * 12.8f + moved(i), j * 12.8f + moved(j));
        }
      }
      for (int j = 0; j <= cells; j++) grid[j][cells] = turn.at(64, j * 12.8), grid[j][0] = turn.at(0, j * 12.8);
      for (int i = 0; i <= cells; i++) grid[cells][i] = turn.at(i * 12.8, 64), grid[0][i] = turn.at(i * 12.8, 0);
      for (int j = 0; j < cells; j++) {
        for (int i = 0; i < cells; i++) {
          DrawVertex quad[4] = {grid[j][i], grid[j][i + 1], grid[j + 1][i + 1], grid[j + 1][i]};
          fillPolygon(twoThreads(), pieces.target(), quad, 4, picture.region(), transparency,
                      blendSourceAlpha | blendDestinationAlpha);
        }
      }
      for (int y = 0; y < 128; y++) {
        for (int x = 0; x < 128; x++) {
          ObjectPixel a = whole.at(x, y), b = pieces.at(x, y);
          ASSERT_NEAR(a.a, b.a, 2) << degrees << ": " << x << ',' << y;
          ASSERT_NEAR(a.a * a.y, a.a * b.y, 4 * a.a) << degrees << ": " << x << ',' << y;
        }
      }
    }
  }
}

TEST(Raster, SharedEdgesOfFacesAndAddedCoverageLeaveNoGap) {
  ObjectPicture white(8, 8, {4096, 0, 0, 4096});
  // Two faces, each with the whole picture, meet in a slanted edge.
  auto draw = [&](ObjectPicture& frame, uint32_t flags) {
    DrawVertex left[4] = {{-10, -10, 1, 0, 0}, {13.7f, -10, 1, 8, 0}, {21.2f, 50, 1, 8, 8}, {-10, 50, 1, 0, 8}};
    DrawVertex right[4] = {{13.7f, -10, 1, 0, 0}, {60, -10, 1, 8, 0}, {60, 50, 1, 8, 8}, {21.2f, 50, 1, 0, 8}};
    for (DrawVertex* face : {left, right}) {
      fillPolygon(twoThreads(), frame.target(), face, 4, white.region(), 0,
                  blendSourceAlpha | blendDestinationAlpha | flags);
    }
    int least = 4096;
    for (ObjectPixel p : frame.pixels) least = std::min<int>(least, p.a);
    return least;
  };
  ObjectPicture shared(40, 40), added(40, 40), apart(40, 40);
  EXPECT_EQ(draw(shared, drawSharedEdges), 4096);
  EXPECT_GE(draw(added, blendFlags(blendAccumulate)), 4095);
  EXPECT_LT(draw(apart, 0), 3200);  // two separate pictures: 1 - (1 - 1/2)^2 at worst
}

TEST(Raster, ThinLinesDoNotShimmerWhenShrunk) {
  // One white line in 512 rows, drawn at 1/10 at a hundred positions: its light stays the same.
  ObjectPicture picture(512, 512, {0, 0, 0, 4096});
  for (int x = 0; x < 512; x++) picture.at(x, 200) = {4096, 0, 0, 4096};
  resetProjection(128, 128);
  for (int rz : {0, 3000}) {
    int least = 1 << 30, most = 0;
    for (int step = 0; step < 100; step++) {
      FramePicture frame(128, 128);
      ImageTarget target = frame.target();
      ImagePlacement at{0, step * 41, 0, 0, 0, rz, zoomOne / 10, 0, 0, 256 * 4096, 256 * 4096, 0};
      int32_t corners[8];
      drawImageInSpace(twoThreads(), &target, picture.region(), at, nullptr, blendSourceAlpha, corners);
      int light = 0;
      for (FramePixel p : frame.pixels) light += p.y;
      least = std::min(least, light);
      most = std::max(most, light);
    }
    double expected = 4096 * 51.2 / 10;
    EXPECT_GT(least, expected * 0.94) << rz;
    EXPECT_LT(most, expected * 1.06) << rz;
  }
}

TEST(Raster, ShrinkingWeighsByAlpha) {
  // Opaque white beside transparent columns of another colour: only the alpha changes.
  ObjectPicture picture(64, 64);
  for (int y = 0; y < 64; y++) {
    for (int x = 0; x < 64; x++)
      picture.at(x, y) = x % 2 ? ObjectPixel{0, 2000, -2000, 0} : ObjectPixel{4096, 0, 0, 4096};
  }
  ObjectPicture frame(16, 16);
  DrawVertex quad[4] = {{0, 0, 1, 0, 0}, {16, 0, 1, 64, 0}, {16, 16, 1, 64, 64}, {0, 16, 1, 0, 64}};
  fillPolygon(twoThreads(), frame.target(), quad, 4, picture.region(), 0, blendSourceAlpha | blendDestinationAlpha);
  for (ObjectPixel p : frame.pixels) {
    ASSERT_EQ(p.y, 4096);
    ASSERT_EQ(p.cb, 0);
    ASSERT_NEAR(p.a, 2048, 40);
  }
}

TEST(Raster, SamplingIsPerspectiveCorrect) {
  // A floor: near edge w 2, far edge w 1/2. Half way down the screen lies v = 1/5 of the way from the near edge's side.
  ObjectPicture picture(64, 640);
  for (int y = 0; y < 640; y++) {
    for (int x = 0; x < 64; x++) picture.at(x, y) = {static_cast<int16_t>(4 * y), 0, 0, 4096};
  }
  FramePicture frame(64, 64);
  DrawVertex quad[4] = {{24, 0, 0.5f, 0, 0}, {40, 0, 0.5f, 64, 0}, {64, 64, 2, 64, 640}, {0, 64, 2, 0, 640}};
  fillPolygon(twoThreads(), frame.target(), quad, 4, picture.region(), 0, blendSourceAlpha);
  // v / 640 = t w1 / (t w1 + (1 - t) w0) at t = 32.5 / 64.
  double t = 32.5 / 64, v = 640 * t * 2 / (t * 2 + (1 - t) * 0.5);
  EXPECT_NEAR(frame.at(32, 32).y, 4 * (v - 0.5), 12);
}

TEST(Raster, RefusesAndSurvives) {
  ObjectPicture picture(8, 8, {4096, 0, 0, 4096});
  FramePicture frame(16, 16);
  const float bad = std::numeric_limits<float>::quiet_NaN(), far = 3e8f;
  DrawVertex quads[][4] = {
      {{bad, 0, 1, 0, 0}, {16, 0, 1, 8, 0}, {16, 16, 1, 8, 8}, {0, 16, 1, 0, 8}},
      {{0, 0, 0, 0, 0}, {16, 0, 1, 8, 0}, {16, 16, 1, 8, 8}, {0, 16, 1, 0, 8}},
      {{5, 5, 1, 0, 0}, {5, 5, 1, 8, 0}, {5, 5, 1, 8, 8}, {5, 5, 1, 0, 8}},
      {{0, 0, 1, 0, 0}, {16, 16, 1, 8, 0}, {16, 16, 1, 8, 8}, {0, 0, 1, 0, 8}},
      {{far, far, 1, 0, 0}, {far + 64, far, 1, 8, 0}, {far + 64, far + 64, 1, 8, 8}, {far, far + 64, 1, 0, 8}},
  };
  for (auto& quad : quads) fillPolygon(twoThreads(), frame.target(), quad, 4, picture.region(), 0, blendSourceAlpha);
  DrawVertex many[17] = {};
  fillPolygon(twoThreads(), frame.target(), many, 17, picture.region(), 0, blendSourceAlpha);
  fillPolygon(twoThreads(), frame.target(), many, 2, picture.region(), 0, blendSourceAlpha);
  for (FramePixel p : frame.pixels) ASSERT_EQ(p.y, 0);
  // Larger than any frame: everything inside is filled. Then a dented and a crossed quadrilateral.
  DrawVertex huge[4] = {{-far, -far, 1, 0, 0}, {far, -far, 1, 8, 0}, {far, far, 1, 8, 8}, {-far, far, 1, 0, 8}};
  fillPolygon(twoThreads(), frame.target(), huge, 4, picture.region(), 0, blendSourceAlpha);
  for (FramePixel p : frame.pixels) ASSERT_EQ(p.y, 4096);
  FramePicture dented(16, 16);
  DrawVertex dent[4] = {{0, 0, 1, 0, 0}, {16, 0, 1, 8, 0}, {4, 4, 1, 8, 8}, {0, 16, 1, 0, 8}};
  fillPolygon(twoThreads(), dented.target(), dent, 4, picture.region(), 0, blendSourceAlpha);
  EXPECT_EQ(dented.at(2, 2).y, 4096);
  EXPECT_EQ(dented.at(12, 12).y, 0);
  EXPECT_EQ(dented.at(0, 10).y, 4096);
  DrawVertex crossed[4] = {{0, 0, 1, 0, 0}, {16, 16, 1, 8, 0}, {16, 0, 1, 8, 8}, {0, 16, 1, 0, 8}};
  fillPolygon(twoThreads(), dented.target(), crossed, 4, picture.region(), 0, blendSourceAlpha);
}

TEST(Raster, OnlyTheRegionIsSampled) {
  ObjectPicture picture(16, 16, {-3000, 0, 0, 4096});
  for (int y = 4; y < 8; y++) {
    for (int x = 6; x < 10; x++) picture.at(x, y) = {1000, 0, 0, 4096};
  }
  ImageRegion region{picture.pixels.data(), 6, 4, 4, 4, picture.lineBytes()};
  FramePicture frame(40, 40);
  DrawVertex quad[4] = {{3.3f, 5, 1, 6, 4}, {33, 1, 1, 10, 4}, {36, 31, 1, 10, 8}, {6.3f, 35, 1, 6, 8}};
  fillPolygon(twoThreads(), frame.target(), quad, 4, region, 0, blendSourceAlpha);
  EXPECT_EQ(frame.at(20, 18).y, 1000);
  for (FramePixel p : frame.pixels) ASSERT_GE(p.y, 0);
}

}  // namespace
}  // namespace zenlay
