// The colour dialog and its presets.
#include "tests/ui/dialogs_stage.h"

namespace zenlay {
namespace {

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
    expectTexts(dialog, {{171, r}, {172, g}, {173, b}});
  }
  static void pressAt(Window* dialog, Point at) {
    user::mouse(dialog, messageLeftDown, at, mouseLeft);
    user::mouse(dialog, messageLeftUp, at);
  }
};

TEST_F(ColorDialogs, SwatchesBoxesAndSpins) {
  int color = 0x102030;
  answer([&](Window* dialog) {
    EXPECT_EQ(windowText(dialog), "Select color");
    expectChannels(dialog, "16", "32", "48");
    pressAt(dialog, swatch(9));  // ff8080
    expectChannels(dialog, "255", "128", "128");
    pressAt(dialog, swatch(31));  // 202020
    expectChannels(dialog, "32", "32", "32");
    type(dialog, 172, "300");
    EXPECT_EQ(text(dialog, 172), "300") << "what the user types stays as it is";
    user::scroll(controlOf(dialog, 183), scrollPosition, 7);
    expectChannels(dialog, "32", "255", "7");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(chooseColor(color));
  EXPECT_EQ(color, 0x20FF07);

  answer(dialogCancel, {{171, "1"}});
  EXPECT_FALSE(chooseColor(color));
  EXPECT_EQ(color, 0x20FF07);
  answer(122, {});
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
    pressAt(dialog, at);
    EXPECT_EQ(asked, (Point{11, 12}));
    EXPECT_EQ(windowText(dialog), "Select color");
    expectChannels(dialog, "171", "205", "239");
    shown = -1;
    click(dialog, 121);
    pressAt(dialog, swatch(0));
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

}  // namespace
}  // namespace zenlay
