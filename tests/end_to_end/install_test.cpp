// The installed program in the hands of somebody who never started it before.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/end_to_end/run_program.h"

namespace cinora::test {
namespace {

namespace fs = std::filesystem;

struct Installed : testing::Test {
  ::test::ScratchFolder prefix, home;

  void SetUp() override {
    Outcome outcome = runProgram({"cmake", "--install", BINARY_DIR, "--prefix", prefix.path()});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
  }
  Outcome run(const std::vector<std::string>& arguments) {
    std::vector<std::string> words{"env", "-u", "XDG_CONFIG_HOME", "-u", "XDG_DATA_HOME", "HOME=" + home.path()};
    words.push_back(prefix / "bin/cinora");
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProgram(words, {.folder = home.path()});
  }
};

TEST_F(Installed, TheFirstStartLinksTheModule) {
  std::string module = home / ".local/share/cinora/zenlay.cnf";
  Outcome first = run({"effects", "Graphic"});
  EXPECT_EQ(first.status, 0);
  EXPECT_EQ(first.errors, "");
  EXPECT_EQ(first.output.substr(0, 7), "Graphic");
  EXPECT_EQ(fs::read_symlink(module), fs::canonical(prefix / "lib/cinora/zenlay.cnf"));
  // What the user put there stays, and a module that went away comes back.
  fs::remove(module);
  home.write(".local/share/cinora/zenlay.ini", "[extension]\n");
  EXPECT_EQ(run({"effects", "Graphic"}).output, first.output);
  EXPECT_EQ(contentsOf(home / ".local/share/cinora/zenlay.ini"), "[extension]\n");
}

TEST_F(Installed, WhatThePluginKeepsLiesBesideTheLink) {
  home.write("film.zlo",
             "[zenlay]\nwidth=16\nheight=16\nrate=25\nscale=1\nlength=1\naudio_rate=44100\naudio_ch=2\n"
             "[0]\nstart=1\nend=1\nlayer=1\noverlay=1\ncamera=0\n[0.0]\n_name=Graphic\n[0.1]\n_name=Standard "
             "drawing\n");
  ASSERT_EQ(run({"render", "film.zlo", "-o", "film.raw", "--set", "auto_save=1"}).status, 0);
  EXPECT_EQ(fs::file_size(home / "film.raw"), 16u * 16 * 6);
  EXPECT_EQ(namesIn(home / ".local/share/cinora/backup").size(), 1u);
  EXPECT_FALSE(fs::exists(prefix / "lib/cinora/backup"));
}

TEST_F(Installed, WithoutItsModuleItSaysSo) {
  fs::remove(prefix / "lib/cinora/zenlay.cnf");
  Outcome outcome = run({"effects"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.errors.find("no editing plug-in"), std::string::npos) << outcome.errors;
  EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
}

}  // namespace
}  // namespace cinora::test
