#include <gtest/gtest.h>

#include "tests/model/fixture.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"

namespace zenlay::test {
namespace {

TEST_F(Model, NewObjectsSpanFiftyPixelsAndFitTheLayer) {
  setZoomLevel(19);  // 1 pixel a frame
  EXPECT_EQ(timelineView.zoom, 10000);
  int a = create(100, 3);
  EXPECT_EQ(objects[a].start, 100);
  EXPECT_EQ(objects[a].end, 150);  // 500000 / 10000 + 1 = 51 frames
  int b = create(80, 3);
  EXPECT_EQ(objects[b].start, 80);
  EXPECT_EQ(objects[b].end, 99) << "shortened before the next object";
  int c = create(90, 3);
  EXPECT_EQ(objects[c].start, 151) << "moved behind both objects";
  EXPECT_EQ(create(0, 100), -1);
  EXPECT_EQ(create(0, -1), -1);
  int last = create(280, 3);
  objects[last].end = 299;
  EXPECT_EQ(create(285, 3), -1) << "pushed to the scene's end";
  EXPECT_EQ(objectAt(150, 3), a);
  EXPECT_EQ(objectAt(279, 3), -1);
  EXPECT_EQ(objectsInRange(0, 85, 3), b);
  EXPECT_EQ(objectsInRange(0, 79, 3), -1);
  EXPECT_EQ(objectsInRange(99, 300, 3), b);
  EXPECT_EQ(layersInUse, 4);
}

struct CompanionRow {
  int effect;
  int slots[2];
  uint32_t flags;
  const char* name;
};

TEST_F(Model, FirstEffectsBringTheirCompanions) {
  const CompanionRow rows[] = {
      {testVideo, {testVideo, testDrawing}, objectInUse | objectDrawn, "Video file[Standard drawing]"},
      {testAdvanced, {testGraphic, testAdvanced}, objectInUse | objectDrawn, "Graphic[Advanced drawing]"},
      {testAudioFile,
       {testAudioFile, testPlayback},
       objectInUse | objectDrawn | objectAudio,
       "Audio file[Standard playback]"},
      {testPlayback,
       {testAudioFile, testPlayback},
       objectInUse | objectDrawn | objectAudio,
       "Audio file[Standard playback]"},
      {testFilter, {testFilter, -1}, objectInUse | objectFilterEffect, "Blur[Media object]"},
      {testFilterObject, {testFilterObject, -1}, objectInUse, "Blur"},
      {testGroup,
       {testGroup, -1},
       objectInUse | objectFilterEffect | objectControl | objectLayerRange,
       "Group control"},
  };
  int layer = 0;
  for (const CompanionRow& row : rows) {
    int object = create(0, layer++, row.effect);
    EXPECT_EQ(objects[object].slots[0].effect, row.slots[0]) << row.name;
    EXPECT_EQ(objects[object].slots[1].effect, row.slots[1]) << row.name;
    EXPECT_EQ(objects[object].flags, row.flags) << row.name;
    EXPECT_STREQ(objectDisplayName(object), row.name);
  }
  const ObjectRecord& video = objects[objectAt(0, 0)];
  EXPECT_EQ(video.startValues[trackOf(video, 1, 3)], 10000) << "the companion starts with its defaults";
  EXPECT_EQ(video.checks[checkOf(video, 0, 1)], 1);
  EXPECT_EQ(video.checks[checkOf(video, 0, 2)], 0) << "a button is off";
  EXPECT_EQ(extraDataOf(objectAt(0, 1), 0)[1], 255) << "default extra data of the companion";
}

TEST_F(Model, ObjectLimits) {
  setZoomLevel(zoomLevels - 1);
  for (int i = 0; i < maxObjects; i++) ASSERT_EQ(createObject(i * 10, i % layersPerScene, testFilterObject, -1), i);
  EXPECT_EQ(objectCapacity, maxObjects);
  EXPECT_TRUE(shownMessages().empty());
  EXPECT_EQ(create(1000000, 0), -1);
  ASSERT_EQ(shownMessages().size(), 1u);
  EXPECT_EQ(shownMessages()[0], "Unable to add more object");
  deleteObject(7777);
  EXPECT_EQ(create(1000000, 0), 7777) << "the first free record is taken";
  std::vector<ObjectRecord*> incremental(layerOrder, layerOrder + objectCount);
  rebuildOrder();
  EXPECT_TRUE(std::equal(incremental.begin(), incremental.end(), layerOrder));
}

TEST_F(Model, RefusedMemoryChangesNothing) {
  refuseGrowth = true;
  EXPECT_EQ(create(0, 0), -1);
  EXPECT_EQ(objectCapacity, 0);
  refuseGrowth = false;
  int plain = create(0, 0);
  refuseGrowth = true;
  EXPECT_EQ(create(0, 1, testVideo), -1);
  EXPECT_EQ(addEffect(plain, testHeavy), -1);
  EXPECT_EQ(usedSlots(plain), 1);
  ASSERT_EQ(shownMessages().size(), 3u);
  for (int i : {1, 2}) EXPECT_EQ(shownMessages()[i], "Unable to reserve the extended region for object");
  EXPECT_EQ(objectCount, 1);
}

TEST_F(Model, ExtraDataUnits) {
  int a = create(0, 0, testFilterObject), b = create(0, 1, testFilterObject), c = create(0, 2, testFilterObject);
  ASSERT_TRUE(reserveExtraData(a, 316));
  ASSERT_TRUE(reserveExtraData(b, 317));
  ASSERT_TRUE(reserveExtraData(c, 1));
  EXPECT_EQ(objects[a].extraDataBlock, 0u);
  EXPECT_EQ(objects[b].extraDataBlock, 320u) << "316 bytes use one unit";
  EXPECT_EQ(objects[c].extraDataBlock, 960u) << "317 bytes use two units";
  releaseExtraData(a);
  ASSERT_TRUE(reserveExtraData(c, 400));
  EXPECT_EQ(objects[c].extraDataBlock, 1280u) << "the hole of one unit is too small";
  ASSERT_TRUE(reserveExtraData(a, 20));
  EXPECT_EQ(objects[a].extraDataBlock, 0u) << "first fit";
  ASSERT_TRUE(reserveExtraData(b, 10));
  EXPECT_EQ(objects[b].extraDataBlock, 320u) << "a block that is large enough stays";
  ASSERT_TRUE(reserveExtraData(a, 200000));
  EXPECT_EQ(objects[a].extraDataBlock, 1920u) << "grown as often as needed";
  for (int object : {a, b, c}) releaseExtraData(object);
}

TEST_F(Model, EffectLimits) {
  int o = create(0, 0, testFilter);  // 3 tracks, 1 check
  for (int slot = 1; slot <= 3; slot++) EXPECT_EQ(addEffect(o, testWide), slot);
  EXPECT_EQ(addEffect(o, testWide), -1) << "83 tracks";
  EXPECT_EQ(objects[o].trackCount, 63);
  EXPECT_EQ(addEffect(o, testFilter), -1) << "66 tracks";
  EXPECT_EQ(addEffect(o, testGroup), 4) << "64 tracks";
  int heavy = create(0, 1, testHeavy);
  EXPECT_EQ(addEffect(heavy, testHeavy), 1);
  EXPECT_EQ(addEffect(heavy, testHeavy), 2);
  EXPECT_EQ(addEffect(heavy, testHeavy), -1) << "24000 bytes";
  int full = create(0, 2, testVideo);
  for (int slot = 1; slot <= 10; slot++) EXPECT_EQ(addEffect(full, testFilterNoTracks), slot) << "before the drawing";
  EXPECT_EQ(objects[full].slots[11].effect, testDrawing);
  EXPECT_EQ(addEffect(full, testFilterNoTracks), -1);
  EXPECT_EQ(addEffect(full, testAdvanced), 11) << "a full chain still takes another drawing effect";
  EXPECT_EQ(addEffect(full, testGraphic), 0) << "and another media effect";
  EXPECT_EQ(usedSlots(full), 12);
}

TEST_F(Model, ValuesTravelWithTheirEffects) {
  int o = create(0, 0, testVideo);
  objects[o].startValues[trackOf(objects[o], 1, 3)] = 4321;
  extraDataOf(o, 1)[0] = 7;
  strcpy(reinterpret_cast<char*>(extraDataOf(o, 0)), "clip.avi");
  int blur = addEffect(o, testFilter);
  setSlotDefaults(o, blur);
  EXPECT_EQ(blur, 1);
  EXPECT_EQ(objects[o].startValues[trackOf(objects[o], 2, 3)], 4321);
  EXPECT_EQ(objects[o].startValues[trackOf(objects[o], 1, 2)], 1500);
  EXPECT_EQ(extraDataOf(o, 2)[0], 7);
  int heavy = addEffect(o, testHeavy);
  EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(o, 0)), "clip.avi") << "kept while the block moved";
  removeEffect(o, blur);
  removeEffect(o, heavy - 1);
  EXPECT_EQ(usedSlots(o), 2);
  EXPECT_EQ(objects[o].startValues[trackOf(objects[o], 1, 3)], 4321);
  EXPECT_EQ(extraDataOf(o, 1)[0], 7);
}

