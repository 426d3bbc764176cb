// Commands on objects: clipboard, cuts, midpoints, lengths, groups, flags, and what they act on.
#include "tests/ui/commands_stage.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/sections.h"

namespace zenlay::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class ObjectCommands : public CommandsStage {};

TEST_F(ObjectCommands, DeleteTakesTheSelectionElseTheCurrentObject) {
  int a = createChain(0, 99, 0, {50}), b = create(0, 99, 1), c = create(0, 99, 2);
  showObject(c);
  select({a, b});
  runUndoable(commandDelete, 0, [&] {
    EXPECT_EQ(places(), (Places{{0, 99, 2}}));
    EXPECT_THAT(selected(), IsEmpty());
    EXPECT_EQ(currentObject, c);
  });
  clearSelection();
  showObject(a);
  runUndoable(commandDelete, 0, [&] { EXPECT_EQ(places(), (Places{{0, 99, 1}, {0, 99, 2}})); });
  showObject(-1);
  clearSelection();
  expectRefused(commandDelete);
}

TEST_F(ObjectCommands, CopyAndPasteAtTheClick) {
  int a = createChain(10, 29, 1, {20});
  showObject(a);
  EXPECT_EQ(runCommand(commandCopy, 0), 1);
  EXPECT_EQ(clipboardEntries(), 2);
  click(100, 5);
  runUndoable(commandPaste, 0, [&] {
    EXPECT_EQ(places(), (Places{{10, 19, 1}, {20, 29, 1}, {100, 109, 5}, {110, 119, 5}}));
    EXPECT_EQ(currentObject, objectAt(100, 5));
  });
  click(290, 5);  // past the end: the scene grows
  EXPECT_EQ(runCommand(commandPaste, 0), 1);
  EXPECT_EQ(timelineView.sceneLength, 310);
  EXPECT_EQ(fakeHost.frameCount, 310);
  clearClipboard();
  expectRefused(commandPaste);
}

TEST_F(ObjectCommands, PastingSnapsTheClick) {
  int a = create(10, 29, 1);
  create(0, 93, 3);
  showObject(a);
  runCommand(commandCopy, 0);
  preferences.object_snap = 1;
  click(101, 5);  // the end of the object on layer 3 lies 7 frames, that is 7 pixels, before it
  runUndoable(commandPaste, 0, [&] { EXPECT_EQ(placeOf(objectAt(95, 5)), (Place{94, 113, 5})); });
  click(102, 5);
  runUndoable(commandPaste, 0, [&] { EXPECT_EQ(placeOf(objectAt(103, 5)), (Place{102, 121, 5})); });
}

TEST_F(ObjectCommands, ACopyThatDoesNotFitIsToldOnceAndLeavesNothing) {
  int a = create(0, 9, 0), b = create(0, 9, 1);
  select({a, b});
  freeClipboard();
  refuseGrowth = true;
  EXPECT_EQ(runCommand(commandCopy, 0), 0) << "nothing may be cut";
  refuseGrowth = false;
  EXPECT_THAT(boxes(), ElementsAre("Copy buffer is not enough"));
  EXPECT_EQ(clipboardEntries(), 0);
}

TEST_F(ObjectCommands, DuplicatesOnTheFirstLayersThatAreFree) {
  int a = create(0, 49, 0), b = create(20, 69, 1);
  create(120, 129, 1);  // in the way of the second, then of the first
  select({a, b});
  moveCursor(90);
  runUndoable(commandDuplicate, 0, [&] {
    EXPECT_EQ(places(), (Places{{0, 49, 0}, {20, 69, 1}, {120, 129, 1}, {90, 139, 2}, {110, 159, 3}}));
    EXPECT_EQ(currentObject, objectAt(90, 2));
  });
  moveCursor(299);
  EXPECT_EQ(runCommand(commandDuplicate, 0), 1);
  EXPECT_EQ(timelineView.sceneLength, 299 + 70);
  select({objectAt(0, 0)});
  for (int layer = 0; layer < layersPerScene; layer++)
    if (objectAt(0, layer) < 0) create(0, 9, layer);
  moveCursor(5);
  expectRefused(commandDuplicate);  // no layer is free there
}

