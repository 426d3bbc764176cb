// What effects do with their buttons, lists and files, through the window and the real dialogs.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/media/fake_media.h"
#include "tests/support/scratch_folder.h"
#include "tests/ui/settings_stage.h"
#include "zenlay/media/video_picture.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/undo.h"

namespace zenlay::test {
namespace {

using platform::Window;
using settings::state;
using testing::ElementsAre;
using testing::HasSubstr;
namespace user = platform::user;

class SettingsEffects : public SettingsStage {
 protected:
  void SetUp() override {
    SettingsStage::SetUp();
    installFakeMedia();
    fakeMedia.files["/films/a.mp4"] = videoInfo(320, 240);  // 100 frames
    fakeMedia.files["/films/b.mp4"] = videoInfo(320, 240, 24, 30);
    fakeMedia.files["/films/b.mp4"].rate = 15;
  }
  VideoData& video(int slot = 0) { return *reinterpret_cast<VideoData*>(extraDataOf(currentObject, slot)); }
  void drop(int slot, const std::string& path) {
    user::dropFiles(settingsWindow(), {200, state.slots[slot].y + 5}, {&path, 1});
  }
};

TEST_F(SettingsEffects, AVideoFileGivesTheObjectItsLength) {
  showObject(create(effectVideoFile));
  current().startValues[0] = 20;
  current().modes[1] = modeRectilinear;
  current().endValues[1] = 500;
  current().checks[0] = 1;
  showObject(currentObject);
  fakeHost.fileName = "/films/a.mp4";
  user::click(state.checks[2].button);
  EXPECT_STREQ(video().media.file, "/films/a.mp4");
  EXPECT_EQ(video().frameCount, 100);
  EXPECT_EQ(label(2), "a.mp4");
  EXPECT_EQ(current().start, 10);
  EXPECT_EQ(current().end, 109);
  EXPECT_EQ(current().startValues[0], 1);
  EXPECT_EQ(current().modes[1], 0);
  EXPECT_EQ(current().startValues[1], 1000);
  EXPECT_EQ(current().checks[0], 0);
  EXPECT_EQ(state.tracks[0].start.maximum, 100);
  EXPECT_EQ(text(startBox(1)), "100.0");
  drop(0, "/films/b.mp4");  // 30 frames at half the project's rate
  EXPECT_EQ(current().end, 69);
  undo();
  EXPECT_STREQ(video().media.file, "/films/a.mp4");
  EXPECT_EQ(current().end, 109);
  undo();
  EXPECT_STREQ(video().media.file, "");
  EXPECT_EQ(current().end, 59);
  EXPECT_EQ(current().startValues[0], 20);
}

TEST_F(SettingsEffects, AFileThatCannotBeOpenedChangesNothing) {
  showObject(create(effectVideoFile));
  drop(0, "/films/a.mp4");
  drop(0, "/films/none.mp4");
  EXPECT_EQ(label(2), "a.mp4");
  EXPECT_EQ(video().frameCount, 100);
  ASSERT_EQ(desktop->boxes.size(), 1u);
  EXPECT_THAT(desktop->boxes[0].text, HasSubstr("Failed to read the video file"));
  desktop->boxes.clear();
  fakeHost.fileName = "";  // cancelled
  user::click(state.checks[2].button);
  EXPECT_TRUE(desktop->boxes.empty());
  drop(0, "/" + std::string(259, 'x'));
  EXPECT_EQ(label(2), "a.mp4");
  ASSERT_EQ(desktop->boxes.size(), 1u);
  EXPECT_EQ(desktop->boxes[0].text, "The path of the file is too long");
  desktop->boxes.clear();
  undo();
  EXPECT_EQ(label(2), "");
}

TEST_F(SettingsEffects, SectionsKeepTheirPlayback) {
  int second = createTwoSections({}, effectVideoFile).second;
  showObject(second);
  current().startValues[0] = 5;
  syncChain(second);
  drop(0, "/films/a.mp4");
  EXPECT_STREQ(video().media.file, "/films/a.mp4");
  EXPECT_EQ(current().startValues[0], 5);
  EXPECT_EQ(current().end, 59);
}

TEST_F(SettingsEffects, ASynchronizedSynthesisCountsAnOffset) {
  showObject(create(effectGraphic, {82}));
  int position = track(1, 0);
  EXPECT_EQ(text(state.tracks[position].name), "~Play");
  drop(1, "/films/a.mp4");
  EXPECT_EQ(current().end, 59);  // the object is not the video's
  EXPECT_EQ(state.tracks[position].start.maximum, 100);
  user::click(state.checks[check(1, 1)].box);
  EXPECT_EQ(text(state.tracks[position].name), "Offset");
  EXPECT_EQ(state.tracks[position].start.minimum, -3600);
  user::choose(state.checks[check(1, 4)].list, 2);
  EXPECT_EQ(video(1).mode, 2);
  undo();
  undo();
  EXPECT_EQ(text(state.tracks[position].name), "~Play");
  EXPECT_EQ(state.tracks[position].start.minimum, 1);
}

TEST_F(SettingsEffects, AFigureComesFromTheListOrFromAFile) {
  showObject(create(effectGraphic));
  Window* list = state.checks[0].list;
  auto name = [this] { return reinterpret_cast<const char*>(extraDataOf(currentObject, 0)) + 8; };
  user::choose(list, 6);
  EXPECT_EQ(extraDataOf(currentObject, 0)[0], 6);
  Window* title = state.slots[0].enable;
  EXPECT_EQ(text(title), "Graphic(Star)");
  EXPECT_EQ(platform::windowPlace(title).x + platform::windowPlace(title).width, 477);
  int last = platform::controlItemCount(list) - 1;
  fakeHost.fileName = "/pictures/leaf.png";
  user::choose(list, last);
  EXPECT_STREQ(name(), "*/pictures/leaf.png");
  EXPECT_EQ(label(0), "leaf.png");
  EXPECT_EQ(text(title), "Graphic(leaf.png)");
  EXPECT_EQ(platform::controlValue(list), last);
  fakeHost.fileName = "";
  user::choose(list, last);
  EXPECT_STREQ(name(), "*/pictures/leaf.png");
  drop(0, "/pictures/tree.png");
  EXPECT_STREQ(name(), "*/pictures/tree.png");
  user::choose(list, 1);
  EXPECT_STREQ(name(), "");
  EXPECT_EQ(label(0), "");
  drop(0, "/" + std::string(254, 'x'));  // with the star one byte too long
  EXPECT_STREQ(name(), "");
  EXPECT_EQ(platform::controlValue(list), 1);
  EXPECT_EQ(desktop->boxes.size(), 1u);
  desktop->boxes.clear();
}

// Every effect of the registry: its lists fit its data, whatever is chosen or pushed leaves a sound model.
TEST_F(SettingsEffects, EveryButtonAndListOfEveryEffectCanBeOperated) {
  for (int i = 0; i < registryCount; i++) {
    SCOPED_TRACE(effectList[i]->name);
    int object = create(i);
    ASSERT_GE(object, 0);
    showObject(object);
    for (int m = 0; m < state.checkRows; m++) {
      settings::CheckLine& row = state.checks[m];
      if (row.kind == checkDropDown) {
        int items = platform::controlItemCount(row.list);
        if (items == 0) continue;  // scripts, without an engine
        user::choose(row.list, items - 1);
        refreshSettings();
        EXPECT_EQ(platform::controlValue(row.list), items - 1);
      } else if (row.kind == checkButton) {
        user::click(row.button);
      } else {
        user::click(row.kind == checkToggle ? row.toggle : row.box);
        EXPECT_NE(current().checks[m] != 0, row.kind == 1);
      }
    }
    desktop->boxes.clear();
    EXPECT_EQ(modelFault(), "");
    deleteObject(object);
    EXPECT_EQ(currentObject, -1);
  }
}

TEST_F(SettingsEffects, ASceneIsChosenWithItsLengthAndDirection) {
  scenes[4].length = 80;
  scenes[3].flags |= sceneSetUp;
  ASSERT_EQ(setSceneName(3, "Credits"), 1);
  showObject(create(effectScene));
  EXPECT_EQ(label(1), "Scene 1");
  *reinterpret_cast<int32_t*>(extraDataOf(currentObject, 0)) = 3;
  refreshSettings();
  EXPECT_EQ(label(1), "Credits");
  user::click(state.checks[1].button);  // the dialog, cancelled
  EXPECT_EQ(extraDataOf(currentObject, 0)[0], 3);
  EXPECT_EQ(undoSteps(), 0);
  auto choose = [this](bool matches, bool reverses) {
    desktop->dialogs.push_back([=](platform::Window* dialog) {
      platform::setControlValue(platform::controlOf(dialog, 201), matches);
      platform::setControlValue(platform::controlOf(dialog, 202), reverses);
      platform::user::choose(platform::controlOf(dialog, 190), 3);
    });
    platform::user::click(settings::state.checks[1].button);
  };
  choose(false, true);
  EXPECT_EQ(current().startValues[1], -1000);
  EXPECT_EQ(current().startValues[0], 1);
  EXPECT_EQ(current().end, 59);
  choose(true, false);
  EXPECT_EQ(current().startValues[1], 1000);
  EXPECT_EQ(current().end, 10 + 80 - 1);
  undo();
  undo();
  EXPECT_EQ(current().startValues[1], 1000);
  EXPECT_EQ(current().end, 59);
}

}  // namespace
}  // namespace zenlay::test
