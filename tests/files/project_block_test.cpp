#include "zenlay/files/project_block.h"

#include <cstring>

#include "platform/window.h"
#include "tests/files/fixture.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/files/project_layout.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/draw.h"

namespace zenlay::test {
namespace {

class ProjectBlock : public Files {
 protected:
  ProjectBlock() { environment.timelineWindow = window; }
  ~ProjectBlock() override {
    platform::destroyWindow(window);
    environment.timelineWindow = nullptr;
  }
  /// Two sections of a video, a host filter, and an object in scene 3.
  void build() {
    setZoomLevel(19);
    int video = createObject(0, 4, testVideo, -1);
    strcpy(reinterpret_cast<char*>(extraDataOf(video, 0)), "clip.avi");
    objects[video].startValues[3] = -77;
    objects[video].modes[3] = 1;
    appendSection(video, objects[video].end + 1, 80);
    createObject(0, 9, testForeign, -1);
    setLayerName(0, 4, "Pictures");
    switchScene(3, nullptr, nullptr);
    timelineView.sceneLength = 300;
    currentObject = createObject(10, 2, testGraphic, -1);
    setSceneName(3, "Third");
  }
  std::vector<uint8_t> saved() {
    int32_t size = -1;
    EXPECT_EQ(saveProject(nullptr, nullptr, nullptr, &size), 1);
    std::vector<uint8_t> data(static_cast<size_t>(size), 0xCC);
    EXPECT_EQ(saveProject(nullptr, nullptr, data.data(), &size), 1);
    return data;
  }
  int load(const std::vector<uint8_t>& data) {
    int result = loadProject(nullptr, nullptr, data.data(), static_cast<int32_t>(data.size()));
    EXPECT_EQ(modelFault(), "");
    return result;
  }
  platform::Window* window = platform::createWindow(nullptr, nullptr, nullptr);
};

template <class T>
void poke(std::vector<uint8_t>& data, size_t at, T value) {
  memcpy(data.data() + at, &value, sizeof value);
}

constexpr size_t layersAt = 256, scenesAt = layersAt + 3 * 76, scriptsAt = scenesAt + 2 * 220;
/// The names of movement scripts stay registered from test to test.
size_t effectsAt() { return scriptsAt + static_cast<size_t>(movementScriptCount()) * 128; }
size_t objectsAt() { return effectsAt() + testEffectCount * 112; }

TEST_F(ProjectBlock, NothingToSaveWithoutObjects) {
  int32_t size = 5;
  EXPECT_EQ(saveProject(nullptr, nullptr, nullptr, &size), 0);
}

TEST_F(ProjectBlock, ComesBackBitForBit) {
  build();
  preferences.grid.grid_tempo = 1234567;
  nearPercent = 8;
  timelineView.topLayer = 6;
  std::vector<uint8_t> first = saved();
  EXPECT_EQ(first.size(), objectsAt() + 4 * 1480 + 288 + 6 + 24) << "video + blend, host filter, graphic + blend";
  EXPECT_EQ(memcmp(first.data(), "80ZL", 4), 0);
  EXPECT_EQ(first[0x64], 3) << "current scene";
  EXPECT_EQ(first[0x68], 2) << "scenes with objects";
  EXPECT_EQ(first[0x6C], 3) << "layers with objects";
  EXPECT_STREQ(reinterpret_cast<char*>(first.data() + layersAt + 12), "Pictures");
  EXPECT_EQ(first[0x18], 0) << "the current scene's objects are stored first";

  preferences.grid = {};
  nearPercent = 5;
  currentObject = -1;
  timelineView.topLayer = 0;
  EXPECT_EQ(load(first), 1);
  EXPECT_TRUE(shownMessages().empty());
  EXPECT_EQ(objectCount, 4);
  EXPECT_EQ(currentScene, 3);
  EXPECT_STREQ(sceneName(3), "Third");
  EXPECT_EQ(preferences.grid.grid_tempo, 1234567);
  EXPECT_EQ(nearPercent, 8);
  EXPECT_EQ(timelineView.topLayer, 6);
  EXPECT_EQ(currentObject, objectAt(10, 2));
  std::vector<uint8_t> second = saved();
  EXPECT_EQ(load(second), 1);
  EXPECT_EQ(saved(), second) << "stable once the records lie in stored order";
  switchScene(0, nullptr, nullptr);
  int video = objectAt(0, 4);
  EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(nextSection(video), 0)), "clip.avi");
  EXPECT_EQ(objects[video].startValues[3], -77);
  EXPECT_STREQ(layers[4].name, "Pictures");
}

