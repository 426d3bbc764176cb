// The settings window as the desktop shows it, as pictures to look at: out/screenshots/.
#define QT_NO_KEYWORDS  // ObjectRecord has slots
#include <gtest/gtest.h>

#include <cstring>

#include "platform/backend.h"
#include "platform/qt/qt_desktop.h"
#include "tests/support/fake_host.h"
#include "tests/support/qt/events.h"
#include "zenlay/effects/registry.h"
#include "zenlay/entry/plugin.h"
#include "zenlay/files/default_settings.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay::test {
namespace {

using platform::Window;
using settings::state;

class SettingsPictures : public testing::Test {
 protected:
  Window* timeline = nullptr;

  void SetUp() override {
    const platform::DesktopBackend& desktop = platform::desktopBackend();
    resetFakeHost(1920, 1080);
    platform::setDesktopBackend(&desktop);
    timeline = platform::createWindow(
        nullptr,
        [](Window*, uint32_t message, intptr_t first, intptr_t second, void*) -> intptr_t {
          return message == platform::messageCommand && first == commandApplySettingsId ? applySettings(second) : 0;
        },
        nullptr, {.place = {0, 0, 800, 300}, .style = platform::windowVisible});
    mainFilterRecord.functions = &fakeHost.functions;
    mainFilterRecord.window = timeline;
    ASSERT_EQ(mainFilterRecord.initialise(&mainFilterRecord), 1);
    environment.projectOpen = true;
    environment.clip = fakeHost.clip;
    timelineView.sceneLength = 300;
    if (!settingsWindow()) createSettingsWindow();
  }
  void TearDown() override {
    destroySettingsWindow();
    mainFilterRecord.exit(&mainFilterRecord);
    mainFilterRecord.window = nullptr;
    platform::destroyWindow(timeline);
    settle();
  }
  static constexpr int commandApplySettingsId = 1003;

  static int create(int effect, std::initializer_list<int> filters, int layer) {
    int object = createObjectWithDefaults(10, layer, effect);
    for (int filter : filters) EXPECT_GE(addEffectWithDefaults(object, filter), 0);
    setSectionLength(object, 100);
    return object;
  }
  static void save(const std::string& name) {
    for (platform::qt::Theme theme : {platform::qt::themeLight, platform::qt::themeDark}) {
      platform::qt::setTheme(theme);
      platform::test::settle();
      platform::test::savePicture(platform::test::picture(settingsWindow()),
                                  "settings_" + name + (theme == platform::qt::themeDark ? "_dark" : "_light"));
    }
  }
  static void settle() { platform::test::settle(); }
};

TEST_F(SettingsPictures, TextVideoAndAFullObject) {
  using namespace platform::test;
  int text = create(effectText, {18, 35}, 0);
  showObject(text);
  settle();
  save("text");

  int video = create(effectVideoFile, {}, 1);
  beginUndoStep();
  addSection(video, 50, sectionSplit);
  strcpy(reinterpret_cast<char*>(extraDataOf(video, 0)), "/home/films/a long name of a video file.mp4");
  showObject(video);
  timelineView.cursorFrame = 30;
  moveSettingsCursor();
  for (int t : {2, 3, 4}) {
    objects[video].modes[t] = modeRectilinear;
    objects[video].endValues[t] = 1234 * t;
  }
  syncChain(video);
  refreshSettings();
  save("video");

  int full = create(effectGraphic, {18, 28, 33, 34, 36, 70, 75, 30, 25, 41}, 2);
  EXPECT_EQ(usedSlots(full), 12);
  showObject(full);
  save("full");
  EXPECT_EQ(platform::clientSize(settingsWindow()).height, state.height);
}

// The user's own events, on the real widgets.
TEST_F(SettingsPictures, ADragAWheelAndTypingReachTheModel) {
  using namespace platform::test;
  int object = create(effectGraphic, {18}, 0);
  showObject(object);
  showActive(settingsWindow());
  int x = objects[object].slots[2].firstTrack;
  Window* box = state.tracks[x].start.box;
  press(box, {20, 8});
  moveTo(box, {25, 8}, Qt::LeftButton);
  moveTo(box, {30, 8}, Qt::LeftButton);
  release(box, {30, 8});
  EXPECT_EQ(objects[object].startValues[x], 100);
  click(box, {20, 8});
  typeText("-12.5");
  settle();
  EXPECT_EQ(objects[object].startValues[x], -125);
  typeKey(Qt::Key_Tab);
  EXPECT_EQ(platform::focusedWindow(), state.tracks[x + 1].start.box);
  typeText("7");
  typeKey(Qt::Key_Return);
  EXPECT_EQ(objects[object].startValues[x + 1], 70);
  EXPECT_EQ(platform::windowText(state.tracks[x + 1].start.box), "7.0");
  EXPECT_EQ(platform::focusedWindow(), settingsWindow());
  click(state.checks[objects[object].slots[1].firstCheck].box, {6, 8});
  EXPECT_EQ(objects[object].checks[objects[object].slots[1].firstCheck], 1);
}

}  // namespace
}  // namespace zenlay::test
