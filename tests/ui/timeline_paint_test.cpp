// What the timeline looks like, pixel by pixel. Frame 0 stands at x 64, one pixel a frame; the row of layer n begins at
// y 42 + 31 n and its bars cover 23 pixels from 7 below that.
#include <cstring>
#include <memory>

#include "tests/ui/pixel_desktop.h"
#include "tests/ui/timeline_stage.h"
#include "zenlay/model/slots.h"
#include "zenlay/ui/timeline/colors.h"
#include "zenlay/ui/timeline/ranges.h"

namespace zenlay::test {
namespace {

using platform::Color;
using platform::rgb;

constexpr Color face = rgb(47, 51, 56), hiddenFace = rgb(39, 43, 47);
constexpr int width = 640, height = 197;

class TimelinePicture : public Timeline {
 protected:
  void SetUp() override {
    Timeline::SetUp();
    desktop = std::make_unique<PixelDesktop>(window, platform::Size{width, height});
    moveCursor(500);
  }
  void TearDown() override {
    desktop.reset();
    Timeline::TearDown();
  }
  void paint() { send(platform::messagePaint); }
  /// `y` from the top of the layer's row.
  Color at(int frame, int layer, int y) const { return desktop->at(xOf(frame), 42 + 31 * layer + y); }

  struct Pixel {
    int x, y;
    Color color;
  };
  void expectPixels(std::initializer_list<Pixel> pixels) const {
    for (auto& [x, y, color] : pixels) EXPECT_EQ(desktop->at(x, y), color) << "at " << x << ", " << y;
  }
  /// The same with frames for x, and y from the top of the layer's row.
  void expectRow(int layer, std::initializer_list<Pixel> pixels) const {
    for (auto& [frame, y, color] : pixels) EXPECT_EQ(at(frame, layer, y), color) << "frame " << frame << ", y " << y;
  }

