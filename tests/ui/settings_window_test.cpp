#include <gtest/gtest.h>

#include <cstring>

#include "tests/ui/settings_stage.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/timeline/selection.h"

namespace zenlay::test {
namespace {

using platform::Point;
using platform::Rect;
using platform::Window;
using settings::state;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace user = platform::user;

constexpr int blur = 18, glow = 28, mask = 41, light = 33;

class SettingsWindow : public SettingsStage {};

TEST_F(SettingsWindow, LaysEffectsOutFromTop) {
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

TEST_F(SettingsWindow, TogglesShareALineAndEffectsWithoutRowsTakeTwoPixels) {
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

TEST_F(SettingsWindow, FoldingHidesRowsAndMovesTheRestUp) {
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

TEST_F(SettingsWindow, AFoldedEffectKeepsTheTitleOfItsFigure) {
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

TEST_F(SettingsWindow, TheKeyboardReachesButtonsAndLists) {
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

TEST_F(SettingsWindow, HeadersSwitchEffectsAndHandles) {
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

TEST_F(SettingsWindow, SectionsShareWhatTheyMustAndAreChosenInTheStrip) {
  auto [head, second] = createTwoSections({blur});
  EXPECT_EQ(text(state.startLabel), "11");
  EXPECT_EQ(text(state.endLabel), "30");
  int range = track(1, 0);
  typeInto(startBox(range), "9");
  EXPECT_EQ(objects[second].startValues[range], 9);
  // Frame 10 + 49 * 102 / 204 = 34.5, to the nearest; then the far left.
  commands.clear();
  user::mouse(settingsWindow(), platform::messageLeftDown, {243, 10}, platform::mouseLeft);
  EXPECT_EQ(currentObject, second);
  EXPECT_EQ(timelineView.cursorFrame, 35);
  user::mouse(settingsWindow(), platform::messageMouseMove, {100, 50}, platform::mouseLeft);
  EXPECT_EQ(currentObject, head);
  EXPECT_EQ(timelineView.cursorFrame, 10);
  user::mouse(settingsWindow(), platform::messageLeftUp, {100, 50});
  user::mouse(settingsWindow(), platform::messageMouseMove, {300, 10});
  EXPECT_EQ(timelineView.cursorFrame, 10);
  char select[2][16];
  snprintf(select[0], 16, "1012 0x%X", second);
  snprintf(select[1], 16, "1012 0x%X", head);
  EXPECT_THAT(commands, ElementsAre(select[0], "1002 0x23", select[1], "1002 0xA"));
}

TEST_F(SettingsWindow, JumpButtonsGoToTheEndsAndOnToTheNeighbours) {
  auto [head, second] = createTwoSections();
  showObject(second);
  timelineView.cursorFrame = 100;
  user::click(control(settings::idJumpToEnd));
  EXPECT_EQ(timelineView.cursorFrame, 59);
  user::click(control(settings::idJumpToStart));
  EXPECT_EQ(timelineView.cursorFrame, 30);
  user::click(control(settings::idJumpToStart));
  EXPECT_EQ(currentObject, head);
  EXPECT_EQ(timelineView.cursorFrame, 10);
  user::click(control(settings::idJumpToStart));
  EXPECT_EQ(currentObject, head);
  user::click(control(settings::idJumpToEnd));
  user::click(control(settings::idJumpToEnd));
  EXPECT_EQ(currentObject, second);
  EXPECT_EQ(timelineView.cursorFrame, 59);
  timelineView.cursorFrame = 30;
  platform::focusWindow(settingsWindow());
  user::press(platform::keyLeft);
  EXPECT_EQ(currentObject, head);
  EXPECT_EQ(timelineView.cursorFrame, 29);
}

TEST_F(SettingsWindow, TheStripShowsSectionsAndCursor) {
  createTwoSections();
  timelineView.cursorFrame = 34;
  platform::Canvas* canvas = platform::createMemoryCanvas(496, 30);
  settings::paintStrip(canvas);
  const uint32_t* row = platform::canvasPixels(canvas) + 496 * 10;
  auto pixel = [row](int x) { return row[x] & 0xFFFFFF; };
  uint32_t line = platform::systemColor(platform::colorText);
  // 20 * 204 / 49 = 83.3: the second section starts at x 224.
  for (auto [x, color] : {std::pair{140, 0u},
                          {141, line},
                          {142, 0x4080FFu},
                          {223, 0x4080FFu},
                          {224, line},
                          {225, 0x10206Cu},
                          {345, line},
                          {346, 0u}})
    EXPECT_EQ(pixel(x), color) << x;
  EXPECT_EQ(pixel(241), 0xEFDF93u);  // the cursor: 24 * 204 / 49 = 99.9
  platform::releaseCanvas(canvas);
}

TEST_F(SettingsWindow, LabelsCountFramesOrTime) {
  EXPECT_EQ(settings::frameLabel(0), "1");
  preferences.config_time_type = 1;
  const struct {
    int frame;
    const char* text;
  } rows[] = {{0, "00:00.00"},           {10, "00:00.33"},
              {30 * 60, "01:00.00"},     {30 * 3600 - 1, "59:59.96"},
              {30 * 3600, "1:00:00.00"}, {30 * 3600 * 12 + 15, "12:00:00.50"}};
  for (const auto& row : rows) EXPECT_EQ(settings::frameLabel(row.frame), row.text);
}

TEST_F(SettingsWindow, ButtonsOfTheHeaderFollowTheKindOfObject) {
  const struct {
    int effect;
    bool toggles, source, add;
  } rows[] = {{effectGraphic, true, true, true},
              {effectAudioFile, false, true, true},
              {20, false, false, true},
              {effectTimeControl, false, false, false},
              {effectGroupControl, false, false, true},
              {effectCameraControl, false, false, true},
              {blur, false, false, true}};
  int layer = 1;
  for (const auto& row : rows) {
    SCOPED_TRACE(effectList[row.effect]->name);
    showObject(create(row.effect, {}, layer++));
    EXPECT_EQ(platform::windowShown(state.camera), row.toggles);
    EXPECT_EQ(platform::windowShown(state.clip), row.toggles);
    EXPECT_EQ(platform::windowShown(state.source), row.source);
    EXPECT_EQ(platform::windowShown(state.add), row.add);
  }
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

TEST_F(SettingsWindow, KeysGoToBoxesCursorUndoAndHost) {
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

TEST_F(SettingsWindow, ReleasingCtrlInAListEndsASelectionOfTheTimeline) {
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

TEST_F(SettingsWindow, TheWheelMovesTheCursor) {
  showObject(create(effectGraphic));
  timelineView.cursorFrame = 1;
  EXPECT_EQ(user::wheel(settingsWindow(), {5, 5}, -3), 0);  // another window has the keys: for what scrolls this one
  platform::focusWindow(settingsWindow());
  EXPECT_EQ(user::wheel(settingsWindow(), {5, 5}, -3), 1);
  user::wheel(startBox(0), {5, 5}, 1);
  user::wheel(state.tracks[0].start.bar, {5, 5}, 9);
  EXPECT_THAT(commands, ElementsAre("1002 0x4", "1002 0x3", "1002 0x0"));
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

TEST_F(SettingsWindow, IsHiddenWhileTheHostSavesAndTellsItOfMoves) {
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

TEST_F(SettingsWindow, ControlsOfEffectsAreTheCurrentObjectsOnly) {
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

TEST_F(SettingsWindow, EffectsPlaceControlsOfTheirOwn) {
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
