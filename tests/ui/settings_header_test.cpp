// The header of the settings window: the strip of sections, the cursor, its buttons.
#include "tests/ui/settings_stage.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/timeline_view.h"

namespace zenlay::test {
namespace {

using settings::state;
using testing::ElementsAre;
namespace user = platform::user;

constexpr int blur = 18;

class SettingsHeader : public SettingsStage {};

TEST_F(SettingsHeader, SectionsShareWhatTheyMustAndAreChosenInTheStrip) {
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

TEST_F(SettingsHeader, JumpButtonsGoToTheEndsAndOnToTheNeighbours) {
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

TEST_F(SettingsHeader, TheStripShowsSectionsAndCursor) {
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

TEST_F(SettingsHeader, LabelsCountFramesOrTime) {
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

TEST_F(SettingsHeader, ButtonsOfTheHeaderFollowTheKindOfObject) {
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

}  // namespace
}  // namespace zenlay::test
