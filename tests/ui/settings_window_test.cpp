// Checks, lists, colours, menus and files of the settings window.
#include <gtest/gtest.h>

#include "tests/ui/settings_stage.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"

namespace zenlay::test {
namespace {

using platform::Point;
using platform::Window;
using settings::state;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace user = platform::user;

constexpr int blur = 18, glow = 28, light = 33;

class SettingsWindow : public SettingsStage {};

TEST_F(SettingsWindow, ChecksStoreTheirValueAndButtonsOnlyTellTheEffect) {
  showObject(create(effectGraphic, {blur}));
  int fixed = check(1, 0);
  user::click(state.checks[fixed].box);
  user::click(state.checks[fixed].box);
  EXPECT_EQ(current().checks[fixed], 0);
  EXPECT_THAT(commands, ElementsAre("1003 0x40002", "1003 0x40002"));
  EXPECT_EQ(undoSteps(), 2);
  commands.clear();
  user::click(state.checks[1].button);  // the colour dialog, cancelled
  EXPECT_THAT(commands, ElementsAre("1011 0x1"));
  EXPECT_EQ(undoSteps(), 0);
}

TEST_F(SettingsWindow, ListsHoldTheEffectsItemsWithTheStoredOneChosen) {
  showObject(create(effectGraphic, {glow}));
  Window* blend = state.checks[check(2, 0)].list;
  EXPECT_EQ(platform::controlItemCount(blend), 13);
  EXPECT_EQ(platform::controlItem(blend, platform::controlValue(blend)), "Normal");
  Window* shape = state.checks[check(1, 0)].list;
  user::choose(shape, 4);
  EXPECT_EQ(commands.back(), "1022 0x2");
  EXPECT_EQ(extraDataOf(currentObject, 1)[4], 4);
  undo();
  EXPECT_EQ(platform::controlItem(shape, platform::controlValue(shape)), "Normal");
  int other = create(effectGraphic, {}, 5);
  extraDataOf(other, 1)[0] = 2;
  showObject(other);
  EXPECT_EQ(platform::controlItem(state.checks[2].list, platform::controlValue(state.checks[2].list)), "Subtractive");
}

TEST_F(SettingsWindow, ColourButtonsAskAndShowTheColour) {
  showObject(create(effectGraphic, {glow, 30}));
  auto answer = [](int r, int g, int b) {
    return [=](Window* dialog) {
      for (auto [box, value] : {std::pair{171, r}, {172, g}, {173, b}})
        user::type(platform::controlOf(dialog, box), std::to_string(value).c_str());
      user::click(platform::controlOf(dialog, platform::dialogOk));
    };
  };
  EXPECT_EQ(label(1), "#FFFFFF");
  desktop->dialogs.push_back(answer(18, 52, 86));
  user::click(state.checks[1].button);
  EXPECT_EQ(label(1), "#123456");
  EXPECT_EQ(extraDataOf(currentObject, 0)[5], 0x34);
  int lightColor = check(1, 1);
  EXPECT_EQ(label(lightColor), "Not Specified");
  desktop->dialogs.push_back(answer(255, 0, 0));
  user::click(state.checks[lightColor].button);
  EXPECT_EQ(label(lightColor), "#FF0000");
  desktop->dialogs.push_back([](Window* dialog) { user::click(platform::controlOf(dialog, 122)); });
  user::click(state.checks[lightColor].button);
  EXPECT_EQ(extraDataOf(currentObject, 1)[3], 1);
  int key = check(2, 2);
  desktop->dialogs.push_back(answer(0, 255, 0));
  user::click(state.checks[key].button);
  // 255 * 16 * 9655 >> 14, * -5449, * -6887
  EXPECT_EQ(label(key), "Y 2404  Cb -1357  Cr -1716");
}

TEST_F(SettingsWindow, AColourIsPickedFromTheScreenOnce) {
  showObject(create(effectGraphic, {30}));
  const EffectServiceTable* services = effectList[30]->services;
  int row = check(1, 2);
  EXPECT_EQ(services->pickColour(makeObjectRef(currentObject, 1), 2, chooseYcc), 1);
  EXPECT_TRUE(colorPickPending());
  EXPECT_EQ(pickScreenColor(), 0);  // no button is down
  user::mouse(main, platform::messageMouseMove, {1, 1}, platform::mouseLeft);
  EXPECT_EQ(pickScreenColor(), 0);  // the main window's image will tell
  user::mouse(main, platform::messageMouseMove, {3000, 3000}, platform::mouseLeft);
  EXPECT_EQ(pickScreenColor(), 1);  // nothing can be read without a desktop
  EXPECT_FALSE(colorPickPending());
  EXPECT_EQ(commands.back(), "1028 0xFFFFFFFFFFFFFFFF");
  EXPECT_EQ(label(row), "Not Specified");
  beginColorPick(currentObject, row, false);
  colorPicked(packedYcc({1000, -200, 300}));
  EXPECT_EQ(label(row), "Y 1000  Cb -200  Cr 300");
  undo();
  EXPECT_EQ(label(row), "Not Specified");
  beginColorPick(currentObject, row, false);
  int other = create(effectGraphic, {}, 6);
  showObject(other);
  EXPECT_EQ(colorPicked(packedYcc({1, 1, 1})), 0);
}

TEST_F(SettingsWindow, APickEndsWithItsObjectAndWithTheWindow) {
  const int object = create(effectGraphic, {30});
  showObject(object);
  beginColorPick(object, check(1, 2), false);
  deleteObject(object);
  EXPECT_FALSE(colorPickPending());
  EXPECT_EQ(create(effectGraphic, {30}), object) << "another in its place";
  showObject(object);
  beginColorPick(object, check(1, 2), false);
  destroySettingsWindow();
  createSettingsWindow();
  EXPECT_FALSE(colorPickPending());
}

TEST_F(SettingsWindow, TheImageGivesThePixelOfTheCurrentFrame) {
  showObject(create(effectGraphic, {30}));
  timelineView.cursorFrame = 20;  // a white disc of 100 pixels in the middle
  for (auto [at, expected] : {std::pair{Point{160, 120}, "1028 0xFFF"}, std::pair{Point{5, 5}, "1028 0x0"},
                              std::pair{Point{320, 5}, "1028 0xFFFFFFFFFFFFFFFF"}}) {
    extraDataOf(currentObject, 0)[0] = 1;
    beginColorPick(currentObject, check(1, 2), false);
    EXPECT_EQ(pickImageColor(at), 1);
    EXPECT_EQ(commands.back(), expected);
  }
  EXPECT_EQ(pickImageColor({1, 1}), 0);
}

TEST_F(SettingsWindow, MenusActOnTheEffectUnderThem) {
  showObject(create(effectGraphic, {blur, light}));
  std::vector<std::string> lines;
  auto open = [&](int y, int id) {
    commands.clear();
    lines = chooseAt({200, y}, id);
  };
  open(state.slots[1].y, settingsMoveEffectDown);
  EXPECT_THAT(lines, testing::IsSupersetOf({"(< Blur >)", "(Move filter effect up)", "Move filter effect down"}));
  EXPECT_THAT(commands, ElementsAre("1074 0x1"));
  open(state.slots[2].y - 1, settingsRemoveEffect);
  EXPECT_THAT(commands, ElementsAre("1020 0x1"));
  open(state.slots[0].y + 40, settingsRestoreDefaults);
  EXPECT_THAT(lines, Contains("(Remove filter effect)"));
  EXPECT_THAT(commands, ElementsAre("1052 0x0"));
  open(state.slots[2].y, 2000 + blur);
  EXPECT_THAT(commands, ElementsAre("1019 0x12"));
  open(10, settingsChangeLength);
  EXPECT_THAT(commands, ElementsAre("host 1055 0x0"));
  open(31, settingsAddMidpoint);
  EXPECT_THAT(commands, ElementsAre("1054 0x0"));
  commands.clear();
  desktop->menus.push_back([](const platform::Menu*) { return 2001; });
  user::click(control(settings::idChangeSource));
  user::click(control(settings::idCameraTarget));
  user::click(control(settings::idClipAbove));
  EXPECT_THAT(commands, ElementsAre("1019 0x1", "host 1081 0x0", "host 1069 0x0"));
}

TEST_F(SettingsWindow, TheTwelfthEffectLeavesNoRoomForAnother) {
  int object = create(effectGraphic, {blur, blur, blur, blur, blur, blur, blur, blur, blur});
  showObject(object);
  for (const char* expected : {"Add a filter effect", "(Add a filter effect)"}) {
    EXPECT_THAT(chooseAt({200, state.slots[1].y}, 0), Contains(expected));
    addEffect(object, 60);
    relayoutSettings();
  }
  EXPECT_EQ(state.usedSlots, 12);
  commands.clear();
  desktop->menus.push_back([](const platform::Menu*) { return 2000 + blur; });
  user::click(control(settings::idAddEffect));
  EXPECT_THAT(commands, IsEmpty());
}

TEST_F(SettingsWindow, FilesGoToTheEffectTheyAreDroppedOn) {
  fakeHost.functions.getMediaFileFilter = [](int32_t) { return "Media"; };
  showObject(create(effectImageFile, {35}));
  std::string path = "/pictures/leaf.png";
  user::dropFiles(settingsWindow(), {10, state.slots[1].y + 5}, {&path, 1});
  EXPECT_THAT(commands, ElementsAre("66560 0x0"));  // 1 << 16 | 1024
  EXPECT_EQ(label(check(1, 1)), "leaf.png");
  user::dropFiles(settingsWindow(), {10, 5}, {&path, 1});
  EXPECT_EQ(commands.size(), 1u);
  path = "/pictures/" + std::string(300, 'x');
  user::dropFiles(settingsWindow(), {10, state.slots[0].y}, {&path, 1});
  EXPECT_EQ(label(0), "");
  ASSERT_EQ(desktop->boxes.size(), 2u);  // no such picture, and no room for the other's name
  EXPECT_THAT(desktop->boxes[0].text, HasSubstr("Failed to read the image file"));
  EXPECT_EQ(desktop->boxes[0].caption, "Add border");
  desktop->boxes.clear();
}

}  // namespace
}  // namespace zenlay::test
