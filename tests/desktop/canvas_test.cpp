// What is drawn on a window's canvas is what the window shows, at every scale.
#include "platform/canvas.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/qt/qt_desktop.h"
#include "tests/support/qt/events.h"

namespace platform {
namespace {

struct Painted {
  int paints = 0;
  void (*draw)(Canvas*) = nullptr;
};

intptr_t paint(Window* window, uint32_t message, intptr_t, intptr_t, void* user) {
  auto* painted = static_cast<Painted*>(user);
  if (message != messagePaint) return 0;
  painted->paints++;
  if (painted->draw) painted->draw(windowCanvas(window));
  return 0;
}

struct QtCanvas : testing::Test {
  Painted painted;
  Window* window = createWindow(nullptr, paint, &painted, {"", "", {0, 0, 120, 80}});
  ~QtCanvas() override {
    destroyWindow(window);
    test::settle();
  }
  Color shown(int x, int y) { return test::picture(window).pixel(x, y) & 0xFFFFFF; }
};

TEST_F(QtCanvas, ShowsWhatIsDrawnAndAsksAgainOnlyWhenItMust) {
  painted.draw = [](Canvas* c) {
    fillRect(c, {0, 0, 120, 80}, rgb(9, 9, 9));
    fillGradient(c, {10, 10, 101, 5}, rgb(0, 0, 0), rgb(100, 200, 50));
  };
  test::showActive(window);
  EXPECT_EQ(painted.paints, 1);
  EXPECT_EQ(shown(60, 12), rgb(50, 100, 25));
  EXPECT_EQ(shown(110, 12), rgb(100, 200, 50));
  EXPECT_EQ(shown(111, 12), rgb(9, 9, 9));
  Canvas* canvas = windowCanvas(window);
  xorLine(canvas, {60, 0}, {60, 80}, rgb(0, 255, 255));
  test::settle();
  EXPECT_EQ(shown(60, 12), rgb(50, 100 ^ 255, 25 ^ 255));
  xorLine(canvas, {60, 0}, {60, 80}, rgb(0, 255, 255));
  fillRect(canvas, {0, 79, 120, 9}, rgb(1, 2, 3));
  test::settle();
  EXPECT_EQ(shown(60, 12), rgb(50, 100, 25));
  EXPECT_EQ(shown(119, 79), rgb(1, 2, 3));
  EXPECT_EQ(painted.paints, 1);
  setClip(canvas, {0, 0, 1, 1});
  invalidateWindow(window);
  test::settle();
  EXPECT_EQ(painted.paints, 2);
  EXPECT_EQ(shown(119, 79), rgb(9, 9, 9));  // painting begins without a clip
  setClientSize(window, {200, 90});
  test::settle();
  EXPECT_EQ(painted.paints, 3);
  EXPECT_EQ(windowCanvas(window), canvas);
  EXPECT_EQ(test::picture(window).size(), QSize(200, 90));
  qt::setTheme(qt::themeLight);
  test::settle();
  EXPECT_EQ(painted.paints, 4);
  EXPECT_EQ(systemColor(colorFace), 0xEBEDEFu);
  qt::setTheme(qt::themeDark);
}

TEST_F(QtCanvas, TextStaysWithinItsClip) {
  painted.draw = [](Canvas* c) {
    fillRect(c, {0, 0, 120, 80}, 0);
    drawText(c, {5, 10}, {5, 10, 30, 20}, "Video file with a long name", rgb(255, 255, 255));
    drawText(c, {60, 10}, {0, 0, 120, 80}, "\xD0\x96\xC3\xA9", rgb(255, 0, 0), fontBold);
  };
  test::showActive(window);
  QImage image = test::picture(window);
  int inside = 0, beyond = 0, red = 0;
  for (int y = 0; y < 80; y++)
    for (int x = 0; x < 120; x++) {
      int bright = qRed(image.pixel(x, y));
      if (x < 59) (x < 35 && y >= 10 && y < 30 ? inside : beyond) += bright;
      if (x >= 59) red += bright > 128 && qGreen(image.pixel(x, y)) == 0;
    }
  EXPECT_GT(inside, 20 * 255);
  EXPECT_EQ(beyond, 0);
  EXPECT_GT(red, 20);
  Size one = textSize("Video"), two = textSize("VideoVideo");
  EXPECT_NEAR(two.width, 2 * one.width, 2);
  EXPECT_GT(textSize("Video", fontBold).width, one.width);
  EXPECT_LT(textSize("Video", fontSmall).width, one.width);
  EXPECT_EQ(textSize("").width, 0);
}

/// Run at several QT_SCALE_FACTORs: no edge is blurred, wherever it falls.
TEST(QtScale, EdgesAreSharp) {
  Painted painted{0, [](Canvas* c) {
                    fillRect(c, {0, 0, 120, 80}, 0);
                    for (int x = 1; x < 120; x += 2) fillRect(c, {x, 0, 1, 40}, rgb(255, 255, 255));
                    drawFrame(c, {10, 50, 20, 20}, rgb(255, 255, 255));
                  }};
  Window* window = createWindow(nullptr, paint, &painted, {"", "", {0, 0, 120, 80}});
  test::showActive(window);
  double scale = qt::widgetOf(window)->devicePixelRatioF();
  QImage image = test::picture(window);
  EXPECT_EQ(image.width(), std::lround(120 * scale));
  auto at = [&](int logical) { return static_cast<int>(std::floor(logical * scale + 0.5)); };
  for (int x = 0; x < 120; x++)
    for (int device = at(x); device < at(x + 1); device++)
      EXPECT_EQ(image.pixel(device, at(20)) & 0xFFFFFF, x % 2 ? 0xFFFFFFu : 0u) << x << " at scale " << scale;
  for (int y = 45; y < 75; y++)
    for (int device = at(y); device < at(y + 1); device++)
      EXPECT_EQ(image.pixel(at(20), device) & 0xFFFFFF, y == 50 || y == 69 ? 0xFFFFFFu : 0u) << y;
  destroyWindow(window);
  test::settle();
}

}  // namespace
}  // namespace platform
