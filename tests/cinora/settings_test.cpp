#include "cinora/host/settings.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/scratch_folder.h"

namespace cinora {
namespace {

TEST(SettingsTest, OverridesWinAndNeverReachTheFile) {
  ::test::ScratchFolder folder;
  folder.write("a.ini", "[Zenlay]\nmax_w=1280\nkeep=7\n[Other]\nmax_w=5\n");
  Settings settings(folder / "a.ini");
  settings.override("zenlay", "MAX_W", "0x780");
  EXPECT_EQ(settings.getInt("Zenlay", "max_w", 0), 1920);
  EXPECT_EQ(settings.getInt("Other", "max_w", 0), 5);
  settings.set("Zenlay", "max_w", "1920");  // what a filter writes back at its end
  settings.set("Zenlay", "keep", "8");
  settings.set("New", "text", "two words");
  ASSERT_TRUE(settings.save());
  Settings again(folder / "a.ini");
  EXPECT_EQ(again.getInt("Zenlay", "max_w", 0), 1280);
  EXPECT_EQ(again.getInt("Zenlay", "keep", 0), 8);
  EXPECT_EQ(again.get("New", "text", ""), "two words");
  EXPECT_EQ(again.getInt("New", "text", 3), 3);
  EXPECT_EQ(again.getInt("New", "nothing", 4), 4);
}

TEST(SettingsTest, SavingMakesTheFolderOnceSomethingChanged) {
  ::test::ScratchFolder folder;
  std::string path = folder / "deep/er/a.ini";
  Settings settings(path);
  EXPECT_TRUE(settings.save());
  EXPECT_FALSE(std::filesystem::exists(path));
  settings.set("A", "b", "1");
  EXPECT_TRUE(settings.save());
  EXPECT_TRUE(std::filesystem::exists(path));
  Settings nowhere("/proc/nowhere/a.ini");
  nowhere.set("A", "b", "1");
  EXPECT_FALSE(nowhere.save());
}

TEST(SettingsTest, TheFileLiesInTheUsersConfiguration) {
  setenv("HOME", "/home/somebody", 1);
  setenv("XDG_CONFIG_HOME", "/etc/mine", 1);
  EXPECT_EQ(Settings::userFile(), "/etc/mine/cinora/cinora.ini");
  setenv("XDG_CONFIG_HOME", "relative", 1);  // to be ignored by its standard
  EXPECT_EQ(Settings::userFile(), "/home/somebody/.config/cinora/cinora.ini");
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(Settings::userFile(), "/home/somebody/.config/cinora/cinora.ini");
}

}  // namespace
}  // namespace cinora
