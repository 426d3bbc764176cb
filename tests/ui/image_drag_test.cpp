// The object's box and the ends of its movement dragged on the image, and moved by keys.
#include <array>
#include <cstring>

#include "tests/ui/image_stage.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/sections.h"

namespace zenlay::test {
namespace {

using platform::mouseCtrl;
using platform::mouseShift;

using ImageDrags = ImageEditing;

TEST_F(ImageDrags, DragsOfAStillObject) {
  struct Row {
    const char* what;
    Point from, to;
    intptr_t state;
    int x, y, zoom, turn;
  };
  const Row rows[] = {
      {"move", inside, {310, 225}, 0, 100, -50, 10000, 0},
      {"move along one axis", inside, {310, 225}, mouseShift, 100, 0, 10000, 0},
      {"the other axis", inside, {310, 260}, mouseShift, 0, 300, 10000, 0},
      {"onto the grid of 50", inside, {370, 250}, mouseCtrl, 500, 0, 10000, 0},  // 70 and 20 pixels
      {"a click on the grid", inside, inside, mouseCtrl, 0, 0, 10000, 0},
      {"beyond the limits", inside, {2000000, 230}, 0, 999999, 0, 10000, 0},
      {"twice as large", corner, {520, 340}, 0, 0, 0, 20000, 0},
      {"half as large", corner, {370, 265}, 0, 0, 0, 5000, 0},
      {"another corner", {220, 190}, {120, 140}, 0, 0, 0, 20000, 0},
      {"in steps of 10 %", corner, {434, 297}, mouseShift, 0, 0, 11000, 0},  // x 1.14
      {"largest", corner, {100420, 50290}, 0, 0, 0, 500000, 0},
      {"a quarter turn", knob, {394, 240}, 0, 0, 0, 10000, 9000},
      {"back a half", knob, {320, 314}, 0, 0, 0, 10000, 18000},
      {"in steps of 15 degrees", knob, {352, 172}, mouseShift, 0, 0, 10000, 3000},  // 25.2 degrees
      {"beside everything", {100, 100}, {200, 200}, 0, 0, 0, 10000, 0},
  };
  for (const Row& row : rows) {
    ObjectRecord before = objects[object];
    bool changes = row.x || row.y || row.zoom != 10000 || row.turn;
    EXPECT_EQ(drag(row.from, row.to, row.state), changes) << row.what;
    EXPECT_EQ((std::array{start(placingX), start(placingY), start(placingZoom), std::abs(start(placingRotation))}),
              (std::array{row.x, row.y, row.zoom, row.turn}))
        << row.what;
    EXPECT_EQ(end(placingX), row.x) << row.what;
    EXPECT_EQ(undoSteps(), changes) << row.what;
    undo();
    EXPECT_EQ(memcmp(&before, objects + object, sizeof before), 0) << row.what;
    resetUndo();
    renderFrame(0);
  }
}

TEST_F(ImageDrags, EndsOfAMovement) {
  struct Row {
    const char* what;
    int frame;
    Point from;
    std::array<int, 4> ends;  // X and Y of the start, then of the end, after 10 pixels to the right and 20 down
  };
  const Row rows[] = {
      {"first frame", 0, {200, 230}, {-900, 200, 1000, 500}},
      {"last frame", 99, {400, 280}, {-1000, 0, 1100, 700}},
      {"in between", 50, {300, 250}, {-900, 200, 1100, 700}},
      {"mark of the start", 50, {220, 240}, {-900, 200, 1000, 500}},
      {"mark of the end", 0, {420, 290}, {-1000, 0, 1100, 700}},
  };
  for (const Row& row : rows) {
    move(row.frame);
    ASSERT_EQ(previewHandleCount, 3);
    EXPECT_EQ(drag(row.from, {row.from.x + 10, row.from.y + 20}), 1) << row.what;
    EXPECT_EQ((std::array{start(placingX), start(placingY), end(placingX), end(placingY)}), row.ends) << row.what;
    EXPECT_EQ(undoSteps(), 1) << row.what;
    resetUndo();
  }
}

TEST_F(ImageDrags, SectionsStayContinuous) {
  move(0);
  int second = addSection(object, 50, sectionSplit);
  ASSERT_GE(second, 0);
  const int32_t middle = objects[second].startValues[placed];
  currentObject = second;
  show(50);
  int x = 320 + middle / 10;
  EXPECT_EQ(drag({x, 250}, {x + 10, 250}), 1);
  EXPECT_EQ(objects[second].startValues[placed], middle + 100);
  EXPECT_EQ(end(placingX), middle + 100) << "the section before ends where this one starts";
  undo();
  EXPECT_EQ(end(placingX), middle);
}

TEST_F(ImageDrags, LinkedNeighboursFollow) {
  objects[object].end = 49;
  int next = add({.start = 50, .end = 99});
  layers[0].flags |= layerCoordinateLink;
  EXPECT_EQ(drag(inside, {310, 225}), 1);
  EXPECT_EQ(start(placingX), 100);
  EXPECT_EQ(objects[next].startValues[placed + placingX], 100);
  EXPECT_EQ(objects[next].startValues[placed + placingY], -50);
  EXPECT_EQ(objects[next].startValues[placed + placingZoom], 10000);
  EXPECT_EQ(undoSteps(), 1);
  undo();
  EXPECT_EQ(start(placingX), 0);
  EXPECT_EQ(objects[next].startValues[placed + placingX], 0);
}

TEST_F(ImageDrags, KeysMoveWhatWasPressedLast) {
  drag({10, 10}, {10, 10});
  EXPECT_EQ(key(platform::keyLeft), 0) << "the host's own key until a handle is pressed";
  drag(inside, inside);
  EXPECT_EQ(key(platform::keyLeft), 1);
  EXPECT_EQ(start(placingX), -10);
  EXPECT_EQ(key(platform::keyDown, mouseShift), 1);
  EXPECT_EQ(start(placingY), 100);
  EXPECT_EQ(key(platform::keyRight, mouseCtrl), 1);
  EXPECT_EQ(start(placingX), -9);
  EXPECT_EQ(key(platform::keyHome), 0);
  setTrack(object, 1, placingX, -999999);
  EXPECT_EQ(key(platform::keyLeft), 1) << "taken, though there is no way to go";
  setTrack(object, 1, placingX, -9);
  EXPECT_EQ(undoSteps(), 3);
  for (int i = 0; i < 5; i++) EXPECT_EQ(key(platform::keyUp, 0, false), 1);  // held down
  imageMessage(messageImageKeyUp, platform::keyUp, 0);
  EXPECT_EQ(start(placingY), 50);
  EXPECT_EQ(undoSteps(), 4);
  undo();
  EXPECT_EQ(start(placingY), 100);
  drag({10, 10}, {10, 10});
  EXPECT_EQ(key(platform::keyLeft), 0);
}

TEST_F(ImageDrags, DragsAreTakenBack) {
  for (bool byKey : {false, true}) {
    send(messageImageMouseDown, inside);
    send(messageImageMouseMove, {400, 300});
    EXPECT_TRUE(imageDragging());
    EXPECT_EQ(start(placingX), 1000);
    EXPECT_EQ(byKey ? key(platform::keyEscape) : send(messageImageRightDown, {400, 300}), 1);
    EXPECT_EQ(start(placingX), 0);
    EXPECT_EQ(undoSteps(), 0);
    EXPECT_EQ(send(messageImageMouseMove, {410, 300}), 0);
    EXPECT_EQ(send(messageImageMouseUp, {410, 300}), 0);
    EXPECT_EQ(start(placingX), 0);
  }
  // Another step came in between: it is not the drag's to take back.
  send(messageImageMouseDown, inside);
  send(messageImageMouseMove, {400, 300});
  beginUndoStep();
  recordUndo(object, undoPosition);
  EXPECT_EQ(send(messageImageRightDown, {400, 300}), 0);
  EXPECT_EQ(undoSteps(), 2);
  resetUndo();
  renderFrame(0);
  send(messageImageMouseDown, {400, 300});
  send(messageImageMouseMove, {410, 300});
  undo();
  EXPECT_EQ(send(messageImageMouseMove, {420, 300}), 0) << "undone meanwhile: the drag is over";
  EXPECT_EQ(undoSteps(), 0);
}

TEST_F(ImageDrags, WhatGoesAwayUnderTheMouse) {
  struct Row {
    const char* what;
    void (*happens)(int object);
  };
  const Row rows[] = {
      {"deleted", [](int o) { dropObject(o), rebuildOrder(), currentObject = -1; }},
      {"another current", [](int) { currentObject = -1; }},
      {"another scene", [](int) { selectScene(1), currentObject = -1; }},
      {"locked", [](int) { layers[0].flags |= layerLocked; }},
      {"saving", [](int) { environment.saving = true; }},
      {"playing", [](int) { environment.playing = true; }},
      {"closed", [](int) { environment.projectOpen = false; }},
      {"aids hidden", [](int) { imageAidsHidden = true; }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    TearDown();
    SetUp();
    send(messageImageMouseDown, inside);
    send(messageImageMouseMove, {310, 230});
    EXPECT_EQ(start(placingX), 100);
    row.happens(object);
    ObjectRecord before = objects[object];
    EXPECT_EQ(send(messageImageMouseMove, {330, 230}), 0);
    EXPECT_EQ(send(messageImageMouseUp, {330, 230}), 0);
    EXPECT_EQ(key(platform::keyLeft), 0);
    EXPECT_EQ(memcmp(&before, objects + object, sizeof before), 0);
    EXPECT_FALSE(imageDragging());
    imageAidsHidden = false;
  }
}

TEST_F(ImageDrags, AGroupTurnsAndScalesWhatIsDragged) {
  int control = addObject({.layer = 1, .effects = {group}});
  setRange(control, 0);
  for (auto [track, value] : {std::pair{0, 1000}, {3, 5000}, {6, 9000}}) setTrack(control, 0, track, value);
  currentObject = object = add({.layer = 2});
  move(0);
  ASSERT_EQ(previewHandleCount, 3);
  // (-100, 0) and (100, 50), halved, a quarter turn clockwise, 100 pixels to the right.
  EXPECT_EQ(std::pair(previewHandles[1].x, previewHandles[1].y), std::pair(420, 190));
  EXPECT_EQ(std::pair(previewHandles[2].x, previewHandles[2].y), std::pair(395, 290));
  EXPECT_EQ(drag({420, 190}, {420, 200}), 1);
  EXPECT_EQ(start(placingX), -800);
  EXPECT_EQ(start(placingY), 0);
  show(99);
  EXPECT_EQ(drag({390, 285}, {380, 285}), 1);  // inside the box
  EXPECT_EQ(end(placingX), 1000);
  EXPECT_EQ(end(placingY), 700);
}

TEST_F(ImageDrags, MarksStandWhereTheMovementLeads) {
  move(0);
  for (int track : {placingX, placingY}) objects[object].modes[placed + track] = modeTeleport;
  show(50);
  EXPECT_EQ(previewHandleCount, 1);  // no section follows to jump to
  EXPECT_EQ(drag({220, 240}, {230, 240}), 1);
  EXPECT_EQ(start(placingX), -900);
  EXPECT_EQ(end(placingX), 1000);
  objects[object].modes[placed + placingX] = modeAmount;
  objects[object].endValues[placed + placingX] = 20;  // 198 pixels in 99 frames
  show(0);
  ASSERT_EQ(previewHandleCount, 3);
  EXPECT_EQ(std::pair(previewHandles[2].x, previewHandles[2].y), std::pair(428, 240));
  EXPECT_EQ(drag({428, 240}, {527, 260}), 1);
  EXPECT_EQ(end(placingX), 30);
  EXPECT_EQ(end(placingY), 500);
}

TEST_F(ImageDrags, APictureOfNoSizeGrowsByItsCorner) {
  setTrack(object, 1, placingZoom, 0);
  show(0);
  EXPECT_EQ(drag({320, 240}, corner), 1);
  EXPECT_EQ(start(placingZoom), 10000);
}

}  // namespace
}  // namespace zenlay::test
