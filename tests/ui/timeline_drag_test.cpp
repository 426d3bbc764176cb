// Objects dragged with the mouse and nudged with the keys. One pixel is one frame; frame 0 stands at x 64.
#include "tests/ui/timeline_stage.h"
#include "zenlay/model/groups.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/timeline/snapping.h"

namespace zenlay::test {
namespace {

class TimelineDrag : public Timeline {};

TEST_F(TimelineDrag, MovesAnObjectAndUndoesItInOneStep) {
  int object = create(100, 199, 1);
  press(xOf(150), rowOf(1));
  EXPECT_EQ(timelineView.dragMode, dragObjects);
  EXPECT_EQ(platform::mouseCapture(), window);
  moveTo(xOf(160), rowOf(1));
  EXPECT_EQ(placeOf(object), (Place{110, 209, 1}));
  moveTo(xOf(130), rowOf(3));
  EXPECT_EQ(placeOf(object), (Place{80, 179, 3}));
  EXPECT_EQ(objects[object].homeLayer, 3);
  EXPECT_EQ(release(xOf(130), rowOf(3)), 1);
  EXPECT_EQ(timelineView.dragMode, dragNone);
  EXPECT_EQ(platform::mouseCapture(), nullptr);
  EXPECT_TRUE(selected().empty());
  EXPECT_EQ(objectAt(100, 3), object);
  undo();
  EXPECT_EQ(placeOf(object), (Place{100, 199, 1}));
}

TEST_F(TimelineDrag, RecordsNothingWhenNothingChanges) {
  int object = create(100, 199, 1);
  beginUndoStep();
  recordUndo(object, undoPosition);
  objects[object].end = 180;
  rebuildOrder();
  drag(150, 1, 150, 1);
  press(xOf(150), rowOf(1));
  moveTo(xOf(150), rowOf(1) + 3);  // within the row
  release(xOf(150), rowOf(1) + 3);
  undo();
  EXPECT_EQ(objects[object].end, 199);
}

TEST_F(TimelineDrag, StaysWithinFramesAndLayers) {
  int top = create(50, 99, 0), lower = create(300, 349, 2);
  click(xOf(320), rowOf(2), ctrl);
  press(xOf(75), rowOf(0), ctrl);
  moveTo(xOf(0), rowOf(0), ctrl);
  EXPECT_EQ(places(), (Places{{0, 49, 0}, {250, 299, 2}}));
  release(xOf(0), rowOf(0), ctrl);
  // Layer 97..99: the lower object stops the upper one.
  setTopLayer(95);
  objects[top].layer = objects[top].homeLayer = 95;
  objects[lower].layer = objects[lower].homeLayer = 97;
  rebuildOrder();
  press(xOf(25), rowOf(95), ctrl);
  moveTo(xOf(25), rowOf(99), ctrl);
  EXPECT_EQ(places(), (Places{{0, 49, 97}, {250, 299, 99}}));
  release(xOf(25), rowOf(99));
}

TEST_F(TimelineDrag, SelectionMovesWhole) {
  std::vector<int> chain = createChain(100, 199, 0, {120, 160});
  int grouped = create(400, 419, 1);
  create(450, 469, 2);  // alone
  groupSelection(std::vector<int>{chain[0], chain[1], chain[2], grouped});
  drag(140, 0, 160, 0);
  EXPECT_EQ(places(), (Places{{120, 139, 0}, {140, 179, 0}, {180, 219, 0}, {420, 439, 1}, {450, 469, 2}}));
  EXPECT_EQ(nextSection(chain[0]), chain[1]);
}

struct CollisionRow {
  const char* what;
  int toFrame;  // where the centre of an object over 100..139 of layer 0 is dragged on layer 1
  int start;    // of the object afterwards
};

TEST_F(TimelineDrag, ObstaclesPushItAside) {
  // Layer 1: 200..259, 300..319. The dragged object is 40 frames long and held by frame 120.
  const CollisionRow rows[] = {
      {"centre before the obstacle's", 225, 160},  // 205..244 overlaps; centre 224.5 < 229.5: ends at 199
      {"centre behind the obstacle's", 235, 260},  // 215..254 overlaps; starts at 260, which is free to 299
      {"free between two", 280, 260},
      {"the gap is large enough", 285, 260},  // 265..304 meets 300..319: before it, 260..299
  };
  for (const CollisionRow& row : rows) {
    SCOPED_TRACE(row.what);
    int first = create(200, 259, 1), second = create(300, 319, 1), object = create(100, 139, 0);
    drag(120, 0, row.toFrame, 1);
    EXPECT_EQ(placeOf(object), (Place{row.start, row.start + 39, 1}));
    deleteObjects(std::vector<int>{first, second, object});
  }
  // Later collisions keep the direction of the first: only 20 frames lie between these two.
  create(200, 259, 1);
  create(280, 319, 1);
  int object = create(100, 139, 0);
  drag(120, 0, 250, 1);
  EXPECT_EQ(placeOf(object), (Place{320, 359, 1}));
}

TEST_F(TimelineDrag, GivesUpWhenThereIsNoRoom) {
  create(0, 259, 1);
  int object = create(100, 139, 0);
  drag(120, 0, 110, 1);  // would have to begin before frame 0
  EXPECT_EQ(placeOf(object), (Place{100, 139, 0}));
  create(260, 900, 1);
  drag(120, 0, 240, 1);  // behind everything is out of view (right frame 563 + ...)
  EXPECT_EQ(placeOf(object), (Place{100, 139, 0}));
}

TEST_F(TimelineDrag, ShiftKeepsTheFrameOnAnotherLayer) {
  int object = create(100, 199, 1);
  press(xOf(150), rowOf(1));
  moveTo(xOf(190), rowOf(1), shift);
  EXPECT_EQ(objects[object].start, 140);
  moveTo(xOf(230), rowOf(2), shift);
  EXPECT_EQ(placeOf(object), (Place{100, 199, 2}));
  release(xOf(230), rowOf(2));
}

struct SnapRow {
  const char* what;
  int toFrame;  // the object over 500..539 of layer 1, held by frame 520
  int start;
};

TEST_F(TimelineDrag, SnapsToWhatIsNear) {
  preferences.object_snap = 1;
  create(200, 239, 0);
  create(300, 319, 2);
  create(100, 110, 1);  // its own layer
  setCursorFrame(400);
  const SnapRow rows[] = {
      {"start to a start, 7 away", 227, 200},  // 207
      {"start to a start, 8 away", 228, 208},
      {"start to an end", 263, 240},  // 243
      {"end to a start", 277, 260},   // 257..296, end + 1 = 297
      {"cursor", 415, 400},           // 395
      {"frame 0", 27, 0},             // 7
      {"never the own layer", 134, 114},
      {"free", 329, 309},  // 300 and 320 are 9 and 11 away
      {"already there", 220, 200},
  };
  for (const SnapRow& row : rows) {
    SCOPED_TRACE(row.what);
    int object = create(500, 539, 1);
    drag(520, 1, row.toFrame, 1);
    EXPECT_EQ(objects[object].start, row.start);
    deleteObjects(std::vector<int>{object});
  }
  setCursorFrame(278);
  int object = create(500, 539, 1);
  drag(520, 1, 295, 1);  // start 275 is 3 from the cursor, end + 1 = 315 is 5 from 320
  EXPECT_EQ(objects[object].start, 278);
}

TEST_F(TimelineDrag, SnapsToBeats) {
  preferences.object_snap = 1;
  preferences.grid = {.grid = 1, .grid_tempo = 1000000, .grid_base = 1, .grid_time = 4};
  int object = create(500, 539, 1);  // 100 BPM at 30 frames per second: a beat every 18 frames
  drag(520, 1, 304 + 20, 1);         // 304 lies 2 before 306
  EXPECT_EQ(objects[object].start, 306);
  setTimelineZoom(14);  // 0.2 pixel a frame: 40 frames in 8 pixels, only bars of 72 frames
  EXPECT_EQ(snapFrame(306, 1, true), 288);
  EXPECT_EQ(snapFrame(325, 1, true), 360);
  preferences.grid.grid_time = 0;
  EXPECT_EQ(snapFrame(306, 1, true), 306);
}

TEST_F(TimelineDrag, ScrollsWhenTheMouseLeavesTheView) {
  int object = create(500, 539, 1);  // right frame: 563
  press(xOf(520), rowOf(1));
  moveTo(64 + 600, rowOf(1));
  EXPECT_EQ(timelineView.leftFrame, 37);
  EXPECT_EQ(objects[object].start, 617);  // the mouse is on frame 637
  moveTo(200, 42 + 5 * 31 + 31);          // 32 pixels below the last row
  EXPECT_EQ(timelineView.topLayer, 1);
  EXPECT_EQ(objects[object].layer, 5);
  moveTo(200, 41);
  moveTo(200, 10);  // 1 and 32 above
  EXPECT_EQ(timelineView.topLayer, 0);
  EXPECT_EQ(objects[object].layer, 0);
  release(200, 10);
}

TEST_F(TimelineDrag, GoesOnScrollingWhileTheMouseRestsOutside) {
  int object = create(300, 339, 1);
  press(xOf(320), rowOf(1));
  moveTo(64 + 573, rowOf(1));  // 10 frames behind the right frame
  EXPECT_EQ(timelineView.leftFrame, 10);
  platform::user::timer(window, dragTimer);
  EXPECT_EQ(timelineView.leftFrame, 20);
  EXPECT_EQ(objects[object].start, 573);
  moveTo(64 + 500, rowOf(1));
  platform::user::timer(window, dragTimer);
  EXPECT_EQ(timelineView.leftFrame, 20) << "inside";
  release(64 + 500, rowOf(1));
  platform::user::timer(window, dragTimer);
  EXPECT_EQ(timelineView.leftFrame, 20);
}

TEST_F(TimelineDrag, EscapeTakesItBack) {
  preferences.pair_move = 0;
  int object = create(300, 399, 1);
  beginUndoStep();
  recordUndo(object, undoPosition);
  const int steps = undoSteps();
  for (int frame : {350, 303, 395}) {
    SCOPED_TRACE(frame);
    press(xOf(frame), rowOf(1));
    moveTo(64 + 573, rowOf(2));
    EXPECT_NE(placeOf(object), (Place{300, 399, 1}));
    platform::user::press(platform::keyEscape);
    EXPECT_EQ(placeOf(object), (Place{300, 399, 1}));
    EXPECT_EQ(timelineView.dragMode, dragNone);
    EXPECT_EQ(undoSteps(), steps);
    EXPECT_EQ(timelineView.leftFrame, 0);
    EXPECT_EQ(currentObject, -1);
    EXPECT_TRUE(selected().empty());
    release(64 + 573, rowOf(2));
    EXPECT_EQ(placeOf(object), (Place{300, 399, 1}));
  }
  moveCursor(100);
  press(xOf(200), 30);
  platform::user::press(platform::keyEscape);
  EXPECT_EQ(fakeHost.currentFrame, 100);
  click(xOf(350), rowOf(1), ctrl);
  int other = create(450, 499, 1);
  press(xOf(420), rowOf(0), ctrl);
  moveTo(xOf(470), rowOf(2), ctrl);
  EXPECT_TRUE(isSelected(other));
  platform::user::key(platform::keyEscape, true);
  EXPECT_EQ(selected(), std::vector<int>{object});
}

TEST_F(TimelineDrag, EndsTheStepOfASetting) {
  create(300, 399, 1);
  currentObject = settings::state.lastObject = create(0, 99, 0);  // whose setting was changed just now
  drag(350, 1, 360, 1);
  EXPECT_EQ(settings::state.lastObject, -1);
}

TEST_F(TimelineDrag, TheSceneGrowsAtTheRelease) {
  create(940, 989, 1);
  setLeftFrame(900);
  EXPECT_EQ(timelineView.leftFrame, 533);  // 1000 - (627 - 64 - 96)
  press(xOf(960), rowOf(1));
  moveTo(xOf(1000), rowOf(1));
  EXPECT_EQ(fakeHost.frameCount, 1000);
  release(xOf(1000), rowOf(1));
  EXPECT_EQ(timelineView.sceneLength, 1030);
  EXPECT_EQ(fakeHost.frameCount, 1030);
}

TEST_F(TimelineDrag, KeysNudgeWithoutSnapping) {
  preferences.object_snap = 1;
  create(0, 99, 0);
  int object = create(100, 149, 1);
  press(xOf(125), rowOf(1));
  platform::user::press(platform::keyRight);
  EXPECT_EQ(objects[object].start, 101);
  platform::user::press(platform::keyLeft);
  platform::user::press(platform::keyLeft);
  EXPECT_EQ(objects[object].start, 99);
  release(xOf(125), rowOf(1));
  EXPECT_EQ(timelineView.cursorFrame, 0);
  undo();
  EXPECT_EQ(objects[object].start, 100);
}

TEST_F(TimelineDrag, LockedLayersAndSavingRefuse) {
  int object = create(100, 199, 1);
  layers[1].flags = layerLocked;
  press(xOf(150), rowOf(1));
  EXPECT_EQ(timelineView.dragMode, dragNone);
  EXPECT_TRUE(selected().empty());
  layers[1].flags = 0;
  environment.saving = true;
  drag(150, 1, 190, 1);
  platform::user::wheel(window, {300, 100}, 1, ctrl);
  platform::user::press(platform::keyRight);
  EXPECT_EQ(placeOf(object), (Place{100, 199, 1}));
  EXPECT_EQ(timelineView.zoomLevel, 19);
  EXPECT_EQ(timelineView.cursorFrame, 0);
  environment.saving = false;
  press(xOf(150), rowOf(1));
  environment.saving = true;  // begins during the drag
  moveTo(xOf(190), rowOf(1));
  release(xOf(190), rowOf(1));
  EXPECT_EQ(placeOf(object), (Place{100, 199, 1}));
  EXPECT_EQ(timelineView.dragMode, dragNone);
}

/// What the random walk does not bring about.
TEST_F(TimelineDrag, WhatHappensMeanwhileLeavesTheModelWhole) {
  struct Row {
    const char* what;
    std::function<void(int object, int other)> happens;
  };
  const Row rows[] = {
      {"the object goes", [](int object, int) { deleteObjects(std::vector<int>{object}); }},
      {"the neighbour goes", [](int, int other) { deleteObjects(std::vector<int>{other}); }},
      {"the capture is lost", [](int, int) { platform::releaseMouse(); }},
      {"the project closes", [this](int, int) { send(messageFileClose); }},
      {"another opens", [this](int, int) { send(messageFileOpen); }},
      {"the window goes and comes", [this](int, int) { send(messageWindowClose), send(messageWindowSetUp); }},
  };
  for (int frame : {150, 103, 195})
    for (const Row& row : rows) {
      SCOPED_TRACE(row.what);
      beginUndoStep();
      int object = create(100, 199, 1), other = create(200, 299, 1);
      press(xOf(frame), rowOf(1));
      moveTo(xOf(frame + 30), rowOf(1));
      row.happens(object, other);
      EXPECT_EQ(modelFault(), "");
      moveTo(xOf(frame + 60), rowOf(2));
      release(xOf(frame + 60), rowOf(2));
      EXPECT_EQ(modelFault(), "");
      EXPECT_EQ(timelineView.dragMode, dragNone);
      EXPECT_EQ(platform::mouseCapture(), nullptr);
      for (int i : selection()) EXPECT_TRUE(onTimeline(i));
      timelineView.sceneLength = fakeHost.frameCount = 1000;
      deleteAllObjects();
    }
}

}  // namespace
}  // namespace zenlay::test
