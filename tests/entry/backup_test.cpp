#include "zenlay/ui/project/backup.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>

#include "platform/paths.h"
#include "tests/support/fake_host.h"
#include "tests/support/scratch_folder.h"
#include "zenlay/effects/registry.h"
#include "zenlay/entry/plugin.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"

namespace zenlay {
namespace {

using test::fakeHost;

struct Backup : testing::Test {
  ::test::ScratchFolder scratch;

  void SetUp() override {
    test::resetFakeHost();
    mainFilterRecord.functions = &fakeHost.functions;
    ASSERT_EQ(mainFilterRecord.initialise(&mainFilterRecord), 1);
    environment.projectOpen = true;
    environment.clip = fakeHost.clip;
    environment.backupDirectory = scratch / "backup/";
    environment.hostFunctions->setFrameCount(nullptr, 300);
  }
  void TearDown() override { mainFilterRecord.exit(&mainFilterRecord); }
  static std::vector<std::string> names() { return platform::filesMatching(environment.backupDirectory, "*"); }
};

TEST_F(Backup, RefusesAnEmptyProjectAndForeignFiles) {
  std::string path = scratch / "empty.zenlay_backup";
  EXPECT_NE(writeBackup(path.c_str(), true), nullptr);
  struct Case {
    std::string bytes;
    const char* message;
  };
  std::string header(36, '\0');
  memcpy(header.data(), "80ZL", 4);
  std::string otherVersion = header;
  otherVersion[4] = 1;
  std::string hugeSize = header;
  const int32_t version = 9200, size = 0x7FFFFFFF;
  memcpy(hugeSize.data() + 4, &version, 4);
  memcpy(hugeSize.data() + 32, &size, 4);
  const Case cases[] = {
      {"", "Failed to read the backup file."},
      {header.substr(0, 35), "Failed to read the backup file."},
      {otherVersion, "This is a backup file of a different version."},
      {hugeSize, "Read buffer is not enough."},
  };
  for (const Case& c : cases) {
    std::ofstream(path, std::ios::binary) << c.bytes;
    test::shownMessages().clear();
    EXPECT_EQ(restoreBackup(path.c_str()), 0);
    ASSERT_EQ(test::shownMessages().size(), 1u);
    EXPECT_EQ(test::shownMessages()[0], c.message);
  }
}

TEST_F(Backup, KeepsTheStatedNumberOfFiles) {
  ASSERT_GE(createObject(0, 0, effectGraphic, -1), 0);
  platform::makeFolders(environment.backupDirectory);
  for (const char* name : {"2020-01-01_00-00-00", "2021-01-01_00-00-00", "2022-01-01_00-00-00"}) {
    std::ofstream(environment.backupDirectory + name + ".zenlay_backup") << "x";
  }
  preferences.auto_save_num = 3;
  writeAutomaticBackup(true);
  std::vector<std::string> left = names();
  ASSERT_EQ(left.size(), 3u);
  EXPECT_EQ(left[0], "2021-01-01_00-00-00.zenlay_backup");
  EXPECT_EQ(newestBackup(), environment.backupDirectory + left[2]);
  preferences.auto_save_num = 0;
  pruneBackups();
  EXPECT_TRUE(names().empty());
  preferences.auto_save_num = -7;
  std::ofstream(environment.backupDirectory + "2020-01-01_00-00-00.zenlay_backup") << "x";
  pruneBackups();
  EXPECT_TRUE(names().empty());
  writeAutomaticBackup(true);
  EXPECT_TRUE(names().empty());
}

TEST_F(Backup, OnlyOneThatCanBeWrittenCostsAnOlder) {
  platform::makeFolders(environment.backupDirectory);
  std::ofstream(environment.backupDirectory + "2020-01-01_00-00-00.zenlay_backup") << "x";
  preferences.auto_save_num = 1;
  writeAutomaticBackup(true);  // no objects, nothing to write
  EXPECT_EQ(names().size(), 1u);
  EXPECT_TRUE(test::shownMessages().empty());
}

TEST_F(Backup, TwoOfOneSecondBothGetAName) {
  ASSERT_GE(createObject(0, 0, effectGraphic, -1), 0);
  writeAutomaticBackup(true);
  writeAutomaticBackup(true);
  EXPECT_EQ(names().size(), 2u);
  EXPECT_TRUE(test::shownMessages().empty());
}

TEST_F(Backup, BringsMonoBack) {
  static std::string opened;
  fakeHost.functions.openEdit = [](EditHandle, const char* name, uint32_t) -> int32_t {
    opened = name;
    return 1;
  };
  ASSERT_GE(createObject(0, 0, effectGraphic, -1), 0);
  const std::string path = scratch / "mono.zenlay_backup";
  for (auto [channels, ending] : {std::pair{1, "Hz_1ch.zenlay"}, {2, "Hz.zenlay"}}) {
    environment.clip.audioChannels = channels;
    ASSERT_EQ(writeBackup(path.c_str(), true), nullptr);
    EXPECT_EQ(restoreBackup(path.c_str()), 1);
    EXPECT_TRUE(opened.ends_with(ending)) << opened;
  }
}

}  // namespace
}  // namespace zenlay