TEST_F(Model, SectionsShareTheHead) {
  setZoomLevel(19);
  int head = create(0, 0, testVideo);
  objects[head].endValues[2] = 55;
  objects[head].modes[2] = 1;
  int second = appendSection(head, objects[head].end + 1, 120), third = appendSection(head, 121, 140);
  ASSERT_GE(third, 0);
  EXPECT_EQ(previousSection(second), head);
  EXPECT_EQ(nextSection(second), third);
  EXPECT_EQ(nextSection(third), -1);
  EXPECT_EQ(objects[third].startValues[2], 55);
  EXPECT_EQ(objects[third].modes[2], 1);
  EXPECT_EQ(extraDataOf(third, 0), extraDataOf(head, 0));
  setSlotFlags(third, 0, 0);
  EXPECT_EQ(slotFlagsOf(head, 0), 0);
  EXPECT_EQ(addEffect(third, testFilter), 1);
  setChainSlotDefaults(third, 1);
  for (int section : {head, second, third}) EXPECT_EQ(objects[section].slots[1].effect, testFilter);
  EXPECT_EQ(objects[second].startValues[trackOf(objects[second], 2, 0)], 55);
  EXPECT_EQ(chainRange(second).last, 140);
  EXPECT_EQ(sectionAt(head, 130), third);
  int neighbour = create(141, 0, testVideo);
  EXPECT_EQ(nextSection(third), -1) << "neighbours of other chains are not linked";
  EXPECT_EQ(appendSection(head, 141, 150), -1);
  int alone = appendSection(neighbour, objects[neighbour].end + 2, 250);
  EXPECT_EQ(alone, -1);
  EXPECT_EQ(objects[neighbour].chainHead, -1);
}

