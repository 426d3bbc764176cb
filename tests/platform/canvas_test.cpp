#include "platform/canvas.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/backend.h"

namespace platform {
namespace {

constexpr int side = 8;

/// A memory canvas, read as rows of one letter a pixel.
struct Picture {
  Canvas* canvas = createMemoryCanvas(side, side);
  ~Picture() { releaseCanvas(canvas); }
  uint32_t at(int x, int y) const { return canvasPixels(canvas)[y * side + x]; }
  std::string rows(int count) const {
    std::string text;
    for (int y = 0; y < count; y++) {
      for (int x = 0; x < side; x++) text += at(x, y) ? '#' : '.';
      text += '\n';
    }
    return text;
  }
};

TEST(Canvas, Limits) {
  Canvas* canvas = createMemoryCanvas(3, 2);
  ASSERT_NE(canvas, nullptr);
  EXPECT_EQ(canvasPixels(canvas)[5], 0u);
  releaseCanvas(canvas);
  EXPECT_EQ(createMemoryCanvas(0, 5), nullptr);
  EXPECT_EQ(createMemoryCanvas(32768, 1), nullptr);
}

TEST(Canvas, GradientsReachBothColours) {
  Picture p;
  fillGradient(p.canvas, {1, 0, 5, 2}, rgb(0, 200, 10), rgb(100, 100, 13));
  // A quarter of the way a column: 0 25 50 75 100; 200 175 150 125 100; 10 10.75 11.5 12.25 13.
  const Color row[] = {0, rgb(0, 200, 10), rgb(25, 175, 11), rgb(50, 150, 12), rgb(75, 125, 12), rgb(100, 100, 13), 0};
  for (int x = 0; x < 7; x++) EXPECT_EQ(p.at(x, 1), row[x]) << x;
  fillGradient(p.canvas, {-2, 4, 4, 1}, rgb(90, 0, 0), rgb(0, 0, 90));  // cut at the left edge
  EXPECT_EQ(p.at(0, 4), rgb(30, 0, 60));
  EXPECT_EQ(p.at(1, 4), rgb(0, 0, 90));
  fillGradient(p.canvas, {3, 4, 1, 1}, rgb(1, 2, 3), rgb(4, 5, 6));
  EXPECT_EQ(p.at(3, 4), rgb(1, 2, 3));
}

TEST(Canvas, LinesLeaveTheirLastPointOut) {
  Picture p;
  drawLine(p.canvas, {1, 0}, {4, 0}, 1);
  drawLine(p.canvas, {4, 1}, {1, 1}, 1);
  drawLine(p.canvas, {0, 2}, {0, 2}, 1);
  drawLine(p.canvas, {-5, 3}, {100, 3}, 1, lineDotted);
  drawLine(p.canvas, {0, 4}, {100, 4}, 1, lineDotted);
  drawLine(p.canvas, {1, 5}, {4, 8}, 1);
  EXPECT_EQ(p.rows(8),
            ".###....\n"
            "..###...\n"
            "........\n"
            ".#.#.#.#\n"
            "#.#.#.#.\n"
            ".#......\n"
            "..#.....\n"
            "...#....\n");
}

TEST(Canvas, FramesAndPolygonsIncludeTheirCorners) {
  Picture p;
  drawFrame(p.canvas, {0, 0, 4, 3}, 1);
  drawFrame(p.canvas, {6, 0, 1, 1}, 1);
  const Point triangle[] = {{1, 4}, {4, 4}, {4, 7}};
  fillPolygon(p.canvas, triangle, 3, 1);
  const Point bar[] = {{6, 3}, {6, 6}};
  fillPolygon(p.canvas, bar, 2, 1);
  EXPECT_EQ(p.rows(8),
            "####..#.\n"
            "#..#....\n"
            "####....\n"
            "......#.\n"
            ".####.#.\n"
            "..###.#.\n"
            "...##.#.\n"
            "....#...\n");
}

TEST(Canvas, XorTwiceGivesBack) {
  Picture p;
  fillGradient(p.canvas, {0, 0, side, side}, rgb(10, 20, 30), rgb(200, 100, 50));
  Color before = p.at(3, 2), outside = p.at(3, 7);
  xorLine(p.canvas, {3, -4}, {3, 7}, rgb(0, 255, 255));
  EXPECT_EQ(p.at(3, 2), before ^ 0x00FFFF);
  EXPECT_EQ(p.at(3, 7), outside);
  xorLine(p.canvas, {3, 6}, {3, -5}, rgb(0, 255, 255));
  EXPECT_EQ(p.at(3, 2), before);
  EXPECT_EQ(p.at(3, 6), before);
}

TEST(Canvas, ClipHoldsUntilCleared) {
  Picture p;
  setClip(p.canvas, {2, 1, 3, 1});
  fillRect(p.canvas, {0, 0, 8, 8}, 1);
  drawLine(p.canvas, {0, 1}, {8, 1}, 1);
  setClip(p.canvas, {5, 2, 0, 4});
  fillRect(p.canvas, {0, 0, 8, 8}, 1);
  EXPECT_EQ(p.rows(3), "........\n..###...\n........\n");
  clearClip(p.canvas);
  fillRect(p.canvas, {7, 0, 100, 1}, 1);
  EXPECT_EQ(p.rows(1), ".......#\n");
}

TEST(Canvas, PixelsAreBlendedAndStretched) {
  Picture p;
  fillRect(p.canvas, {0, 0, side, side}, rgb(100, 100, 100));
  const uint32_t pixels[] = {0xFFFF0000, 0x00FFFFFF, 0x80C80000, 99};
  drawPixels(p.canvas, {0, 0, 6, 2}, pixels, 3, 1, 4);
  EXPECT_EQ(p.at(1, 1), rgb(255, 0, 0));
  EXPECT_EQ(p.at(2, 0), rgb(100, 100, 100));
  EXPECT_EQ(redOf(p.at(4, 0)), 150);  // half way from 100 to 200
  EXPECT_NEAR(greenOf(p.at(4, 0)), 50, 1);
  EXPECT_EQ(p.at(6, 0), rgb(100, 100, 100));
}

/// What is drawn at other scales covers what the same call covers in logical pixels, without gaps or overlaps.
TEST(Canvas, LogicalPixelsTileAtEveryScale) {
  for (double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
    Window* window = createWindow(nullptr, nullptr, nullptr);
    int device = static_cast<int>(16 * scale);
    std::vector<uint32_t> pixels(device * device);
    Canvas* canvas = wrapCanvas(window, pixels.data(), {device, device}, scale);
    for (int x = 0; x < 16; x++) xorLine(canvas, {x, 0}, {x, 16}, 0x010101 * (x + 1));
    int last = 0;
    for (int x = 0; x < device; x++) {
      int value = blueOf(pixels[x]);
      EXPECT_TRUE(value == last || value == last + 1) << "scale " << scale << " column " << x;
      last = value;
    }
    EXPECT_EQ(last, 16);
    EXPECT_EQ(takeTouched(canvas), (Rect{0, 0, device, device}));
    EXPECT_TRUE(isEmpty(takeTouched(canvas)));
    fillRect(canvas, {1, 1, 2, 1}, rgb(1, 2, 3));
    EXPECT_EQ(takeTouched(canvas), (Rect{static_cast<int>(scale + 0.5), static_cast<int>(scale + 0.5),
                                         static_cast<int>(3 * scale + 0.5) - static_cast<int>(scale + 0.5),
                                         static_cast<int>(2 * scale + 0.5) - static_cast<int>(scale + 0.5)}));
    EXPECT_EQ(canvasPixels(canvas), nullptr);
    releaseCanvas(canvas);
    destroyWindow(window);
  }
}

/// A 2 x 2 block for any text, half covered.
TEST(Canvas, TextIsCutOffAndRenderedOnce) {
  static int rendered;
  rendered = 0;
  static DesktopBackend backend{};
  backend.renderText = [](const char*, TextFont, double) -> CoverageMask {
    rendered++;
    return {2, 2, 1, 0, {255, 128, 0, 255}};
  };
  setDesktopBackend(&backend);
  forgetMasks();
  Picture p;
  drawText(p.canvas, {1, 1}, {0, 0, 8, 8}, "a", rgb(200, 200, 200));
  drawText(p.canvas, {5, 1}, {0, 0, 7, 8}, "a", rgb(200, 200, 200));
  drawText(p.canvas, {1, 5}, {0, 0, 8, 6}, "b", rgb(200, 200, 200));
  EXPECT_EQ(rendered, 2);
  EXPECT_EQ(p.rows(8),
            "........\n"
            "..##..#.\n"
            "...#....\n"
            "........\n"
            "........\n"
            "..##....\n"
            "........\n"
            "........\n");
  EXPECT_EQ(p.at(2, 1), rgb(200, 200, 200));
  EXPECT_NEAR(redOf(p.at(3, 1)), 100, 1);
  setDesktopBackend(nullptr);
  forgetMasks();
  EXPECT_EQ(textSize("\xC3\xA9"
                     "a"),
            (Size{12, 13}));
}

}  // namespace
}  // namespace platform