TEST_F(ProjectBlock, EffectsAreMappedByNameAndKind) {
  build();
  std::vector<uint8_t> data = saved();
  std::swap(effectList[testVideo], effectList[testHeavy]);
  EXPECT_EQ(load(data), 1);
  EXPECT_TRUE(shownMessages().empty());
  switchScene(0, nullptr, nullptr);
  EXPECT_EQ(objects[objectAt(0, 4)].slots[0].effect, testHeavy);

  // The video of today has one track fewer and another default for the check that is new.
  effectList[testHeavy]->track_count = 1;
  EXPECT_EQ(load(data), 1);
  ASSERT_EQ(shownMessages().size(), 1u);
  EXPECT_EQ(shownMessages()[0].substr(0, 30), "Some filters has been changed.");
  EXPECT_EQ(objectCount, 4);
  switchScene(0, nullptr, nullptr);
  const ObjectRecord& video = objects[objectAt(0, 4)];
  EXPECT_EQ(video.slots[1].firstTrack, 1);
  EXPECT_EQ(video.startValues[2], -77) << "the drawing's Y, one place further down";

  effectList[testHeavy]->category = "elsewhere";
  shownMessages().clear();
  EXPECT_EQ(load(data), 1);
  EXPECT_EQ(objectCount, 2) << "both sections of the unknown video are gone";
  EXPECT_EQ(shownMessages().size(), 1u);
}

TEST_F(ProjectBlock, AnEffectThatGainedATrackKeepsTheOldOnes) {
  build();
  std::vector<uint8_t> data = saved();
  poke<int32_t>(data, effectsAt() + testVideo * 112 + 4, 1);
  EXPECT_EQ(load(data), 1);
  switchScene(0, nullptr, nullptr);
  const ObjectRecord& video = objects[objectAt(0, 4)];
  EXPECT_EQ(video.startValues[0], 1);
  EXPECT_EQ(video.startValues[1], 1000) << "the default of the track that is new";
  EXPECT_EQ(video.startValues[3], -77);
}

struct RefusalRow {
  size_t at;
  int32_t value;
};

TEST_F(ProjectBlock, BlocksBeyondTheLimitsAreRefused) {
  build();
  const std::vector<uint8_t> good = saved();
  const RefusalRow rows[] = {{0x00, 0x4C5A3031}, {0x04, 513},  {0x04, -1},        {0x08, 15001}, {0x08, -1},
                             {0x0C, INT32_MAX},  {0x1C, 1484}, {0x1C, 100},       {0x20, 65},    {0x24, 49},
                             {0x28, 13},         {0x64, 50},   {0x68, INT32_MAX}, {0x6C, -1},    {0x70, INT32_MAX},
                             {0x74, 0},          {0x7C, 513}};
  for (const RefusalRow& row : rows) {
    std::vector<uint8_t> bad = good;
    poke(bad, row.at, row.value);
    shownMessages().clear();
    EXPECT_EQ(load(bad), 0) << row.at << " " << row.value;
    ASSERT_EQ(shownMessages().size(), 1u);
    EXPECT_EQ(shownMessages()[0].substr(0, 43), "Unable to read data due to mixing of differ");
    EXPECT_EQ(objectCount, 4) << "what was there stays";
  }
  environment.timelineWindow = nullptr;
  shownMessages().clear();
  EXPECT_EQ(load({1, 2, 3}), 0);
  EXPECT_TRUE(shownMessages().empty());
}

TEST_F(ProjectBlock, TruncatedBlocksGiveWhatIsWhole) {
  build();
  const std::vector<uint8_t> good = saved();
  for (size_t size = 0; size < good.size(); size += 61) {
    std::vector<uint8_t> cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(load(cut), size >= objectsAt());
    if (size >= objectsAt()) {
      EXPECT_LT(objectCount, 4);
    }
  }
}

TEST_F(ProjectBlock, DamagedObjectsAreLeftOut) {
  build();
  const std::vector<uint8_t> good = saved();
  const size_t video = objectsAt() + 1480 + 24;
  const struct {
    size_t at;
    int32_t value;
    int left;
  } rows[] = {
      {video + 1476, 50, 2}, {video + 1472, 100, 2}, {video + 8, -1, 2},  {video + 12, -5, 2},
      {video + 84, 600, 2},  {video + 84, -7, 2},    {video + 88, 63, 2}, {video + 92, -1, 4},
      {video + 12, 60, 3},   {video, 0, 2},          {video + 80, 9, 4},
  };
  for (const auto& row : rows) {
    std::vector<uint8_t> bad = good;
    poke(bad, row.at, row.value);
    EXPECT_EQ(load(bad), 1);
    EXPECT_EQ(objectCount, row.left) << row.at - video << " " << row.value;
  }
}

}  // namespace
}  // namespace zenlay::test
