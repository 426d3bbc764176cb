// Where the rows of the settings window stand, folded or not, and whose controls they are.
#include <cstring>

#include "tests/ui/settings_stage.h"
#include "zenlay/model/undo.h"

namespace zenlay::test {
namespace {

using platform::Rect;
using platform::Window;
using settings::state;
using testing::ElementsAre;
namespace user = platform::user;

constexpr int blur = 18, mask = 41;

class SettingsLayout : public SettingsStage {};

TEST_F(SettingsLayout, LaysEffectsOutFromTop) {
  showObject(create(effectGraphic, {blur}));
  EXPECT_EQ(text(settingsWindow()), "Graphic[Standard drawing]");
  // Graphic: 3 tracks, a list and a button; Blur: 3 tracks, a check; Standard drawing: 6 tracks, a list.
  EXPECT_EQ(state.slots[0].y, 28);
  EXPECT_EQ(state.tracks[0].start.y, 46);
  EXPECT_EQ(platform::windowPlace(startBox(1)), (Rect{168, 71, 46, 16}));
  EXPECT_EQ(platform::windowPlace(state.tracks[2].name), (Rect{214, 92, 60, 22}));
  EXPECT_EQ(platform::windowPlace(state.tracks[0].end.bar), (Rect{354, 40, 130, 25}));
  EXPECT_EQ(platform::windowPlace(state.checks[0].list), (Rect{10, 121, 157, 18}));
  EXPECT_EQ(platform::windowPlace(state.checks[1].button), (Rect{11, 142, 155, 18}));
  EXPECT_EQ(state.slots[1].y, 163);  // 46 + 3 * 25 + 2 * 21
  EXPECT_EQ(state.slots[2].y, 163 + 18 + 3 * 25 + 21);
  EXPECT_EQ(platform::clientSize(settingsWindow()), (platform::Size{496, 277 + 18 + 6 * 25 + 21}));
  Rect enable = platform::windowPlace(state.slots[1].enable);
  EXPECT_EQ(enable.x + enable.width, 477);
  EXPECT_EQ(enable.y, 165);
  EXPECT_EQ(enable.height, 14);
  EXPECT_EQ(platform::windowPlace(control(settings::idFold + 1)), (Rect{6, 163, 15, 15}));
  EXPECT_EQ(text(state.tracks[3].name), "Range");
  EXPECT_FALSE(platform::windowShown(state.tracks[12].name));
  EXPECT_FALSE(platform::windowShown(state.checks[4].box));
  EXPECT_FALSE(platform::windowShown(control(settings::idFold + 3)));
  int object = currentObject;
  showObject(-1);
  EXPECT_FALSE(platform::windowShown(settingsWindow()));
  EXPECT_FALSE(platform::windowShown(startBox(0)));
  EXPECT_EQ(settings::trackOwner(0).slot, -1);
  showObject(object);
  EXPECT_TRUE(platform::windowShown(startBox(0)));
  EXPECT_EQ(state.slots[1].y, 163);
}

TEST_F(SettingsLayout, TogglesShareALineAndEffectsWithoutRowsTakeTwoPixels) {
  showObject(create(effectText, {85}));  // "Camera control options" has checks alone
  const settings::CheckLine* row = state.checks;
  EXPECT_EQ(platform::windowPlace(row[3].toggle), (Rect{11, 46 + 2 * 25 + 3 * 21, 19, 19}));
  EXPECT_EQ(platform::windowPlace(row[4].toggle), (Rect{31, 46 + 2 * 25 + 3 * 21, 19, 19}));
  EXPECT_EQ(state.slots[1].y, 46 + 2 * 25 + 4 * 21);
  EXPECT_FALSE(platform::windowShown(row[3].box));
  user::click(row[4].toggle);
  EXPECT_EQ(current().checks[4], 1);
  showObject(create(84, {}, 3));  // "De-interlacing": a list
  showObject(create(9, {}, 4));   // "Previous object": nothing
  EXPECT_EQ(state.slots[1].y, 28 + 18 + 2);
}

TEST_F(SettingsLayout, FoldingHidesRowsAndMovesTheRestUp) {
  showObject(create(effectGraphic, {blur}));
  user::click(control(settings::idFold));
  EXPECT_EQ(state.slots[1].y, 48);
  EXPECT_FALSE(platform::windowShown(startBox(0)));
  EXPECT_FALSE(platform::windowShown(state.checks[1].button));
  EXPECT_TRUE(platform::windowShown(startBox(3)));
  EXPECT_EQ(platform::controlIcon(control(settings::idFold)), "fold_closed");
  EXPECT_EQ(current().slotFlags[0], slotEnabled | slotHandles | slotFolded);
  EXPECT_THAT(commands, ElementsAre("1003 0x200000"));
  undo();
  EXPECT_EQ(state.slots[1].y, 163);
  EXPECT_TRUE(platform::windowShown(startBox(0)));
}

TEST_F(SettingsLayout, AFoldedEffectKeepsTheTitleOfItsFigure) {
  showObject(create(effectGraphic, {mask}));
  user::choose(state.checks[0].list, 1);
  EXPECT_EQ(text(state.slots[0].enable), "Graphic(Circle)");
  user::click(control(settings::idFold));
  EXPECT_EQ(text(state.slots[0].enable), "Graphic(Circle)");
  EXPECT_EQ(text(state.slots[1].enable), "Mask(Background)");
  strcpy(reinterpret_cast<char*>(extraDataOf(currentObject, 0)) + 8, ":7");  // its name of a figure
  refreshSettings();
  EXPECT_EQ(text(state.slots[0].enable), "Graphic(Scene 7)");
}

TEST_F(SettingsLayout, HeadersSwitchEffectsAndHandles) {
  showObject(create(effectGraphic, {blur}));
  user::click(control(settings::idEnable + 1));
  EXPECT_EQ(current().slotFlags[1], slotHandles);
  EXPECT_EQ(platform::controlValue(control(settings::idEnable + 1)), 0);
  user::click(control(settings::idHandles + 1));
  EXPECT_EQ(current().slotFlags[1], 0);
  EXPECT_EQ(platform::controlIcon(control(settings::idHandles + 1)), "handles_clear");
  EXPECT_THAT(commands, ElementsAre("1003 0x100001", "1003 0x100001"));
  EXPECT_EQ(undoSteps(), 2);
}

TEST_F(SettingsLayout, IsHiddenWhileTheHostSavesAndTellsItOfMoves) {
  showObject(create(effectGraphic));
  enableSettings(false);
  EXPECT_FALSE(platform::windowShown(settingsWindow()));
  refreshSettings();
  EXPECT_FALSE(platform::windowShown(settingsWindow()));
  enableSettings(true);
  EXPECT_TRUE(platform::windowShown(settingsWindow()));
  Rect place{0, 0, 10, 10};
  platform::sendMessage(settingsWindow(), platform::messageSizing, 0, reinterpret_cast<intptr_t>(&place));
  EXPECT_THAT(keys, ElementsAre("move 532"));
}

TEST_F(SettingsLayout, ControlsOfEffectsAreTheCurrentObjectsOnly) {
  int object = create(effectGraphic, {blur}), other = create(effectGraphic, {}, 7);
  showObject(object);
  EXPECT_EQ(settingsControl(object, 1, trackStartBox, 2), startBox(5));
  EXPECT_EQ(settingsControl(object, 0, checkButtonControl, 1), state.checks[1].button);
  EXPECT_EQ(settingsControl(object, 1, trackStartBox, 3), nullptr);
  EXPECT_EQ(settingsControl(object, 3, trackStartBox, 0), nullptr);
  EXPECT_EQ(settingsControl(object, 0, settingsControls, 0), nullptr);
  EXPECT_EQ(settingsControl(object, 0, -1, 0), nullptr);
  EXPECT_EQ(settingsControl(other, 0, trackStartBox, 0), nullptr);
}

// An effect with custom controls.
std::vector<std::string> customCalls;
int showCustom(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition* effect) {
  customCalls.push_back(std::string(message == controlsPlace ? "place " : "fill ") + std::to_string(wparam) + " " +
                        std::to_string(lparam) + (effect->exdata ? "" : " unbound"));
  return message == controlsPlace ? 40 : 0;
}
int operateCustom(void*, uint32_t, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition*) {
  customCalls.push_back("command " + std::to_string(wparam) + " " + std::to_string(lparam));
  return 1;
}

TEST_F(SettingsLayout, EffectsPlaceControlsOfTheirOwn) {
  EffectDefinition& effect = *effectList[35];
  const EffectDefinition kept = effect;
  effect.show_controls = showCustom;
  effect.window_proc = operateCustom;
  effect.hide_controls = [] { customCalls.push_back("hide"); };
  customCalls.clear();
  showObject(create(effectGraphic, {35}));
  // Below 2 tracks and 2 buttons of the second slot, which begins at 163.
  EXPECT_THAT(customCalls, testing::IsSupersetOf({"place 22256 273", "fill 0 0"}));
  EXPECT_EQ(state.slots[2].y, 313);
  customCalls.clear();
  Window* own = platform::createControl(settingsWindow(), platform::controlButton, 22256 + 3, {0, 0, 9, 9}, "own");
  user::click(own);
  EXPECT_THAT(customCalls, ElementsAre("command " + std::to_string(commandCustomControl | 3 << 16) + " 0"));
  customCalls.clear();
  user::click(control(settings::idFold + 1));
  EXPECT_THAT(customCalls, ElementsAre("hide", "fill 0 0"));
  platform::destroyWindow(own);
  effect = kept;
}

}  // namespace
}  // namespace zenlay::test