TEST_F(Model, ProvisionalChainsAreResolved) {
  int o[5];
  for (int i = 0; i < 5; i++) {
    o[i] = create(i * 10, 0);
    objects[o[i]].end = i * 10 + 9;
  }
  objects[o[0]].chainHead = objects[o[1]].chainHead = -5;
  objects[o[2]].chainHead = -9;
  objects[o[3]].chainHead = objects[o[4]].chainHead = -7;
  rebuildOrder();
  const int heads[5] = {o[0], o[0], -1, o[3], o[3]};
  for (int i = 0; i < 5; i++) EXPECT_EQ(objects[o[i]].chainHead, heads[i]) << i;
}

TEST_F(Model, GroupNumbers) {
  EXPECT_EQ(newGroupNumber(), 1);
  int o[4];
  for (int i = 0; i < 4; i++) o[i] = create(0, i);
  objects[o[0]].group = 5;
  objects[o[1]].group = 6;
  EXPECT_EQ(newGroupNumber(), 4);
  objects[o[0]].group = 1;
  objects[o[1]].group = 3;
  EXPECT_EQ(newGroupNumber(), 4);
  for (int last : {14999, INT32_MAX}) {
    objects[o[1]].group = last;
    EXPECT_EQ(newGroupNumber(), 0) << last;
  }
  objects[o[0]].group = 5;
  objects[o[1]].group = objects[o[3]].group = -8;
  objects[o[2]].group = -2;
  renumberMarkedGroups();
  EXPECT_EQ(objects[o[1]].group, 4);
  EXPECT_EQ(objects[o[3]].group, 4);
  EXPECT_EQ(objects[o[2]].group, 3);
}

TEST_F(Model, NamePool) {
  EXPECT_STREQ(sceneName(0), "Root");
  EXPECT_STREQ(sceneName(7), "Scene 7");
  std::string longest(63, 'a');
  EXPECT_EQ(setSceneName(7, ""), 0);
  EXPECT_EQ(setSceneName(7, (longest + "a").c_str()), 0);
  for (int i = 0; i < 200; i++) EXPECT_EQ(setLayerName(i / 100, i % 100, longest.c_str()), 1) << i;
  EXPECT_EQ(setSceneName(7, "x"), 0) << "200 names of 64 bytes fill the pool";
  beginUndoStep();
  recordUndo(3 | undoLayerTarget, undoLayer);
  layerTable[0].name = nullptr;
  EXPECT_EQ(setLayerName(0, 3, "third"), 1) << "room after the pool was compacted";
  EXPECT_STREQ(layerTable[199].name, longest.c_str());
  EXPECT_EQ(setSceneName(7, sceneName(7)), 1);
  undo();
  EXPECT_STREQ(layerTable[3].name, longest.c_str()) << "undo finds the name where it is now";
}

