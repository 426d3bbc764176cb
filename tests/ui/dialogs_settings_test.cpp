// Preferences, grid settings and new projects.
#include <array>

#include "tests/ui/dialogs_stage.h"

namespace zenlay {
namespace {

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
  preferences.small_layer = 2;
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

  for (int build : {9929, 9930}) {
    environment.hostBuild = build;
    answer([&](Window* dialog) { EXPECT_EQ(enabled(dialog, 203), build == 9930); });
    editPreferences();
  }
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
      expectTexts(dialog, {{173, "8"}, {174, "4"}, {175, ""}, {176, ""}, {177, "2048"}, {178, "10"}, {179, "5"}});
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
      expectTexts(dialog, {{175, "640"}, {176, "480"}});
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
                         "film.zenlay_backup"};
  for (const char* name : names) std::ofstream(environment.backupDirectory + name) << "x";
  answer(dialogOk, {{178, "1"}});
  editPreferences();
  for (const char* name : names) EXPECT_EQ(fileExists(environment.backupDirectory + name), name != names[0]) << name;
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
    answer(dialogOk, {{171, row.typed}});
    EXPECT_TRUE(editGridSettings());
    EXPECT_EQ(preferences.grid.grid_tempo, row.tempo) << row.typed;
    answer([&](Window* dialog) { EXPECT_EQ(text(dialog, 171), row.shown); });
    EXPECT_FALSE(editGridSettings());
  }
}

TEST_F(Dialogs, GridSizes) {
  answer([&](Window* dialog) {
    expectTexts(dialog, {{171, "100"}, {184, "4"}, {172, "1"}, {180, "50"}, {182, "200"}, {183, "10"}});
    EXPECT_EQ(text(dialog, 181), "") << "as high as wide";
    click(dialog, dialogCancel);
  });
  EXPECT_FALSE(editGridSettings());
  answer(dialogOk, {{184, ""}, {172, " 0"}, {180, "64"}, {182, "300"}, {183, "12"}});
  EXPECT_TRUE(editGridSettings());
  const GridSettings& grid = preferences.grid;
  EXPECT_EQ((std::array{grid.grid_time, grid.grid_base}), (std::array{0, 1}));
  EXPECT_EQ((std::array{grid.grid2d_w, grid.grid2d_h}), (std::array{64, 64}));
  EXPECT_EQ((std::array{grid.grid3d_size, grid.grid3d_num}), (std::array{300, 12}));
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
  preferences.new_fmt = 1;
  const std::string rate = "30." + std::string(67, '0');
  answer([&](Window* dialog) {
    EXPECT_EQ(windowText(dialog), "Create a New Project");
    expectTexts(dialog, {{171, "640"}, {172, "480"}, {173, "30"}, {174, "44100"}});
    EXPECT_EQ(value(dialog, 201), 0);
    EXPECT_FALSE(enabled(dialog, 201));
    for (int id : {171, 172, 173, 174}) {
      EXPECT_TRUE(enabled(dialog, id));
      for (const char* bad : {"", "0", "-1", "x"}) {
        type(dialog, id, bad);
        click(dialog, dialogOk);
        EXPECT_EQ(desktop->boxes.size(), 1u) << id << bad;
        desktop->boxes.clear();
      }
      type(dialog, id, "1");
    }
    click(dialog, dialogCancel);
  });
  EXPECT_FALSE(editNewProject(false));
  answer(dialogOk, {{171, "1920"}, {172, "1080"}, {173, rate}, {174, "48000"}});
  EXPECT_TRUE(editNewProject(false));
  EXPECT_EQ((std::array{preferences.new_w, preferences.new_h, preferences.new_hz}), (std::array{1920, 1080, 48000}));
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
