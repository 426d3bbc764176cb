// Sections, slots and what an edit of one section does to its chain.
#include "zenlay/model/sections.h"

#include <cstring>

#include "tests/model/fixture.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/order.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"

namespace zenlay::test {
namespace {

using Sections = Model;

void moveTrack(int object, int track, int32_t mode, int32_t start, int32_t end, int32_t param = 0) {
  ObjectRecord& o = objects[object];
  o.modes[track] = mode;
  o.startValues[track] = start;
  o.endValues[track] = end;
  o.params[track] = param;
}

struct SplitRow {
  int32_t mode;
  int divide, how;
  int32_t before[2], behind[2];
};

TEST_F(Sections, SplittingFollowsTheMode) {
  // 0 to 100 over frames 0..100, cut at frame 25; value set 0 holds 7, set 1 holds 9.
  const SplitRow rows[] = {
      {modeRectilinear, 1, sectionSplit, {0, 25}, {25, 100}},
      {modeRectilinear, 0, sectionSplit, {0, 0}, {0, 100}},
      {modeRectilinear, 1, sectionSplitFirstValues, {0, 7}, {7, 100}},
      {modeRectilinear, 0, sectionSplitSecondValues, {0, 9}, {9, 100}},
      {modeNone, 1, sectionSplit, {0, 0}, {0, 0}},
      {modeTeleport, 1, sectionSplit, {0, 0}, {0, 100}},
      {modeIgnoreMidpoints, 1, sectionSplit, {0, 100}, {0, 100}},
      {modeAmount, 1, sectionSplit, {0, 100}, {0, 100}},
      {modeRandom, 1, sectionSplit, {0, 100}, {0, 100}},
      {modeRepeat, 0, sectionSplit, {0, 100}, {0, 100}},
      {modeCurve, 1, sectionSplit, {0, 25}, {25, 100}},
  };
  std::fill_n(valueSets[0].values, maxTracks, 7);
  std::fill_n(valueSets[1].values, maxTracks, 9);
  for (const SplitRow& row : rows) {
    SCOPED_TRACE(testing::Message() << "mode " << row.mode << " divide " << row.divide << " how " << row.how);
    startModel();
    preferences.divide_mode = row.divide;
    int head = createOver(0, 100, 0);
    moveTrack(head, 1, row.mode, 0, row.mode == modeNone ? 0 : 100, 3);
    objects[head].group = 4;
    int behind = addSection(head, 25, static_cast<SectionMode>(row.how));
    ASSERT_GE(behind, 0);
    EXPECT_EQ(modelFault(), "");
    EXPECT_EQ(objects[head].end, 24);
    EXPECT_EQ(objects[behind].start, 25);
    EXPECT_EQ(objects[behind].end, 100);
    EXPECT_EQ(objects[behind].params[1], 3);
    EXPECT_EQ(objects[behind].group, 4);
    const int32_t values[] = {objects[head].startValues[1], objects[head].endValues[1], objects[behind].startValues[1],
                              objects[behind].endValues[1]};
    EXPECT_EQ(memcmp(values, row.before, sizeof row.before), 0) << values[0] << ' ' << values[1];
    EXPECT_EQ(memcmp(values + 2, row.behind, sizeof row.behind), 0) << values[2] << ' ' << values[3];
  }
}

TEST_F(Sections, WhereASectionCanBeAdded) {
  int one = createOver(10, 10, 0);
  EXPECT_EQ(addSection(one, 10, sectionSplit), -1) << "one frame";
  int o = createOver(20, 59, 0, testVideo);
  int second = addSection(o, 20, sectionSplit);
  EXPECT_EQ(objects[o].end, 20) << "split at the first frame comes behind it";
  int third = addSection(second, 1000, sectionSplit);
  EXPECT_EQ(objects[third].start, 59) << "clamped to the last frame";
  EXPECT_EQ(addSection(second, 21, sectionAppend), -1) << "another section follows";
  int fourth = addSection(third, 0, sectionAppend);
  ASSERT_GE(fourth, 0);
  EXPECT_EQ(objects[fourth].start, 60);
  EXPECT_EQ(sectionsOf(third), (std::vector<int>{o, second, third, fourth}));
  objects[fourth].end = 299;
  EXPECT_EQ(addSection(fourth, 0, sectionAppend), -1) << "the scene's end";
  int blocked = createOver(0, 9, 1);
  create(10, 1);
  EXPECT_EQ(addSection(blocked, 0, sectionAppend), -1) << "another object follows";
  EXPECT_EQ(objects[blocked].chainHead, -1);
}

TEST_F(Sections, AppendingGoesOnFromTheEnd) {
  int o = createOver(0, 9, 0);
  moveTrack(o, 0, modeRectilinear, 5, 8);
  moveTrack(o, 1, modeAmount, 100, 3);
  int added = addSection(o, 0, sectionAppend);
  EXPECT_EQ(objects[added].startValues[0], 8);
  EXPECT_EQ(objects[added].endValues[0], 8);
  EXPECT_EQ(objects[added].modes[0], modeRectilinear);
  EXPECT_EQ(objects[added].startValues[1], 100) << "the amount counts from the chain's start";
  EXPECT_EQ(objects[added].endValues[1], 3);
}

TEST_F(Sections, RemovingASectionPoint) {
  int head = createOver(0, 89, 0, testVideo);
  moveTrack(head, 1, modeRectilinear, 0, 900);
  int second = addSection(head, 30, sectionSplit), third = addSection(second, 60, sectionSplit);
  EXPECT_EQ(removeSection(head), -1);
  currentObject = third;
  EXPECT_EQ(removeSection(third), second);
  EXPECT_EQ(currentObject, second);
  EXPECT_EQ(removeSection(second), head);
  EXPECT_EQ(objects[head].chainHead, -1) << "the last point dissolves the chain";
  EXPECT_EQ(objects[head].end, 89);
  EXPECT_EQ(objects[head].endValues[1], 900);
  EXPECT_EQ(removeSection(head), -1);
}

/// Start and end of track 0 over the chain.
std::vector<int32_t> course(int object) {
  std::vector<int32_t> values;
  for (int section : sectionsOf(object)) {
    values.push_back(objects[section].startValues[0]);
    values.push_back(objects[section].endValues[0]);
  }
  return values;
}

TEST_F(Sections, AnEditReachesTheWholeChain) {
  int s[4] = {createOver(0, 99, 0)};
  moveTrack(s[0], 0, modeRectilinear, 0, 99);
  for (int i = 1; i < 4; i++) s[i] = addSection(s[i - 1], 25 * i, sectionSplit);
  EXPECT_EQ(course(s[0]), (std::vector<int32_t>{0, 25, 25, 50, 50, 75, 75, 99}));
  objects[s[1]].startValues[0] = 10;
  objects[s[1]].endValues[0] = 20;
  objects[s[1]].checks[0] = 1;
  objects[s[1]].flags |= objectClipAbove;
  syncChain(s[1]);
  EXPECT_EQ(course(s[0]), (std::vector<int32_t>{0, 10, 10, 20, 20, 75, 75, 99}));
  moveTrack(s[2], 0, modeRandom, 3, 4, 6);
  syncChain(s[2]);
  EXPECT_EQ(course(s[0]), (std::vector<int32_t>{3, 4, 3, 4, 3, 4, 3, 4}));
  EXPECT_EQ(objects[s[0]].params[0], 6);
  moveTrack(s[3], 0, modeCurve, 3, 4);
  syncChain(s[3]);
  EXPECT_EQ(course(s[0]), (std::vector<int32_t>{3, 3, 3, 3, 3, 3, 3, 4})) << "continuous far from the edit, too";
  moveTrack(s[0], 0, modeNone, 8, 1);
  syncChain(s[0]);
  EXPECT_EQ(course(s[0]), std::vector<int32_t>(8, 8));
  int alone = createOver(0, 9, 1);
  moveTrack(alone, 0, modeNone, 8, 1);
  syncChain(alone);
  EXPECT_EQ(objects[alone].endValues[0], 8);
}

TEST_F(Sections, ScriptsSayWhatTheyGoBy) {
  modelHooks.scriptIgnoresMidpoints = [](int32_t mode) { return mode >> 16 == 1; };
  EXPECT_EQ(courseOf(modeScript), courseContinuous);
  EXPECT_EQ(courseOf(modeScript | 1 << 16), courseWholeChain);
  EXPECT_EQ(courseOf(modeAccelerationBit), courseStill);
  EXPECT_EQ(courseOf(modeAmount | modeDecelerationBit), courseWholeChain);
}

TEST_F(Sections, SplittingMakesTwoObjects) {
  int head = createOver(0, 99, 0, testVideo);
  moveTrack(head, 1, modeAmount, 100, 10);
  moveTrack(head, 0, modeIgnoreMidpoints, 0, 99);
  strcpy(objects[head].name, "Intro");
  strcpy(reinterpret_cast<char*>(extraDataOf(head, 0)), "clip.avi");
  int middle = addSection(head, 20, sectionSplit), last = addSection(middle, 80, sectionSplit);
  EXPECT_EQ(splitObject(head, 0), -1);
  EXPECT_EQ(splitObject(head, 100), -1);
  beginUndoStep();
  int behind = splitObject(head, 50);
  ASSERT_GE(behind, 0);
  EXPECT_EQ(sectionsOf(middle), (std::vector<int>{head, middle}));
  EXPECT_EQ(sectionsOf(last), (std::vector<int>{behind, last}));
  EXPECT_STREQ(objectDisplayName(last), "Intro");
  EXPECT_NE(extraDataOf(last, 0), extraDataOf(head, 0));
  EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(last, 0)), "clip.avi");
  EXPECT_EQ(objects[last].startValues[1], 600) << "100 + 50 frames by 10";
  EXPECT_EQ(objects[head].startValues[1], 100);
  EXPECT_EQ(objects[middle].endValues[0], 50);
  EXPECT_EQ(objects[behind].startValues[0], 50);
  EXPECT_EQ(objects[behind].endValues[0], 99);
  undo();
  EXPECT_EQ(splitObject(last, 20), middle) << "at a midpoint no section is added";
  EXPECT_EQ(objects[head].chainHead, -1);
  EXPECT_EQ(sectionsOf(middle), (std::vector<int>{middle, last}));
}

