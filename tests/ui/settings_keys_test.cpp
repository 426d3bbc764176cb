// Where the keys and the wheel go in the settings window.
#include "tests/ui/settings_stage.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/selection.h"

namespace zenlay::test {
namespace {

using platform::Window;
using settings::state;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
namespace user = platform::user;

constexpr int blur = 18;

class SettingsKeys : public SettingsStage {};

TEST_F(SettingsKeys, TheKeyboardReachesButtonsAndLists) {
  showObject(create(effectGraphic, {blur}));
  platform::focusWindow(startBox(0));
  auto tab = [](intptr_t modifiers = 0) {
    user::press(platform::keyTab, modifiers);
    return platform::focusedWindow();
  };
  EXPECT_EQ(tab(platform::mouseCtrl), state.camera);
  for (Window* next : {state.clip, state.jumpStart, state.jumpEnd, state.source, state.add, state.slots[0].fold,
                       state.slots[0].handles, state.slots[0].enable, state.tracks[0].name})
    EXPECT_EQ(tab(), next);
  platform::focusWindow(state.checks[0].list);
  EXPECT_EQ(tab(), state.checks[1].button);
  EXPECT_EQ(tab(platform::mouseShift), state.checks[0].list);
  platform::focusWindow(state.camera);
  EXPECT_EQ(tab(platform::mouseShift), state.checks[check(2, 0)].list);
  platform::focusWindow(state.camera);
  user::press(platform::keySpace);
  user::press(platform::keyEnter);
  platform::runPostedMessages();
  EXPECT_THAT(keys, IsEmpty());  // the button's own
  user::press(platform::keyEscape);
  EXPECT_EQ(platform::focusedWindow(), settingsWindow());
  user::press('Z', platform::mouseCtrl | platform::mouseShift);
  platform::runPostedMessages();
  EXPECT_THAT(commands, IsEmpty());
  EXPECT_THAT(keys, Contains("down 90"));
}

TEST_F(SettingsKeys, KeysGoToBoxesCursorUndoAndHost) {
  showObject(create(effectGraphic, {blur}));
  timelineView.cursorFrame = 58;
  platform::focusWindow(startBox(0));
  user::press(platform::keyTab);
  EXPECT_EQ(platform::focusedWindow(), startBox(1));  // no end of its own
  chooseMovement(1, 2);
  platform::focusWindow(startBox(1));
  user::press(platform::keyTab);
  EXPECT_EQ(platform::focusedWindow(), endBox(1));
  user::press(platform::keyTab, platform::mouseShift);
  user::press(platform::keyTab, platform::mouseShift);
  EXPECT_EQ(platform::focusedWindow(), startBox(0));
  user::press(platform::keyTab, platform::mouseShift);
  EXPECT_EQ(platform::focusedWindow(), startBox(11));  // around
  user::press('Z', platform::mouseCtrl);
  platform::runPostedMessages();
  EXPECT_THAT(keys, IsEmpty());
  user::press(platform::keyEnter);
  commands.clear();
  for (int key : {platform::keyRight, platform::keyRight, platform::keyLeft}) user::press(key);
  EXPECT_THAT(commands, ElementsAre("1002 0x3B", "1002 0x3B", "1002 0x3A"));
  user::press('Z', platform::mouseCtrl);
  user::press(platform::keyF5);
  platform::runPostedMessages();
  EXPECT_EQ(commands.back(), "1010 0x0");
  EXPECT_EQ(current().modes[1], 0);
  EXPECT_THAT(keys, ElementsAre("down 116", "up 116"));
  platform::focusWindow(timeline);
  user::press(platform::keyF5);
  platform::runPostedMessages();
  EXPECT_THAT(keys, ElementsAre("down 116", "up 116", "timeline up 116"));
}

TEST_F(SettingsKeys, ReleasingCtrlInAListEndsASelectionOfTheTimeline) {
  showObject(create(effectGraphic));
  platform::focusWindow(state.checks[0].list);
  auto tapCtrl = [] {
    user::key(platform::keyCtrl, true);
    user::key(platform::keyCtrl, false);
  };
  tapCtrl();
  EXPECT_THAT(keys, IsEmpty());
  addToSelection(currentObject);
  tapCtrl();
  EXPECT_THAT(keys, ElementsAre("timeline up 17"));
  user::press(platform::keyDown);
  platform::runPostedMessages();
  EXPECT_EQ(keys.size(), 1u);
}

TEST_F(SettingsKeys, TheWheelMovesTheCursor) {
  showObject(create(effectGraphic));
  timelineView.cursorFrame = 1;
  EXPECT_EQ(user::wheel(settingsWindow(), {5, 5}, -3), 0);  // another window has the keys: for what scrolls this one
  platform::focusWindow(settingsWindow());
  EXPECT_EQ(user::wheel(settingsWindow(), {5, 5}, -3), 1);
  user::wheel(startBox(0), {5, 5}, 1);
  user::wheel(state.tracks[0].start.bar, {5, 5}, 9);
  EXPECT_THAT(commands, ElementsAre("1002 0x4", "1002 0x3", "1002 0x0"));
}

}  // namespace
}  // namespace zenlay::test
