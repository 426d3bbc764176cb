#include <gtest/gtest.h>

#include <cstring>

#include "tests/ui/settings_stage.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/timeline/selection.h"

namespace zenlay::test {
namespace {

using settings::state;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
namespace user = platform::user;

constexpr int blur = 18, light = 33;

class SettingsMovement : public SettingsStage {
 protected:
  int x = 0;
  void SetUp() override {
    SettingsStage::SetUp();
    showObject(create(effectGraphic, {blur}));
    x = track(2, 0);
  }
  void type(platform::Window* box, const char* value) {
    typeInto(box, value);
    user::press(platform::keyEnter);
  }
};

TEST_F(SettingsMovement, TheMenuShowsTheModeAndSetsItForLinkedTracks) {
  type(startBox(x), "5");
  auto lines = chooseMovement(x, modeRectilinear + 1);
  std::erase(lines, "-");
  EXPECT_THAT(lines, ElementsAre("[x] No movement", "Rectilinear movement", "Acceleration movement", "Curve movement",
                                 "Teleportation", "Ignored midpoints", "Specified movement amount", "Random movement",
                                 "Repetitive movement", "(Acceleration)", "(Deceleration)", "(Setting)"));
  EXPECT_EQ(commands.back(), "1003 0x80006");
  for (int t : {0, 1, 2}) EXPECT_EQ(current().modes[x + t], modeRectilinear);
  EXPECT_EQ(current().modes[x + 3], 0);
  EXPECT_EQ(current().endValues[x], 50);
  lines = chooseMovement(x, modeAccelerationBit + 1);
  EXPECT_THAT(lines, Contains("[x] Rectilinear movement"));
  EXPECT_EQ(current().modes[x + 2], modeRectilinear | modeAccelerationBit);
  lines = chooseMovement(x, modeDecelerationBit + 1, platform::mouseShift);
  EXPECT_THAT(lines, Contains("[x] Acceleration"));
  EXPECT_EQ(current().modes[x], modeRectilinear | modeAccelerationBit | modeDecelerationBit);
  EXPECT_EQ(current().modes[x + 1], modeRectilinear | modeAccelerationBit);
  commands.clear();
  chooseMovement(x, modeRectilinear + 1);  // it is that already
  EXPECT_TRUE(commands.empty());
  chooseMovement(x, modeTeleport + 1);
  EXPECT_EQ(current().modes[x], modeTeleport);
}

TEST_F(SettingsMovement, TheEndFollowsTheMeaningOfTheMode) {
  type(startBox(x), "5");
  chooseMovement(x, modeRectilinear + 1);
  type(endBox(x), "20");
  chooseMovement(x, modeCurve + 1);
  EXPECT_EQ(current().endValues[x], 200);
  chooseMovement(x, modeAmount + 1);
  EXPECT_EQ(current().endValues[x], 0);
  EXPECT_EQ(text(endBox(x)), "0.0");
  type(endBox(x), "1.5");
  chooseMovement(x, modeRandom + 1);
  EXPECT_EQ(current().endValues[x], 50);
  type(endBox(x), "9");
  chooseMovement(x, modeNone + 1);
  EXPECT_EQ(current().endValues[x], 50);
  EXPECT_FALSE(platform::windowEnabled(endBox(x)));
}

TEST_F(SettingsMovement, TheParameterIsAskedFor) {
  auto answer = [this](const char* value) {
    desktop->dialogs.push_back([value](platform::Window* dialog) {
      EXPECT_EQ(platform::windowText(dialog), "Move frame interval");
      user::type(platform::controlOf(dialog, 171), value);
      user::press(platform::keyEnter);
    });
  };
  chooseMovement(x, modeRepeat + 1);
  answer("12");
  EXPECT_THAT(chooseMovement(x, settingsMovement), Contains("Setting [0]"));
  EXPECT_EQ(current().params[x], 12);
  EXPECT_EQ(current().params[x + 2], 12);
  EXPECT_THAT(chooseMovement(x, 0), Contains("Setting [12]"));
  answer("7");  // with Alt at once
  user::mouse(settingsWindow(), platform::messageMouseMove, {1, 1}, platform::mouseAlt);
  user::click(state.tracks[x].name);
  EXPECT_EQ(current().params[x], 7);
  user::mouse(settingsWindow(), platform::messageMouseMove, {1, 1});
  chooseMovement(x, modeCurve + 1);
  EXPECT_EQ(current().params[x], 0);
  EXPECT_THAT(chooseMovement(x, settingsMovement), Contains("(Setting)"));
  EXPECT_TRUE(desktop->dialogs.empty());
}

TEST_F(SettingsMovement, UndoIsGroupedByObjectAndItem) {
  platform::focusWindow(startBox(x));
  for (const char* value : {"1", "12", "123"}) user::type(startBox(x), value);
  user::type(startBox(x + 1), "4");
  user::type(startBox(x), "5");
  EXPECT_EQ(undoSteps(), 3);
  EXPECT_EQ(current().startValues[x], 0);
  int other = create(effectGraphic, {}, 3);
  showObject(other);
  resetUndo();
  applySettings(changedStart);
  applySettings(changedStart);
  applySettings(changedEnd);
  EXPECT_EQ(applySettings(changedStart | 60), 0);
  EXPECT_EQ(applySettings(changedCheck | 60), 0);
  EXPECT_EQ(applySettings(changedSlot | 5), 0);
  EXPECT_EQ(applySettings(5), 0);
}

TEST_F(SettingsMovement, TheSelectionFollowsByEffect) {
  // Another order of effects, a chain of two sections, and an object without the effect.
  int shuffled = create(effectImageFile, {light, blur}, 1);
  int chain = create(effectGraphic, {blur}, 2);
  beginUndoStep();
  int second = addSection(chain, 30, sectionSplit);
  int without = create(effectGraphic, {}, 3);
  ObjectRecord untouched = objects[without];
  for (int object : {currentObject, shuffled, chain, second, without}) addToSelection(object);
  resetUndo();

  auto range = [this](int object, int slot) -> int32_t& {
    return objects[object].startValues[objects[object].slots[slot].firstTrack];
  };
  type(startBox(track(1, 0)), "33");
  EXPECT_EQ(range(shuffled, 2), 33);
  EXPECT_EQ(range(chain, 1), 33);
  EXPECT_EQ(range(second, 1), 33);
  EXPECT_EQ(objects[second].endValues[track(1, 0)], 33);
  EXPECT_EQ(memcmp(&untouched, &objects[without], sizeof untouched), 0);
  undo();
  EXPECT_EQ(range(shuffled, 2), 5);
  EXPECT_EQ(range(second, 1), 5);

  user::click(state.checks[check(1, 0)].box);
  EXPECT_EQ(objects[shuffled].checks[objects[shuffled].slots[2].firstCheck], 1);
  user::click(control(settings::idEnable + 1));
  EXPECT_EQ(slotFlagsOf(shuffled, 1), slotHandles) << "the same slot, whatever its effect";
  EXPECT_EQ(slotFlagsOf(shuffled, 2), newSlotFlags);

  type(startBox(x), "5");
  chooseMovement(x, modeAmount + 1);
  int theirs = objects[shuffled].slots[3].firstTrack;
  for (int t : {0, 1, 2}) EXPECT_EQ(objects[shuffled].modes[theirs + t], modeAmount);
  EXPECT_EQ(objects[shuffled].endValues[theirs], 0);
  type(endBox(x), "2");
  EXPECT_EQ(objects[shuffled].endValues[theirs], 20);
  EXPECT_EQ(objects[second].endValues[x], 20);
}

TEST_F(SettingsMovement, OfAnEffectTwiceInTheChainTheSameOneFollows) {
  int other = create(effectGraphic, {blur, blur}, 1);
  showObject(create(effectGraphic, {blur, blur}, 2));
  addToSelection(other);
  type(startBox(track(2, 0)), "77");
  EXPECT_EQ(objects[other].startValues[objects[other].slots[1].firstTrack], 5);
  EXPECT_EQ(objects[other].startValues[objects[other].slots[2].firstTrack], 77);
}

TEST_F(SettingsMovement, LinkedLayersFollowInTheSameUndoStep) {
  int behind = createObject(60, 0, effectGraphic, -1);
  ASSERT_EQ(objects[behind].start, 60);
  layers[0].flags |= layerCoordinateLink;
  resetUndo();
  dragBox(startBox(x), {3, 8});
  int theirs = objects[behind].slots[1].firstTrack;
  EXPECT_EQ(objects[behind].startValues[theirs], 80);
  undo();
  EXPECT_EQ(objects[behind].startValues[theirs], 0);
  EXPECT_EQ(current().startValues[x], 0);
  layers[0].flags = 0;
}

TEST_F(SettingsMovement, DefaultsComeBackForOneEffect) {
  int range = track(1, 0);
  type(startBox(range), "9");
  type(startBox(x), "9");
  chooseMovement(range, modeRectilinear + 1);
  type(endBox(range), "100");
  EXPECT_EQ(restoreDefaults(1), 1);
  EXPECT_EQ(current().modes[range], 0);
  EXPECT_EQ(current().startValues[range], 5);
  EXPECT_EQ(current().endValues[range], 5);
  EXPECT_EQ(text(startBox(range)), "5");
  EXPECT_EQ(current().startValues[x], 90);
  const int steps = zenlay::undoSteps();
  EXPECT_EQ(restoreDefaults(1), 0);
  EXPECT_EQ(zenlay::undoSteps(), steps) << "nothing changed";
  undo();
  EXPECT_EQ(current().endValues[range], 100);
  EXPECT_EQ(restoreDefaults(7), 0);
}

TEST_F(SettingsMovement, WithoutAnObjectNothingHappens) {
  deleteObject(currentObject);
  showObject(-1);
  EXPECT_EQ(applySettings(changedStart), 0);
  EXPECT_EQ(pushButton(0), 0);
  EXPECT_EQ(checkChanged(0), 0);
  EXPECT_EQ(dropDownChanged(0), 0);
  EXPECT_EQ(setEffectFile(0, "x"), 0);
  EXPECT_EQ(restoreDefaults(0), 0);
  EXPECT_EQ(trackChanged(), 0);
  EXPECT_EQ(selectSection(0), 0);
  EXPECT_EQ(customControl(settings::idCustom, 0), 0);
  refreshSettings();
  relayoutSettings();
  EXPECT_FALSE(platform::windowShown(settingsWindow()));
}

}  // namespace
}  // namespace zenlay::test