TEST_F(Sections, DeletingOneSectionLeavesWholeObjects) {
  for (int deleted = 0; deleted < 4; deleted++) {
    SCOPED_TRACE(deleted);
    startModel();
    int s[4] = {createOver(0, 99, 0, testVideo)};
    strcpy(reinterpret_cast<char*>(extraDataOf(s[0], 0)), "clip.avi");
    strcpy(objects[s[0]].name, "Intro");
    for (int i = 1; i < 4; i++) s[i] = addSection(s[i - 1], 25 * i, sectionSplit);
    beginUndoStep();
    deleteObject(s[deleted]);
    EXPECT_EQ(modelFault(), "");
    EXPECT_EQ(objectCount, 3);
    for (int i = 0; i < 4; i++) {
      if (i == deleted) continue;
      EXPECT_EQ(headOf(s[i]), i < deleted ? s[0] : s[deleted + 1]);
      EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(s[i], 0)), "clip.avi");
      EXPECT_STREQ(objectDisplayName(s[i]), "Intro");
    }
    undo();
    deleteObjects(std::vector<int>{s[2], s[3], s[0]});
    EXPECT_EQ(objectCount, 0) << "a selected section stands for its object";
  }
}

TEST_F(Sections, ForeignChainsAreSettled) {
  int a = createOver(0, 9, 0), b = appendSection(a, 10, 19), c = appendSection(a, 20, 29);
  moveTrack(a, 0, modeRectilinear, 1, 2);
  moveTrack(b, 0, modeNone, 30, 40);
  moveTrack(c, 0, modeRandom, 50, 60, 9);
  moveTrack(b, 1, modeNone, 7, 8);
  objects[c].checks[0] = 1;
  settleChains();
  EXPECT_EQ(modelFault(), "");
  EXPECT_EQ(course(a), (std::vector<int32_t>{1, 30, 30, 50, 50, 60}));
  EXPECT_EQ(objects[b].startValues[1], objects[a].startValues[1]);
}

