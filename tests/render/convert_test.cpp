#include "zenlay/render/convert.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "tests/support/every_target.h"

namespace zenlay {
namespace {

TEST(Convert, knownColours) {
  const struct {
    uint8_t r, g, b;
    ObjectPixel expected;
  } cases[] = {
      {0, 0, 0, {0, 0, 0, 4096}},
      {255, 255, 255, {4095, 0, 0, 4096}},
      {255, 0, 0, {1224, -692, 2047, 4096}},  // 4918, -2775 and 8224 times 4080 >> 14
      {0, 255, 0, {2404, -1357, -1716, 4096}},
      {0, 0, 255, {466, 2047, -333, 4096}},
  };
  for (const auto& c : cases) {
    ObjectPixel p = toYcbcr(c.r, c.g, c.b);
    EXPECT_EQ(0, std::memcmp(&p, &c.expected, sizeof p)) << p.y << ' ' << p.cb << ' ' << p.cr;
  }
  const struct {
    int y, cb, cr;
    Bgr expected;
  } backwards[] = {
      {4096, 0, 0, {255, 255, 255}}, {2048, 0, 0, {128, 128, 128}},   {8192, 0, 0, {255, 255, 255}},
      {-5, 0, 0, {0, 0, 0}},         {2048, 0, 2048, {128, 36, 255}},
  };
  for (const auto& c : backwards) {
    Bgr p = toRgb(c.y, c.cb, c.cr);
    EXPECT_EQ(0, std::memcmp(&p, &c.expected, sizeof p)) << int{p.b} << ' ' << int{p.g} << ' ' << int{p.r};
  }
}

TEST(Convert, everyColourComesBack) {
  std::vector<Bgra> in(1 << 16), out(in.size());
  std::vector<ObjectPixel> object(in.size());
  for (int red = 0; red < 256; ++red) {
    for (size_t i = 0; i < in.size(); ++i) {
      in[i] = {static_cast<uint8_t>(i), static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(red),
               static_cast<uint8_t>(i ^ red)};
    }
    bgraToObjectRow(object.data(), in.data(), static_cast<int>(in.size()));
    objectToBgraRow(out.data(), object.data(), static_cast<int>(in.size()));
    ASSERT_EQ(0, std::memcmp(in.data(), out.data(), in.size() * sizeof in[0])) << red;
  }
}

TEST(Convert, alphaEnds) {
  const Bgra in[] = {{0, 0, 0, 0}, {0, 0, 0, 1}, {0, 0, 0, 128}, {0, 0, 0, 255}};
  ObjectPixel out[4];
  bgraToObjectRow(out, in, 4);
  EXPECT_EQ(out[0].a, 0);
  EXPECT_EQ(out[1].a, 16);
  EXPECT_EQ(out[2].a, 2056);
  EXPECT_EQ(out[3].a, 4096);
}

template <class Destination, class Source>
void expectSameRows(void (*fast)(Destination*, const Source*, int), void (*plain)(Destination*, const Source*, int)) {
  std::mt19937 random(3);
  for (int n : {0, 1, 7, 16, 17, 33, 5000}) {
    std::vector<Source> s(n + 2);
    std::vector<Destination> a(n + 2), b(n + 2);
    auto* bytes = reinterpret_cast<uint8_t*>(s.data());
    for (size_t i = 0; i < s.size() * sizeof(Source); ++i) bytes[i] = static_cast<uint8_t>(random());
    fast(a.data(), s.data(), n);
    plain(b.data(), s.data(), n);
    ASSERT_EQ(0, std::memcmp(a.data(), b.data(), a.size() * sizeof(Destination))) << n;
  }
}

void expectSameConversions() {
  expectSameRows(bgrToObjectRow, plainBgrToObjectRow);
  expectSameRows(bgraToObjectRow, plainBgraToObjectRow);
  expectSameRows(frameToBgrRow, plainFrameToBgrRow);
  expectSameRows(objectToBgraRow, plainObjectToBgraRow);
  auto saturated = [](auto saturate) {
    return [saturate](FramePixel* d, const FramePixel* s, int n) {
      std::memcpy(d, s, n * sizeof *d);
      saturate(d, n);
    };
  };
  static const auto fast = saturated(saturateRow), plain = saturated(plainSaturateRow);
  expectSameRows<FramePixel, FramePixel>([](FramePixel* d, const FramePixel* s, int n) { fast(d, s, n); },
                                         [](FramePixel* d, const FramePixel* s, int n) { plain(d, s, n); });
}

TEST(Convert, vectorAndPlainRowsAgreeOnEveryInput) { test::onEveryTarget(expectSameConversions); }

TEST(Convert, saturationLeavesColoursInside) {
  FramePixel row[] = {{4096, 0, 0}, {0, 0, 0}, {1226, -690, 2046}, {5000, 0, 0}, {-9, 0, 0}, {2048, 2048, 0}};
  const FramePixel before[] = {row[0], row[1], row[2]};
  saturateRow(row, 3);
  EXPECT_EQ(0, std::memcmp(row, before, sizeof before));
  saturateRow(row + 3, 3);
  EXPECT_EQ(row[3].y, 4095);  // white by way of RGB
  EXPECT_EQ(row[4].y, 0);
  // Blue 2048 + 3629 is limited to 4096: (2048 * 4898 + 1343 * 9617 + 4096 * 1867) >> 14
  EXPECT_EQ(row[5].y, 1867);
  EXPECT_EQ(row[5].cb, 1257);
}

TEST(Convert, addAndDropAlpha) {
  const FramePixel frame[] = {{1, -2, 3}, {-32768, 5, 32767}};
  ObjectPixel object[2];
  FramePixel back[2];
  frameToObjectRow(object, frame, 2);
  EXPECT_EQ(object[1].cr, 32767);
  EXPECT_EQ(object[1].a, 4096);
  objectToFrameRow(back, object, 2);
  EXPECT_EQ(0, std::memcmp(back, frame, sizeof frame));
}

}  // namespace
}  // namespace zenlay
