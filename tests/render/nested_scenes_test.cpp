// Scenes inside scenes, and the layers below an object, at other frames.
#include <algorithm>

#include "tests/render/test_film.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/targets.h"

namespace zenlay::test {
namespace {

using Bounds = std::vector<int>;

using NestedScenes = Film;

TEST_F(NestedScenes, RendersNestedScenesUpToFourLevels) {
  static int innermost;
  static bool sawAlpha;
  for (int scene = 1; scene < 6; scene++) {
    scenes[scene].flags = sceneSetUp;
    scenes[scene].width = 20;
    scenes[scene].height = 10;
  }
  scenes[2].flags |= sceneHasAlpha;
  for (int scene = 0; scene < 6; scene++) addObject({.scene = scene, .effects = {solid, recorder, placing}});
  innermost = -1;
  recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) {
    int32_t width, height, line;
    bool alpha;
    int scene = d->scene;
    innermost = std::max(innermost, scene);
    EXPECT_EQ(info->depth, scene);
    EXPECT_EQ(info->hostFrame, 7);
    EXPECT_EQ((info->host.flags & processNested) != 0, scene > 0);
    const void* picture = d->services->renderScene(info, scene + 1, 5, 0, &width, &height, &line, &alpha);
    EXPECT_EQ(d->scene, scene);  // bound to this slot again
    if (!picture) return 1;
    EXPECT_EQ(width, 20);
    EXPECT_EQ(height, 10);
    if (alpha) {
      sawAlpha = true;
      auto at = [&](int x, int y) {
        return reinterpret_cast<const ObjectPixel*>(static_cast<const uint8_t*>(picture) + y * line)[x];
      };
      EXPECT_EQ(at(0, 0).a, 0);
      EXPECT_EQ(at(10, 5).a, 4096);
      EXPECT_EQ(at(10, 5).y, 4096);
    } else {
      auto at = [&](int x, int y) {
        return reinterpret_cast<const FramePixel*>(static_cast<const uint8_t*>(picture) + y * line)[x];
      };
      EXPECT_EQ(at(0, 0).y, 0);
      EXPECT_EQ(at(10, 5).y, 4096);
    }
    return 1;
  };
  for (int repeat = 0; repeat < 2; repeat++) {
    sawAlpha = false;
    EXPECT_EQ(renderFrame(7).bounds(), (Bounds{28, 21, 36, 27}));
    EXPECT_EQ(innermost, 3);  // depths 0..3
    EXPECT_TRUE(sawAlpha);
  }
  EXPECT_EQ(sceneDepth, -1);
}

/// What renderLayersBelow gave; compares copies, as the picture is gone with the next call.
struct Below {
  std::vector<uint8_t> bytes;
  int line;
  int luma(int x, int y, size_t pixel = sizeof(FramePixel)) const {
    return reinterpret_cast<const FramePixel*>(&bytes[y * line + x * pixel])->y;
  }
  int alpha(int x, int y) const { return reinterpret_cast<const ObjectPixel*>(&bytes[y * line])[x].a; }
};
std::vector<Below> below;

int keepLayersBelow(EffectDefinition* d, EffectProcessInfo* info) {
  int32_t line = 0;
  if (const void* picture = d->services->renderLayersBelow(info, 9, &line)) {
    const auto* first = static_cast<const uint8_t*>(picture);
    below.push_back({{first, first + info->host.height * line}, line});
  }
  return 1;
}

TEST_F(NestedScenes, RendersTheLayersBelowAnObjectAtAnotherFrame) {
  below.clear();
  setTrack(addObject({.layer = 0, .start = 0, .end = 9}), 0, solidLuma, 1000);
  setTrack(addObject({.layer = 1, .start = 10, .end = 99}), 0, solidLuma, 2000);
  addObject({.layer = 2, .start = 0, .end = 99, .effects = {filterObject}});
  setTrack(addObject({.layer = 3, .start = 0, .end = 99}), 0, solidWidth, 2);
  recorderAction = keepLayersBelow;
  Frame now = renderFrame(12, 7);
  ASSERT_EQ(below.size(), 1u);
  EXPECT_EQ(below[0].luma(29, 24), 1000);  // as at frame 9, without the layers above, over a host that shows nothing
  EXPECT_EQ(below[0].luma(32, 24), 1000);
  EXPECT_EQ(below[0].luma(0, 0), 0);
  EXPECT_EQ(now.luma(29, 24), 2000);
  EXPECT_EQ(now.luma(32, 24), 4096);
  EXPECT_EQ(now.luma(0, 0), 7);

  static std::vector<FramePixel> before;
  before.assign(static_cast<size_t>(environment.bufferWidth) * environment.bufferHeight, {500, 0, 0});
  fakeHost.functions.getFrameBeforeFilter = [](HostFilterRecord* filter, EditHandle, int32_t frame, int32_t) {
    EXPECT_EQ(filter, environment.mainFilter);
    before[environment.bufferWidth + 1].y = static_cast<int16_t>(600 + frame);
    return before.data();
  };
  renderFrame(12);
  ASSERT_EQ(below.size(), 2u);
  EXPECT_EQ(below[1].luma(1, 1), 609);
  EXPECT_EQ(below[1].luma(63, 47), 500);
  EXPECT_EQ(below[1].luma(32, 24), 1000);
  fakeHost.functions.getFrameBeforeFilter = nullptr;
  renderFrame(12);
  EXPECT_EQ(below[2].luma(1, 1), 0);
}

TEST_F(NestedScenes, LayersBelowKeepTheAlphaOfTheirScene) {
  below.clear();
  scenes[1].flags = sceneSetUp | sceneHasAlpha;
  scenes[1].width = 20;
  scenes[1].height = 10;
  setTrack(addObject({.layer = 0, .start = 0, .end = 9, .scene = 1}), 0, solidAlpha, 1024);
  addObject({.layer = 1, .scene = 1, .effects = {filterObject}});
  addObject({.effects = {solid, recorder, placing}});
  recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) {
    if (info->depth > 0) return keepLayersBelow(d, info);
    int32_t width, height, line;
    bool alpha;
    EXPECT_NE(d->services->renderScene(info, 1, 50, 0, &width, &height, &line, &alpha), nullptr);
    return 1;
  };
  renderFrame(0);
  ASSERT_EQ(below.size(), 1u);
  EXPECT_EQ(below[0].alpha(10, 5), 1024);
  EXPECT_EQ(below[0].luma(10, 5, sizeof(ObjectPixel)), 4096);
  EXPECT_EQ(below[0].alpha(0, 0), 0);
}

TEST_F(NestedScenes, LayersBelowEndAtTheDeepestLevel) {
  below.clear();
  for (int layer = 0; layer < 6; layer++) addObject({.layer = layer, .effects = {filterObject}});
  recorderAction = keepLayersBelow;
  renderFrame(0);
  // A picture for every object, at depth 1 for every pair and at depth 2 for every three; below that none is made.
  EXPECT_EQ(below.size(), 6u + 15u + 20u);
  EXPECT_EQ(sceneDepth, -1);
}

}  // namespace
}  // namespace zenlay::test