int dividedChain;

TEST_F(Sections, EffectsHearOfADivisionWhileTheChainIsWhole) {
  dividedChain = -1;
  modelHooks.sendCommand = [](int object, int slot, int command, intptr_t event) {
    if (command != commandObjectEvent || event != objectDivided || slot != 0) return;
    dividedChain = headOf(object);
    objects[object].startValues[0] = objects[object].endValues[0] = 77;
  };
  int head = createOver(0, 99, 0, testVideo), last = addSection(head, 80, sectionSplit);
  int behind = splitObject(head, 50);
  EXPECT_EQ(dividedChain, head);
  EXPECT_EQ(objects[head].startValues[0], 1);
  EXPECT_EQ(objects[behind].startValues[0], 77);
  EXPECT_EQ(objects[last].endValues[0], 77) << "what the effect set holds for the whole new object";
}

struct MoveRow {
  int from, delta;
  bool can;
};

TEST_F(Sections, SlotsMoveBetweenTheFixedOnes) {
  int video = create(0, 0, testVideo);
  for (int effect : {testFilter, testHeavy}) setChainSlotDefaults(video, addEffect(video, effect));
  const MoveRow rows[] = {{1, 1, true},   {2, -1, true},  {1, -1, false}, {2, 1, false},        {0, 1, false},
                          {3, -1, false}, {4, -1, false}, {1, 9, false},  {1, INT32_MAX, false}};
  for (const MoveRow& row : rows)
    EXPECT_EQ(canMoveSlot(video, row.from, row.delta), row.can) << row.from << ' ' << row.delta;
  int group = create(0, 1, testGroup);
  setChainSlotDefaults(group, addEffect(group, testFilter));
  setChainSlotDefaults(group, addEffect(group, testFilterNoTracks));
  EXPECT_TRUE(canMoveSlot(group, 1, 1)) << "a control object has no fixed end";
  EXPECT_FALSE(canMoveSlot(group, 0, 1));
  int filters = create(0, 2, testFilterObject);
  for (int i = 0; i < 2; i++) setChainSlotDefaults(filters, addEffect(filters, testFilter));
  EXPECT_TRUE(canMoveSlot(filters, 0, 2));

  int section = addSection(video, 5, sectionSplit);
  objects[video].startValues[trackOf(objects[video], 1, 2)] = 42;
  syncChain(video);
  extraDataOf(video, 2)[5999] = 77;
  setSlotFlags(video, 1, slotEnabled | slotFolded);
  EXPECT_TRUE(moveSlot(section, 2, -1));
  for (int s : {video, section}) {
    EXPECT_EQ(objects[s].slots[1].effect, testHeavy);
    EXPECT_EQ(objects[s].startValues[trackOf(objects[s], 2, 2)], 42);
  }
  EXPECT_EQ(extraDataOf(section, 1)[5999], 77);
  EXPECT_EQ(slotFlagsOf(section, 2), slotEnabled | slotFolded);
  EXPECT_FALSE(moveSlot(video, 0, 1));
}

int hidden;

TEST_F(Sections, RemovingAnEffectOfTheCurrentObjectHidesItsControls) {
  hidden = 0;
  effectList[testHeavy]->hide_controls = [] { hidden++; };
  int object = create(0, 0, testVideo);
  for (int i = 0; i < 2; i++) setChainSlotDefaults(object, addEffect(object, testHeavy));
  int section = addSection(object, 5, sectionSplit);
  removeEffect(section, 1);
  EXPECT_EQ(hidden, 0);
  currentObject = section;
  removeEffect(object, 1);
  EXPECT_EQ(hidden, 1);
  EXPECT_EQ(usedSlots(section), 2);
  int alone = create(0, 1);
  removeEffect(alone, 0);
  EXPECT_EQ(usedSlots(alone), 1) << "the only effect stays";
}

}  // namespace
}  // namespace zenlay::test
