// Edits that move several objects at once.
#include "zenlay/model/arrange.h"

#include "tests/model/fixture.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"

namespace zenlay::test {
namespace {

class Arrange : public Model {
 protected:
  /// A chain with sections of these lengths.
  static int createChain(int start, int layer, std::initializer_list<int> lengths, int effect = testFilterObject) {
    int object = -1;
    for (int length : lengths) {
      if (object < 0)
        object = createOver(start, start + length - 1, layer, effect);
      else
        appendSection(object, start, start + length - 1);
      start += length;
    }
    return object;
  }
};

std::vector<int> lengthsOf(int object) {
  std::vector<int> lengths;
  for (int section : sectionsOf(object)) lengths.push_back(objects[section].end - objects[section].start + 1);
  return lengths;
}

using Lengths = std::vector<int>;

struct LengthRow {
  std::initializer_list<int> before;
  int section, length;  // section -1: the whole object; length 0: even spacing
  int result;
  Lengths after;
};

TEST_F(Arrange, Lengths) {
  // The next object starts 200 frames behind the chain's start.
  const LengthRow rows[] = {
      {{10, 20, 30}, 1, 25, 25, {10, 25, 30}},
      {{10, 20, 30}, 0, 3, 3, {3, 20, 30}},
      {{10, 20, 30}, 2, 1000, 170, {10, 20, 170}},
      {{10, 20, 30}, 1, 1000, 160, {10, 160, 30}},
      {{10, 20, 30}, 1, 20, 0, {10, 20, 30}},
      {{10, 20, 30}, 1, 0, 0, {10, 20, 30}},
      {{10, 20, 30}, -1, 120, 120, {20, 40, 60}},
      {{10, 20, 30}, -1, 61, 61, {10, 21, 30}},  // points at 10.17 and 30.5
      {{10, 20, 30}, -1, 4, 4, {1, 1, 2}},
      {{10, 20, 30}, -1, 1, 3, {1, 1, 1}},
      {{10, 20, 30}, -1, INT32_MAX, 200, {33, 67, 100}},
      {{100, 1, 1, 1}, -1, 6, 6, {3, 1, 1, 1}},
      {{50}, -1, 77, 77, {50 + 27}},
  };
  for (const LengthRow& row : rows) {
    startModel();
    int object = createChain(40, 0, row.before);
    createOver(240, 250, 0);
    SCOPED_TRACE(testing::Message() << "section " << row.section << " to " << row.length);
    int result = row.section < 0 ? setObjectLength(object, row.length)
                                 : setSectionLength(sectionsOf(object)[static_cast<size_t>(row.section)], row.length);
    EXPECT_EQ(result, row.result);
    EXPECT_EQ(lengthsOf(object), row.after);
    EXPECT_EQ(objects[object].start, 40);
    EXPECT_EQ(modelFault(), "");
  }
}

TEST_F(Arrange, LengthsEndWithTheLastFrameThereIs) {
  int object = createChain(100, 0, {10, 20});
  EXPECT_EQ(setObjectLength(object, INT32_MAX), INT32_MAX - 99);
  EXPECT_EQ(objects[sectionsOf(object)[1]].end, INT32_MAX);
  EXPECT_EQ(setSectionLength(object, 5), 5);
}

TEST_F(Arrange, MidpointsAreSpacedEvenly) {
  int object = createChain(7, 0, {1, 50, 2, 47});
  EXPECT_TRUE(spaceMidpointsEvenly(sectionsOf(object)[2]));
  EXPECT_EQ(lengthsOf(object), (Lengths{25, 25, 25, 25}));
  EXPECT_FALSE(spaceMidpointsEvenly(object));
  int odd = createChain(0, 1, {8, 1, 1});
  spaceMidpointsEvenly(odd);
  EXPECT_EQ(lengthsOf(odd), (Lengths{3, 4, 3}));
  EXPECT_FALSE(spaceMidpointsEvenly(create(0, 2)));
}

TEST_F(Arrange, LayersMoveWithTheirRecords) {
  int top = createOver(0, 9, 3), below = createOver(0, 9, 4), last = createOver(0, 9, 99);
  int chain = createChain(100, 4, {10, 10}, testVideo);
  layers[4].flags = layerLocked;
  layers[99].flags = layerHidden;
  setLayerName(0, 4, "four");
  beginUndoStep();
  insertLayer(4);
  EXPECT_EQ(objects[top].layer, 3);
  EXPECT_EQ(objects[below].layer, 5);
  EXPECT_EQ(objects[sectionsOf(chain)[1]].homeLayer, 5);
  EXPECT_EQ(objects[last].layer, 4) << "the last layer comes in";
  EXPECT_EQ(layers[4].flags, layerHidden);
  EXPECT_EQ(layers[5].flags, layerLocked);
  EXPECT_STREQ(layers[5].name, "four");
  undo();
  beginUndoStep();
  deleteLayer(4);
  EXPECT_EQ(objectCount, 2);
  EXPECT_EQ(objects[last].layer, 98);
  EXPECT_EQ(layers[98].flags, layerHidden);
  EXPECT_EQ(layers[99].flags, 0u);
  EXPECT_EQ(layers[4].name, nullptr);
  undo();
  EXPECT_EQ(objectCount, 5);
  EXPECT_EQ(objects[last].layer, 99);
  deleteLayer(99);
  EXPECT_EQ(objectCount, 4);
}

TEST_F(Arrange, EmptyFramesMoveWholeChains) {
  int before = createChain(0, 0, {20, 20}), at = createOver(30, 39, 1), behind = createOver(40, 49, 0);
  EXPECT_TRUE(insertEmptyFrames(30, 5));
  EXPECT_EQ(lengthsOf(before), (Lengths{20, 20}));
  EXPECT_EQ(objects[sectionsOf(before)[1]].start, 20) << "its head starts earlier";
  EXPECT_EQ(objects[at].start, 35);
  EXPECT_EQ(objects[behind].end, 54);
  EXPECT_FALSE(insertEmptyFrames(30, 0));
  EXPECT_FALSE(insertEmptyFrames(30, INT32_MAX)) << "past the last frame there is";
  EXPECT_EQ(objects[at].start, 35);
  EXPECT_FALSE(insertEmptyFrames(36 + 100, 1));
}

TEST_F(Arrange, SplitGroups) {
  for (int divide : {1, 0}) {
    SCOPED_TRACE(divide);
    startModel();
    preferences.divide_group = divide;
    int a = createOver(0, 99, 0), b = createChain(0, 1, {20, 80}), behind = createOver(50, 60, 2);
    int alone = createOver(0, 99, 3), uncut = createOver(60, 70, 4), outside = createOver(0, 99, 5);
    for (int object : {a, sectionsOf(b)[0], sectionsOf(b)[1], behind, outside}) objects[object].group = 5;
    objects[alone].group = 7;
    objects[uncut].group = 9;
    std::vector<int> pieces = splitObjects(std::vector<int>{a, sectionsOf(b)[1], b, behind, alone, uncut}, 50);
    ASSERT_EQ(pieces.size(), 3u) << "a chain is cut once";
    int fresh = objects[objectAt(50, 0)].group;
    EXPECT_EQ(fresh, divide ? 4 : 5);
    EXPECT_EQ(objects[objectAt(50, 1)].group, fresh);
    EXPECT_EQ(objects[behind].group, fresh) << "goes with what stands behind the cut";
    EXPECT_EQ(objects[objectAt(50, 3)].group, divide ? 0 : 7) << "alone behind the cut";
    EXPECT_EQ(objects[uncut].group, 9) << "nothing of its group was cut";
    for (int object : {a, b, outside}) EXPECT_EQ(objects[object].group, 5);
    EXPECT_EQ(modelFault(), "");
  }
}

TEST_F(Arrange, CuttingToARange) {
  int a = createOver(0, 99, 0), b = createOver(20, 29, 1), c = createOver(25, 99, 2);
  std::vector<int> pieces = cutAtRange(std::vector<int>{a, b, c}, 20, 29);
  EXPECT_EQ(pieces.size(), 3u);
  EXPECT_EQ(objects[a].end, 19);
  EXPECT_EQ(objects[objectAt(25, 0)].start, 20);
  EXPECT_EQ(objects[objectAt(25, 0)].end, 29);
  EXPECT_EQ(objects[objectAt(30, 0)].end, 99);
  EXPECT_EQ(objects[b].end, 29) << "fits the range";
  EXPECT_EQ(objects[c].end, 29);
  EXPECT_TRUE(cutAtRange(std::vector<int>{a}, 9, 3).empty());
}

// ---- Linked coordinates ----

class Linked : public Arrange {
 protected:
  static int createMoving(int first, int last, int32_t mode, int32_t from, int32_t to, int layer = 0) {
    int object = createOver(first, last, layer, testVideo);
    setX(object, mode, from, to);
    return object;
  }
  static void setX(int object, int32_t mode, int32_t from, int32_t to) {
    ObjectRecord& o = objects[object];
    int x = trackOf(o, 1, 0);
    o.modes[x] = mode;
    o.startValues[x] = from;
    o.endValues[x] = to;
  }
  static std::pair<int, int> xOf(int object) {
    const ObjectRecord& o = objects[object];
    int x = trackOf(o, 1, 0);
    return {o.startValues[x], o.endValues[x]};
  }
};

using Values = std::pair<int, int>;

TEST_F(Linked, LaterObjectsFollowEarlierOnes) {
  int a = createMoving(0, 9, modeRectilinear, 0, 100), b = createMoving(10, 19, modeNone, 5, 5);
  int c = createMoving(20, 29, modeCurve, 7, 300), d = createMoving(30, 39, modeIgnoreMidpoints, 1, 2);
  int e = createMoving(40, 49, modeRandom, 8, 9), f = createMoving(51, 59, modeNone, 6, 6);
  int g = createMoving(60, 69, modeAmount, 3, 4), h = createMoving(70, 79, modeNone, 11, 11);
  addSection(d, 35, sectionSplit);
  alignLinkedCoordinates(0);
  EXPECT_EQ(xOf(b), Values(5, 5)) << "the layer is not linked";
  layers[0].flags |= layerCoordinateLink;
  alignLinkedCoordinates(0);
  EXPECT_EQ(xOf(a), Values(0, 100));
  EXPECT_EQ(xOf(b), Values(100, 100));
  EXPECT_EQ(xOf(c), Values(100, 300));
  EXPECT_EQ(xOf(d), Values(300, 2));
  EXPECT_EQ(xOf(objectAt(37, 0)), Values(300, 2)) << "and in the chain's other section";
  EXPECT_EQ(xOf(e), Values(8, 9)) << "random movement has no start";
  EXPECT_EQ(xOf(f), Values(6, 6)) << "does not touch";
  EXPECT_EQ(xOf(g), Values(6, 4));
  EXPECT_EQ(xOf(h), Values(11, 11)) << "an amount has no end";
}

TEST_F(Linked, NeighboursFollowAnEdit) {
  int a = createMoving(0, 9, modeRectilinear, 0, 10), b = createMoving(10, 19, modeNone, 10, 10);
  int c = createMoving(20, 29, modeRectilinear, 10, 20), d = createMoving(30, 39, modeNone, 20, 20);
  int filter = createOver(40, 49, 0, testFilterObject);
  layers[0].flags |= layerCoordinateLink;
  recordLinkedCoordinates(c);
  setX(c, modeRectilinear, 50, 60);
  followLinkedCoordinates(c, true);
  EXPECT_EQ(xOf(a), Values(0, 50));
  EXPECT_EQ(xOf(b), Values(50, 50));
  EXPECT_EQ(xOf(d), Values(60, 60));
  followLinkedCoordinates(filter, true);
  EXPECT_EQ(xOf(d), Values(60, 60)) << "without a picture there is nothing to follow";
}

}  // namespace
}  // namespace zenlay::test