TEST_F(ObjectCommands, SplitsAtTheClickOrTheCursor) {
  int a = create(0, 99, 0), b = create(30, 99, 1), c = create(40, 99, 2);
  select({a, b});
  showObject(c);
  click(50, 0);
  moveCursor(70);
  runUndoable(commandSplit, 0, [&] {
    EXPECT_EQ(places(), (Places{{0, 49, 0}, {50, 99, 0}, {30, 49, 1}, {50, 99, 1}, {40, 99, 2}}));
  });
  runUndoable(commandSplitAtCursor, 0, [&] { EXPECT_EQ(objectAt(70, 0), objectAt(99, 0)); });
  preferences.add_pt_mode = 1;
  runUndoable(commandSplit, 0, [&] { EXPECT_EQ(placeOf(a), (Place{0, 69, 0})); });
  clearSelection();
  runUndoable(commandSplitAtCursor, 0, [&] {
    EXPECT_EQ(placeOf(a), (Place{0, 99, 0}));
    EXPECT_EQ(placeOf(c), (Place{40, 69, 2}));
    EXPECT_EQ(currentObject, objectAt(70, 2)) << "the piece under the cursor is current";
  });
  preferences.config_move = 0;
  showObject(c);
  runUndoable(commandSplitAtCursor, 0, [&] { EXPECT_EQ(currentObject, c); });
  moveCursor(20);
  expectRefused(commandSplitAtCursor);
}

TEST_F(ObjectCommands, CutsAtTheHostsSelection) {
  int a = create(0, 99, 0), b = create(40, 45, 1);
  select({a, b});
  expectRefused(commandCut);  // the whole scene is selected
  fakeHost.selectionFirst = 30;
  fakeHost.selectionLast = 59;
  runUndoable(commandCut, 0, [&] {
    EXPECT_EQ(places(), (Places{{0, 29, 0}, {30, 59, 0}, {60, 99, 0}, {40, 45, 1}}));
    EXPECT_THAT(selected(), UnorderedElementsAre(a, b, objectAt(30, 0), objectAt(60, 0)));
  });
}

TEST_F(ObjectCommands, Midpoints) {
  int a = create(0, 99, 0), b = create(200, 249, 1);
  select({a, b});
  showObject(b);
  click(25, 0);
  moveCursor(60);
  runUndoable(commandAddMidpoint, 0, [&] {
    EXPECT_EQ(places(), (Places{{0, 24, 0}, {25, 99, 0}, {200, 249, 1}}));
    EXPECT_EQ(headOf(objectAt(25, 0)), a);
  });
  preferences.add_pt_mode = 1;
  runUndoable(commandAddMidpoint, 0, [&] { EXPECT_EQ(placeOf(a), (Place{0, 59, 0})); });
  expectRefused(commandAddMidpointAtCursor);  // the cursor is outside of the current object
  moveCursor(220);
  runUndoable(commandAddMidpointAtCursor, 0, [&] { EXPECT_EQ(placeOf(b), (Place{200, 219, 1})); });
  int c = createChain(0, 99, 3, {30, 50});
  clickPosition.section = objectAt(30, 3);
  runUndoable(commandRemoveMidpoint, 0, [&] {
    EXPECT_EQ(placeOf(c), (Place{0, 49, 3}));
    EXPECT_EQ(clickPosition.section, -1);
  });
  expectRefused(commandRemoveMidpoint);
  select({c});
  runUndoable(commandSpaceMidpointsByTime, 0, [&] {
    EXPECT_EQ(placeOf(c), (Place{0, 32, 3}));
    EXPECT_EQ(placeOf(objectAt(99, 3)), (Place{67, 99, 3}));
  });
  expectRefused(commandSpaceMidpointsByDistance);
}

