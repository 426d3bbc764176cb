#include "zenlay/ui/project/backup.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "platform/paths.h"
#include "platform/system.h"
#include "tests/support/fake_host.h"
#include "tests/support/scratch_folder.h"
#include "zenlay/effects/registry.h"
#include "zenlay/entry/plugin.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/timeline_view.h"

namespace zenlay {
namespace {

using test::fakeHost;

constexpr uint32_t minute = 60000;  // ms

struct Backup : testing::Test {
  ::test::ScratchFolder scratch;

  void SetUp() override {
    test::resetFakeHost();
    fakeHost.functions.openEdit = [](EditHandle, const char* name, uint32_t) -> int32_t {
      fakeHost.calls.push_back(name);
      environment.projectOpen = true;
      return 1;
    };
    mainFilterRecord.functions = &fakeHost.functions;
    ASSERT_EQ(mainFilterRecord.initialise(&mainFilterRecord), 1);
    environment.clip = fakeHost.clip;
    environment.backupDirectory = scratch / "backup/";
    timelineView.sceneLength = 300;
    ASSERT_GE(createObject(0, 0, effectGraphic, -1), 0);
  }
  void TearDown() override { mainFilterRecord.exit(&mainFilterRecord); }
  static std::vector<std::string> names() { return platform::filesMatching(environment.backupDirectory, "*"); }
  static void placeOld(const char* name) {
    platform::makeFolders(environment.backupDirectory);
    std::ofstream(environment.backupDirectory + name + ".zenlay_backup") << "x";
  }
};

TEST_F(Backup, IsWrittenWhenWantedAndDue) {
  struct Row {
    const char* what;
    bool force;
    void (*change)();
    size_t written;
  };
  const Row rows[] = {
      {"due", false, [] {}, 1},
      {"a moment too early", false, [] { lastBackup += 10000; }, 0},
      {"due by the shortest interval", false,
       [] {
         preferences.auto_save_time = 1;
         lastBackup += 4 * minute - 1000;
       },
       1},
      {"saving", false, [] { environment.saving = true; }, 0},
      {"forced, early, while saving, of a foreign clip", true,
       [] {
         lastBackup += 4 * minute;
         environment.saving = true;
         environment.projectOpen = false;
       },
       1},
      {"switched off", true, [] { preferences.auto_save = 0; }, 0},
      {"no files wanted", true, [] { preferences.auto_save_num = 0; }, 0},
      {"no frames", true, [] { timelineView.sceneLength = 0; }, 0},
      {"no folder", true, [] { environment.backupDirectory.clear(); }, 0},
      {"no objects", true, [] { deleteAllObjects(); }, 0},
  };
  for (const Row& row : rows) {
    resetPreferences();
    environment.saving = false;
    environment.projectOpen = true;
    environment.backupDirectory = scratch / "backup/";
    timelineView.sceneLength = 300;
    restartBackupInterval();
    lastBackup -= 5 * minute;
    row.change();
    writeAutomaticBackup(row.force);
    environment.backupDirectory = scratch / "backup/";
    EXPECT_EQ(names().size(), row.written) << row.what;
    for (const std::string& name : names()) platform::removeFile(environment.backupDirectory + name);
    EXPECT_EQ(platform::tickCount() - lastBackup < 5000, row.written == 1) << row.what;
  }
  EXPECT_TRUE(test::shownMessages().empty());
}

TEST_F(Backup, SavingBeginsWithOne) {
  restartBackupInterval();
  mainFilterRecord.saveStart(&mainFilterRecord, 0, 299, nullptr);
  mainFilterRecord.saveEnd(&mainFilterRecord, nullptr);
  EXPECT_EQ(names().size(), 1u);
}

TEST_F(Backup, KeepsTheStatedNumberOfFiles) {
  for (const char* name : {"2020-01-01_00-00-00", "2021-01-01_00-00-00", "2022-01-01_00-00-00"}) placeOld(name);
  preferences.auto_save_num = 3;
  writeAutomaticBackup(true);
  std::vector<std::string> left = names();
  ASSERT_EQ(left.size(), 3u);
  EXPECT_EQ(left[0], "2021-01-01_00-00-00.zenlay_backup");
  EXPECT_EQ(newestBackup(), environment.backupDirectory + left[2]);
  preferences.auto_save_num = 0;
  pruneBackups();
  EXPECT_TRUE(names().empty());
}

TEST_F(Backup, TwoOfOneSecondBothGetAName) {
  writeAutomaticBackup(true);
  writeAutomaticBackup(true);
  EXPECT_EQ(names().size(), 2u);
  EXPECT_TRUE(test::shownMessages().empty());
}

TEST_F(Backup, BringsMonoBack) {
  const std::string path = scratch / "mono.zenlay_backup";
  for (auto [channels, name] :
       {std::pair{1, "640x480_30fps_44100Hz_1ch.zenlay"}, {2, "640x480_30fps_44100Hz.zenlay"}}) {
    environment.clip.audioChannels = channels;
    fakeHost.calls.clear();
    ASSERT_EQ(writeBackup(path.c_str(), true), nullptr);
    EXPECT_EQ(restoreBackup(path.c_str()), 1);
    EXPECT_EQ(fakeHost.calls.at(0), name);
  }
}

TEST_F(Backup, TellsOnceWhatCannotBeWritten) {
  std::ofstream(scratch / "file") << "x";
  environment.backupDirectory = scratch / "file/";
  const uint32_t begin = platform::tickCount();
  writeAutomaticBackup(true);
  EXPECT_GE(platform::tickCount() - begin, 4 * 300u) << "five attempts";
  EXPECT_EQ(test::shownMessages(), std::vector<std::string>{"Failed to create the backup file."});
  EXPECT_STREQ(writeBackup("/dev/full", true), "Failed to write to the backup file.");
}

TEST_F(Backup, RestoresWhatItWroteAndRefusesTheRest) {
  const std::string path = scratch / "film.zenlay_backup";
  ASSERT_EQ(writeBackup(path.c_str(), false), nullptr);
  std::stringstream read;
  read << std::ifstream(path, std::ios::binary).rdbuf();
  const std::string whole = read.str(), header = whole.substr(0, 36);
  auto with = [](std::string bytes, size_t at, int32_t value) {
    memcpy(bytes.data() + at, &value, sizeof value);
    return bytes;
  };
  constexpr char unread[] = "Failed to read the backup file.";
  constexpr char otherVersion[] = "This is a backup file of a different version.";
  struct Row {
    std::string bytes;
    const char* message;
    bool opens;
  };
  const Row rows[] = {
      {"", unread, false},
      {header.substr(0, 35), unread, false},
      {with(whole, 4, 9201), otherVersion, false},
      {"81" + whole.substr(2), otherVersion, false},
      {with(header, 32, 0x7FFFFFFF), "Read buffer is not enough.", false},
      {with(header, 32, -1), "Read buffer is not enough.", false},
      {whole.substr(0, whole.size() - 1), unread, true},
      {whole, nullptr, true},
  };
  for (const Row& row : rows) {
    std::ofstream(path, std::ios::binary) << row.bytes;
    test::shownMessages().clear();
    fakeHost.calls.clear();
    fakeHost.frameCount = 1;
    deleteAllObjects();
    EXPECT_EQ(restoreBackup(path.c_str()), row.message == nullptr);
    EXPECT_EQ(test::shownMessages(), row.message ? std::vector<std::string>{row.message} : std::vector<std::string>{});
    EXPECT_EQ(fakeHost.calls.empty() ? "" : fakeHost.calls[0], row.opens ? "640x480_30fps_44100Hz.zenlay" : "");
    EXPECT_EQ(fakeHost.frameCount, row.opens ? 300 : 1);
  }
  EXPECT_EQ(objectCount, 1);
  EXPECT_EQ(restoreBackup((path + "x").c_str()), 0);
  EXPECT_EQ(test::shownMessages(), std::vector<std::string>{unread});
}

}  // namespace
}  // namespace zenlay
