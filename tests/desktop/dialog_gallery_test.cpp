// Every dialog in both themes, as pictures to look at: out/screenshots/ in the build.
#define QT_NO_KEYWORDS  // `slots` is a field of the model's records
#include <gtest/gtest.h>

#include <QDir>
#include <QTimer>
#include <functional>

#include "platform/backend.h"
#include "platform/qt/qt_desktop.h"
#include "platform/window_record.h"
#include "tests/support/fake_host.h"
#include "tests/support/qt/events.h"
#include "zenlay/host/module_files.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/scenes.h"
#include "zenlay/ui/dialogs.h"

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

TEST(DialogGallery, EveryDialogInBothThemes) {
  const DesktopBackend& desktop = desktopBackend();
  test::resetFakeHost();
  setDesktopBackend(&desktop);
  environment.timelineWindow =
      createWindow(nullptr, nullptr, nullptr, {"Timeline", "Timeline", {100, 100, 600, 400}, windowVisible});
  platform::test::showActive(environment.timelineWindow);
  readModuleFiles("");
  setSceneName(3, "Credits");
  scenes[0].width = 1920;
  scenes[0].height = 1080;
  QDir().mkpath(BINARY_DIR "/out/screenshots");
  for (qt::Theme theme : {qt::themeLight, qt::themeDark}) {
    qt::setTheme(theme);
    for (const Row& row : rows) {
      bool seen = false;
      QTimer::singleShot(100, [&] {
        Window* dialog = topLevelWindows().back();
        seen = windowStyle(dialog) & windowDialog;
        ASSERT_TRUE(seen) << row.name;
        EXPECT_EQ(activeWindow(), dialog) << row.name;
        expectClearLayout(dialog, row.name);
        QString file = QString(BINARY_DIR "/out/screenshots/dialog_%1_%2.png")
                           .arg(row.name, theme == qt::themeDark ? "dark" : "light");
        EXPECT_TRUE(platform::test::picture(dialog).save(file));
        endDialog(dialog, dialogCancel);
      });
      row.open();
      EXPECT_TRUE(seen) << row.name;
    }
  }
  qt::setTheme(qt::themeDark);
  destroyWindow(environment.timelineWindow);
  test::resetFakeHost();
  setDesktopBackend(&desktop);
}

}  // namespace
}  // namespace zenlay
