// A random walk over every operation of the model: sound after every step, and undone byte for byte. The same
// operations then run while memory is refused at every growth in turn.
#include <cstring>
#include <random>

#include "tests/model/fixture.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"

namespace zenlay::test {
namespace {

constexpr int walkLayers = 12, walkFrames = 280;
constexpr int crowded = 150;  // objects; with more of them no copies are made

std::mt19937 random_;
int pick(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

/// A random object of the current scene, or -1.
int anyObject() { return sceneObjectCount ? indexOf(layerOrder[pick(sceneObjectCount)]) : -1; }

/// Whole chains, as a selection holds them.
std::vector<int> anySelection() {
  std::vector<int> selection;
  for (int i = pick(5); i >= 0; i--)
    if (int object = anyObject(); object >= 0)
      for (int section : sectionsOf(object)) selection.push_back(section);
  return selection;
}

int anyFrame(int object) {
  FrameRange range = chainRange(object);
  return range.first + pick(range.last - range.first + 1);
}

void recordChain(int object) { recordUndo(object, undoSnapshot | undoChain); }

int create() { return createObject(pick(walkFrames), pick(walkLayers), pick(testEffectCount), -1) >= 0; }

int putEffect(int object) {
  recordChain(object);
  int slot = addEffect(object, pick(testEffectCount));
  if (slot >= 0) setChainSlotDefaults(object, slot);
  return slot >= 0;
}

int takeEffect(int object) {
  int used = usedSlots(object);
  removeEffect(object, pick(used));
  return usedSlots(object) < used;
}

int shiftEffect(int object) { return moveSlot(object, pick(usedSlots(object)), pick(2) ? 1 : -1); }

int addPoint(int object) {
  preferences.divide_mode = pick(3) > 0;
  for (ValueSet& set : valueSets)
    for (int32_t& value : set.values) value = pick(1000);
  const SectionMode modes[] = {sectionSplit, sectionSplit, sectionSplitFirstValues, sectionSplitSecondValues};
  int frame = objects[object].start + pick(objects[object].end - objects[object].start + 1);
  return addSection(object, frame, modes[pick(4)]) >= 0;
}

int append(int object) { return addSection(object, 0, sectionAppend) >= 0; }
int removePoint(int object) { return removeSection(object) >= 0; }
int split(int object) { return splitObject(object, anyFrame(object)) >= 0; }

int splitSeveral(int object) {
  preferences.divide_group = pick(2);
  return !splitObjects(anySelection(), anyFrame(object)).empty();
}

int cut(int object) {
  int first = anyFrame(object);
  return !cutAtRange(anySelection(), first, first + pick(20)).empty();
}

int deleteOne(int object) {
  int count = objectCount;
  deleteObject(object);
  return objectCount < count;
}

int deleteSeveral(int) {
  deleteObjects(anySelection());
  return 1;
}

void editValues(int object) {
  ObjectRecord& o = objects[object];
  constexpr int32_t modes[] = {modeNone,   modeRectilinear, modeCurve,      modeTeleport, modeIgnoreMidpoints,
                               modeAmount, modeRandom,      modeAccelerate, modeRepeat,   modeScript | 3 << 16};
  for (int t = 0; t < o.trackCount; t++) {
    if (pick(3) == 0) o.modes[t] = modes[pick(10)] | (pick(4) ? 0 : modeAccelerationBit);
    o.startValues[t] = pick(1000);
    o.endValues[t] = pick(1000);
    o.params[t] = pick(5);
  }
  for (int c = 0; c < o.checkCount; c++) o.checks[c] = pick(2);
  o.flags ^= pick(2) ? objectClipAbove : objectCameraTarget;
  syncChain(object);
}

int edit(int object) {
  recordChain(object);
  editValues(object);
  if (uint8_t* extra = extraDataOf(object, 0)) extra[0] = static_cast<uint8_t>(pick(256));
  return 1;
}

int editLinked(int object) {
  recordChain(object);
  bool atOnce = pick(2);
  if (atOnce) recordLinkedCoordinates(object);
  editValues(object);
  followLinkedCoordinates(object, !atOnce);
  return 1;
}

int changeSlotFlags(int object) {
  recordChain(object);
  setSlotFlags(object, pick(usedSlots(object)), static_cast<uint8_t>(pick(8)));
  return 1;
}

int rename(int object) {
  recordChain(object);
  snprintf(objects[headOf(object)].name, maxName, "object %d", pick(100));
  return 1;
}

/// As a drag does: the chain goes where it fits.
int drag(int object) {
  FrameRange range = chainRange(object);
  int frames = pick(walkFrames) - range.first, layer = pick(walkLayers);
  int found = objectsInRange(range.first + frames, range.last + frames, layer);
  if (found >= 0) return 0;
  recordUndo(object, undoPosition | undoChain);
  for (int section : sectionsOf(object)) {
    objects[section].start += frames;
    objects[section].end += frames;
    objects[section].layer = objects[section].homeLayer = layer;
  }
  rebuildOrder();
  return 1;
}

int lengthOfSection(int object) { return setSectionLength(object, 1 + pick(40)) > 0; }
int lengthOfObject(int object) { return setObjectLength(object, 1 + pick(80)) > 0; }
int spaceEvenly(int object) { return spaceMidpointsEvenly(object); }

int layerIn(int) {
  insertLayer(pick(walkLayers));
  return 1;
}
int layerOut(int) {
  deleteLayer(walkLayers - 1 + pick(3));
  return 1;
}
int emptyFrames(int) { return insertEmptyFrames(pick(walkFrames), 1 + pick(3)); }

int layerFlags(int) {
  int layer = pick(walkLayers);
  recordUndo(layer | undoLayerTarget, undoLayer);
  layers[layer].flags ^= pick(2) ? layerCoordinateLink : layerHidden;
  alignLinkedCoordinates(layer);
  return 1;
}

int layerName(int) {
  int layer = pick(walkLayers);
  recordUndo(layer | undoLayerTarget, undoLayer);
  return setLayerName(currentScene, layer, std::string(static_cast<size_t>(1 + pick(60)), 'a').c_str());
}

int copyAndPaste(int object) {
  if (objectCount > crowded) return 0;
  clearClipboard();
  int copied = pick(4) ? copyChainToClipboard(object) : copyToClipboard(object);
  if (int other = anyObject(); pick(3) == 0) copied = copied && copyToClipboard(other);
  return pasteClipboard(pick(walkFrames), pick(walkLayers), nullptr, nullptr) >= 0;
}

int duplicate(int) { return objectCount <= crowded && duplicateObjects(anySelection(), pick(walkFrames)) >= 0; }

int group(int) {
  groupSelection(anySelection());
  return 1;
}
int ungroup(int) {
  ungroupSelection(anySelection());
  return 1;
}

struct Operation {
  const char* name;
  int (*run)(int object);  // an object of the scene; 0 when it was refused
  int weight;
  bool beginsStep = false;  // by itself, when it changes something
};

const Operation operations[] = {
    {"create", [](int) { return create(); }, 8},
    {"putEffect", putEffect, 4},
    {"takeEffect", takeEffect, 2},
    {"shiftEffect", shiftEffect, 3},
    {"addPoint", addPoint, 6},
    {"append", append, 3},
    {"removePoint", removePoint, 3},
    {"split", split, 4},
    {"splitSeveral", splitSeveral, 1},
    {"cut", cut, 1},
    {"deleteOne", deleteOne, 4},
    {"deleteSeveral", deleteSeveral, 2},
    {"edit", edit, 6},
    {"editLinked", editLinked, 3},
    {"changeSlotFlags", changeSlotFlags, 2},
    {"rename", rename, 1},
    {"drag", drag, 4},
    {"lengthOfSection", lengthOfSection, 3},
    {"lengthOfObject", lengthOfObject, 3},
    {"spaceEvenly", spaceEvenly, 2},
    {"insertLayer", layerIn, 1},
    {"deleteLayer", layerOut, 1},
    {"emptyFrames", emptyFrames, 1},
    {"layerFlags", layerFlags, 2},
    {"layerName", layerName, 1},
    {"group", group, 3, true},
    {"ungroup", ungroup, 1, true},
    {"copyAndPaste", copyAndPaste, 2},
    {"duplicate", duplicate, 1},
};

const Operation& anyOperation() {
  int whole = 0;
  for (const Operation& operation : operations) whole += operation.weight;
  int at = pick(whole);
  const Operation* chosen = operations;
  while (at >= chosen->weight) at -= chosen++->weight;
  return *chosen;
}

int run(const Operation& operation) {
  if (sceneObjectCount == 0 && operation.beginsStep) beginUndoStep();
  if (sceneObjectCount == 0) return create();
  return operation.run(anyObject());
}

/// All that editing changes, but for where extra data lies.
std::string image() {
  std::string bytes;
  auto add = [&](const void* data, size_t size) { bytes.append(static_cast<const char*>(data), size); };
  for (int i = 0; i < objectCapacity; i++) {
    if (!objects[i].flags) continue;
    ObjectRecord o = objects[i];
    o.extraDataBlock = 0;
    add(&i, sizeof i);
    add(&o, sizeof o);
    if (o.extraDataSize) add(extraDataBlockOf(i), o.extraDataSize);
  }
  for (int layer = 0; layer < layersPerScene; layer++) {
    add(&layers[layer].flags, sizeof layers[layer].flags);
    bytes += layers[layer].name ? layers[layer].name : "";
    bytes += '\0';
  }
  return bytes;
}

void startWalk(unsigned seed) {
  random_.seed(seed);
  setZoomLevel(22);  // new objects of 17 frames
}

/// Undoes the newest `steps` steps, each of which gives back the model it started from.
void unwind(std::vector<size_t>& before, int steps) {
  for (; steps > 0; steps--) {
    undo();
    ASSERT_EQ(modelFault(), "");
    ASSERT_EQ(std::hash<std::string>{}(image()), before.back()) << before.size() << " steps from the start";
    before.pop_back();
  }
}

using EditingWalk = Model;

TEST_F(EditingWalk, EveryStepIsSoundAndUndone) {
  startWalk(11);
  std::vector<size_t> before;  // hash of the model before each step
  int undone = 0, done = 0, dropped = 0;
  for (int step = 0; step < 16000; step++) {
    before.push_back(std::hash<std::string>{}(image()));
    const Operation& operation = anyOperation();
    if (!operation.beginsStep) beginUndoStep();
    done += run(operation);
    // No step is begun when nothing changes.
    if (operation.beginsStep && std::hash<std::string>{}(image()) == before.back()) before.pop_back();
    ASSERT_EQ(modelFault(), "") << "step " << step << ", " << operation.name;
    ASSERT_LE(undoSteps(), static_cast<int>(before.size()));
    dropped += undoSteps() < static_cast<int>(before.size());
    bool changesScene = step % 4000 == 3999;
    int steps = changesScene ? undoSteps() : step % 60 == 0 ? pick(std::max(undoSteps(), 1)) % 30 : 0;
    undone += steps;
    ASSERT_NO_FATAL_FAILURE(unwind(before, steps)) << "step " << step << ", " << operation.name;
    if (!changesScene) continue;
    before.clear();
    resetUndo();
    switchScene(pick(3), nullptr, nullptr);
    timelineView.sceneLength = 300;
    setZoomLevel(22);
    ASSERT_EQ(modelFault(), "");
  }
  EXPECT_GT(done, 12000);
  EXPECT_GT(undone, 6000);
  EXPECT_GT(dropped, 100);
}

/// No free unit in the region and no free record in the table.
void useUpMemory() {
  auto unitsFree = [] {
    ExtraDataRegion region = extraDataRegion();
    int free = 0;
    for (uint32_t at = 0, length; at < region.size; at += length ? length : extraDataUnit) {
      memcpy(&length, region.bytes + at, sizeof length);
      free += length == 0;
    }
    return free;
  };
  int frame = 0;
  for (int units = unitsFree(); units > 0; units--) ASSERT_GE(createObject(20 * frame++, 98, testGroup, -1), 0);
  for (int free = objectCapacity - objectCount; free > 0; free--)
    ASSERT_GE(createObject(20 * frame++, 99, testFilterObject, -1), 0);
}

TEST_F(EditingWalk, RefusedMemoryLosesNothing) {
  int refused = 0;
  for (const Operation& operation : operations) {
    for (unsigned seed = 0; seed < 4; seed++) {
      bool hit = true;
      for (int growth = 1; hit; growth++) {
        SCOPED_TRACE(testing::Message() << operation.name << ", seed " << seed << ", growth " << growth);
        startModel();
        startWalk(5);
        for (int step = 0; step < 120; step++) run(anyOperation());
        ASSERT_NO_FATAL_FAILURE(useUpMemory());
        freeUndo();
        random_.seed(seed);
        const std::string before = image();
        growthToRefuse = growth;
        if (!operation.beginsStep) beginUndoStep();
        int ok = run(operation);
        hit = refuseGrowth;
        refused += hit;
        growthToRefuse = 0;
        refuseGrowth = false;
        ASSERT_EQ(modelFault(), "");
        ASSERT_TRUE(ok || image() == before) << "a refused operation changed the model";
        if (undoSteps() == 0) continue;
        const std::string after = image();
        refuseGrowth = true;
        undo();
        refuseGrowth = false;
        ASSERT_EQ(modelFault(), "");
        ASSERT_TRUE(image() == before || image() == after) << "half undone";
        if (image() == before) continue;
        undo();
        ASSERT_TRUE(image() == before) << "undone";
      }
    }
  }
  EXPECT_GT(refused, 80);
}

}  // namespace
}  // namespace zenlay::test
