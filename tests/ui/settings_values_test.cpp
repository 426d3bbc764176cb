#include <gtest/gtest.h>

#include "tests/ui/settings_stage.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/settings/value.h"
#include "zenlay/ui/timeline/selection.h"

namespace zenlay::test {
namespace {

using platform::Window;
using settings::formatValue;
using settings::parseValue;
using settings::state;
using testing::ElementsAre;
namespace user = platform::user;

TEST(SettingsText, ValuesAreShownByTheirScale) {
  const struct {
    int32_t value, scale;
    const char* text;
  } rows[] = {{7, 0, "7"},
              {-7, 1, "-7"},
              {5, 10, "0.5"},
              {-5, 10, "-0.5"},
              {-12345, 100, "-123.45"},
              {5, 100, "0.05"},
              {-1005, 1000, "-1.005"},
              {INT32_MIN, 10, "-214748364.8"}};
  for (const auto& row : rows) {
    EXPECT_EQ(formatValue(row.value, row.scale), row.text);
    EXPECT_EQ(parseValue(row.text, row.scale), row.value);
  }
}

TEST(SettingsText, TypedTextIsReadAsFarAsItGoes) {
  const struct {
    const char* text;
    int32_t scale, value;
  } rows[] = {{"-0.5", 100, -50},
              {"1.234", 100, 123},
              {"1.9", 10, 19},
              {".5", 10, 5},
              {"5-", 10, -50},
              {"abc", 10, 0},
              {"-", 10, 0},
              {"12abc", 1, 12},
              {"-12", 0, -12},
              {"3.9", 1, 3},
              {"1.2.3", 100, 120},
              {"99999999999999999999", 1, INT32_MAX},
              {"-99999999999999999999", 100, INT32_MIN}};
  for (const auto& row : rows) EXPECT_EQ(parseValue(row.text, row.scale), row.value) << row.text;
}

// "Graphic" with "Blur" and "Standard drawing": tracks Size, rAspect, Line width; Range, rAspect, Light Stre; X, Y,
// Z...
class SettingsValues : public SettingsStage {
 protected:
  int x = 0;
  void SetUp() override {
    SettingsStage::SetUp();
    showObject(create(effectGraphic, {18}));
    x = track(2, 0);
  }
};

TEST_F(SettingsValues, TypingWritesStartAndFollowingEnd) {
  typeInto(startBox(x), "-0.5");
  EXPECT_EQ(current().startValues[x], -5);
  EXPECT_EQ(current().endValues[x], -5);
  EXPECT_EQ(text(endBox(x)), "-0.5");
  EXPECT_EQ(platform::controlValue(state.tracks[x].start.spin), -5);
  EXPECT_THAT(commands, ElementsAre("1003 0x10006"));
  user::press(platform::keyEnter);
  user::type(startBox(x), "-0.55");  // the same value: told, and nothing to undo
  EXPECT_EQ(commands.size(), 2u);
  user::press(platform::keyEnter);
  EXPECT_EQ(platform::focusedWindow(), settingsWindow());
  EXPECT_EQ(text(startBox(x)), "-0.5");
  EXPECT_EQ(zenlay::undoSteps(), 1);
}

TEST_F(SettingsValues, TheSameValueStillReachesTheSelection) {
  int other = create(effectGraphic, {}, 5);
  objects[other].startValues[0] = 7;
  addToSelection(other);
  user::type(startBox(0), "0100");
  EXPECT_EQ(objects[other].startValues[0], 100);
  EXPECT_EQ(zenlay::undoSteps(), 1);
  undo();
  EXPECT_EQ(objects[other].startValues[0], 7);
}

TEST_F(SettingsValues, UpAndDownStepAndEscapeRestores) {
  platform::focusWindow(startBox(x));
  user::press(platform::keyUp);
  user::press(platform::keyUp);
  user::press(platform::keyDown, platform::mouseShift);
  EXPECT_EQ(text(startBox(x)), "1.9");
  EXPECT_EQ(current().endValues[x], 19);
  user::press(platform::keyEscape);
  EXPECT_EQ(platform::focusedWindow(), settingsWindow());
  EXPECT_EQ(text(startBox(x)), "0.0");
  EXPECT_EQ(zenlay::undoSteps(), 0);
  typeInto(startBox(x), "5");
  user::scroll(state.tracks[x].start.bar, platform::scrollEnd, 50);  // another step begins
  user::type(startBox(x), "6");
  user::press(platform::keyEscape);
  EXPECT_EQ(current().startValues[x], 0);
}

TEST_F(SettingsValues, TypedValuesAreClampedAndEmptyMeansTheDefault) {
  int zoom = track(2, 3);
  typeInto(startBox(zoom), "5000.01");
  EXPECT_EQ(text(startBox(zoom)), "5000.00");
  EXPECT_EQ(current().startValues[zoom], 500000);
  user::type(startBox(zoom), "-1");
  EXPECT_EQ(current().startValues[zoom], 0);
  EXPECT_EQ(text(startBox(zoom)), "0.00");
  user::type(startBox(zoom), "");
  EXPECT_EQ(current().startValues[zoom], 10000);
  user::press(platform::keyEnter);
  EXPECT_EQ(text(startBox(zoom)), "100.00");
}

TEST_F(SettingsValues, DraggingCountsShownUnitsAndWithShiftStoredOnes) {
  dragBox(startBox(x), {4, 10});
  EXPECT_EQ(current().startValues[x], 100);
  EXPECT_EQ(current().endValues[x], 100);
  EXPECT_EQ(text(startBox(x)), "10.0");
  dragBox(startBox(x), {10}, platform::mouseShift);
  EXPECT_EQ(current().startValues[x], 110);
  int size = track(0, 0);  // no scale
  dragBox(startBox(size), {-3});
  EXPECT_EQ(current().startValues[size], 97);
  dragBox(startBox(size), {-5000});
  EXPECT_EQ(current().startValues[size], 0);
  EXPECT_FALSE(platform::mouseCapture());
  EXPECT_EQ(undoSteps(), 4);
  EXPECT_EQ(current().startValues[size], 100);
  EXPECT_EQ(text(startBox(x)), "0.0");
}

TEST_F(SettingsValues, AnArrowKeyDuringADragMovesOneStep) {
  using namespace platform;
  user::mouse(startBox(x), messageLeftDown, {20, 8}, mouseLeft);
  user::key(keyRight, true);
  user::key(keyLeft, true);
  user::key(keyLeft, true);
  EXPECT_EQ(current().startValues[x], -10);
  user::mouse(startBox(x), messageLeftUp, {20, 8}, 0);
  EXPECT_NE(focusedWindow(), startBox(x));  // moved: not opened for typing
  EXPECT_EQ(undoSteps(), 1);
}

TEST_F(SettingsValues, AClickOpensTheBoxForTyping) {
  dragBox(startBox(x), {});
  EXPECT_EQ(platform::focusedWindow(), startBox(x));
  EXPECT_TRUE(commands.empty());
}

TEST_F(SettingsValues, TrackBarsAndSpinsGroupAChangeUntilItsEnd) {
  settings::TrackRowState& side = state.tracks[x].start;
  user::dragTo(side.bar, 150);
  EXPECT_EQ(current().startValues[x], 150);
  EXPECT_EQ(text(startBox(x)), "15.0");
  for (int step : {151, 152}) {
    user::scroll(side.spin, platform::scrollLineForward, step);
    user::scroll(side.spin, platform::scrollEnd, step);
  }
  EXPECT_EQ(current().endValues[x], 152);
  user::scroll(side.bar, platform::scrollTrack, 160);
  user::scroll(side.bar, platform::scrollTrack, 170);
  EXPECT_EQ(undoSteps(), 4);
}

TEST_F(SettingsValues, ValuesBeyondTheTrackBarStayWhatTheyAre) {
  typeInto(startBox(x), "30000.0");
  EXPECT_EQ(current().startValues[x], 300000);
  EXPECT_EQ(platform::controlValue(state.tracks[x].start.bar), 20000);
  EXPECT_EQ(platform::controlValue(state.tracks[x].start.spin), 300000);
}

TEST_F(SettingsValues, TheEndHasItsOwnValueWhileTheTrackMoves) {
  EXPECT_FALSE(platform::windowEnabled(endBox(x)));
  chooseMovement(x, 2);
  EXPECT_TRUE(platform::windowEnabled(endBox(x)));
  commands.clear();
  dragBox(endBox(x), {7});
  EXPECT_EQ(current().startValues[x], 0);
  EXPECT_EQ(current().endValues[x], 70);
  EXPECT_EQ(commands, std::vector<std::string>{"1003 0x20006"});
}

TEST_F(SettingsValues, TheLimitsOfATrackCanBeChangedByItsEffect) {
  EXPECT_TRUE(setSettingsTrackRange(currentObject, 1, 0, -50, 50, 10));
  int range = track(1, 0);
  EXPECT_EQ(text(startBox(range)), "0.5");
  typeInto(startBox(range), "9");
  EXPECT_EQ(current().startValues[range], 50);
  EXPECT_FALSE(setSettingsTrackRange(currentObject, 1, 3, 0, 1, 1));
  EXPECT_FALSE(setSettingsTrackRange(create(effectGraphic, {}, 5), 0, 0, 0, 1, 1));
  relayoutSettings();
  EXPECT_EQ(state.tracks[range].start.maximum, 1000);
}

}  // namespace
}  // namespace zenlay::test
