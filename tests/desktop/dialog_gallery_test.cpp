// The dialogs on the desktop: every one in both themes as a picture to look at (out/screenshots/).
#define QT_NO_KEYWORDS  // `slots` is a field of the model's records
#include <gtest/gtest.h>

#include <QTimer>
#include <functional>

#include "platform/backend.h"
#include "platform/qt/qt_desktop.h"
#include "platform/window_record.h"
#include "tests/support/fake_host.h"
#include "tests/support/qt/events.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/host/module_files.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/scenes.h"
#include "zenlay/ui/dialogs/dialogs.h"

namespace zenlay {
namespace {

using namespace platform;

std::string text = "Opening title";

struct Row {
  const char* name;
  std::function<void()> open;
};
const Row rows[] = {
    {"preferences", [] { editPreferences(); }},
    {"grid_setting", [] { editGridSettings(); }},
    {"new_project", [] { editNewProject(true); }},
    {"layer_name", [] { askLayerName(text); }},
    {"length", [] { askLength("Change of length (section)", 45); }},
    {"parameter", [] { askText("", text, textBoxWide); }},
    {"parameter_small",
     [] {
       std::string interval = "10";
       askText("Move frame interval", interval, textBoxSmall);
     }},
    {"numbers",
     [] {
       NumberItem numbers[] = {{"Waveform type (0/1)", 1, 0, 1}, {"Hx resolution", 64, 0, 2000}};
       askNumbers(numbers);
     }},
    {"scene_list",
     [] {
       int options = sceneMatchLength;
       chooseScene({10, 10}, 3, false, &options);
     }},
    {"scene_settings", [] { editSceneSettings(); }},
    {"color",
     [] {
       int color = 0x3C8CDC;
       chooseColor(color);
     }},
    {"color_none",
     [] {
       int color = noColor;
       chooseColor(color);
     }},
    {"alias_name",
     [] {
       std::string folder = "titles";
       askAliasName("New alias <all object>", text, folder);
     }},
};

/// Labels, buttons and check boxes show their whole text, inside the dialog and beside each other.
void expectClearLayout(Window* dialog, const char* name) {
  const std::vector<Window*>& controls = dialog->children;
  Rect client{0, 0, clientSize(dialog).width, clientSize(dialog).height};
  for (size_t i = 0; i < controls.size(); i++) {
    Rect place = windowPlace(controls[i]);
    EXPECT_EQ(intersect(place, client), place) << name << ": " << windowText(controls[i]);
    ControlKind kind = controlKind(controls[i]);
    if (kind == controlGroupBox) continue;
    if (kind != controlEdit) {
      bool hasBox = kind == controlCheckBox || kind == controlRadioButton;
      int needed = textSize(windowText(controls[i]).c_str()).width + (hasBox ? 20 : 0);
      EXPECT_LE(needed, place.width) << name << ": " << windowText(controls[i]);
    }
    for (size_t j = 0; j < i; j++)
      if (controlKind(controls[j]) != controlGroupBox && windowShown(controls[j]) && windowShown(controls[i])) {
        EXPECT_TRUE(isEmpty(intersect(place, windowPlace(controls[j])))) << name << ": " << windowText(controls[i]);
      }
  }
}

struct DialogGallery : testing::Test {
  const DesktopBackend& desktop = desktopBackend();

  void SetUp() override {
    test::resetFakeHost();
    setDesktopBackend(&desktop);
    environment.timelineWindow =
        createWindow(nullptr, nullptr, nullptr, {"Timeline", "Timeline", {100, 100, 600, 400}, windowVisible});
    platform::test::showActive(environment.timelineWindow);
    readModuleFiles("");
  }
  void TearDown() override {
    destroyWindow(environment.timelineWindow);
    test::resetFakeHost();
    setDesktopBackend(&desktop);
    qt::setTheme(qt::themeDark);
  }
  /// Does this in the dialog that the next call opens, and cancels it unless the work closes it.
  static void whileOpen(std::function<void(Window*)> work, bool closes = false) {
    QTimer::singleShot(100, [work, closes] {
      Window* dialog = topLevelWindows().back();
      ASSERT_TRUE(windowStyle(dialog) & windowDialog);
      EXPECT_EQ(activeWindow(), dialog);
      work(dialog);
      if (!closes) endDialog(dialog, dialogCancel);
    });
  }
};

TEST_F(DialogGallery, EveryDialogInBothThemes) {
  setSceneName(3, "Credits");
  scenes[0].width = 1920;
  scenes[0].height = 1080;
  for (qt::Theme theme : {qt::themeLight, qt::themeDark}) {
    qt::setTheme(theme);
    for (const Row& row : rows) {
      bool seen = false;
      whileOpen([&](Window* dialog) {
        seen = true;
        expectClearLayout(dialog, row.name);
        platform::test::savePicture(platform::test::picture(dialog),
                                    std::string("dialog_") + row.name + (theme == qt::themeDark ? "_dark" : "_light"));
      });
      row.open();
      EXPECT_TRUE(seen) << row.name;
    }
  }
}

TEST_F(DialogGallery, OpenWhileAnotherProgramHasTheFocus) {
  reportFocus(nullptr);
  bool opened = false;
  auto work = [&](Window* dialog) {
    opened = true;
    platform::test::typeText("x");
    EXPECT_FALSE(windowEnabled(environment.timelineWindow));
    EXPECT_EQ(windowText(controlOf(dialog, 171)), "x");
    platform::test::typeKey(Qt::Key_Return);
  };
  whileOpen(work, true);
  EXPECT_TRUE(askLayerName(text));
  EXPECT_TRUE(opened);
  EXPECT_EQ(text, "x");
  EXPECT_TRUE(windowEnabled(environment.timelineWindow));
}

}  // namespace
}  // namespace zenlay
