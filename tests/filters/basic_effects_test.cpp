#include <gmock/gmock.h>

#include "tests/media/effect_stage.h"

namespace zenlay {
extern EffectDefinition coordinateEffect, zoomEffect, clearnessEffect, rotationEffect, lockedRotationEffect;
extern EffectDefinition standardDrawing, advancedDrawing;
}  // namespace zenlay

namespace zenlay::test {
namespace {

void set(EffectStage& stage, std::vector<int32_t> tracks) {
  ASSERT_EQ(tracks.size(), stage.tracks.size());
  std::copy(tracks.begin(), tracks.end(), stage.tracks.begin());
}

TEST(Coordinate, AddsTenthsOfAPixel) {
  EffectStage stage{coordinateEffect};
  stage.info.ox = 100;
  set(stage, {15, -1, 999999});
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(stage.info.ox, 100 + 6144);  // 1.5 pixels
  EXPECT_EQ(stage.info.oy, -409);        // -0.1 pixel, truncated
  EXPECT_EQ(stage.info.oz, 409599590);
}

TEST(Clearness, MultipliesOpacity) {
  struct Row {
    int before, clearness, after;
  } rows[] = {{0, 0, 0},         {1234, 0, 1234},  {0, 1000, 4096}, {0, 500, 2048},
              {2048, 500, 3072}, {4096, 10, 4096}, {0, 1, 5}};  // 4096 - 4096 * 999 / 1000 = 4096 - 4091
  for (const Row& row : rows) {
    EffectStage stage{clearnessEffect};
    stage.info.transparency = row.before;
    set(stage, {row.clearness});
    ASSERT_EQ(stage.run(), 1);
    EXPECT_EQ(stage.info.transparency, row.after) << row.before << " " << row.clearness;
  }
}

TEST(Rotation, AddsTurnUnits) {
  EffectStage stage{rotationEffect};
  stage.info.rz = 7;
  set(stage, {36000, -9000, 4500});
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(stage.info.rx, 0);
  EXPECT_EQ(stage.info.ry, -16384);
  EXPECT_EQ(stage.info.rz, 7 + 8192);
}

TEST(Zoom, ScalesTheTwoAxes) {
  struct Row {
    int zoom, aspect;
    std::vector<int32_t> tracks;
    int zoomAfter, aspectAfter;
  } rows[] = {
      {0x10000, 0, {10000, 10000, 10000}, 0x10000, 0},
      {0x10000, 0, {10000, 5000, 10000}, 0x10000, 32768},
      {0x10000, 0, {10000, 10000, 5000}, 0x10000, -32768},
      {0x10000, 32768, {10000, 20000, 10000}, 0x10000, 0},  // sx 0.5 doubled
      {0x10000, -32768, {5000, 10000, 10000}, 0x8000, -32768},
      {0x20000, 0, {15000, 10000, 10000}, 0x30000, 0},
      {0x10000, 0, {0, 10000, 10000}, 0, 0},
      {0x10000, 0, {10000, 0, 10000}, 0x10000, 0x10000},
      {0x10000, 0, {500000, 500000, 500000}, 163840000, 0},  // 50 x 50 times
      {0x8000000, 0, {500000, 500000, 500000}, INT32_MAX, 0},
  };
  for (const Row& row : rows) {
    EffectStage stage{zoomEffect};
    stage.info.zoom = row.zoom;
    stage.info.aspect = row.aspect;
    set(stage, row.tracks);
    ASSERT_EQ(stage.run(), 1);
    EXPECT_EQ(stage.info.zoom, row.zoomAfter) << row.tracks[0] << " " << row.tracks[1] << " " << row.tracks[2];
    EXPECT_EQ(stage.info.aspect, row.aspectAfter) << row.tracks[0] << " " << row.tracks[1] << " " << row.tracks[2];
  }
}

/// Pixels numbered from 1 in reading order.
void number(EffectStage& stage, int width, int height) {
  stage.info.objectWidth = width;
  stage.info.objectHeight = height;
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++) {
      int16_t n = static_cast<int16_t>(y * width + x + 1);
      stage.pixel(x, y) = {n, static_cast<int16_t>(-n), 3, 4000};
    }
}

std::vector<int> numbers(EffectStage& stage) {
  std::vector<int> list;
  for (int y = 0; y < stage.info.objectHeight; y++)
    for (int x = 0; x < stage.info.objectWidth; x++) list.push_back(stage.pixel(x, y).y);
  return list;
}

TEST(LockedRotation, TurnsClockwise) {
  const std::vector<int> still = {1, 2, 3, 4, 5, 6}, quarter = {4, 1, 5, 2, 6, 3}, half = {6, 5, 4, 3, 2, 1},
                         back = {3, 6, 2, 5, 1, 4};
  const std::vector<int>* expected[] = {&still, &quarter, &half, &back, &still, &quarter, &half, &back, &still};
  for (int turns = -4; turns <= 4; turns++) {
    EffectStage stage{lockedRotationEffect, 64, 48};
    number(stage, 3, 2);
    set(stage, {turns});
    ASSERT_EQ(stage.run(), 1);
    EXPECT_EQ(numbers(stage), *expected[turns + 4]) << turns;
    EXPECT_EQ(stage.info.objectWidth, turns % 2 ? 2 : 3);
    EXPECT_EQ(stage.pixel(0, 0).a, 4000);
  }
}

TEST(LockedRotation, FourQuartersRestoreALargeImage) {
  EffectStage stage{lockedRotationEffect, 150, 150};  // several blocks and workers
  fakeHost.threads = 3;
  number(stage, 149, 133);
  std::vector<int> before = numbers(stage);
  set(stage, {1});
  for (int i = 0; i < 4; i++) {
    ASSERT_EQ(stage.run(), 1);
    int x = stage.info.objectWidth - 1;
    ASSERT_EQ(stage.info.objectWidth, i % 2 ? 149 : 133);
    if (i == 0) {
      ASSERT_EQ(stage.pixel(x, 0).y, 1) << "the first pixel goes to the right";
    }
  }
  EXPECT_EQ(numbers(stage), before);
  set(stage, {2});
  stage.run();
  std::reverse(before.begin(), before.end());
  EXPECT_EQ(numbers(stage), before);
}

TEST(LockedRotation, IsLimitedToTheLargestImage) {
  EffectStage stage{lockedRotationEffect, 64, 48};
  number(stage, 64, 2);
  set(stage, {1});
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(stage.info.objectWidth, 2);
  EXPECT_EQ(stage.info.objectHeight, 48);
  EXPECT_EQ(stage.pixel(1, 47).y, 48);
}

uint32_t placedWith;

TEST(DrawingEffects, PassTheirOptions) {
  struct Row {
    const EffectDefinition* effect;
    int blend, hideBack;
    uint32_t options;
  } rows[] = {{&standardDrawing, 0, 0, 0x111},
              {&standardDrawing, 12, 0, 0x0C000111},
              {&advancedDrawing, 1, 0, 0x01000195},
              {&advancedDrawing, 0, 1, 0x00100195},
              {&advancedDrawing, 0x7F, 1, 0x1F100195}};  // the mode has five bits
  for (const Row& row : rows) {
    EffectStage stage{*row.effect};
    stage.services.placeObject = [](EffectDefinition*, EffectProcessInfo*, uint32_t options) {
      placedWith = options;
      return 1;
    };
    stage.setData(0, &row.blend, 4);
    if (row.effect == &advancedDrawing) stage.checks[1] = row.hideBack;
    EXPECT_EQ(stage.run(), 1);
    EXPECT_EQ(placedWith, row.options);
  }
}

}  // namespace
}  // namespace zenlay::test
