#include "zenlay/model/clipboard.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "tests/model/fixture.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"

namespace zenlay::test {
namespace {

struct Sent {
  int object, slot;
  intptr_t value;
};
std::vector<Sent> sentCommands;

class Clipboard : public Model {
 protected:
  void SetUp() override {
    Model::SetUp();
    sentCommands.clear();
    modelHooks.sendCommand = [](int object, int slot, int, intptr_t value) {
      sentCommands.push_back({object, slot, value});
    };
  }
  void TearDown() override {
    Model::TearDown();
    freeClipboard();
  }
  /// Three sections of ten frames whose head names a file.
  int createChain(int first, int layer) {
    int head = createOver(first, first + 9, layer, testVideo);
    strcpy(reinterpret_cast<char*>(extraDataOf(head, 0)), "clip.avi");
    int second = appendSection(head, first + 10, first + 19);
    appendSection(second, first + 20, first + 29);
    return head;
  }
  int paste(int frame, int layer, int* first = nullptr, int* last = nullptr) {
    int object = pasteClipboard(frame, layer, first, last);
    EXPECT_EQ(modelFault(), "");
    return object;
  }
};

TEST_F(Clipboard, GrowsInStepsAndEmptiesItselfWhenItCannot) {
  int object = createOver(0, 9, 0), chain = createChain(0, 1), unused = objectCount;
  refuseGrowth = true;
  EXPECT_EQ(copyToClipboard(object), 0) << "nothing reserved yet";
  EXPECT_EQ(copyToClipboard(unused), 1) << "a free record";
  EXPECT_EQ(copyToClipboard(-1), 1);
  refuseGrowth = false;
  EXPECT_EQ(copyToClipboard(object), 1);
  refuseGrowth = true;
  // n entries take 1480 n bytes and the next one needs 4 n + 1484: 261184 for n = 175, 262668 for n = 176.
  for (int n = 1; n < 176; n++) ASSERT_EQ(copyToClipboard(object), 1) << n;
  EXPECT_EQ(clipboardEntries(), 176);
  EXPECT_EQ(copyToClipboard(object), 0);
  EXPECT_EQ(clipboardEntries(), 0);
  EXPECT_EQ(paste(0, 5), -1);
  EXPECT_EQ(copyToClipboard(object), 1) << "the area stays";
  for (int n = 1; n < 175; n++) copyToClipboard(object);
  EXPECT_EQ(copyChainToClipboard(chain), 0) << "the head and its 288 bytes fit, the next section does not";
  EXPECT_EQ(clipboardEntries(), 0);
}

TEST_F(Clipboard, ABlockKeepsItsShape) {
  int a = createOver(30, 39, 3), b = createOver(20, 24, 4), c = createOver(20, 29, 5);
  for (int object : {a, b, c}) copyToClipboard(object);
  int first = -1, last = -1;
  int pasted = paste(100, 98, &first, &last);
  EXPECT_EQ(pasted, objectAt(100, 98)) << "the smallest start, then the smaller layer";
  EXPECT_EQ(first, 100);
  EXPECT_EQ(last, 119);
  EXPECT_EQ(objectAt(110, 97), objectAt(119, 97)) << "layers 3 to 5 at layer 98 come to 97 to 99";
  EXPECT_GE(objectAt(100, 99), 0);
  EXPECT_EQ(objectAt(110, 99), -1);
  EXPECT_EQ(objectAt(105, 98), -1);
  ASSERT_EQ(sentCommands.size(), 3u);
  for (const Sent& sent : sentCommands) EXPECT_EQ(sent.value, objectPasted);
  EXPECT_EQ(paste(INT32_MAX - 5, 0), -1) << "frames end at 32 bits";
  EXPECT_EQ(objectCount, 6);
}

/// The first shift at which no entry collides, the way it is told: behind the first object in the way, and again.
int64_t literalShift(const std::vector<ObjectRecord>& entries, int64_t shift, int layerShift) {
  for (size_t i = 0; i < entries.size(); i++) {
    const ObjectRecord& e = entries[i];
    int found =
        objectsInRange(static_cast<int>(e.start + shift), static_cast<int>(e.end + shift), e.layer + layerShift);
    if (found < 0) continue;
    shift = int64_t{objects[found].end} - e.start + 1;
    i = SIZE_MAX;
  }
  return shift;
}

TEST_F(Clipboard, FindsTheFirstPlaceWhereEveryEntryFits) {
  std::mt19937 random(5);
  auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 300; round++) {
    deleteAllObjects();
    clearClipboard();
    int spread = 1 + below(12);
    for (int layer = 0; layer < 6; layer++)
      for (int frame = below(spread); frame < 200; frame += 1 + below(spread)) {
        int length = 1 + below(6);
        createOver(frame, frame + length - 1, layer);
        frame += length;
      }
    std::vector<ObjectRecord> entries;
    for (int i = 0; i < 20; i++) {
      const ObjectRecord& o = *layerOrder[below(objectCount)];
      if (o.layer > 3) continue;
      copyToClipboard(indexOf(&o));
      entries.push_back(o);
    }
    if (entries.empty()) continue;
    int start = INT32_MAX, top = 99;
    for (const ObjectRecord& e : entries) start = std::min(start, e.start), top = std::min(top, e.layer);
    int frame = below(150), layer = below(3);
    int64_t shift = literalShift(entries, frame - start, layer - top);
    int first = -1;
    ASSERT_GE(paste(frame, layer, &first, nullptr), 0);
    ASSERT_EQ(first, start + shift) << "round " << round;
  }
}

TEST_F(Clipboard, EveryPasteIsACopyOfItsOwn) {
  int head = createChain(0, 0), mate = createOver(0, 9, 1);
  for (int o = head; o >= 0; o = nextSection(o)) objects[o].group = 1;
  objects[mate].group = 1;
  copyChainToClipboard(head);
  copyToClipboard(mate);
  beginUndoStep();
  int first = paste(0, 0), second = paste(0, 0);
  EXPECT_EQ(objects[first].start, 30) << "behind the chain in its way";
  EXPECT_EQ(objects[second].start, 60);
  EXPECT_EQ(objects[nextSection(first)].chainHead, first);
  EXPECT_EQ(objects[nextSection(nextSection(second))].chainHead, second);
  extraDataOf(first, 0)[0] = 'C';
  EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(second, 0)), "clip.avi");
  EXPECT_EQ(objects[first].group, 2);
  EXPECT_EQ(objects[objectAt(30, 1)].group, 2);
  EXPECT_EQ(objects[second].group, 3);
  EXPECT_EQ(sentCommands.size(), 6u) << "a head of two effects and its mate, twice";
  undo();
  EXPECT_EQ(objectCount, 4);
  deleteAllObjects();
  EXPECT_EQ(objects[paste(7, 50)].start, 7) << "the clipboard outlives the objects";
  EXPECT_EQ(objectCount, 4);
}

