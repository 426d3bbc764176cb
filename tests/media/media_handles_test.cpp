#include "zenlay/media/media_handles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/media/fake_media.h"
#include "tests/support/scratch_folder.h"
#include "zenlay/host/preferences.h"

namespace zenlay::test {
namespace {

using testing::ElementsAre;
namespace fs = std::filesystem;

MediaReference reference(const std::string& path) {
  MediaReference r{};
  snprintf(r.file, sizeof r.file, "%s", path.c_str());
  return r;
}

struct MediaHandles : testing::Test {
  ::test::ScratchFolder scratch;
  fs::path folder = scratch.path();

  void SetUp() override {
    resetFakeHost(1920, 1080);
    installFakeMedia();
    setHandleLimit(8);
    for (char c = 'a'; c <= 'j'; c++) fakeMedia.files[std::string(1, c)] = videoInfo(64, 48);
  }
  void TearDown() override { closeAllMedia(); }

  std::string existingFile(const std::string& name) {
    std::ofstream(folder / name) << "x";
    return folder / name;
  }
};

TEST_F(MediaHandles, AReferenceKeepsItsHandle) {
  MediaReference a = reference("a"), b = reference("b");
  HostFileInfo info{};
  MediaHandle first = openMedia(&a, openVideo, &info);
  ASSERT_TRUE(first);
  EXPECT_EQ(info.width, 64);
  EXPECT_NE(a.handleStamp, 0u);
  EXPECT_NE(openMedia(&b, openVideo, nullptr), first);
  EXPECT_EQ(openMedia(&a, openVideo, &info), first);
  EXPECT_EQ(openMedia(&a, openVideo | uint32_t{mediaQuiet}, &info), first) << "quiet is no property of the handle";
  EXPECT_THAT(fakeMedia.opened, ElementsAre("a", "b"));
  EXPECT_THAT(fakeMedia.openFlags, ElementsAre(openVideo, openVideo));
}

TEST_F(MediaHandles, OtherFlagsReopen) {
  fakeMedia.files["a"].videoBits = 32;
  MediaReference a = reference("a");
  openMedia(&a, openVideo, nullptr);
  EXPECT_TRUE(openMedia(&a, openVideo | openAlpha, nullptr));
  EXPECT_THAT(fakeMedia.opened, ElementsAre("a", "a"));
  EXPECT_THAT(fakeMedia.closed, ElementsAre("a"));
  EXPECT_EQ(fakeMedia.open.size(), 1u);
}

TEST_F(MediaHandles, TheNinthFileEvictsTheOneUsedLongestAgo) {
  std::vector<MediaReference> references;
  for (char c = 'a'; c <= 'i'; c++) references.push_back(reference(std::string(1, c)));
  for (int i = 0; i < 8; i++) openMedia(&references[i], openVideo, nullptr);
  openMedia(&references[0], openVideo, nullptr);  // "b" is now the oldest
  EXPECT_TRUE(openMedia(&references[8], openVideo, nullptr));
  EXPECT_THAT(fakeMedia.closed, ElementsAre("b"));

  // the slot of "b" holds "i": the stale reference opens its own file again and evicts "c"
  HostFileInfo info{};
  fakeMedia.files["b"].width = 32;
  MediaHandle again = openMedia(&references[1], openVideo, &info);
  ASSERT_TRUE(again);
  EXPECT_EQ(info.width, 32);
  EXPECT_EQ(fakeMedia.open.at(again), "b");
  EXPECT_THAT(fakeMedia.closed, ElementsAre("b", "c"));
  EXPECT_EQ(fakeMedia.open.size(), 8u);
  EXPECT_TRUE(shownMessages().empty());
}

TEST_F(MediaHandles, TheLimitIsClamped) {
  for (auto [limit, kept] : {std::pair{-3, 1}, {0, 1}, {2, 2}, {99, 10}}) {
    setHandleLimit(limit);
    for (char c = 'a'; c <= 'j'; c++) {
      MediaReference r = reference(std::string(1, c));
      openMedia(&r, openVideo, nullptr);
    }
    EXPECT_EQ(static_cast<int>(fakeMedia.open.size()), kept) << limit;
    closeAllMedia();
    EXPECT_TRUE(fakeMedia.open.empty());
  }
}

TEST_F(MediaHandles, ForgedAndForeignKeysMatchNothing) {
  MediaReference a = reference("a");
  MediaHandle handle = openMedia(&a, openVideo, nullptr);
  MediaReference forged = a;
  snprintf(forged.file, sizeof forged.file, "b");  // the key of "a" under another name
  EXPECT_NE(openMedia(&forged, openVideo, nullptr), handle);
  forged = a;
  forged.handleKey = 0xFFFFFFFF;
  openMedia(&forged, openVideo, nullptr);
  forged = a;
  forged.handleStamp++;
  openMedia(&forged, openVideo, nullptr);
  EXPECT_THAT(fakeMedia.opened, ElementsAre("a", "b", "a", "a"));
  MediaReference unterminated;
  memset(&unterminated, 'x', sizeof unterminated);
  EXPECT_FALSE(openMedia(&unterminated, openVideo, nullptr));
  MediaReference empty{};
  EXPECT_FALSE(openMedia(&empty, openVideo, nullptr));
  EXPECT_EQ(shownMessages().size(), 1u) << "an empty name is no failure";
}

TEST_F(MediaHandles, ByPathIgnoresLetterCaseAndSharesHandles) {
  MediaHandle first = openMediaByPath("a", openVideo, nullptr);
  EXPECT_EQ(openMediaByPath("A", openVideo, nullptr), first);
  EXPECT_NE(openMediaByPath("a", openAudio, nullptr), first);
  EXPECT_FALSE(openMediaByPath(std::string(260, 'x').c_str(), openVideo, nullptr));
  EXPECT_EQ(fakeMedia.opened.size(), 2u);
}

TEST_F(MediaHandles, ReleaseClosesOnlyItsOwnHandle) {
  MediaReference a = reference("a"), b = reference("b"), stale = reference("b");
  openMedia(&a, openVideo, nullptr);
  openMedia(&b, openVideo, nullptr);
  stale.handleKey = b.handleKey;
  stale.handleStamp = b.handleStamp + 1;
  releaseMedia(&stale);
  EXPECT_TRUE(fakeMedia.closed.empty());
  releaseMedia(&a);
  EXPECT_THAT(fakeMedia.closed, ElementsAre("a"));
  EXPECT_STREQ(a.file, "");
  EXPECT_EQ(a.handleStamp, 0u);
}

TEST_F(MediaHandles, RefusalsSayWhyAndClearTheName) {
  std::string broken = existingFile("broken.avi");
  fakeMedia.files["wide"] = videoInfo(4000, 1080);
  fakeMedia.files["tall"] = videoInfo(1920, 1081);
  fakeMedia.files["silent"] = videoInfo(0, 0);
  struct Row {
    std::string path;
    uint32_t flags;
    const char* message;
    int missing;
  } rows[] = {
      {"nowhere.avi", openVideo, "Failed to read the video file\nFile not found", 1},
      {"nowhere.wav", openAudio, "Failed to read the audio file\nFile not found", 1},
      {broken, openVideo, "Failed to read the video file\nThere is a possibility that the format is not supported", 0},
      {broken, openAudio, "Failed to read the audio file\nThere is a possibility that the format is not support", 0},
      {"silent", openVideo, "Failed to read the video file\nThere is a possibility that the format is not supported",
       0},
      {"wide", openVideo,
       "Can not read the video because image size is too large\n"
       "The maximum image size can be changed in the System Setting",
       0},
      {"tall", openVideo,
       "Can not read the video because image size is too large\n"
       "The maximum image size can be changed in the System Setting",
       0},
      {"a", openVideo | openAlpha,
       "Failed to read the video file\n"
       "There is a possibility that the plug-in or format is not compatible with alpha channel",
       0},
  };
  for (const Row& row : rows)
    for (bool quiet : {false, true}) {
      shownMessages().clear();
      environment.missingFiles = 0;
      MediaReference r = reference(row.path);
      EXPECT_FALSE(openMedia(&r, row.flags | (quiet ? uint32_t{mediaQuiet} : 0u), nullptr));
      EXPECT_STREQ(r.file, "");
      EXPECT_EQ(environment.missingFiles, row.missing);
      if (quiet)
        EXPECT_TRUE(shownMessages().empty());
      else
        EXPECT_THAT(shownMessages(), ElementsAre(row.message));
    }
  EXPECT_TRUE(fakeMedia.open.empty());
}

TEST_F(MediaHandles, TheLargestSizeAndAlphaAreTaken) {
  fakeMedia.files["full"] = videoInfo(1920, 1080, 32);
  MediaReference r = reference("full");
  EXPECT_TRUE(openMedia(&r, openVideo | openAlpha, nullptr));
}

TEST_F(MediaHandles, AMissingRateIsTheProjects) {
  environment.clip.rate = 24000;
  environment.clip.scale = 1001;
  fakeMedia.files["a"].rate = 0;
  MediaReference a = reference("a");
  HostFileInfo info{};
  openMedia(&a, openVideo, &info);
  EXPECT_EQ(info.rate, 24000);
  EXPECT_EQ(info.scale, 1001);
}

TEST_F(MediaHandles, TheExistenceTestOpensNothingAndKeepsTheName) {
  uint32_t flags = uint32_t{openVideo} | mediaQuiet | mediaExistence;
  std::string file = existingFile("there.avi");
  MediaReference there = reference(file), gone = reference("gone.avi");
  EXPECT_TRUE(openMedia(&there, flags, nullptr));
  EXPECT_FALSE(openMedia(&gone, flags, nullptr));
  EXPECT_STREQ(gone.file, "gone.avi");
  EXPECT_EQ(environment.missingFiles, 1);
  EXPECT_TRUE(fakeMedia.opened.empty());
  EXPECT_TRUE(shownMessages().empty());
}

TEST_F(MediaHandles, AMovedFileIsFoundInTheProjectsFolder) {
  std::string moved = existingFile("clip.avi");
  fakeMedia.files[moved] = videoInfo(64, 48);
  environment.projectFolder = folder.string() + "/";
  MediaReference r = reference("C:\\old\\clip.avi");
  EXPECT_TRUE(openMedia(&r, openVideo, nullptr));
  EXPECT_EQ(r.file, moved);
  EXPECT_EQ(environment.missingFiles, 0);

  MediaHandle byPath = openMediaByPath("/gone/clip.avi", openVideo, nullptr);
  EXPECT_EQ(openMediaByPath("/gone/clip.avi", openVideo, nullptr), byPath);
  EXPECT_EQ(fakeMedia.opened.size(), 1u);

  EXPECT_STREQ(movedFile("/gone/other.avi"), "");
  EXPECT_STREQ(movedFile("/gone/"), "");
  EXPECT_STREQ(movedFile(moved.c_str()), "");
  environment.projectFolder = folder.string() + std::string(259 - folder.string().size() - 8, '/');
  EXPECT_STREQ(movedFile("/gone/clip.avi"), "") << "259 characters";
  environment.projectFolder.pop_back();
  EXPECT_EQ(std::string(movedFile("/gone/clip.avi")).size(), 258u);

  environment.projectFolder = folder.string() + "/";
  preferences.path_modify = 0;
  r = reference("/gone/clip.avi");
  EXPECT_FALSE(openMedia(&r, openVideo, nullptr));
}

}  // namespace
}  // namespace zenlay::test
