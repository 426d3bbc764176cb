#include "zenlay/render/blend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/support/every_target.h"

namespace zenlay {

static bool operator==(const FramePixel& a, const FramePixel& b) { return !std::memcmp(&a, &b, sizeof a); }
static bool operator==(const ObjectPixel& a, const ObjectPixel& b) { return !std::memcmp(&a, &b, sizeof a); }
static void PrintTo(const FramePixel& p, std::ostream* out) { *out << p.y << ' ' << p.cb << ' ' << p.cr; }
static void PrintTo(const ObjectPixel& p, std::ostream* out) {
  *out << p.y << ' ' << p.cb << ' ' << p.cr << " alpha " << p.a;
}

namespace {

FramePixel onFrame(int mode, FramePixel s, FramePixel d, int weight = fullAlpha) {
  plainBlendKernels(mode).opaqueToFrame(&d, &s, 1, weight);
  return d;
}

ObjectPixel onObject(int mode, ObjectPixel s, ObjectPixel d, int weight = fullAlpha) {
  plainBlendKernels(mode).toObject(&d, &s, 1, weight);
  return d;
}

// Grey goes through RGB with a sum of coefficients of 16382 / 16384, hence one less than the component.
TEST(Blend, coloursOfTheModes) {
  const struct {
    int mode;
    FramePixel s, d, expected;
  } cases[] = {
      {blendNormal, {100, -200, 300}, {4096, 1, 2}, {100, -200, 300}},
      {blendAdditive, {4096, 10, -20}, {4096, 0, 0}, {8192, 10, -20}},
      {blendAdditive, {6144, 1000, -500}, {4096, 1000, 0}, {8192, 1000, -250}},
      {blendAdditive, {8191, 1000, -1000}, {4096, 1000, -1000}, {8192, 0, -1}},
      {blendAdditive, {8192, 1000, -1000}, {4096, 1000, -1000}, {8192, 0, 0}},
      {blendSubtractive, {4096, 100, 0}, {4096, 0, 5}, {0, -100, 5}},
      {blendSubtractive, {612, 0, 0}, {100, 1000, -1000}, {0, 500, -500}},
      {blendSubtractive, {1023, 0, 0}, {0, 1024, -1024}, {0, 1, -1}},
      {blendSubtractive, {1024, 0, 0}, {0, 2048, -2048}, {0, 0, 0}},
      {blendMultiply, {4096, 0, 0}, {2048, 0, 0}, {2047, 0, 0}},
      {blendMultiply, {8192, 0, 0}, {8192, 0, 0}, {8191, 0, 0}},
      {blendMultiply, {0, 0, 1000}, {4096, 0, 0}, {418, -237, 700}},  // red 1401, green -714 counts as 0
      {blendScreen, {4096, 0, 0}, {2048, 0, 0}, {4095, 0, 0}},
      {blendOverlay, {3000, 0, 0}, {1000, 0, 0}, {1463, 0, 0}},
      {blendOverlay, {1000, 0, 0}, {3000, 0, 0}, {2439, 0, 0}},
      {blendBrighter, {1000, 0, 0}, {3000, 0, 0}, {2999, 0, 0}},
      {blendDarker, {1000, 0, 0}, {3000, 0, 0}, {999, 0, 0}},
      {blendDarker, {0, 0, 1000}, {0, 0, 0}, {-420, 236, 299}},  // green -714 is darker than 0
      {blendLuminance, {100, 200, 300}, {1, 2, 3}, {100, 2, 3}},
      {blendColorDifference, {100, 200, 300}, {1, 2, 3}, {1, 200, 300}},
      {blendShadow, {3000, 0, 0}, {2000, 0, 0}, {903, 0, 0}},
      {blendShadow, {1000, 0, 0}, {2000, 0, 0}, {0, 0, 0}},
      {blendContrast, {2000, 0, 0}, {3000, 0, 0}, {2903, 0, 0}},
      {blendContrast, {4000, 0, 0}, {8000, 0, 0}, {8191, 0, 0}},
      {blendContrast, {500, 0, 0}, {3000, 0, 0}, {0, 0, 0}},
      {blendDifference, {1000, 0, 0}, {3000, 0, 0}, {1999, 0, 0}},
      {blendDifference, {3000, 0, 0}, {1000, 0, 0}, {1999, 0, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "mode " << c.mode << " source " << c.s.y << " onto " << c.d.y);
    EXPECT_EQ(onFrame(c.mode, c.s, c.d), c.expected);
    ObjectPixel viaObject = onObject(c.mode, {c.s.y, c.s.cb, c.s.cr, fullAlpha}, {c.d.y, c.d.cb, c.d.cr, 77});
    EXPECT_EQ(viaObject, (ObjectPixel{c.expected.y, c.expected.cb, c.expected.cr, fullAlpha}));
  }
}

TEST(Blend, weightsOnAFrame) {
  EXPECT_EQ(onFrame(blendNormal, {3000, -1000, 7}, {1000, 1000, 8}, 2048), (FramePixel{2000, 0, 7}));
  EXPECT_EQ(onFrame(blendNormal, {999, 1001, 0}, {1000, 1000, 0}, 1), (FramePixel{999, 1000, 0}));  // rounds down
  EXPECT_EQ(onFrame(blendNormal, {5, 5, 5}, {1, 2, 3}, 0), (FramePixel{1, 2, 3}));
  FramePixel d{0, 0, 0};
  const ObjectPixel s{4096, 0, 0, 1025};
  plainBlendKernels(blendNormal).toFrame(&d, &s, 1, 2048);  // 1025 * 2048 >> 12 = 512
  EXPECT_EQ(d, (FramePixel{512, 0, 0}));
}

TEST(Blend, fourCasesOfAnObjectDestination) {
  const struct {
    ObjectPixel s, d;
    int weight;
    ObjectPixel expected;
  } cases[] = {
      {{3000, 1, 2, 4096}, {1000, 9, 9, 2048}, 4096, {3000, 1, 2, 4096}},  // full weight
      {{3000, 0, 0, 4096}, {1000, 0, 0, 4096}, 1024, {1500, 0, 0, 4096}},  // opaque destination
      {{3000, 1, 2, 2000}, {1000, 9, 9, 0}, 2048, {3000, 1, 2, 1000}},     // transparent destination
      // A' 3072, weights 1365 and 2730: (1365 * 1000 + 2730 * 3000) >> 12
      {{3000, 0, 0, 2048}, {1000, 0, 0, 2048}, 4096, {2332, 0, 0, 3072}},
      {{500, 0, 0, 1}, {100, 0, 0, 1}, 4096, {299, 0, 0, 2}},  // A' 2, weights 2047 and 2048
      {{500, 1, 1, 0}, {100, 2, 3, 50}, 4096, {100, 2, 3, 50}},
      {{500, 1, 1, 4095}, {100, 2, 3, 0}, 0, {100, 2, 3, 0}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(onObject(blendNormal, c.s, c.d, c.weight), c.expected);
    EXPECT_EQ(onObject(13, c.s, c.d, c.weight), c.expected);
  }
}

TEST(Blend, internalModes) {
  const struct {
    int mode;
    ObjectPixel s, d, expected;
  } cases[] = {
      {blendMark, {9, 9, 9, 2048}, {1, 2, 3, 1000}, {1, 2, 3, 4596}},
      {blendMark, {9, 9, 9, 0}, {1, 2, 3, 1000}, {1, 2, 3, 1000}},
      {blendAddOpaque, {3000, 500, -1, 4096}, {2000, 1000, -2, 4096}, {5000, 1500, -3, 4096}},
      {blendAddOpaque, {4096, 0, 0, 2048}, {2048, 0, 0, 2048}, {4095, 0, 0, 3072}},  // weights 2730 and 2730
      {blendBehind, {3000, 0, 0, 4096}, {1000, 0, 0, 4096}, {1000, 0, 0, 4096}},
      {blendBehind, {3000, 0, 0, 4096}, {1000, 0, 0, 1024}, {2500, 0, 0, 4096}},
      {blendBehind, {3000, 7, 8, 1024}, {1000, 0, 0, 0}, {3000, 7, 8, 1024}},
      {blendReplace, {3000, 7, 8, 0}, {1000, 0, 0, 4096}, {3000, 7, 8, 0}},
      {blendAverage, {3000, -1, 0, 1000}, {1000, 0, 0, 3000}, {1500, 0, 0, 4000}},  // -1000 / 4000 is 0
      {blendAverage, {3000, 0, 0, 3000}, {1000, 0, 0, 3000}, {2000, 0, 0, 4096}},
      {blendAverageLargerAlpha, {3000, 0, 0, 1000}, {1000, 0, 0, 3000}, {1500, 0, 0, 3000}},
      {blendCutOut, {9, 9, 9, 1000}, {1, 2, 3, 3000}, {1, 2, 3, 2000}},
      {blendCutOut, {9, 9, 9, 3000}, {1, 2, 3, 1000}, {1, 2, 3, 0}},
      {blendScaleOut, {9, 9, 9, 3072}, {1, 2, 3, 3000}, {1, 2, 3, 750}},
      {blendDisplacement, {4096, 0, 0, 2048}, {1, 2, 3, 4}, {1024, 1024, 0, 4096}},
      {blendDisplacement, {2048, 0, 0, 4096}, {1, 2, 3, 4}, {0, 0, 0, 4096}},
      {blendAccumulate, {4000, 0, -4000, 1024}, {100, 0, 0, 1024}, {1100, 0, -1000, 2048}},
      {blendAccumulate, {4096, 0, 0, 2048}, {100, 0, 0, 3072}, {1124, 0, 0, 4096}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.mode);
    EXPECT_EQ(onObject(c.mode, c.s, c.d), c.expected);
  }
  const FramePixel s{3000, 7, 8};
  for (int mode = blendMark; mode <= blendAccumulate; ++mode) {
    if (mode == blendReplace) continue;
    EXPECT_EQ(onFrame(mode, s, {1000, 7, 8}, 2048), (FramePixel{2000, 7, 8})) << mode;
  }
  EXPECT_EQ(onFrame(blendReplace, s, {1000, 0, 0}, 2048), s);
  ObjectPixel opaque{1, 2, 3, 4};
  plainBlendKernels(blendReplace).opaqueToObject(&opaque, &s, 1, 2048);
  EXPECT_EQ(opaque, (ObjectPixel{3000, 7, 8, 4096}));
}

std::mt19937 random16(7);
int16_t anyValue() { return static_cast<int16_t>(random16()); }
int16_t between(int low, int high) {
  return static_cast<int16_t>(low + static_cast<int>(random16() % static_cast<unsigned>(high - low + 1)));
}
int16_t someAlpha() {
  static const int16_t ends[] = {0, 1, 2, 4095, 4096, 4097, 8192, -1, INT16_MIN, INT16_MAX};
  return random16() % 2 ? between(0, 4096) : ends[random16() % std::size(ends)];
}
void randomise(FramePixel* p, bool anything) {
  *p = anything ? FramePixel{anyValue(), anyValue(), anyValue()}
                : FramePixel{between(-300, 8192), between(-2100, 2100), between(-2100, 2100)};
}
void randomise(ObjectPixel* p, bool anything) {
  FramePixel colour;
  randomise(&colour, anything);
  *p = {colour.y, colour.cb, colour.cr, someAlpha()};
}

template <class Destination, class Source>
void expectSameRows(void (*fast)(Destination*, const Source*, int, int),
                    void (*plain)(Destination*, const Source*, int, int), int n, bool anything) {
  constexpr int guard = 3;
  for (int weight : {0, 1, 2047, 4095, 4096}) {
    std::vector<Destination> d(n + guard);
    std::vector<Source> s(n + guard);
    for (auto& p : d) randomise(&p, anything);
    for (auto& p : s) randomise(&p, anything);
    std::vector<Destination> expected = d;
    fast(d.data(), s.data(), n, weight);
    plain(expected.data(), s.data(), n, weight);
    ASSERT_EQ(d, expected) << "n " << n << " weight " << weight << " anything " << anything;
  }
}

void expectSameKernels() {
  for (int mode = -1; mode <= blendModeCount; ++mode) {
    SCOPED_TRACE(mode);
    const BlendKernels &fast = blendKernels(mode), &plain = plainBlendKernels(mode);
    for (bool anything : {false, true}) {
      for (int n : {0, 1, 7, 8, 15, 16, 17, 31, 33, 3000}) {
        expectSameRows(fast.toFrame, plain.toFrame, n, anything);
        expectSameRows(fast.opaqueToFrame, plain.opaqueToFrame, n, anything);
        expectSameRows(fast.toObject, plain.toObject, n, anything);
        expectSameRows(fast.opaqueToObject, plain.opaqueToObject, n, anything);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

TEST(Blend, vectorAndPlainKernelsAgreeOnEveryInput) { test::onEveryTarget(expectSameKernels); }

// The divisions of these modes are done in floating point: every pair of alphas, so every numerator and divisor.
void expectExactDivisions() {
  constexpr int row = fullAlpha + 1;
  std::vector<ObjectPixel> s(row), d(row), expected(row);
  for (int mode : {blendNormal, blendAddOpaque, blendBehind, blendAverage}) {
    for (int A = 0; A <= fullAlpha; ++A) {
      for (int a = 0; a < row; ++a) {
        s[a] = {static_cast<int16_t>(a * 7 - A), 4096, INT16_MIN, static_cast<int16_t>(a)};
        d[a] = {static_cast<int16_t>(A - 2048), -4096, INT16_MIN, static_cast<int16_t>(A)};
      }
      expected = d;
      blendKernels(mode).toObject(d.data(), s.data(), row, fullAlpha);
      plainBlendKernels(mode).toObject(expected.data(), s.data(), row, fullAlpha);
      ASSERT_EQ(0, std::memcmp(d.data(), expected.data(), row * sizeof d[0])) << "mode " << mode << " A " << A;
    }
  }
}

TEST(Blend, everyPairOfAlphasDividesExactly) { test::onEveryTarget(expectExactDivisions); }

TEST(Blend, listNamesTheUserModesInOrder) {
  std::vector<std::string> names;
  for (const char* name = blendModeList; *name; name += std::strlen(name) + 1) names.push_back(name);
  ASSERT_EQ(names.size(), size_t{userBlendModes});
  EXPECT_EQ(names[blendNormal], "Normal");
  EXPECT_EQ(names[blendColorDifference], "Color difference");
  EXPECT_EQ(names[blendDifference], "Difference");
}

struct Copies : testing::Test {
  static constexpr int width = 20, height = 90, line = 24;
  HostFunctionTable host{};
  static inline int threadedCalls;
  std::vector<ObjectPixel> target = std::vector<ObjectPixel>(line * height, {1, 2, 3, 4});
  std::vector<ObjectPixel> picture = std::vector<ObjectPixel>(line * height);

  Copies() {
    threadedCalls = 0;
    host.runOnThreads = [](ThreadWork work, void* first, void* second) {
      ++threadedCalls;
      for (int i = 0; i < 3; ++i) work(i, 3, first, second);
      return 1;
    };
    for (int i = 0; i < line * height; ++i) {
      picture[i] = {static_cast<int16_t>(i), static_cast<int16_t>(i % 100), 0, fullAlpha};
    }
  }
  void copy(int x, int y, ImageRegion region, int transparency = 0) {
    region.pixels = picture.data();
    region.lineBytes = line * static_cast<int>(sizeof(ObjectPixel));
    blendCopy(&host, {target.data(), width, height, region.lineBytes}, x, y, region, transparency,
              blendSourceAlpha | blendDestinationAlpha);
  }
  /// Target pixels of [x0, x1) x [y0, y1) come from the picture shifted by (dx, dy); all others are untouched.
  void expectCopied(int x0, int y0, int x1, int y1, int64_t dx, int64_t dy) {
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < line; ++x) {
        bool inside = x >= x0 && x < x1 && y >= y0 && y < y1;
        ObjectPixel expected = inside ? picture[(y + dy) * line + x + dx] : ObjectPixel{1, 2, 3, 4};
        ASSERT_EQ(target[y * line + x], expected) << x << ", " << y;
      }
    }
  }
};

TEST_F(Copies, clipToTheTarget) {
  const struct {
    int x, y;
    ImageRegion region;
    int x0, y0, x1, y1;
  } cases[] = {
      {3, 4, {nullptr, 5, 6, 7, 8, 0}, 3, 4, 10, 12},
      {-2, -3, {nullptr, 5, 6, 7, 8, 0}, 0, 0, 5, 5},
      {18, 88, {nullptr, 0, 0, 7, 8, 0}, 18, 88, 20, 90},
      {2, 2, {nullptr, -1, -1, 3, 3, 0}, 3, 3, 5, 5},
      {-7, 0, {nullptr, 0, 0, 7, 8, 0}, 0, 0, 0, 0},
      {20, 0, {nullptr, 0, 0, 7, 8, 0}, 0, 0, 0, 0},
      {0, 0, {nullptr, 0, 0, 0, 8, 0}, 0, 0, 0, 0},
      {0, 0, {nullptr, 0, 0, 8, -1, 0}, 0, 0, 0, 0},
      {INT_MIN, INT_MIN, {nullptr, 0, 0, INT_MAX, INT_MAX, 0}, 0, 0, 0, 0},
      {INT_MAX, INT_MAX, {nullptr, 0, 0, INT_MAX, INT_MAX, 0}, 0, 0, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "at " << c.x << ", " << c.y);
    std::fill(target.begin(), target.end(), ObjectPixel{1, 2, 3, 4});
    copy(c.x, c.y, c.region);
    expectCopied(c.x0, c.y0, c.x1, c.y1, int64_t{c.region.x} - c.x, int64_t{c.region.y} - c.y);
  }
}

TEST_F(Copies, shareTallPicturesAmongTheWorkers) {
  copy(0, 0, {nullptr, 0, 0, width, 63, 0});
  EXPECT_EQ(threadedCalls, 0);
  copy(0, 1, {nullptr, 0, 1, width, 64, 0});
  EXPECT_EQ(threadedCalls, 1);
  expectCopied(0, 0, width, 65, 0, 0);
}

TEST_F(Copies, fullTransparencyDrawsNothing) {
  copy(0, 0, {nullptr, 0, 0, width, height, 0}, 4096);
  copy(0, 0, {nullptr, 0, 0, width, height, 0}, INT_MAX);
  expectCopied(0, 0, 0, 0, 0, 0);
  copy(0, 0, {nullptr, 0, 0, width, height, 0}, INT_MIN);
  expectCopied(0, 0, width, height, 0, 0);
}

TEST_F(Copies, modeAndFormatsComeFromTheFlags) {
  std::vector<FramePixel> frame(4, {1000, 0, 0}), source(4, {500, 0, 0});
  const ImageTarget onto{frame.data(), 4, 1, 24};
  blendCopy(&host, onto, 0, 0, {source.data(), 0, 0, 1, 1, 24}, 0, blendFlags(blendAdditive));
  blendCopy(&host, onto, 1, 0, {source.data(), 0, 0, 1, 1, 24}, 2048, blendFlags(13));
  ObjectPixel half{500, 0, 0, 2048}, empty{};
  blendCopy(&host, onto, 2, 0, {&half, 0, 0, 1, 1, 8}, 0, blendFlags(blendSubtractive) | blendSourceAlpha);
  EXPECT_EQ(frame, (std::vector<FramePixel>{{1500, 0, 0}, {750, 0, 0}, {750, 0, 0}, {1000, 0, 0}}));
  blendCopy(&host, {&empty, 1, 1, 8}, 0, 0, {source.data(), 0, 0, 1, 1, 24}, 1024, blendDestinationAlpha);
  EXPECT_EQ(empty, (ObjectPixel{500, 0, 0, 3072}));
}

}  // namespace
}  // namespace zenlay