TEST_F(Clipboard, PastesIntoTheSceneInView) {
  int a = createOver(10, 19, 3), b = createOver(10, 19, 7);
  copyToClipboard(a);
  selectScene(2);
  EXPECT_EQ(objects[paste(0, 1)].scene, 2);
  copyToClipboard(b);  // lies in another scene than the one in view
  int other = paste(0, 40);
  EXPECT_EQ(objects[other].homeLayer, 40);
  EXPECT_EQ(objects[objectAt(0, 44)].scene, 2) << "by its home layer";
  selectScene(0);
  EXPECT_EQ(sceneObjectCount, 2);
  EXPECT_EQ(objectCount, 5);
}

TEST_F(Clipboard, OddContentsGiveSoundChains) {
  int head = createChain(0, 0), second = nextSection(head), third = nextSection(second);
  copyToClipboard(third);
  int alone = paste(100, 10);
  EXPECT_EQ(objects[alone].chainHead, -1);
  EXPECT_EQ(objects[alone].extraDataSize, 288u) << "it has extra data of its own now";
  copyToClipboard(head);
  copyToClipboard(head);
  EXPECT_EQ(objects[paste(100, 20)].chainHead, -1) << "a gap parts what it parts";
  EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(objectAt(120, 20), 0)), "clip.avi");
  EXPECT_EQ(objectAt(110, 20), -1);
  EXPECT_EQ(objectCount, 6) << "one copy of an object copied twice";
}

