#include "platform/font.h"

#include <gtest/gtest.h>

#include <numeric>

namespace platform {
namespace {

int64_t ink(const Glyph& glyph) { return std::accumulate(glyph.coverage.begin(), glyph.coverage.end(), int64_t{0}); }

Glyph glyphOf(Font* font, char32_t character) {
  Glyph glyph;
  EXPECT_TRUE(drawGlyph(font, character, &glyph)) << static_cast<uint32_t>(character);
  return glyph;
}

struct OpenFont {
  Font* font;
  explicit OpenFont(int size, int weight = 400, bool italic = false, const char* face = "DejaVu Sans")
      : font(openFont(face, size, weight, italic)) {}
  ~OpenFont() { closeFont(font); }
};

TEST(Fonts, FullBlockIsFilledCompletely) {
  OpenFont f(64, 400, false, "DejaVu Sans Mono");
  Glyph block = glyphOf(f.font, U'\u2588');
  ASSERT_GT(block.width, 20);
  EXPECT_EQ(block.coverage[size_t(block.height / 2) * block.width + block.width / 2], 64);
  EXPECT_EQ(*std::max_element(block.coverage.begin(), block.coverage.end()), 64);
  EXPECT_EQ(block.coverage.size(), size_t(block.width) * block.height);
}

TEST(Fonts, PlacementCountsFromTheBaseLine) {
  OpenFont f(100);
  // DejaVu Sans: capitals are 1493 of 2048 units high.
  Glyph h = glyphOf(f.font, U'H');
  EXPECT_NEAR(h.height, 73, 1);
  EXPECT_NEAR(h.top, 73, 1);
  EXPECT_NEAR(h.advance, 75, 1);  // 1540 units
  Glyph p = glyphOf(f.font, U'p');
  EXPECT_GT(p.height, p.top);  // reaches below
  Glyph blank = glyphOf(f.font, U' ');
  EXPECT_TRUE(blank.coverage.empty());
  EXPECT_GT(blank.advance, 20);
  FontMetrics m = fontMetrics(f.font);
  EXPECT_GE(m.ascent, h.top);
  EXPECT_GE(m.descent, p.height - p.top);
  EXPECT_GE(m.lineHeight, 100);
  EXPECT_GE(m.maxAdvance, h.advance);
}

TEST(Fonts, WeightAndSlant) {
  OpenFont plain(60), bold(60, 700), italic(60, 400, true);
  EXPECT_GT(ink(glyphOf(bold.font, U'l')), ink(glyphOf(plain.font, U'l')) * 12 / 10);
  EXPECT_GT(glyphOf(italic.font, U'l').width, glyphOf(plain.font, U'l').width * 3 / 2);
}

TEST(Fonts, MissingFacesAndCharactersFallBack) {
  OpenFont unknown(20, 400, false, "No Such Face At All"), none(20, 400, false, nullptr);
  ASSERT_NE(unknown.font, nullptr);
  ASSERT_NE(none.font, nullptr);
  EXPECT_GT(ink(glyphOf(unknown.font, U'A')), 0);
  OpenFont latin(20, 400, false, "URW Gothic");  // any latin face: without a box-drawing or symbol range of its own
  EXPECT_GT(ink(glyphOf(latin.font, U'\u2588')), 0);
  Glyph glyph;
  EXPECT_FALSE(drawGlyph(latin.font, 0x10FFFF, &glyph));
  EXPECT_FALSE(drawGlyph(nullptr, U'A', &glyph));
}

TEST(Fonts, SizesAreClamped) {
  OpenFont small(-5), large(1 << 30);
  ASSERT_NE(small.font, nullptr);
  ASSERT_NE(large.font, nullptr);
  EXPECT_LE(glyphOf(large.font, U'H').height, 4096);
}

}  // namespace
}  // namespace platform
