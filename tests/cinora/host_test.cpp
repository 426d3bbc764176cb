// The host with the modules of tests/support/modules: its filters, and the operations it hands them.
#include "cinora/host/host.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "cinora/export/exporter.h"
#include "cinora/host/frame_renderer.h"
#include "cinora/host/project.h"
#include "cinora/support/failure.h"
#include "platform/paths.h"
#include "tests/support/scratch_folder.h"

namespace cinora {
namespace {

using namespace zenlay;

class HostTest : public ::testing::Test {
 protected:
  Host& start(HostOptions options = {}) {
    options.pluginFolder = BINARY_DIR "/test_modules";
    options.threads = 2;
    running.emplace(options);
    return *running;
  }
  const HostFunctionTable* f = &hostFunctions;
  std::optional<Host> running;
};

TEST_F(HostTest, EveryNamedOperationIsThereAndNoOther) {
  constexpr int unnamed[] = {0,  1,  2,  3,  4,  5,  8,  11, 12, 13, 14, 15, 18, 19, 20, 21, 22, 24, 25, 26,
                             30, 31, 38, 39, 43, 44, 45, 46, 47, 48, 49, 50, 52, 53, 54, 56, 61, 67, 70};
  std::set<int> empty(std::begin(unnamed), std::end(unnamed));
  for (size_t i = 0; i < sizeof *f / sizeof(void*); i++) {
    void* operation;
    memcpy(&operation, reinterpret_cast<const char*>(f) + i * sizeof(void*), sizeof operation);
    EXPECT_EQ(operation == nullptr, empty.count(static_cast<int>(i)) == 1) << i * 4;
  }
}

TEST_F(HostTest, WithoutADesktopQuestionsAreRecordedAndRefused) {
  Host& host = start();
  constexpr uint32_t okCancel = 0x42021, yesNoCancel = 3, yesNo = 4;
  EXPECT_EQ(platform::messageBox(nullptr, "Replace?", "a.zla", okCancel), platform::boxCancel);
  EXPECT_EQ(platform::messageBox(nullptr, "Keep?", "", yesNoCancel), platform::boxCancel);
  EXPECT_EQ(platform::messageBox(nullptr, "Keep?", "", yesNo), platform::boxNo);
  EXPECT_EQ(host.takeMessages(), (std::vector<std::string>{"a.zla: Replace?", "Keep?", "Keep?"}));
}

TEST_F(HostTest, RefusingAndBrokenFiltersAreDropped) {
  Host& host = start();
  std::vector<std::string> names;
  HostSystemInfo info{};
  ASSERT_EQ(f->getSystemInfo(nullptr, &info), 1);
  for (int i = 0; i < info.filterCount; i++) names.push_back(f->getFilterRecord(i)->name);
  EXPECT_EQ(names, (std::vector<std::string>{"Editor", "Audio", "Lift"}));
  EXPECT_EQ(f->getFilterRecord(3), nullptr);
  EXPECT_EQ(f->getFilterRecord(-1), nullptr);
  HostFilterRecord* editor = host.plugins.editor()->record;
  EXPECT_STREQ(editor->name, "Editor");
  EXPECT_EQ(editor->functions, f);
  EXPECT_NE(editor->module, nullptr);
  EXPECT_NE(platform::windowOwner(editor->window), nullptr);
  EXPECT_EQ(f->getFilterRecord(1)->window, nullptr);
  EXPECT_EQ(f->getFilterRecord(2)->trackValues[0], 100);
  EXPECT_EQ(info.build, 9933);
}

TEST_F(HostTest, LimitsComeFromSettingsAndTheProjectsNeed) {
  const struct {
    const char *maxW, *maxH;
    int wantedW, wantedH, width, height;
  } rows[] = {{"0", "0", 0, 0, 3840, 2160},
              {"1000", "0", 0, 0, 3840, 2160},
              {"1001", "600", 0, 0, 1008, 600},
              {"1280", "720", 1921, 100, 1928, 720},
              {"0", "0", 7680, 4320, 7680, 4320}};
  for (const auto& row : rows) {
    start({.overrides = {{"max_w", row.maxW}, {"max_h", row.maxH}},
           .wantedWidth = row.wantedW,
           .wantedHeight = row.wantedH});
    HostSystemInfo info{};
    f->getSystemInfo(nullptr, &info);
    EXPECT_EQ(info.maxWidth, row.width);
    EXPECT_EQ(info.maxHeight, row.height);
    EXPECT_GE(info.bufferWidth, info.maxWidth);
    EXPECT_GE(info.bufferHeight, info.maxHeight);
    running.reset();
  }
}

TEST_F(HostTest, EditsAreOpenedByNameAndTold) {
  Host& host = start();
  HostFileInfo info;
  EXPECT_EQ(f->getFileInfo(host.editHandle(), &info), 0);
  EXPECT_EQ(f->setFrameCount(host.editHandle(), 5), 0);
  EXPECT_EQ(f->openEdit(host.editHandle(), "nonsense", 0), 0);
  EXPECT_EQ(f->openEdit(host.editHandle(), "9000x16_25fps_44100Hz.zenlay", 0), 0);
  EXPECT_EQ(host.takeMessages().size(), 2u);
  ASSERT_EQ(f->openEdit(host.editHandle(), "64x48_30000-1001fps_44100Hz.zenlay", 0), 1);
  ASSERT_EQ(f->getFileInfo(host.editHandle(), &info), 1);
  EXPECT_EQ(info.rate, 30000);
  EXPECT_EQ(info.scale, 1001);
  EXPECT_EQ(info.width, 64);
  ASSERT_NE(f->setFrameCount(host.editHandle(), 30), 0);
  EXPECT_EQ(f->setCurrentFrame(host.editHandle(), 31), 29);
  int32_t first, last;
  f->setSelection(host.editHandle(), 20, 4);
  f->getSelection(host.editHandle(), &first, &last);
  EXPECT_EQ(first, 4);
  EXPECT_EQ(last, 20);

  FrameStatus status;
  EXPECT_EQ(f->getFrameStatus(host.editHandle(), 30, &status), 0);
  ASSERT_EQ(f->getFrameStatus(host.editHandle(), 12, &status), 1);
  EXPECT_EQ(status.video, 12);
  status.flags = 5;
  ASSERT_EQ(f->setFrameStatus(host.editHandle(), 12, &status), 1);
  EXPECT_EQ(f->getFrameStatusTable(host.editHandle(), mediaVideo)[12], 5);
  EXPECT_EQ(f->getFrameStatusTable(host.editHandle(), mediaVideo)[29], 0);
  f->openEdit(host.editHandle(), "32x16_25fps_44100Hz.zenlay", 0);
  EXPECT_EQ(askEditor(host, queryProject, nullptr), "{\"log\": \"start EAL 467 465 464 464 466 465 \"}");
}

TEST_F(HostTest, SettingsBelongToTheirFilter) {
  ::test::ScratchFolder folder;
  folder.write("a.ini", "[Lift]\nname=from the file\nlarge=99999999999\n");
  Host& host = start({.settingsFile = folder / "a.ini", .overrides = {{"key", "41"}}});
  HostFilterRecord *editor = host.plugins.editor()->record, *lift = f->getFilterRecord(2);
  EXPECT_EQ(f->readIntSetting(editor, "key", 1), 41);
  EXPECT_EQ(f->readIntSetting(lift, "key", 1), 1);
  EXPECT_EQ(f->readIntSetting(lift, "large", 1), INT32_MAX);
  f->writeIntSetting(lift, "key", -7);
  EXPECT_EQ(f->readIntSetting(lift, "key", 1), -7);
  char text[256];
  f->readStringSetting(lift, "name", text, "");
  EXPECT_STREQ(text, "from the file");
  f->writeStringSetting(lift, "name", std::string(300, 'x').c_str());
  f->readStringSetting(lift, "name", text, "");
  EXPECT_EQ(std::string(text), std::string(255, 'x'));
}

TEST_F(HostTest, OtherFramesHaveTheBackgroundOfTheFrameBeingMade) {
  ::test::ScratchFolder folder;
  folder.write("a.zlo", "64 48 25 1 17");
  Host& host = start({});
  openProject(host, readFilmFile(folder / "a.zlo"));
  for (Background background : {blackBackground, whiteBackground, blackBackground})
    EXPECT_EQ(renderFrame(host, 4, background).rows[0].y, background);
}

// The editor makes half of (256 frame + what is below); Lift adds its track to the luma.
TEST_F(HostTest, FiltersProcessInOrderWhenTheyAreOn) {
  ::test::ScratchFolder folder;
  folder.write("a.ini", "[Lift]\nactive=1\ntrack0=300\n");
  folder.write("a.zlo", "64 48 25 1 9");
  for (bool lifted : {false, true}) {
    Host& host = start({.settingsFile = lifted ? folder / "a.ini" : ""});
    openProject(host, readFilmFile(folder / "a.zlo"));
    RenderedFrame frame = renderFrame(host, 4, whiteBackground);
    EXPECT_EQ(frame.width, 64);
    EXPECT_EQ(frame.rows[0].y, (1024 + 4096) / 2 + (lifted ? 300 : 0));
    EXPECT_EQ(frame.rows[63].y, 4096 + (lifted ? 300 : 0));
    EXPECT_EQ(frame.rows[47 * frame.rowPixels].cb, 256);
    FramePixel before = f->getFrameBeforeFilter(f->getFilterRecord(2), host.editHandle(), 6, 0)[0];
    EXPECT_EQ(before.y, 1536 / 2);  // over black, before Lift
    EXPECT_EQ(frame.rows[0].y, (1024 + 4096) / 2 + (lifted ? 300 : 0));
    EXPECT_EQ(f->getFrameBeforeFilter(f->getFilterRecord(0), host.editHandle(), 6, 0)[0].y, 0);
    EXPECT_EQ(f->getFrameBeforeFilter(f->getFilterRecord(0), host.editHandle(), 9, 0), nullptr);
    EXPECT_TRUE(host.takeMessages().empty());
    running.reset();
  }
}

TEST_F(HostTest, TextIsMeasuredAndDrawnInsideTheImage) {
  Host& host = start({.wantedWidth = 64, .wantedHeight = 64});
  FramePixel* image = host.image(0);
  int32_t width = 0, height = 0, widthOfTwo = 0, heightOfTwo = 0;
  ASSERT_EQ(f->hostDrawText(nullptr, 0, 0, "Ab", 255, 255, 255, 0, nullptr, &width, &height), 1);
  EXPECT_GT(width, 4);
  EXPECT_GT(height, 8);
  f->hostDrawText(nullptr, 0, 0, "Ab\nAbAb", 255, 255, 255, 0, nullptr, &widthOfTwo, &heightOfTwo);
  EXPECT_EQ(heightOfTwo, 2 * height);
  EXPECT_EQ(widthOfTwo, 2 * width);
  f->hostDrawText(image, 10, 10, "Ab", 255, 255, 255, 0, nullptr, nullptr, nullptr);
  int brightest = 0, outside = 0;
  for (int y = 0; y < 100; y++)
    for (int x = 0; x < 100; x++) {
      int luma = image[y * host.limits.rowPixels + x].y;
      bool inside = x >= 8 && x < 12 + width && y >= 8 && y < 12 + height;
      (inside ? brightest : outside) = std::max(inside ? brightest : outside, luma);
    }
  EXPECT_GT(brightest, 3000);
  EXPECT_EQ(outside, 0);
  f->hostDrawText(image, host.limits.maxWidth - 3, host.limits.maxHeight - 3, "W", 255, 0, 0, 0, nullptr, nullptr,
                  nullptr);
  f->hostDrawText(image, -5, -5, "W", 255, 0, 0, 2048, nullptr, nullptr, nullptr);
}

TEST_F(HostTest, AreasOutsideTheImageAreNotResized) {
  Host& host = start();
  FramePixel* image = host.image(0);
  const Limits& limits = host.limits;
  EXPECT_EQ(f->resizeImage(image, 10, 10, image, 0, 0, 20, 20), 1);
  const int wrong[][6] = {{0, 10, 0, 0, 20, 20},
                          {10, limits.maxHeight + 1, 0, 0, 20, 20},
                          {10, 10, -1, 0, 20, 20},
                          {10, 10, 0, 0, 0, 20},
                          {10, 10, limits.rowPixels - 5, 0, 20, 20},
                          {10, 10, 0, INT32_MAX, 20, 20},
                          {10, 10, 0, 0, 20, limits.rows + 1}};
  for (const auto& w : wrong) EXPECT_EQ(f->resizeImage(image, w[0], w[1], image, w[2], w[3], w[4], w[5]), 0) << w[0];
}

TEST_F(HostTest, DialogsAnswerOnlyWhatFits) {
  Host& host = start();
  char name[260] = "x";
  EXPECT_EQ(f->askLoadFileName(name, "", ""), 0);
  host.dialogs.load = std::string(259, 'a');
  EXPECT_EQ(f->askLoadFileName(name, "", ""), 1);
  EXPECT_EQ(strlen(name), 259u);
  host.dialogs.load += 'a';
  EXPECT_EQ(f->askLoadFileName(name, "", ""), 0);
  EXPECT_EQ(f->addMenuItem(f->getFilterRecord(0), "Edit", nullptr, 1014, 'E', keyCtrl), 1);
  ASSERT_EQ(host.menuItems.size(), 1u);
  EXPECT_EQ(host.menuItems[0].command, 1014);
}

TEST_F(HostTest, TheSelectionIsExported) {
  ::test::ScratchFolder folder, out;
  folder.write("a.zlo", "16 16 25 1 9");
  Host& host = start();
  host.desktop.exportSelection = [&](const std::string& path, bool alpha) {
    exportFilm(host, requestOfSelection(host, path, alpha), [](int, int) { return true; });
    return true;
  };
  EXPECT_EQ(f->exportEdit(host.editHandle(), (out / "a.raw").c_str(), 0, ""), 0);
  openProject(host, readFilmFile(folder / "a.zlo"));
  f->setSelection(host.editHandle(), 2, 3);
  EXPECT_EQ(f->exportEdit(host.editHandle(), (out / "a.raw").c_str(), 0, "any"), 1);
  EXPECT_EQ(std::filesystem::file_size(out / "a.raw"), 2u * 16 * 16 * 6);
  EXPECT_EQ(f->exportEdit(host.editHandle(), (out / "a%d.png").c_str(), 0, "Zenlay AVI / BMP export (RGBA)"), 1);
  EXPECT_TRUE(std::filesystem::exists(out / "a3.png"));
  EXPECT_TRUE(std::filesystem::exists(out / "a4.png"));
  host.desktop.exportSelection = nullptr;
  EXPECT_EQ(f->exportEdit(host.editHandle(), (out / "b.raw").c_str(), 0, ""), 0);
}

TEST_F(HostTest, DataOfAbsentFiltersStaysInTheProject) {
  ::test::ScratchFolder folder;
  folder.write("a.zlo", "16 16 25 1 4");
  Host& host = start();
  openProject(host, readFilmFile(folder / "a.zlo"));
  saveProject(host, folder / "a.cnp");
  ProjectFile project;
  ASSERT_EQ(readProject(folder / "a.cnp", &project), "");
  project.filters.push_back({"Gone", std::string("kept\0as it is", 13)});
  ASSERT_EQ(writeProject(folder / "a.cnp", project), "");
  openProject(host, readFilmFile(folder / "a.cnp"));
  EXPECT_EQ(host.takeMessages().size(), 1u);
  saveProject(host, folder / "b.cnp");
  std::string before, after;
  EXPECT_TRUE(platform::readFile(folder / "a.cnp", before) && platform::readFile(folder / "b.cnp", after));
  EXPECT_TRUE(before == after);
  openProject(host, readFilmFile(folder / "a.zlo"));
  saveProject(host, folder / "c.cnp");  // another film's
  ASSERT_EQ(readProject(folder / "c.cnp", &project), "");
  EXPECT_EQ(project.filters.size(), 1u);
}

TEST_F(HostTest, ProjectsSayWhatIsWrongWithThem) {
  ::test::ScratchFolder folder;
  Host& host = start();
  auto complaint = [&](const std::string& name) -> std::string {
    try {
      openProject(host, readFilmFile(folder / name));
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "";
  };
  folder.write((std::string(250, 'n') + ".zlo").c_str(), "16 16 25 1 4");
  EXPECT_NE(complaint(std::string(250, 'n') + ".zlo").find("longer than 259"), std::string::npos);
  folder.write("bad.zlo", "16 16 25 1 bad");
  EXPECT_NE(complaint("bad.zlo").find("Not a film"), std::string::npos);
  folder.write("good.zlo", "16 16 25 1 4 or so bad");
  ASSERT_EQ(complaint("good.zlo"), "");
  saveProject(host, folder / "bad.cnp");
  EXPECT_EQ(complaint("bad.cnp"), folder / "bad.cnp" + ": That cannot be read");
}

}  // namespace
}  // namespace cinora