  std::unique_ptr<PixelDesktop> desktop;
};

struct ClassRow {
  uint32_t flags;
  bool grey;
  Color dark;
};

TEST_F(TimelinePicture, ColoursFollowTheKindOfObject) {
  const ClassRow rows[] = {
      {objectInUse | objectDrawn, false, rgb(16, 32, 108)},
      {objectInUse, false, rgb(16, 108, 16)},
      {objectInUse | objectDrawn | objectAudio, false, rgb(108, 16, 24)},
      {objectInUse | objectAudio, false, rgb(108, 108, 16)},
      {objectInUse | objectControl, false, rgb(16, 108, 108)},
      {objectInUse | objectFilterEffect | objectDrawn, false, rgb(16, 108, 108)},
      {objectInUse | objectAudio | objectFilterEffect, false, rgb(16, 32, 108)},
      {objectInUse, true, rgb(96, 96, 96)},
      {objectInUse | objectDrawn, true, rgb(16, 32, 108)},
  };
  for (const ClassRow& row : rows) EXPECT_EQ(objectColors(row.flags, row.grey).dark, row.dark) << row.flags;
  EXPECT_EQ(tinted(rgb(96, 0, 255), 1), rgb(96, 12, 235));
  EXPECT_EQ(rowColors().selection, rgb((47 + 360) / 4, (51 + 480) / 4, (56 + 765) / 4));
}

TEST_F(TimelinePicture, BarsRunFromDarkToNormal) {
  create(100, 199, 1, testVideo);
  paint();
  const Color dark = rgb(16, 32, 108);
  expectRow(1, {{99, 8, face}, {100, 8, dark}, {199, 8, rgb(24, 48, 192)}, {200, 8, face}});
  expectRow(1, {{150, 6, face}, {100, 7, dark}, {100, 29, dark}});
  EXPECT_EQ(at(150, 1, 30), platform::systemColor(platform::colorDarkEdge));
  EXPECT_EQ(at(110, 1, 18), rgb(255, 255, 255)) << "the name begins at x + 5";
  addToSelection(objectAt(100, 1));
  paint();
  expectRow(1, {{100, 8, rgb(64, 128, 255)}, {199, 8, rgb(64, 128, 255)}});
}

TEST_F(TimelinePicture, AChainReadsAsOneBar) {
  std::vector<int> chain = createChain(100, 399, 1, {200, 300});
  paint();
  const Color dark = rgb(16, 108, 16), normal = rgb(24, 192, 24), mid = rgb(20, 150, 20);
  expectRow(1, {{100, 8, dark}, {199, 8, mid}, {250, 8, mid}, {300, 8, mid}, {399, 8, normal}});
  // Triangles of 5 pixels above the ends that meet, bright at the boundary last pointed at.
  expectRow(1, {{195, 2, normal}, {200, 2, normal}, {204, 2, normal}, {205, 2, face}});
  expectRow(1, {{199, 6, normal}, {200, 6, normal}, {201, 6, face}});
  expectRow(1, {{100, 2, face}, {399, 2, face}});
  platform::user::mouse(window, platform::messageRightDown, {xOf(205), rowOf(1)}, 0);
  ASSERT_EQ(clickPosition.section, chain[1]);
  EXPECT_EQ(at(200, 1, 2), rgb(64, 240, 64));
}

TEST_F(TimelinePicture, EdgesBeingDraggedShine) {
  create(100, 199, 1);
  create(200, 299, 1);
  press(xOf(203), rowOf(1));
  Color mid = rgb(20, 150, 20), bright = rgb(64, 240, 64);
  expectRow(1, {{200, 8, bright}, {219, 8, mid}, {280, 8, mid}});
  expectRow(1, {{199, 8, bright}, {180, 8, mid}});  // the partner's end
  release(xOf(203), rowOf(1));
  EXPECT_EQ(at(280, 1, 8), rgb(22, 176, 22)) << "80 of 99 on the way from dark to normal";
}

TEST_F(TimelinePicture, ShortAndClippedObjects) {
  moveCursor(0);
  setTimelineZoom(0);
  create(1000, 1001, 0);
  create(0, 200000, 1);
  timelineView.sceneLength = 600000;
  updateScrollBars();
  paint();
  expectPixels({{65, 50, face}, {66, 50, rgb(16, 108, 16)}, {67, 50, face}});  // one pixel wide
  setLeftFrame(100000);
  EXPECT_EQ(desktop->at(63, 42 + 31 + 8), platform::systemColor(platform::colorLightEdge)) << "clipped at x 64";
  EXPECT_EQ(desktop->at(64, 42 + 31 + 8), rgb(20, 150, 20)) << "200 of 399 on the way from dark to normal";
  EXPECT_EQ(desktop->at(64 + 199, 42 + 31 + 8), rgb(24, 192, 24)) << "its last pixel";
  EXPECT_EQ(desktop->at(64 + 200, 42 + 31 + 8), face);
  setLeftFrame(1050);  // the first one ended a tenth of a pixel before
  EXPECT_EQ(desktop->at(64, 42 + 8), rgb(16, 108, 16));
}

TEST_F(TimelinePicture, HiddenLayersAndFlags) {
  create(100, 199, 1);
  layers[1].flags = layerHidden | layerLocked | layerCoordinateLink | layerClipAbove;
  paint();
  EXPECT_EQ(at(300, 1, 15), hiddenFace);
  EXPECT_EQ(at(110, 1, 18), rgb(160, 160, 160)) << "dimmed name";
  int top = 42 + 31;
  expectPixels({{1, top + 15, colorLink}, {3, top + 29, colorLink}, {4, top + 15, colorClip}});
  expectPixels({{61, top + 3, colorLock}, {54, top + 5, hiddenFace}});
  layers[1].flags = layerClipAbove;
  paint();
  EXPECT_EQ(desktop->at(1, top + 15), colorClip);
  // "Layer  1" is 48 pixels wide: centred from x 8 on. A name takes its place.
  const Color text = platform::systemColor(platform::colorText);
  expectPixels({{7, 57, face}, {8, 57, text}});
  setLayerName(0, 0, "Sky");
  paint();
  expectPixels({{22, 57, face}, {23, 57, text}});
  setLayerName(0, 0, "A name longer than the header");
  paint();
  expectPixels({{1, 57, platform::systemColor(platform::colorLightEdge)}, {2, 57, text}});
}

TEST_F(TimelinePicture, DisabledObjectsHaveADimmedName) {
  std::vector<int> chain = createChain(100, 399, 1, {300});
  setSlotFlags(chain[0], 0, 0);
  paint();
  EXPECT_EQ(at(110, 1, 18), rgb(160, 160, 160));
  for (int section : chain) objects[section].flags |= objectClipAbove;
  paint();
  expectRow(1, {{150, 29, colorClip}, {150, 27, colorClip}});
  EXPECT_NE(at(150, 1, 26), colorClip);
}

TEST_F(TimelinePicture, TheCurrentObjectIsFramed) {
  currentObject = create(100, 199, 1);
  paint();
  int white = 0;
  for (int frame = 100; frame < 200; frame++) white += at(frame, 1, 7) == 0xFFFFFF;
  EXPECT_EQ(white, 50);
  int side = 0;
  for (int y = 8; y < 29; y++) side += at(100, 1, y) == 0xFFFFFF;
  EXPECT_NEAR(side, 11, 1);
  setLeftFrame(150);
  side = 0;
  for (int y = 8; y < 29; y++) side += desktop->at(64, 42 + 31 + y) == 0xFFFFFF;
  EXPECT_EQ(side, 0) << "the start is out of view";
}

TEST_F(TimelinePicture, RulerAndGauge) {
  paint();
  // A minor step is 10 frames, a major one 100.
  Color text = platform::systemColor(platform::colorText);
  expectPixels({{64, 29, face}, {64, 30, text}, {164, 30, text}});
  expectPixels({{74, 35, face}, {74, 36, platform::systemColor(platform::colorGreyText)}, {73, 40, face}});
  // The label 00:00:03.33 has 11 characters, 101 has 3.
  expectPixels({{159, 14, face}, {160, 14, text}, {160 + 66, 14, face}});
  preferences.edit_time_type = 0;
  paint();
  expectPixels({{160 + 17, 14, text}, {160 + 18, 14, face}});
  for (int i = 0; i < 26; i++) {
    EXPECT_EQ(desktop->at(5 + 2 * i, 30), i < 19 ? colorGaugeBelow : colorGaugeAbove) << i;
    EXPECT_EQ(desktop->at(6 + 2 * i, 30), face);
  }
  fakeHost.selectionFirst = 100, fakeHost.selectionLast = 149;
  send(messageUpdate);
  RowColors colors = rowColors();
  EXPECT_EQ(desktop->at(164, 35), text) << "a tick on it";
  expectPixels({{165, 29, face}, {165, 30, colors.selection}, {213, 30, colors.selectionEdge}, {214, 31, face}});
  fakeHost.selectionLast = 100;
  setTimelineZoom(14);
  paint();
  EXPECT_EQ(desktop->at(xOf(100), 31), colors.selectionEdge) << "less than a pixel";
}

TEST_F(TimelinePicture, LinesInvertAndComeBack) {
  moveCursor(100);
  paint();
  const Color line = face ^ 0x00FFFF;
  expectPixels({{164, 60, line}, {164, 195, line}});
  moveCursor(300);
  expectPixels({{164, 60, face}, {364, 60, line}});
  setPlaybackFrame(200);
  EXPECT_EQ(desktop->at(264, 60), face ^ 0xFF40FF);
  timelineView.savedLeftFrame = 0;
  setPlaybackFrame(-1);
  moveCursor(100);
  setTimelineZoom(26);  // ten pixels a frame: ticks over the frame's other nine
  int x = xOf(100);
  EXPECT_EQ(desktop->at(x + 9, 40), (desktop->at(x + 19, 40)) ^ 0x00FFFF);
  expectPixels({{x + 5, 39, face}, {x + 5, 45, face}});
}

TEST_F(TimelinePicture, TheMarkerMovesWhileAMenuIsOpen) {
  desktop.reset();
  platform::test::ScriptedDesktop menus;
  desktop = std::make_unique<PixelDesktop>(window, platform::Size{width, height});
  paint();
  preferences.sync_play_cursor = 0;
  playbackNotification(100, 4 | 2);
  menus.menus.push_back([&](const platform::Menu*) {
    playbackNotification(200, 2);
    expectPixels({{164, 60, face}, {264, 60, face ^ 0xFF40FF}});
    return 0;
  });
  platform::user::mouse(window, platform::messageRightDown, {300, rowOf(1)}, 0);
  EXPECT_TRUE(menus.menus.empty());
  desktop.reset();
}

TEST_F(TimelinePicture, BeatLinesStandInGapsOnly) {
  preferences.grid = {.grid = 1, .grid_tempo = 1000000, .grid_base = 1, .grid_time = 4};
  create(100, 199, 1);
  paint();
  auto dots = [&](int frame, int layer, Color color) {
    int count = 0;
    for (int y = 1; y < 30; y++) count += at(frame, layer, y) == color;
    return count;
  };
  EXPECT_NEAR(dots(18, 0, colorBeat), 15, 1);
  EXPECT_NEAR(dots(72, 0, colorBar), 15, 1);
  EXPECT_EQ(dots(71, 0, colorBar), 0);
  EXPECT_NEAR(dots(126, 1, colorBeat), 3, 1) << "above the bar";
}

TEST_F(TimelinePicture, LayerRangesTintTheGapsBelow) {
  int control = create(100, 299, 0, testGroup);
  int32_t range = 2;
  memcpy(extraDataOf(control, 0), &range, sizeof range);
  paint();
  ASSERT_EQ(rangeMarks.size(), 1u);
  const Color tint = tinted(face, 1), inner = rowColors().rangeInner;
  EXPECT_EQ(at(200, 0, 3), face) << "the control's own layer";
  expectRow(1, {{99, 15, face}, {100, 15, inner}, {200, 15, tint}, {299, 15, inner}, {300, 15, face}});
  EXPECT_EQ(at(200, 1, 29), tint);
  expectRow(2, {{200, 15, tint}, {200, 28, inner}, {200, 29, rowColors().rangeOuter}});
  EXPECT_EQ(at(200, 3, 15), face);
  // Neither disabled objects nor those of hidden layers, nor ranges that end above the view.
  setTopLayer(3);
  EXPECT_TRUE(rangeMarks.empty());
  setTopLayer(0);
  layers[0].flags = layerHidden;
  paint();
  EXPECT_TRUE(rangeMarks.empty());
  layers[0].flags = 0;
  range = 0;  // all layers
  memcpy(extraDataOf(control, 0), &range, sizeof range);
  paint();
  EXPECT_EQ(rangeMarks[0].lastLayer, 99);
  objects[control].slotFlags[0] = 0;
  paint();
  EXPECT_TRUE(rangeMarks.empty());
}

TEST_F(TimelinePicture, RangeMarksEndAt4095) {
  for (int layer = 0; layer < 10; layer++)
    for (int i = 0; i < 410; i++) create(i, i, layer, testGroup);
  paint();
  EXPECT_EQ(rangeMarks.size(), 5u * 410);
  timelineView.topLayer = 5;
  timelineView.visibleRows = 5;
  paint();
  EXPECT_EQ(rangeMarks.size(), 4095u);
}

}  // namespace
}  // namespace zenlay::test