TEST_F(Clipboard, WhatDoesNotFitLeavesTheRestWhole) {
  for (int room = 0; room <= 4; room++) {
    freeObjects();
    createChain(0, 0);
    copyChainToClipboard(objectAt(0, 0));
    for (int i = 0; i < objectGrowth - 3 - room; i++) createOver(i * 10, i * 10, 1 + i % 50);
    beginUndoStep();
    recordUndo(objectAt(0, 0), undoSnapshot);
    refuseGrowth = true;
    shownMessages().clear();
    int head = paste(100, 80);
    EXPECT_EQ(objectCount, objectGrowth - room + std::min(room, 3));
    EXPECT_EQ(head >= 0, room > 0);
    EXPECT_EQ(shownMessages().size(), room < 3 ? 1u : 0u);
    if (head >= 0) {
      EXPECT_EQ(objects[head].chainHead, room == 1 ? -1 : head);
      EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(head, 0)), "clip.avi");
    }
    undo();
    EXPECT_EQ(objectCount, objectGrowth - room);
    EXPECT_EQ(modelFault(), "");
    refuseGrowth = false;
    clearClipboard();
  }
  constexpr int units = extraDataGrowth / extraDataUnit;
  for (int room = 0; room <= 3; room++) {
    freeObjects();
    for (int i = 0; i < units - room; i++) createOver(i * 10, i * 10, i % 50, testGraphic);
    for (int i = 0; i < 3; i++) copyToClipboard(objectAt(i * 10, i));
    refuseGrowth = true;
    int pasted = paste(0, 80);
    EXPECT_EQ(objectCount, units) << room;
    EXPECT_EQ(pasted >= 0, room > 0);
    refuseGrowth = false;
    clearClipboard();
  }
}

TEST_F(Clipboard, SectionsThatLostTheirHeadGoWithoutMemory) {
  constexpr int units = extraDataGrowth / extraDataUnit;
  int head = createChain(0, 0);
  for (int section = nextSection(head); section >= 0; section = nextSection(section)) copyToClipboard(section);
  for (int i = 1; i < units; i++) createOver(i * 10, i * 10, 1 + i % 50, testGraphic);
  int before = objectCount;
  refuseGrowth = true;
  EXPECT_EQ(paste(100, 80), -1) << "no extra data for the section that comes to head them";
  EXPECT_EQ(objectCount, before);
}

TEST_F(Clipboard, Groups) {
  int chain = createChain(0, 0), plain = createOver(0, 9, 1), third = createOver(0, 9, 2),
      seventh = createOver(0, 9, 3);
  int left = createOver(0, 9, 4), unselected = createOver(0, 9, 5);
  objects[third].group = 3;
  objects[seventh].group = objects[unselected].group = 7;
  const int selection[] = {seventh, chain, nextSection(chain), plain, third, -1, 900};
  groupSelection(selection);
  for (int object : {chain, nextSection(nextSection(chain)), plain, third, seventh})
    EXPECT_EQ(objects[object].group, 3);
  EXPECT_EQ(objects[unselected].group, 7);
  undo();
  EXPECT_EQ(objects[seventh].group, 7);
  EXPECT_EQ(objects[nextSection(chain)].group, 0);
  objects[third].group = 5;
  objects[seventh].group = objects[unselected].group = 6;
  const int free[] = {left, plain};
  groupSelection(free);
  EXPECT_EQ(objects[left].group, 4);
  const int section[] = {nextSection(chain), left};
  groupSelection(section);
  EXPECT_EQ(objects[chain].group, 4) << "a chain is grouped whole";
  ungroupSelection(section);
  EXPECT_EQ(objects[chain].group, 0);
  EXPECT_EQ(objects[plain].group, 4);
  undo();
  EXPECT_EQ(objects[chain].group, 4);
  objects[plain].group = 1;
  objects[left].group = 14999;
  const int none[] = {unselected};
  objects[unselected].group = 0;
  groupSelection(none);
  EXPECT_EQ(objects[unselected].group, 0) << "no number is left";
}

}  // namespace
}  // namespace zenlay::test