TEST_F(Model, SceneSwitchKeepsEachView) {
  setZoomLevel(19);
  int root = create(10, 4);
  currentObject = root;
  timelineView.topLayer = 2;
  fakeHost.currentFrame = 33;
  switchScene(3, nullptr, nullptr);
  EXPECT_EQ(objects[root].layer, -1);
  EXPECT_EQ(sceneObjectCount, 0);
  EXPECT_EQ(objectCount, 1);
  EXPECT_EQ(currentObject, -1);
  EXPECT_EQ(timelineView.sceneLength, 1);
  EXPECT_EQ(fakeHost.frameCount, 1);
  EXPECT_EQ(sceneLength(0), 300);
  timelineView.sceneLength = 300;
  int other = create(10, 4);
  EXPECT_EQ(objects[other].scene, 3);
  EXPECT_EQ(modelFault(), "");
  EXPECT_EQ(freeScene(), 1);
  switchScene(0, nullptr, nullptr);
  EXPECT_EQ(currentObject, root);
  EXPECT_EQ(timelineView.topLayer, 2);
  EXPECT_EQ(fakeHost.currentFrame, 33);
  EXPECT_EQ(fakeHost.frameCount, 300);
  EXPECT_EQ(layerOrder[1], objects + other);
}

TEST_F(Model, UndoPutsStepsBack) {
  undo();
  EXPECT_EQ(objectCount, 0) << "nothing was done";
  int o = create(0, 0, testVideo);
  strcpy(reinterpret_cast<char*>(extraDataOf(o, 0)), "clip.avi");
  beginUndoStep();
  deleteAllObjects();
  undo();
  EXPECT_EQ(objectCount, 1);
  EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(o, 0)), "clip.avi");
  undo();
  EXPECT_EQ(objectCount, 1) << "nothing is left to undo";
}

TEST_F(Model, UndoReachesObjectsOfAnotherScene) {
  int moved = create(10, 4), deleted = create(10, 5, testVideo);
  beginUndoStep();
  recordUndo(moved, undoPosition);
  objects[moved].layer = objects[moved].homeLayer = 7;
  rebuildOrder();
  deleteObject(deleted);
  switchScene(2, nullptr, nullptr);
  undo();
  EXPECT_EQ(modelFault(), "");
  EXPECT_EQ(sceneObjectCount, 0) << "they lie in the scene they came from";
  EXPECT_EQ(objectCount, 2);
  EXPECT_EQ(currentObject, -1);
  switchScene(0, nullptr, nullptr);
  EXPECT_EQ(objects[moved].layer, 4);
  EXPECT_EQ(objects[deleted].layer, 5);
}

std::vector<int> released;

TEST_F(Model, UndoTellsWhoKeepsSomethingForAnObject) {
  released.clear();
  modelHooks.objectDeleted = [](int object) { released.push_back(object); };
  int o = create(0, 0);
  beginUndoStep();
  int made = create(0, 1);
  recordUndo(o, undoPosition);
  objects[o].start = 5;
  undo();
  EXPECT_EQ(released, std::vector<int>{made});
  EXPECT_EQ(currentObject, o) << "the restored object becomes current";
}

TEST_F(Model, UndoForgetsWholeOldSteps) {
  int o = create(0, 0), p = create(0, 1);
  auto move = [&](int object, int times) {
    beginUndoStep();
    for (int i = 0; i < times; i++) recordUndo(object, undoPosition);
    objects[object].start++;
  };
  move(o, 10);
  move(p, 14990);
  move(p, 1);  // pushes the ten records of the first step out
  for (int i = 0; i < 3; i++) undo();
  EXPECT_EQ(objects[o].start, 1);
  EXPECT_EQ(objects[p].start, 0);
  beginUndoStep();
  for (int i = 0; i < 3000; i++) recordUndo(o, undoSnapshot);  // 4.5 MB: more than the area
  objects[o].start = 2;
  undo();
  EXPECT_EQ(objects[o].start, 2) << "a step larger than the area cannot be undone";
  beginUndoStep();
  recordUndo(o, undoPosition);
  objects[o].start = 3;
  undo();
  EXPECT_EQ(objects[o].start, 2);
}

std::vector<std::array<intptr_t, 3>> commands;

TEST_F(Model, EffectsHearOfDeletion) {
  commands.clear();
  modelHooks.sendCommand = [](int object, int slot, int, intptr_t event) { commands.push_back({object, slot, event}); };
  int o = create(0, 0, testVideo);
  int section = appendSection(o, objects[o].end + 1, objects[o].end + 5);
  deleteObject(section);
  EXPECT_TRUE(commands.empty()) << "the head speaks for its sections";
  removeEffect(o, 1);
  deleteObject(o);
  const std::vector<std::array<intptr_t, 3>> expected = {{o, 1, objectSlotRemoved}, {o, 0, objectDeleted}};
  EXPECT_EQ(commands, expected);
}

}  // namespace
}  // namespace zenlay::test
