// The small dialogs: lengths, texts, aliases, scenes.
#include "tests/ui/dialogs_stage.h"
#include "zenlay/effects/effect_services.h"

namespace zenlay {
namespace {

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
      expectTexts(dialog, {{seconds, row.shown}, {frames, std::to_string(row.frames)}});
      type(dialog, row.frames % 2 ? frames : seconds, "7");
    });
    EXPECT_EQ(askLength("", row.frames), 0) << "cancelled";
  }
  for (int used : {frames, seconds}) {
    answer(dialogOk, {{used, "7"}});
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
  auto typeAndPress = [&](const std::string& typed, int key) {
    answer([=](Window* dialog) {
      type(dialog, 171, typed.c_str());
      user::press(key);
    });
  };
  for (const Row& row : rows) {
    std::string name = "vor\xC3\xB6";
    answer([&](Window* dialog) {
      EXPECT_EQ(windowText(dialog), row.title);
      EXPECT_EQ(text(dialog, 171), "vor\xC3\xB6");
      EXPECT_EQ(controlOf(dialog, dialogOk) != nullptr, row.buttons);
      user::press(keyEscape);
    });
    EXPECT_FALSE(row.ask(name));
    typeAndPress("after", keyEnter);
    EXPECT_TRUE(row.ask(name));
    EXPECT_EQ(name, "after");
    typeAndPress("never", keyEscape);
    EXPECT_FALSE(row.ask(name));
    EXPECT_EQ(name, "after");
    // At most 259 bytes, and no half character.
    for (auto& [typed, kept] : {std::pair{std::string(258, 'x') + "\xC3\xB6", 258}, {std::string(300, 'y'), 259}}) {
      typeAndPress(typed, keyEnter);
      EXPECT_TRUE(row.ask(name));
      EXPECT_EQ(name, typed.substr(0, kept));
    }
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
    expectTexts(dialog, {{171, "Title"}, {172, "mine"}});
    type(dialog, 172, "");
    const std::string refusal = "The following characters cannot be used\n\\ / . : , ; * ? < > |";
    size_t boxes = 0;
    for (int field : {171, 172}) {
      type(dialog, field, "a/b");
      click(dialog, dialogOk);
      ASSERT_EQ(desktop->boxes.size(), ++boxes) << field;
      EXPECT_EQ(desktop->boxes.back().text, refusal);
      EXPECT_EQ(desktop->boxes.back().caption, "Zenlay");
      type(dialog, field, field == 171 ? "ok" : "");
    }
    type(dialog, 171, "");
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
    answer(dialogOk, {});
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
    EXPECT_EQ(controlItem(list, 4), "Scene 4");
    EXPECT_EQ(controlItem(list, controlValue(list)), "Credits");
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
  const std::string cut(62, 'n'), tooLong = cut + "\xC3\xB6";
  const Row rows[] = {
      {1, "Opening", "320", "200", true, "Opening", 320, 200, true, 0},
      {1, "", "320", "", true, "Scene 1", 0, 0, true, 0},
      {1, "Opening", "0", "200", false, "Opening", 0, 0, false, 0},
      {1, "Opening", "-4", "200", false, "Opening", 0, 0, false, 0},
      {1, tooLong.c_str(), "64", "48", true, cut.c_str(), 64, 48, true, 0},
      {0, "Main", "", "", true, "Main", 0, 0, false, 0},
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
  answer(dialogCancel, {{171, "no"}});
  EXPECT_FALSE(editSceneSettings());
  answer([&](Window* dialog) {
    EXPECT_EQ(text(dialog, 172), "");
    click(dialog, dialogOk);
  });
  EXPECT_TRUE(editSceneSettings());
  EXPECT_EQ(scenes[2].name, nullptr) << "a name that was only shown is not stored";

  for (int scene = 0, i = 0; scene < maxScenes; scene++)  // as many names as there is room for
    for (int layer = 0; layer < layersPerScene; layer++, i++)
      if (!setLayerName(scene, layer, (std::to_string(i) + std::string(58, 'x')).c_str())) break;
  setLayerName(maxScenes - 1, 0, "12");
  answer(dialogOk, {{171, "A name for which there is no room"}});
  EXPECT_TRUE(editSceneSettings());
  EXPECT_EQ(scenes[2].name, nullptr);
  EXPECT_EQ(desktop->boxes.back().text, "Unable to add more name");
}

// ---- Numbers ----

TEST_F(Dialogs, Numbers) {
  NumberItem numbers[] = {{"Type", 1, 0, 1}, {"Resolution", 64, 0, 2000}, {"Level", -5, -10, 10}};
  answer([&](Window* dialog) {
    EXPECT_EQ(windowText(dialog), "Parameter Settings");
    expectTexts(dialog, {{131, "Type"}, {132, "Resolution"}, {133, "Level"}, {171, "1"}, {172, "64"}, {173, "-5"}});
    type(dialog, 172, "9999999999");
    click(dialog, dialogCancel);
  });
  EXPECT_FALSE(askNumbers(numbers));
  EXPECT_EQ(numbers[1].value, 64);
  answer([&](Window* dialog) {
    type(dialog, 171, "2");
    type(dialog, 172, "9999999999");
    type(dialog, 173, "-11");
    user::press(keyEnter);
  });
  EXPECT_TRUE(askNumbers(numbers));
  EXPECT_EQ(numbers[0].value, 1);
  EXPECT_EQ(numbers[1].value, 2000);
  EXPECT_EQ(numbers[2].value, -10);
}

}  // namespace
}  // namespace zenlay