TEST_F(ObjectCommands, LengthOfTheSelectionOrOfOneSection) {
  int a = createChain(0, 99, 0, {50}), b = create(10, 29, 1);
  showObject(objectAt(50, 0));
  answerDialog("40");
  runUndoable(commandChangeLength, 0, [&] { EXPECT_EQ(placeOf(objectAt(50, 0)), (Place{50, 89, 0})); });
  select({b, a});
  answerDialog("400");
  runUndoable(commandChangeLength, 0, [&] {
    EXPECT_EQ(places(), (Places{{0, 199, 0}, {200, 399, 0}, {10, 409, 1}}));
    EXPECT_EQ(timelineView.sceneLength, 410);
  });
  answerDialog("40");
  platform::focusWindow(settingsWindow());
  EXPECT_EQ(runHostCommand(commandChangeLength, 0), 1);
  EXPECT_EQ(places(), (Places{{0, 49, 0}, {50, 89, 0}, {10, 29, 1}}));
  EXPECT_THAT(titles,
              ElementsAre("Change of length (section)", "Change of length (overall)", "Change of length (section)"));
}

TEST_F(ObjectCommands, EmptyFramesBehindTheCursor) {
  create(0, 99, 0);
  create(100, 199, 0);
  create(150, 299, 1);
  moveCursor(100);
  answerDialog("20");
  runUndoable(commandInsertEmptyFrames, 0, [&] {
    EXPECT_EQ(places(), (Places{{0, 99, 0}, {120, 219, 0}, {170, 319, 1}}));
    EXPECT_EQ(timelineView.sceneLength, 320);
  });
  answerDialog("0");
  expectRefused(commandInsertEmptyFrames);
}

TEST_F(ObjectCommands, Groups) {
  int a = create(0, 9, 0), b = create(0, 9, 1);
  expectRefused(commandGroup);
  select({a, b});
  expectRefused(commandUngroup);
  runUndoable(commandGroup, 0, [&] {
    EXPECT_EQ(objects[a].group, 1);
    EXPECT_EQ(objects[b].group, 1);
  });
  objects[a].group = objects[b].group = 4;
  runUndoable(commandUngroup, 0, [&] { EXPECT_EQ(objects[a].group + objects[b].group, 0); });
}

TEST_F(ObjectCommands, FlagsOfTheTargetOrOfTheCurrentObject) {
  int a = create(0, 9, 0, fxGraphic), b = createChain(0, 9, 1, {5}), c = create(0, 9, 2, fxGraphic);
  int sound = create(0, 9, 3, fxAudioFile);
  showObject(c);
  select({a, b, sound});
  runUndoable(commandClipObject, 0, [&] {
    for (int object : {a, b, objectAt(5, 1)}) EXPECT_TRUE(objects[object].flags & objectClipAbove);
    for (int object : {c, sound}) EXPECT_FALSE(objects[object].flags & objectClipAbove);
  });
  EXPECT_EQ(runHostCommand(commandClipObject, 0), 1);
  EXPECT_TRUE(objects[c].flags & objectClipAbove);
  EXPECT_FALSE(objects[a].flags & objectClipAbove);
  objects[a].flags |= objectCameraTarget;
  objects[c].flags &= ~objectCameraTarget;
  runUndoable(commandCameraTarget, 0, [&] { EXPECT_FALSE(objects[a].flags & objectCameraTarget); });
  EXPECT_EQ(runHostCommand(commandCameraTarget, 0), 1);
  EXPECT_TRUE(objects[c].flags & objectCameraTarget);
  select({sound});
  expectRefused(commandCameraTarget);
}

TEST_F(ObjectCommands, OfTheHostsMainWindowOnly) {
  int a = create(0, 9, 2);
  showObject(a);
  moveCursor(40);
  for (platform::Window* window : {timeline, settingsWindow()}) {
    platform::focusWindow(window);
    for (int id : {commandHostCopy, commandHostPaste, commandHostDelete}) {
      runHostCommand(id, 0);
      EXPECT_EQ(clipboardEntries(), 0);
    }
  }
  platform::focusWindow(main);
  runHostCommand(commandHostCopy, 0);
  EXPECT_EQ(clipboardEntries(), 1);
  EXPECT_EQ(runHostCommand(commandHostPaste, 0), 1);
  EXPECT_EQ(places(), (Places{{0, 9, 2}, {40, 49, 2}}));
  EXPECT_EQ(runHostCommand(commandHostDelete, 0), 1);
  EXPECT_EQ(places(), (Places{{0, 9, 2}}));
}

}  // namespace
}  // namespace zenlay::test
