// Clicks, range selection, keys and context menus of the timeline.
#include <algorithm>

#include "tests/ui/timeline_stage.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/groups.h"
#include "zenlay/ui/commands/command_ids.h"

namespace zenlay::test {
namespace {

class TimelineSelection : public Timeline {};

void tapCtrl() {
  for (bool down : {true, false}) platform::user::key(platform::keyCtrl, down);
}

std::vector<int> sorted(std::vector<int> list) {
  std::sort(list.begin(), list.end());
  return list;
}

struct HitRow {
  const char* what;
  int x;      // relative to the x of frame 100
  int found;  // 0, 1, 2: the objects below; -1 none
};

TEST_F(TimelineSelection, APressFindsTheObjectItIsDeepestIn) {
  int list[] = {create(100, 109, 1), create(110, 129, 1), create(140, 140, 1)};
  const HitRow rows[] = {
      {"9 left of the first", -9, -1},
      {"8 left", -8, 0},
      {"last column", 9, 0},
      {"first column of the next", 10, 1},
      {"7 behind the second", 36, 2},
      {"nearer to the third", 35, 2},
      {"as near: the earlier", 34, 1},
      {"8 behind the last", 48, 2},
      {"9 behind", 49, -1},
  };
  for (const HitRow& row : rows) {
    SCOPED_TRACE(row.what);
    int object = objectUnder({xOf(100) + row.x, rowOf(1)});
    EXPECT_EQ(object, row.found < 0 ? -1 : list[row.found]);
  }
  EXPECT_EQ(objectUnder({xOf(105), 42 + 31 - 1}), -1);
  EXPECT_EQ(objectUnder({xOf(105), 42 + 31}), list[0]);
  EXPECT_EQ(objectHolding({xOf(99), rowOf(1)}), -1);
  EXPECT_EQ(objectHolding({xOf(100), rowOf(1)}), list[0]);
  setTimelineZoom(0);  // everything within a pixel: the earliest
  EXPECT_EQ(objectUnder({64, rowOf(1)}), list[0]);
}

TEST_F(TimelineSelection, ClicksSelectOnlyWhileCtrlIsHeld) {
  int a = create(100, 199, 0), b = create(300, 399, 0);
  press(xOf(150), rowOf(0));
  EXPECT_EQ(selected(), std::vector<int>{a});
  release(xOf(150), rowOf(0));
  EXPECT_TRUE(selected().empty());
  click(xOf(150), rowOf(0), ctrl);
  click(xOf(350), rowOf(0), ctrl);
  EXPECT_EQ(selected(), (std::vector<int>{a, b}));
  click(xOf(150), rowOf(0), ctrl);
  EXPECT_EQ(selected(), std::vector<int>{b});
  press(xOf(350), rowOf(0), ctrl);  // moved: stays
  moveTo(xOf(351), rowOf(0), ctrl);
  release(xOf(351), rowOf(0), ctrl);
  EXPECT_EQ(selected(), std::vector<int>{b});
}

TEST_F(TimelineSelection, TakesChainsAndGroups) {
  std::vector<int> chain = createChain(100, 299, 0, {200});
  int grouped = create(100, 199, 2), locked = create(100, 199, 3);
  create(100, 199, 4);  // alone
  groupSelection(std::vector<int>{chain[0], chain[1], grouped, locked});
  layers[3].flags = layerLocked;
  press(xOf(250), rowOf(0), ctrl);
  EXPECT_EQ(selected(), (std::vector<int>{chain[1], chain[0], grouped}));
  release(xOf(250), rowOf(0), ctrl);
  click(xOf(150), rowOf(0), ctrl);  // takes its chain out
  EXPECT_EQ(selected(), std::vector<int>{grouped});
  platform::user::mouse(window, platform::messageLeftDown, {30, rowOf(0)}, ctrl);  // header: the layer
  EXPECT_EQ(sorted(selected()), sorted({chain[0], chain[1], grouped}));
  layers[0].flags = layerLocked;
  dropUnselectable();
  EXPECT_EQ(selected(), std::vector<int>{grouped});
}

TEST_F(TimelineSelection, CtrlShiftTakesEverythingBetween) {
  int a = create(100, 199, 0), between = create(150, 160, 1), b = create(300, 349, 2), edge = create(349, 400, 0);
  create(50, 99, 1);    // before
  create(200, 249, 3);  // below
  click(xOf(150), rowOf(0), ctrl);
  click(xOf(325), rowOf(2), ctrl | shift);
  EXPECT_EQ(sorted(selected()), sorted({a, between, b, edge}));
}

TEST_F(TimelineSelection, TheRubberBandOnlyAdds) {
  std::vector<int> chain = createChain(100, 199, 0, {150});
  int b = create(210, 240, 1), c = create(300, 320, 2);
  press(xOf(120), 30, ctrl);  // on the ruler
  EXPECT_EQ(timelineView.dragMode, dragRange);
  moveTo(xOf(215), rowOf(1), ctrl);
  EXPECT_EQ(sorted(selected()), sorted({chain[0], chain[1], b}));
  moveTo(xOf(205), rowOf(0), ctrl);
  release(xOf(205), rowOf(0), ctrl);
  EXPECT_EQ(timelineView.dragMode, dragNone);
  EXPECT_EQ(sorted(selected()), sorted({chain[0], chain[1], b}));
  // Releasing Ctrl ends the band and lets go.
  press(xOf(280), rowOf(3), ctrl);
  moveTo(xOf(310), rowOf(2), ctrl);
  EXPECT_TRUE(isSelected(c));
  tapCtrl();
  EXPECT_EQ(timelineView.dragMode, dragNone);
  EXPECT_TRUE(selected().empty());
}

TEST_F(TimelineSelection, TheRubberBandStaysWhereItBeganInTheProject) {
  int a = create(100, 110, 0), b = create(600, 610, 1), below = create(300, 310, 7);
  press(xOf(90), rowOf(0), ctrl);
  moveTo(xOf(95), rowOf(0), ctrl);
  EXPECT_TRUE(selected().empty());
  setLeftFrame(400);
  moveTo(xOf(620), rowOf(1), ctrl);
  EXPECT_EQ(sorted(selected()), sorted({a, b}));
  // A mouse that rests below the rows: one more row each time, and none when it is back inside.
  moveTo(xOf(620), rowsBottom() + 31, ctrl);
  platform::user::timer(window, dragTimer);
  platform::user::timer(window, dragTimer);
  platform::user::timer(window, dragTimer);
  EXPECT_EQ(timelineView.topLayer, 3);
  EXPECT_TRUE(isSelected(below));
  moveTo(xOf(620), rowOf(5), ctrl);
  platform::user::timer(window, dragTimer);
  EXPECT_EQ(timelineView.topLayer, 3);
  release(xOf(620), rowOf(5), ctrl);
}

TEST_F(TimelineSelection, AReleaseOfCtrlIsNotMissed) {
  int object = create(100, 199, 0);
  auto select = [&] {
    click(xOf(150), rowOf(0), ctrl);
    EXPECT_TRUE(isSelected(object));
  };
  auto moveFreely = [&](intptr_t state) {
    platform::user::mouse(window, platform::messageMouseMove, {300, 60}, state);
  };
  select();
  environment.saving = true;
  tapCtrl();
  EXPECT_TRUE(selected().empty()) << "while the host saves";
  environment.saving = false;
  select();
  platform::user::holdModifiers(ctrl);
  send(platform::messageActivated, 0);
  moveFreely(ctrl);
  EXPECT_TRUE(isSelected(object));
  platform::user::holdModifiers(0);
  moveFreely(0);
  EXPECT_TRUE(selected().empty()) << "while another window had the keys";
}

TEST_F(TimelineSelection, IndicesDoNotOutliveTheirObjects) {
  std::vector<int> chain = createChain(100, 199, 0, {150});
  int other = create(300, 399, 3), between = create(200, 250, 1);
  platform::user::mouse(window, platform::messageRightDown, {xOf(150), rowOf(0)}, 0);
  ASSERT_EQ(clickPosition.section, chain[1]);
  click(xOf(120), rowOf(0), ctrl);
  clearSelection();
  deleteObjects(chain);
  EXPECT_EQ(clickPosition.section, -1);
  EXPECT_EQ(create(600, 699, 0), chain[0]) << "the record is in use again";
  click(xOf(220), rowOf(1), ctrl);
  press(xOf(350), rowOf(3), ctrl | shift);  // from the object clicked last, not from where the deleted one was
  EXPECT_EQ(selected(), (std::vector<int>{between, other}));
  release(xOf(350), rowOf(3), ctrl);
}

TEST_F(TimelineSelection, TheCurrentObjectFollowsClicks) {
  int a = create(100, 199, 0), b = create(300, 399, 0);
  click(xOf(150), rowOf(0));
  EXPECT_EQ(currentObject, -1) << "none was current";
  platform::user::mouse(window, platform::messageLeftDoubleClick, {xOf(150), rowOf(0)}, platform::mouseLeft);
  EXPECT_EQ(currentObject, a);
  click(xOf(350), rowOf(0));
  EXPECT_EQ(currentObject, b);
  click(xOf(150), rowOf(0), ctrl);
  EXPECT_EQ(currentObject, a);
  click(xOf(350), rowOf(0), ctrl);
  EXPECT_EQ(currentObject, a) << "something was selected";
}

TEST_F(TimelineSelection, HeadersToggleTheirLayer) {
  EXPECT_EQ(press(30, rowOf(2)), 1);
  EXPECT_EQ(layers[2].flags, layerHidden);
  platform::user::mouse(window, platform::messageLeftDoubleClick, {30, rowOf(2)}, platform::mouseLeft);
  EXPECT_EQ(layers[2].flags, 0u);
  press(30, 42 + 5 * 31);  // below the last row
  for (int layer = 0; layer < layersPerScene; layer++) EXPECT_EQ(layers[layer].flags, 0u);
  timelineView.sceneLength = 0;
  press(30, rowOf(2));
  EXPECT_EQ(layers[2].flags, 0u);
}

TEST_F(TimelineSelection, KeysMoveCursorAndRows) {
  platform::user::press(platform::keyLeft);
  EXPECT_EQ(timelineView.cursorFrame, 0);
  platform::user::press(platform::keyRight);
  platform::user::press(platform::keyRight);
  EXPECT_EQ(timelineView.cursorFrame, 2);
  EXPECT_EQ(fakeHost.currentFrame, 2);
  moveCursor(999);
  platform::user::press(platform::keyRight);
  EXPECT_EQ(fakeHost.currentFrame, 999);
  platform::user::press(platform::keyDown);
  EXPECT_EQ(timelineView.topLayer, 1);
  platform::user::press(platform::keyUp);
  platform::user::press(platform::keyUp);
  EXPECT_EQ(timelineView.topLayer, 0);
  // A held key: repeats that wait already are dropped.
  moveCursor(100);
  for (int i = 0; i < 3; i++) platform::user::key(platform::keyRight, true, true);
  EXPECT_EQ(timelineView.cursorFrame, 100);
  platform::runPostedMessages();
  EXPECT_EQ(timelineView.cursorFrame, 101);
  platform::user::key(platform::keyRight, true, true);
  platform::runPostedMessages();
  EXPECT_EQ(timelineView.cursorFrame, 102);
}

TEST_F(TimelineSelection, OtherKeysGoToTheHost) {
  for (int key : std::vector<int>{'S', platform::keySpace, platform::keyF5, 'V'}) {
    noted.clear();
    platform::user::press(key);
    ASSERT_EQ(noted.size(), 1u) << key;
    EXPECT_EQ(noted[0].message, platform::messageKeyDown);
    EXPECT_EQ(noted[0].first, key);
  }
  noted.clear();
  platform::user::press('C', ctrl);
  platform::user::press(platform::keyDelete);
  platform::user::press(platform::keyLeft);
  EXPECT_TRUE(noted.empty()) << "the timeline's own keys, even when there is nothing to do";
}

struct MenuRow {
  const char* what;
  int x, layer;
  intptr_t state;
  std::vector<int> chosen;  // selected while the menu is open: 0 a, 1 b, 2 and 3 the sections of c
  bool object;              // CONTEXTO
};

TEST_F(TimelineSelection, RightPressesOpenTheirMenu) {
  int a = create(100, 199, 0), b = create(300, 399, 1);
  std::vector<int> c = createChain(100, 199, 2, {150});
  const std::vector<int> all = {a, b, c[0], c[1]};
  const MenuRow rows[] = {
      {"an object", xOf(150), 0, 0, {0}, true},
      {"empty space", xOf(250), 0, 0, {}, false},
      {"beside an object, though a press would take it", xOf(203), 0, 0, {}, false},
      {"Ctrl selects nothing", xOf(150), 0, ctrl, {}, false},
      {"a section", xOf(170), 2, 0, {2, 3}, true},
      {"below the rows", xOf(150), 5, 0, {}, false},
  };
  for (const MenuRow& row : rows) {
    SCOPED_TRACE(row.what);
    platform::test::ScriptedDesktop desktop;
    bool opened = false;
    desktop.menus.push_back([&](const platform::Menu* menu) {
      opened = true;
      std::vector<int> expected;
      for (int i : row.chosen) expected.push_back(all[static_cast<size_t>(i)]);
      EXPECT_EQ(sorted(selected()), sorted(expected));
      EXPECT_EQ(platform::hasMenuItem(menu, commandCut), row.object);
      return 0;
    });
    platform::user::mouse(window, platform::messageRightDown, {row.x, rowOf(row.layer)}, row.state);
    EXPECT_TRUE(opened);
    EXPECT_EQ(clickPosition.frame, frameAtX(row.x));
    EXPECT_TRUE(selected().empty()) << "selected for the menu only";
  }
}

TEST_F(TimelineSelection, PiecesThatAMenuCutsStaySelected) {
  int object = create(100, 199, 0);
  fakeHost.selectionFirst = 130, fakeHost.selectionLast = 159;
  platform::test::ScriptedDesktop desktop;
  desktop.menus.push_back([](const platform::Menu*) { return static_cast<int>(commandCut); });
  platform::user::mouse(window, platform::messageRightDown, {xOf(150), rowOf(0)}, 0);
  EXPECT_EQ(sorted(selected()), sorted({object, objectAt(150, 0), objectAt(190, 0)}));
}

TEST_F(TimelineSelection, TheBoundaryNearThePressIsRemembered) {
  std::vector<int> chain = createChain(100, 299, 0, {150, 250});
  struct Row {
    int frame, section;  // -1 or the piece behind the boundary
  };
  for (Row row : {Row{134, -1}, Row{135, 1}, Row{165, 1}, Row{166, -1}, Row{201, -1}, Row{235, 2}, Row{260, 2}}) {
    SCOPED_TRACE(row.frame);
    platform::user::mouse(window, platform::messageRightDown, {xOf(row.frame), rowOf(0)}, 0);
    EXPECT_EQ(clickPosition.section, row.section < 0 ? -1 : chain[static_cast<size_t>(row.section)]);
  }
}

TEST_F(TimelineSelection, TargetsAreTheSelectionOrTheCurrentObject) {
  std::vector<int> chain = createChain(100, 199, 0, {150});
  int other = create(300, 399, 0);
  currentObject = chain[1];
  EXPECT_EQ(commandTargets(), chain);
  EXPECT_TRUE(addToSelection(other));
  EXPECT_FALSE(addToSelection(other));
  EXPECT_FALSE(addToSelection(4321));
  selectChain(chain[1]);
  EXPECT_EQ(commandTargets(), (std::vector<int>{other, chain[0], chain[1]}));
  EXPECT_EQ(commandTargetHeads(), sorted({other, chain[0]}));
}

}  // namespace
}  // namespace zenlay::test
