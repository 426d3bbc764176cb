// The dialogs, answered by what a user does to their controls.
#include "zenlay/ui/dialogs.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/dialog.h"
#include "platform/ini.h"
#include "platform/paths.h"
#include "platform/window_record.h"
#include "tests/model/fixture.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/scripted_desktop.h"
#include "zenlay/host/module_files.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/scenes.h"
#include "zenlay/ui/color_presets.h"
#include "zenlay/ui/menus.h"

namespace zenlay {
namespace {

using namespace platform;
using Work = std::function<void(Window*)>;

struct Dialogs : test::Model {
  std::unique_ptr<platform::test::ScriptedDesktop> desktop;

  void SetUp() override {
    Model::SetUp();
    desktop = std::make_unique<platform::test::ScriptedDesktop>();
  }
  void TearDown() override {
    EXPECT_TRUE(desktop->dialogs.empty()) << "a dialog did not open";
    desktop.reset();
    Model::TearDown();
  }
  void answer(Work work) { desktop->dialogs.push_back(std::move(work)); }
};

void type(Window* dialog, int id, const char* text) { user::type(controlOf(dialog, id), text); }
void click(Window* dialog, int id) { user::click(controlOf(dialog, id)); }
std::string text(Window* dialog, int id) { return windowText(controlOf(dialog, id)); }
int value(Window* dialog, int id) { return controlValue(controlOf(dialog, id)); }
bool enabled(Window* dialog, int id) { return windowEnabled(controlOf(dialog, id)); }
bool muted(Window* dialog, int id) { return controlRecord(controlOf(dialog, id))->muted; }

// ---- Length ----

enum { frames = 171, seconds = 172 };

TEST_F(Dialogs, LengthFromSecondsAndFrames) {
  struct Row {
    int rate, scale, field;
    const char* text;
    int result;
  };
  constexpr Row rows[] = {
      {30, 1, seconds, "1.5", 45},
      {30, 1, seconds, "2", 60},
      {30, 1, seconds, "  0.04", 1},  // 1.2 + 0.5
      {30, 1, seconds, "1/3", 10},
      {30, 1, seconds, "0", 0},
      {30, 1, seconds, "", 0},
      {30, 1, seconds, "soon", 0},
      {30, 1, seconds, "-1", 0},
      {30, 1, seconds, "2147483647", 2147483647},
      {30, 1, seconds, "99999999999", 0},
      {30000, 1001, seconds, "0.1", 3},     // 2.997 + 0.5
      {30000, 1001, seconds, "10", 300},    // 299.7 + 0.5
      {24000, 1001, seconds, "1.001", 24},  // 24.0 exactly
      {30, 1, frames, "12", 12},
      {30, 1, frames, "-5", -5},
      {30, 1, frames, "12.7", 12},
      {30, 1, frames, "", 0},
      {30, 1, frames, "9999999999", 2147483647},
  };
  for (const Row& row : rows) {
    environment.clip.rate = row.rate;
    environment.clip.scale = row.scale;
    answer([&](Window* dialog) {
      EXPECT_EQ(windowText(dialog), "Change of length (section)");
      type(dialog, row.field, row.text);
      EXPECT_EQ(muted(dialog, seconds), row.field != seconds);
      EXPECT_EQ(muted(dialog, frames), row.field != frames);
      click(dialog, dialogOk);
    });
    EXPECT_EQ(askLength("Change of length (section)", 100), row.result) << row.text;
  }
}

TEST_F(Dialogs, LengthIsShownAndTheFieldRemembered) {
  struct Row {
    int frames, rate, scale;
    const char* shown;
  };
  constexpr Row rows[] = {
      {45, 30, 1, "1.50"}, {30, 30, 1, "1"}, {100, 30000, 1001, "3.33"},  {1, 60, 1, "0.01"},
      {32, 30, 1, "1.06"}, {0, 30, 1, "0"},  {320000, 30, 1, "10666.66"},
  };
  for (const Row& row : rows) {
    environment.clip.rate = row.rate;
    environment.clip.scale = row.scale;
    answer([&](Window* dialog) {
      EXPECT_EQ(text(dialog, seconds), row.shown);
      EXPECT_EQ(text(dialog, frames), std::to_string(row.frames));
      type(dialog, row.frames % 2 ? frames : seconds, "7");
    });
    EXPECT_EQ(askLength("", row.frames), 0) << "cancelled";
  }
  for (int used : {frames, seconds}) {
    answer([&](Window* dialog) {
      type(dialog, used, "7");
      click(dialog, dialogOk);
    });
    askLength("", 10);
    answer([&](Window* dialog) {
      EXPECT_EQ(focusedWindow(), controlOf(dialog, used));
      const ControlRecord* record = controlRecord(controlOf(dialog, used));
      EXPECT_EQ(record->selectionFirst, 0);
      EXPECT_GE(record->selectionLast, 2);
      EXPECT_FALSE(muted(dialog, used));
      EXPECT_TRUE(muted(dialog, used == frames ? seconds : frames));
    });
    EXPECT_EQ(askLength("", 10), 0);
  }
}

// ---- Texts ----

TEST_F(Dialogs, OneLineOfText) {
  struct Row {
    std::function<bool(std::string&)> ask;
    const char* title;
    bool buttons;
  };
  const Row rows[] = {
      {askLayerName, "Layer Name", true},
      {[](std::string& t) { return askText("", t, textBoxWide); }, "Parameter Settings", true},
      {[](std::string& t) { return askText("Move frame interval", t, textBoxSmall); }, "Move frame interval", false},
  };
  for (const Row& row : rows) {
    std::string name = "vor\xC3\xB6";
    answer([&](Window* dialog) {
      EXPECT_EQ(windowText(dialog), row.title);
      EXPECT_EQ(text(dialog, 171), "vor\xC3\xB6");
      EXPECT_EQ(controlOf(dialog, dialogOk) != nullptr, row.buttons);
      type(dialog, 171, "after");
      user::press(keyEnter);
    });
    EXPECT_TRUE(row.ask(name));
    EXPECT_EQ(name, "after");
    answer([&](Window* dialog) {
      type(dialog, 171, "never");
      user::press(keyEscape);
    });
    EXPECT_FALSE(row.ask(name));
    EXPECT_EQ(name, "after");
    answer([&](Window* dialog) {
      type(dialog, 171, (std::string(258, 'x') + "\xC3\xB6").c_str());
      user::press(keyEnter);
    });
    EXPECT_TRUE(row.ask(name));
    EXPECT_EQ(name, std::string(258, 'x')) << "no half character at byte 259";
    answer([&](Window* dialog) {
      type(dialog, 171, std::string(300, 'y').c_str());
      user::press(keyEnter);
    });
    EXPECT_TRUE(row.ask(name));
    EXPECT_EQ(name, std::string(259, 'y'));
  }
}

TEST_F(Dialogs, StandBesideTheCursor) {
  struct Row {
    const char* what;
    void (*ask)();
    Point offset;
  };
  static std::string name;
  static int color;
  const Row rows[] = {
      {"layer name", [] { askLayerName(name); }, {40, -25}},
      {"length", [] { askLength("", 1); }, {40, -35}},
      {"text", [] { askText("", name, textBoxWide); }, {0, -10}},
      {"small text", [] { askText("", name, textBoxSmall); }, {0, -10}},
      {"scene settings", [] { editSceneSettings(); }, {50, -50}},
      {"colour", [] { chooseColor(color); }, {34, -98}},
      {"alias", [] { askAliasName("", name, name); }, {-20, -40}},
  };
  user::moveCursor({900, 600});
  for (const Row& row : rows) {
    answer([&](Window* dialog) {
      Rect place = windowPlace(dialog);
      EXPECT_EQ(place.x, 900 + row.offset.x - place.width / 2) << row.what;
      EXPECT_EQ(place.y, 600 + row.offset.y - place.height / 2) << row.what;
      EXPECT_TRUE(windowStyle(dialog) & windowTopmost) << row.what;
    });
    row.ask();
  }
}

TEST_F(Dialogs, AliasNamesAreChecked) {
  ::test::ScratchFolder folder;
  environment.pluginDirectory = folder.path() + "/";
  std::string name = "Title", subfolder = "mine";
  answer([&](Window* dialog) {
    EXPECT_EQ(windowText(dialog), "New alias <all object>");
    EXPECT_EQ(text(dialog, 171), "Title");
    EXPECT_EQ(text(dialog, 172), "mine");
    const std::string refusal = "The following characters cannot be used\n\\ / . : , ; * ? < > |";
    size_t boxes = 0;
    for (const char* bad : {"a\\b", "a/b", "a:b", "a,b", "a;b", "a*b", "a?b", "a\"b", "a<b", "a>b", "a|b", "a.b"})
      for (int field : {171, 172}) {
        type(dialog, 171, "ok");
        type(dialog, 172, "");
        type(dialog, field, bad);
        click(dialog, dialogOk);
        ASSERT_EQ(desktop->boxes.size(), ++boxes) << bad;
        EXPECT_EQ(desktop->boxes.back().text, refusal);
        EXPECT_EQ(desktop->boxes.back().caption, "Zenlay");
      }
    type(dialog, 171, "");
    type(dialog, 172, "");
    click(dialog, dialogOk);
    EXPECT_EQ(desktop->boxes.size(), boxes) << "an empty name is refused without a word";
    type(dialog, 171, "Fresh");
    type(dialog, 172, "new");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(askAliasName("New alias <all object>", name, subfolder));
  EXPECT_EQ(name, "Fresh");
  EXPECT_EQ(subfolder, "new");
  EXPECT_TRUE(folderExists(folder.path() + "/new"));

  std::ofstream(folder.path() + "/new/Fresh.zla") << "[vo]";
  for (int reply : {boxCancel, boxOk}) {
    desktop->boxAnswers.push_back(reply);
    answer([&](Window* dialog) { click(dialog, dialogOk); });
    EXPECT_EQ(askAliasName("", name, subfolder), reply == boxOk);
    EXPECT_EQ(desktop->boxes.back().text, "Alias with the same name is present\nDo you want to overwrite it?");
  }
}

// ---- Scenes ----

constexpr int sceneList = 190;

TEST_F(Dialogs, ScenesAreChosenFromAList) {
  setSceneName(3, "Credits");
  answer([&](Window* dialog) {
    Window* list = controlOf(dialog, sceneList);
    EXPECT_EQ(controlItemCount(list), 50);
    EXPECT_EQ(controlItem(list, 0), "Root");
    EXPECT_EQ(controlItem(list, 3), "Credits");
    EXPECT_EQ(controlItem(list, 4), "Scene 4");
    EXPECT_EQ(controlValue(list), 3);
    EXPECT_EQ(windowPlace(dialog).x, 299);
    EXPECT_EQ(windowPlace(dialog).y, 200);
    EXPECT_EQ(clientSize(dialog), sizeOf(windowPlace(list)));
    EXPECT_FALSE(windowShown(controlOf(dialog, 201)));
    user::choose(list, 2);
  });
  EXPECT_EQ(chooseScene({300, 200}, 3, true, nullptr), 2);

  int options = scenePlayReverse | 0x100;
  answer([&](Window* dialog) {
    Window* list = controlOf(dialog, sceneList);
    EXPECT_EQ(controlItemCount(list), 49);
    EXPECT_EQ(controlItem(list, 0), "Scene 1");
    EXPECT_EQ(controlValue(list), 2);
    EXPECT_EQ(clientSize(dialog).height, windowPlace(list).height + 52);
    EXPECT_TRUE(windowShown(controlOf(dialog, 201)));
    EXPECT_EQ(value(dialog, 201), 0);
    EXPECT_EQ(value(dialog, 202), 1);
    click(dialog, 201);
    click(dialog, 202);
    user::choose(list, 48);
  });
  EXPECT_EQ(chooseScene({300, 200}, 3, false, &options), 49);
  EXPECT_EQ(options, sceneMatchLength | 0x100);

  answer([&](Window* dialog) {
    click(dialog, 201);
    user::press(keyEscape);
  });
  EXPECT_EQ(chooseScene({300, 200}, 3, false, &options), -1);
  EXPECT_EQ(options, sceneMatchLength | 0x100);
  answer([&](Window*) { user::press(keyEnter); });
  EXPECT_EQ(chooseScene({300, 200}, 7, true, nullptr), 7);
  answer([&](Window* dialog) { sendMessage(dialog, messageActivated, 0, 0); });
  EXPECT_EQ(chooseScene({300, 200}, 7, true, nullptr), -1);
  answer([&](Window* dialog) {
    Rect place = windowPlace(dialog), screen = virtualScreen();
    EXPECT_EQ(place.y + place.height, screen.y + screen.height);
  });
  EXPECT_EQ(chooseScene({300, 5000}, 3, false, &options), -1);
}

TEST_F(Dialogs, SceneSettings) {
  struct Row {
    int scene;
    const char *name, *width, *height;
    bool alpha;
    const char* expectedName;
    int expectedWidth, expectedHeight;
    bool expectedAlpha;
    size_t boxes;
  };
  const std::string tooLong(64, 'n');
  const Row rows[] = {
      {1, "Opening", "320", "200", true, "Opening", 320, 200, true, 0},
      {1, "", "320", "", true, "Opening", 0, 0, true, 0},
      {1, "Opening", "0", "200", false, "Opening", 0, 0, false, 0},
      {1, "Opening", "-4", "200", false, "Opening", 0, 0, false, 0},
      {1, tooLong.c_str(), "64", "48", true, "Opening", 64, 48, true, 1},
      {0, "Main", "", "", true, "Main", 0, 0, false, 1},
  };
  for (const Row& row : rows) {
    selectScene(row.scene);
    scenes[row.scene].flags |= sceneSetUp;
    answer([&](Window* dialog) {
      EXPECT_EQ(windowText(dialog), "Scene Settings");
      EXPECT_EQ(text(dialog, 171), sceneName(row.scene));
      EXPECT_EQ(enabled(dialog, 201), row.scene != 0);
      EXPECT_EQ(value(dialog, 201) != 0, (scenes[row.scene].flags & sceneHasAlpha) != 0);
      type(dialog, 171, row.name);
      type(dialog, 172, row.width);
      type(dialog, 173, row.height);
      if ((value(dialog, 201) != 0) != row.alpha) click(dialog, 201);
      click(dialog, dialogOk);
    });
    EXPECT_TRUE(editSceneSettings());
    EXPECT_STREQ(sceneName(row.scene), row.expectedName);
    EXPECT_EQ(scenes[row.scene].width, row.expectedWidth);
    EXPECT_EQ(scenes[row.scene].height, row.expectedHeight);
    EXPECT_EQ((scenes[row.scene].flags & sceneHasAlpha) != 0, row.expectedAlpha);
    EXPECT_EQ(desktop->boxes.size(), row.boxes);
  }
  selectScene(2);
  answer([&](Window* dialog) {
    type(dialog, 171, "no");
    click(dialog, dialogCancel);
  });
  EXPECT_FALSE(editSceneSettings());
  answer([&](Window* dialog) {
    EXPECT_EQ(text(dialog, 172), "");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(editSceneSettings());
  EXPECT_EQ(scenes[2].name, nullptr) << "a name that was only shown is not stored";
}

// ---- Colour ----

struct ColorDialogs : Dialogs {
  ::test::ScratchFolder folder;

  void SetUp() override {
    Dialogs::SetUp();
    environment.modulePath = folder.path() + "/zenlay.cnf";
    readModuleFiles(environment.modulePath);
    createMenus();
  }
  void TearDown() override {
    destroyMenus();
    Dialogs::TearDown();
  }
  static Point swatch(int preset) {
    Rect area = dialogPixels({7, 7, 56, 104});
    return {area.x + preset / 8 * area.width / 4 + 8, area.y + preset % 8 * area.height / 8 + 8};
  }
  static void expectChannels(Window* dialog, const char* r, const char* g, const char* b) {
    EXPECT_EQ(text(dialog, 171), r);
    EXPECT_EQ(text(dialog, 172), g);
    EXPECT_EQ(text(dialog, 173), b);
  }
};

TEST_F(ColorDialogs, SwatchesBoxesAndSpins) {
  int color = 0x102030;
  answer([&](Window* dialog) {
    EXPECT_EQ(windowText(dialog), "Select color");
    expectChannels(dialog, "16", "32", "48");
    user::mouse(dialog, messageLeftDown, swatch(9), mouseLeft);  // ff8080
    user::mouse(dialog, messageLeftUp, swatch(9));
    expectChannels(dialog, "255", "128", "128");
    user::mouse(dialog, messageLeftDown, swatch(31), mouseLeft);  // 202020
    user::mouse(dialog, messageLeftUp, swatch(31));
    expectChannels(dialog, "32", "32", "32");
    type(dialog, 172, "300");
    EXPECT_EQ(text(dialog, 172), "300") << "what the user types stays as it is";
    user::scroll(controlOf(dialog, 183), scrollPosition, 7);
    expectChannels(dialog, "32", "255", "7");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(chooseColor(color));
  EXPECT_EQ(color, 0x20FF07);

  answer([&](Window* dialog) {
    type(dialog, 171, "1");
    click(dialog, dialogCancel);
  });
  EXPECT_FALSE(chooseColor(color));
  EXPECT_EQ(color, 0x20FF07);
  answer([&](Window* dialog) { click(dialog, 122); });
  EXPECT_TRUE(chooseColor(color));
  EXPECT_EQ(color, noColor);
  answer([&](Window* dialog) {
    expectChannels(dialog, "", "", "");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(chooseColor(color));
  EXPECT_EQ(color, noColor);
  answer([&](Window* dialog) {
    type(dialog, 173, "5");
    expectChannels(dialog, "0", "0", "5");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(chooseColor(color));
  EXPECT_EQ(color, 5);
}

TEST_F(ColorDialogs, FieldAndStrip) {
  int color = 0xFFFFFF;
  answer([&](Window* dialog) {
    Rect field = dialogPixels({69, 7, 104, 104}), strip = dialogPixels({179, 7, 12, 104});
    Point top{field.x, field.y};
    user::mouse(dialog, messageLeftDown, top, mouseLeft);
    expectChannels(dialog, "255", "0", "0");
    EXPECT_EQ(mouseCapture(), dialog);
    user::mouse(dialog, messageMouseMove, {field.x + field.width / 3, field.y - 50}, mouseLeft);
    expectChannels(dialog, "0", "255", "0");
    user::mouse(dialog, messageMouseMove, {field.x + field.width / 3, field.y + 5000}, mouseLeft);
    expectChannels(dialog, "255", "255", "255");
    user::mouse(dialog, messageMouseMove, {field.x + field.width / 3, field.y}, mouseLeft);
    user::mouse(dialog, messageLeftUp, {field.x + field.width / 3, field.y});
    EXPECT_EQ(mouseCapture(), nullptr);
    user::mouse(dialog, messageMouseMove, top);
    expectChannels(dialog, "0", "255", "0");
    // To black and up again: hue and saturation are not forgotten.
    Point bottom{strip.x + 2, strip.y + strip.height - 1};
    user::mouse(dialog, messageLeftDown, bottom, mouseLeft);
    expectChannels(dialog, "0", "0", "0");
    user::mouse(dialog, messageMouseMove, {strip.x, strip.y}, mouseLeft);
    expectChannels(dialog, "0", "255", "0");
    user::mouse(dialog, messageLeftUp, {strip.x, strip.y});
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(chooseColor(color));
  EXPECT_EQ(color, 0x00FF00);
}

TEST_F(ColorDialogs, PickFromTheScreen) {
  static int shown;
  static Point asked;
  DesktopBackend backend = desktopBackend();
  backend.screenPixel = [](Point at) {
    asked = at;
    return shown;
  };
  setDesktopBackend(&backend);
  int color = 0x010203;
  answer([&](Window* dialog) {
    shown = 0xABCDEF;
    click(dialog, 121);
    EXPECT_EQ(windowText(dialog), "Please select a color with the mouse");
    EXPECT_EQ(mouseCapture(), dialog);
    user::press(keyEscape);  // gives up the pick, not the dialog
    EXPECT_EQ(windowText(dialog), "Select color");
    EXPECT_EQ(mouseCapture(), nullptr);
    click(dialog, 121);
    Point at = screenToClient(dialog, {11, 12});
    user::mouse(dialog, messageLeftDown, at, mouseLeft);
    user::mouse(dialog, messageLeftUp, at);
    EXPECT_EQ(asked, (Point{11, 12}));
    EXPECT_EQ(windowText(dialog), "Select color");
    expectChannels(dialog, "171", "205", "239");
    shown = -1;
    click(dialog, 121);
    user::mouse(dialog, messageLeftDown, swatch(0), mouseLeft);
    user::mouse(dialog, messageLeftUp, swatch(0));
    expectChannels(dialog, "171", "205", "239");
    EXPECT_EQ(windowText(dialog), "Select color");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(chooseColor(color));
  EXPECT_EQ(color, 0xABCDEF);
}

TEST_F(ColorDialogs, PresetsAreKept) {
  std::string file = folder.path() + "/zenlay.col";
  std::ofstream(file) << "; mine\n[color]\nno01=#123456\n";
  readModuleFiles(environment.modulePath);
  EXPECT_EQ(presetColor(1), 0x123456);
  int color = 0x0A0B0C;
  desktop->menus.push_back([](const Menu* menu) {
    EXPECT_EQ(platform::test::menuLines(menu), std::vector<std::string>{"Save current color to preset"});
    return 1;
  });
  answer([&](Window* dialog) {
    user::mouse(dialog, messageRightDown, swatch(17), mouseRight);
    user::mouse(dialog, messageRightUp, swatch(17));
  });
  chooseColor(color);
  IniFile written = IniFile::read(file);
  EXPECT_EQ(written.get("color", "no17", ""), "0a0b0c");
  EXPECT_EQ(written.get("color", "no01", ""), "#123456");
  readModuleFiles(environment.modulePath);
  EXPECT_EQ(presetColor(17), 0x0A0B0C);
  EXPECT_EQ(presetColor(18), 0x808000);

  environment.modulePath = folder.path() + "/nowhere/zenlay.cnf";
  desktop->menus.push_back([](const Menu*) { return 1; });
  answer([&](Window* dialog) { user::mouse(dialog, messageRightUp, swatch(18)); });
  chooseColor(color);
  ASSERT_EQ(desktop->boxes.size(), 1u);
  EXPECT_EQ(presetColor(18), 0x0A0B0C);
}

TEST(ColorModel, EveryColorComesBack) {
  for (int i = 0; i < 1 << 24; i += 4099) ASSERT_EQ(rgbOf(hueOf(i, {})), i);
  HueColor orange = hueOf(0xFF8000, {});
  EXPECT_NEAR(orange.hue, 30.1, 0.05);
  EXPECT_EQ(orange.saturation, 1);
  HueColor grey = hueOf(0x808080, {200, 0.5, 0.25});
  EXPECT_EQ(grey.hue, 200);
  EXPECT_EQ(grey.saturation, 0);
  HueColor black = hueOf(0, {200, 0.5, 0.25});
  EXPECT_EQ(black.hue, 200);
  EXPECT_EQ(black.saturation, 0.5);
  EXPECT_EQ(black.value, 0);
}

// ---- Preferences ----

TEST_F(Dialogs, PreferencesShowAndStoreEveryChoice) {
  struct Row {
    int id;
    int32_t Preferences::*value;
  };
  constexpr Row checks[] = {
      {201, &Preferences::sync_play_cursor}, {202, &Preferences::auto_scroll},  {205, &Preferences::group_open},
      {203, &Preferences::path_modify},      {207, &Preferences::divide_mode},  {216, &Preferences::add_pt_mode},
      {217, &Preferences::pair_move},        {215, &Preferences::divide_group}, {206, &Preferences::saturation},
      {204, &Preferences::auto_save},
  };
  constexpr Row radios[] = {
      {208, &Preferences::edit_time_type}, {210, &Preferences::config_time_type}, {212, &Preferences::small_layer}};
  preferences.small_layer = -1;  // read modulo 3
  answer([&](Window* dialog) {
    EXPECT_EQ(windowText(dialog), "Preferences");
    EXPECT_EQ(windowText(controlOf(dialog, 170)), "Zenlay version 0.92");
    for (const Row& row : checks) {
      EXPECT_EQ(value(dialog, row.id), preferences.*row.value) << row.id;
      click(dialog, row.id);
    }
    EXPECT_EQ(value(dialog, 209), 1);
    EXPECT_EQ(value(dialog, 210), 1);
    EXPECT_EQ(value(dialog, 214), 1);
    for (int id : {208, 211, 213}) click(dialog, id);
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(editPreferences());
  EXPECT_EQ(preferences.edit_time_type, 0);
  EXPECT_EQ(preferences.config_time_type, 1);
  EXPECT_EQ(preferences.small_layer, 1);
  Preferences defaults = preferences;
  resetPreferences();
  for (const Row& row : checks) EXPECT_EQ(defaults.*row.value, !(preferences.*row.value)) << row.id;
  EXPECT_TRUE(test::fakeHost.intSettings.empty()) << "toggles reach the store at the end of the program only";

  answer([&](Window* dialog) {
    for (const Row& row : checks) click(dialog, row.id);
    for (const Row& row : radios) click(dialog, row.id);
    click(dialog, dialogCancel);
  });
  EXPECT_FALSE(editPreferences());
  EXPECT_EQ(preferences.auto_scroll, 1);
  EXPECT_EQ(preferences.edit_time_type, 1);

  environment.hostBuild = 9929;
  answer([&](Window* dialog) { EXPECT_FALSE(enabled(dialog, 203)); });
  editPreferences();
  environment.hostBuild = 9930;
  answer([&](Window* dialog) { EXPECT_TRUE(enabled(dialog, 203)); });
  editPreferences();
}

TEST_F(Dialogs, PreferencesLimitNumbers) {
  struct Row {
    int id;
    const char* typed;
    const char* key;  // in the store at once
    int stored;
    int32_t Preferences::*value;
  };
  constexpr Row rows[] = {
      {178, "2000", nullptr, 1000, &Preferences::auto_save_num},
      {178, "-3", nullptr, 0, &Preferences::auto_save_num},
      {178, "12x", nullptr, 12, &Preferences::auto_save_num},
      {179, "0", nullptr, 1, &Preferences::auto_save_time},
      {179, "10001", nullptr, 10000, &Preferences::auto_save_time},
      {179, "", nullptr, 1, &Preferences::auto_save_time},
      {173, "33", "avi_handle_max", 32, nullptr},
      {173, "4", "avi_handle_max", 4, nullptr},
      {174, "32", "image_cache_max", 32, nullptr},
      {174, "99999999999", "image_cache_max", 32, nullptr},
      {174, "-1", "image_cache_max", 0, nullptr},
      {177, "512", "shadow_max", 512, nullptr},
  };
  for (const Row& row : rows) {
    resetPreferences();
    test::fakeHost.intSettings.clear();
    answer([&](Window* dialog) {
      EXPECT_EQ(text(dialog, 173), "8");
      EXPECT_EQ(text(dialog, 174), "4");
      EXPECT_EQ(text(dialog, 175) + text(dialog, 176), "");
      EXPECT_EQ(text(dialog, 177), "0");
      EXPECT_EQ(text(dialog, 178), "10");
      EXPECT_EQ(text(dialog, 179), "5");
      type(dialog, row.id, row.typed);
      click(dialog, dialogOk);
    });
    EXPECT_TRUE(editPreferences());
    std::map<std::string, int> expected;
    if (row.key) expected[row.key] = row.stored;
    EXPECT_EQ(test::fakeHost.intSettings, expected) << row.typed;
    if (row.value) {
      EXPECT_EQ(preferences.*row.value, row.stored) << row.typed;
    }
  }
}

TEST_F(Dialogs, PreferencesTakeBothSidesOfTheLargestImage) {
  struct Row {
    const char *width, *height;
    int storedWidth, storedHeight;
  };
  for (const Row& row : {Row{"1920", "", 0, 0}, {"1920", "1080", 1920, 1080}, {"0", "1080", 0, 0}}) {
    test::fakeHost.intSettings = {{"max_w", 640}, {"max_h", 480}};
    answer([&](Window* dialog) {
      EXPECT_EQ(text(dialog, 175), "640");
      EXPECT_EQ(text(dialog, 176), "480");
      type(dialog, 175, row.width);
      type(dialog, 176, row.height);
      click(dialog, dialogOk);
    });
    editPreferences();
    EXPECT_EQ(test::fakeHost.intSettings,
              (std::map<std::string, int>{{"max_w", row.storedWidth}, {"max_h", row.storedHeight}}));
  }
  test::fakeHost.intSettings = {{"max_w", 640}, {"max_h", 0}};
  answer([&](Window* dialog) { EXPECT_EQ(text(dialog, 175), ""); });
  editPreferences();
}

TEST_F(Dialogs, PreferencesPruneBackups) {
  ::test::ScratchFolder folder;
  environment.backupDirectory = folder.path() + "/";
  const char* names[] = {"2026-01-02_03-04-05.zenlay_backup", "2026-01-02_03-04-06.zenlay_backup",
                         "2027-01-01_00-00-00.zenlay_backup", "film.zenlay_backup"};
  for (const char* name : names) std::ofstream(folder.path() + "/" + name) << "x";
  for (const char* kept : {"2", "0"}) {
    answer([&](Window* dialog) {
      type(dialog, 178, kept);
      click(dialog, dialogOk);
    });
    editPreferences();
    EXPECT_FALSE(fileExists(environment.backupDirectory + names[0]));
    EXPECT_EQ(fileExists(environment.backupDirectory + names[1]), *kept == '2');
    EXPECT_EQ(fileExists(environment.backupDirectory + names[2]), *kept == '2');
    EXPECT_TRUE(fileExists(environment.backupDirectory + names[3]));
  }
}

// ---- Grid ----

TEST_F(Dialogs, GridTempo) {
  struct Row {
    const char* typed;
    int tempo;
    const char* shown;
  };
  constexpr Row rows[] = {
      {"120.5", 1205000, "120.5"},
      {"  90", 900000, "90"},
      {"100.", 1000000, "100"},
      {".25", 2500, "0.25"},
      {"99.99999", 999999, "99.9999"},
      {"60.0001", 600001, "60.0001"},
      {"60.0400x7", 600400, "60.04"},
      {"fast", 0, "0"},
      {"999999999999", 2147483647, "214748.3647"},
  };
  for (const Row& row : rows) {
    answer([&](Window* dialog) {
      EXPECT_EQ(windowText(dialog), "Grid Setting");
      type(dialog, 171, row.typed);
      click(dialog, dialogOk);
    });
    EXPECT_TRUE(editGridSettings());
    EXPECT_EQ(preferences.grid.grid_tempo, row.tempo) << row.typed;
    answer([&](Window* dialog) { EXPECT_EQ(text(dialog, 171), row.shown); });
    EXPECT_FALSE(editGridSettings());
  }
}

TEST_F(Dialogs, GridSizes) {
  answer([&](Window* dialog) {
    EXPECT_EQ(text(dialog, 171), "100");
    EXPECT_EQ(text(dialog, 184), "4");
    EXPECT_EQ(text(dialog, 172), "1");
    EXPECT_EQ(text(dialog, 180), "50");
    EXPECT_EQ(text(dialog, 181), "") << "as high as wide";
    EXPECT_EQ(text(dialog, 182), "200");
    EXPECT_EQ(text(dialog, 183), "10");
    type(dialog, 184, "");
    type(dialog, 172, " 0");
    type(dialog, 180, "64");
    type(dialog, 182, "300");
    type(dialog, 183, "12");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(editGridSettings());
  const GridSettings& grid = preferences.grid;
  EXPECT_EQ(grid.grid_time, 0);
  EXPECT_EQ(grid.grid_base, 1);
  EXPECT_EQ(grid.grid2d_w, 64);
  EXPECT_EQ(grid.grid2d_h, 64);
  EXPECT_EQ(grid.grid3d_size, 300);
  EXPECT_EQ(grid.grid3d_num, 12);
  answer([&](Window* dialog) {
    EXPECT_EQ(text(dialog, 184), "");
    type(dialog, 181, "48");
    type(dialog, 172, "-7");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(editGridSettings());
  EXPECT_EQ(grid.grid2d_h, 48);
  EXPECT_EQ(grid.grid_base, 1);
  answer([&](Window* dialog) { EXPECT_EQ(text(dialog, 181), "48"); });
  editGridSettings();
}

// ---- New project ----

TEST_F(Dialogs, NewProject) {
  preferences.new_w = 0;
  preferences.new_h = -1;
  preferences.new_hz = 0;
  preferences.new_fps[0] = 0;
  preferences.new_fmt = 1;
  const std::string rate(70, '9');
  answer([&](Window* dialog) {
    EXPECT_EQ(windowText(dialog), "Create a New Project");
    EXPECT_EQ(text(dialog, 171), "640");
    EXPECT_EQ(text(dialog, 172), "480");
    EXPECT_EQ(text(dialog, 173), "30");
    EXPECT_EQ(text(dialog, 174), "44100");
    EXPECT_EQ(value(dialog, 201), 0);
    EXPECT_FALSE(enabled(dialog, 201));
    for (int id : {171, 172, 173, 174}) EXPECT_TRUE(enabled(dialog, id));
    type(dialog, 171, "1920");
    type(dialog, 172, "1080");
    type(dialog, 173, rate.c_str());
    type(dialog, 174, "48000");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(editNewProject(false));
  EXPECT_EQ(preferences.new_w, 1920);
  EXPECT_EQ(preferences.new_h, 1080);
  EXPECT_EQ(preferences.new_hz, 48000);
  EXPECT_EQ(std::string(preferences.new_fps), rate.substr(0, 64));
  EXPECT_EQ(preferences.new_fmt, 1) << "not this dialog's affair while nothing is imported";

  answer([&](Window* dialog) {
    EXPECT_EQ(value(dialog, 201), 1);
    EXPECT_TRUE(enabled(dialog, 201));
    for (int id : {171, 172, 173, 174}) EXPECT_FALSE(enabled(dialog, id));
    click(dialog, 201);
    for (int id : {171, 172, 173, 174}) EXPECT_TRUE(enabled(dialog, id));
    type(dialog, 173, "24");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(editNewProject(true));
  EXPECT_EQ(preferences.new_fmt, 0);
  EXPECT_STREQ(preferences.new_fps, "24");
  answer([&](Window* dialog) {
    type(dialog, 171, "1");
    user::press(keyEscape);
  });
  EXPECT_FALSE(editNewProject(true));
  EXPECT_EQ(preferences.new_w, 1920);
}

}  // namespace
}  // namespace zenlay
