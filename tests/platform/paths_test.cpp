#include "platform/paths.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "platform/text.h"
#include "tests/support/scratch_folder.h"

namespace platform {
namespace {

using ::test::ScratchFolder;

TEST(Paths, PartsSplitAtBothSeparators) {
  struct Row {
    const char *path, *folder, *name, *extension, *stem;
  };
  const Row rows[] = {
      {"/a/b.c/d.e.png", "/a/b.c/", "d.e.png", ".png", "/a/b.c/d.e"},
      {"C:\\clips\\a.avi", "C:\\clips\\", "a.avi", ".avi", "C:\\clips\\a"},
      {"mixed/one\\two", "mixed/one\\", "two", "", "mixed/one\\two"},
      {"plain.txt", "", "plain.txt", ".txt", "plain"},
      {"/dir.d/", "/dir.d/", "", "", "/dir.d/"},
      {"", "", "", "", ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(folderOf(row.path), row.folder) << row.path;
    EXPECT_EQ(fileName(row.path), row.name) << row.path;
    EXPECT_EQ(extensionOf(row.path), row.extension) << row.path;
    EXPECT_EQ(withoutExtension(row.path), row.stem) << row.path;
  }
}

TEST(Paths, TrailByteOfPage932SeparatesNothing) {
  const char path[] = "dir\\\x83\x5C.txt";  // U+30BD is 83 5C
  setCodePage(codePage932);
  EXPECT_EQ(fileName(path), "\x83\x5C.txt");
  EXPECT_EQ(nativePath(path), "dir/\u30BD.txt");
  setCodePage(codePageUtf8);
  EXPECT_EQ(fileName(path), ".txt");
}

TEST(Paths, LookUpRepairsCaseAndSeparators) {
  ScratchFolder scratch;
  ASSERT_TRUE(makeFolders(scratch / "Clips/Deep"));
  scratch.write("Clips/Deep/Take One.AVI", "x");
  EXPECT_EQ(nativePath(scratch / "clips\\DEEP\\take one.avi"), scratch / "Clips/Deep/Take One.AVI");
  EXPECT_TRUE(fileExists(scratch / "clips\\DEEP\\take one.avi"));
  EXPECT_TRUE(folderExists(scratch / "CLIPS/"));
  EXPECT_FALSE(fileExists(scratch / "Clips/Deep"));  // a folder is no file
  EXPECT_FALSE(folderExists(scratch / "clips/deep/take one.avi"));
  // A new file lands in the folder that exists.
  EXPECT_EQ(nativePath(scratch / "clips/New.png"), scratch / "Clips/New.png");
  // An exact name wins over one that differs in case.
  scratch.write("Clips/Deep/take one.avi", "yy");
  std::string text;
  EXPECT_TRUE(readFile(scratch / "clips/deep/take one.avi", text));
  EXPECT_EQ(text, "yy");
}

TEST(Paths, DrivePrefixIsNeverFound) {
  ScratchFolder scratch;
  ASSERT_TRUE(makeFolders(scratch / "C:"));
  scratch.write("C:/a.avi", "x");
  char before[4096];
  ASSERT_TRUE(getcwd(before, sizeof before));
  ASSERT_EQ(chdir(scratch.path().c_str()), 0);
  EXPECT_FALSE(fileExists("C:/a.avi"));
  EXPECT_FALSE(fileExists("C:\\a.avi"));
  EXPECT_EQ(openFile("C:\\a.avi", "wb"), nullptr);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_TRUE(fileExists("./C:/a.avi"));
  ASSERT_EQ(chdir(before), 0);
}

TEST(Paths, PatternsAndFolders) {
  ScratchFolder scratch;
  for (const char* name : {"b.SPI", "a.spi", "a.spi.txt", "noext", "ab.spi"}) scratch.write(name, "");
  ASSERT_TRUE(makeFolders(scratch / "sub.spi"));
  ASSERT_EQ(symlink("a.spi", (scratch / "link.spi").c_str()), 0);
  ASSERT_EQ(symlink("nowhere", (scratch / "broken.spi").c_str()), 0);
  using Names = std::vector<std::string>;
  EXPECT_EQ(filesMatching(scratch.path(), "*.spi"), (Names{"a.spi", "ab.spi", "b.SPI", "link.spi"}));
  EXPECT_EQ(filesMatching(scratch.path(), "?.spi"), (Names{"a.spi", "b.SPI"}));
  EXPECT_EQ(filesMatching(scratch.path(), "a*spi*"), (Names{"a.spi", "a.spi.txt", "ab.spi"}));
  EXPECT_EQ(filesMatching(scratch.path(), "*.*").size(), 6u);
  EXPECT_EQ(filesMatching(scratch.path() + "/none", "*"), Names{});
  EXPECT_EQ(subfolders(scratch.path()), Names{"sub.spi"});
}

TEST(Paths, ReadFileKeepsToTheLimit) {
  ScratchFolder scratch;
  std::string big(100000, 'x'), text;
  scratch.write("big", big);
  EXPECT_TRUE(readFile(scratch / "big", text, 100000));
  EXPECT_EQ(text, big);
  EXPECT_FALSE(readFile(scratch / "big", text, 99999));
  EXPECT_FALSE(readFile(scratch / "none", text));
  EXPECT_FALSE(readFile(scratch.path(), text));
  EXPECT_FALSE(readFile("/dev/zero", text));           // would never end
  EXPECT_TRUE(readFile("/proc/self/fdinfo/0", text));  // its size is told as 0
  EXPECT_NE(text.find("pos:"), std::string::npos);
}

TEST(Paths, ProgramAndModule) {
  EXPECT_EQ(fileName(programPath()), "test_platform");
  EXPECT_EQ(modulePathOf(reinterpret_cast<const void*>(&ScratchFolder::removeAll)), programPath());
  EXPECT_NE(modulePathOf(reinterpret_cast<const void*>(&fileExists)).find("cinora_platform"), std::string::npos);
}

std::vector<std::string> allFiles(const std::string& folder) { return filesMatching(folder, "*"); }

TEST(ReplacementFileTest, ReplacesOnlyWhenCommitted) {
  ScratchFolder scratch;
  scratch.write("film.mp4", "old");
  ASSERT_EQ(chmod((scratch / "film.mp4").c_str(), 0640), 0);
  std::string text;
  {
    ReplacementFile file(scratch / "film.mp4");
    ASSERT_FALSE(file.temporaryPath().empty());
    EXPECT_EQ(extensionOf(file.temporaryPath()), ".mp4");
    EXPECT_EQ(folderOf(file.temporaryPath()), scratch.path() + "/");
    std::ofstream(file.temporaryPath()) << "dropped";
  }
  EXPECT_EQ(allFiles(scratch.path()), std::vector<std::string>{"film.mp4"});
  EXPECT_TRUE(readFile(scratch / "film.mp4", text));
  EXPECT_EQ(text, "old");
  {
    ReplacementFile file(scratch / "film.mp4"), like(scratch / "FILM.mp4");
    std::ofstream(file.temporaryPath()) << "new";
    EXPECT_TRUE(file.commit());
    EXPECT_TRUE(like.commit());
  }
  EXPECT_EQ(allFiles(scratch.path()), (std::vector<std::string>{"FILM.mp4", "film.mp4"}));
  EXPECT_TRUE(readFile(scratch / "film.mp4", text));
  EXPECT_EQ(text, "new");
  struct stat status;
  ASSERT_EQ(stat((scratch / "film.mp4").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST(ReplacementFileTest, SpecialTargets) {
  ScratchFolder scratch;
  scratch.write("real.txt", "old");
  ASSERT_EQ(symlink("real.txt", (scratch / "link.txt").c_str()), 0);
  {
    ReplacementFile file(scratch / "link.txt");
    std::ofstream(file.temporaryPath()) << "new";
    ASSERT_TRUE(file.commit());
  }
  std::string text;
  EXPECT_TRUE(readFile(scratch / "real.txt", text));
  EXPECT_EQ(text, "new");  // written through the link

  EXPECT_TRUE(ReplacementFile(scratch.path()).temporaryPath().empty());
  EXPECT_EQ(errno, EISDIR);
  EXPECT_TRUE(ReplacementFile(scratch / "none/x").temporaryPath().empty());
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(ReplacementFile("C:\\x.mp4").commit());
  {
    ReplacementFile device("/dev/null");
    EXPECT_EQ(device.temporaryPath(), "/dev/null");
    EXPECT_TRUE(device.commit());
  }
  struct stat status;
  ASSERT_EQ(stat("/dev/null", &status), 0);
  EXPECT_TRUE(S_ISCHR(status.st_mode));

  std::string longName(251, 'n');
  ReplacementFile file(scratch / (longName + ".mp4"));
  EXPECT_FALSE(file.temporaryPath().empty());
  EXPECT_TRUE(file.commit());
  EXPECT_TRUE(fileExists(scratch / (longName + ".mp4")));
}

TEST(ReplacementFileTest, FailedRenameLeavesNothingBehind) {
  ScratchFolder scratch;
  {
    ReplacementFile file(scratch / "out");
    ASSERT_TRUE(makeFolders(scratch / "out/full"));  // appears meanwhile: a file can't replace a folder
    EXPECT_FALSE(file.commit());
  }
  EXPECT_TRUE(allFiles(scratch.path()).empty());
}

TEST(ReplacementFileTest, SignalRemovesLiveFiles) {
  for (int number : {SIGINT, SIGTERM, SIGHUP}) {
    ScratchFolder scratch;
    pid_t child = fork();
    if (child == 0) {
      ReplacementFile kept(scratch / "kept"), open(scratch / "open");
      if (!kept.commit()) _exit(1);
      raise(number);
      _exit(2);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == number);
    EXPECT_EQ(allFiles(scratch.path()), std::vector<std::string>{"kept"});
  }
}

}  // namespace
}  // namespace platform
