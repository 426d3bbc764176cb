// Small films through the real program and plug-in, looked at pixel by pixel.
#include <gtest/gtest.h>

#include <cstring>
#include <nlohmann/json.hpp>

#include "tests/end_to_end/run_program.h"
#include "zenlay/model/records.h"

namespace cinora::test {
namespace {

using Json = nlohmann::json;

constexpr int width = 64, height = 48;
constexpr size_t frameBytes = width * height * 6;

struct Pixel {
  int y, cb, cr;
};
// What the plug-in makes of ff0000: 4080 times 4918, -2775 and 8224, each >> 14.
constexpr Pixel red{1224, -692, 2047}, black{0, 0, 0};

std::string header(int length = 10) {
  return "[zenlay]\r\nwidth=64\r\nheight=48\r\nrate=30\r\nscale=1\r\nlength=" + std::to_string(length) +
         "\r\naudio_rate=44100\r\naudio_ch=2\r\n";
}

/// An object on a layer of its own: `media` and `drawing` are the lines of its two effects behind their names.
std::string object(int number, const std::string& media, const std::string& drawing = "", int start = 1, int end = 10,
                   const std::string& more = "") {
  std::string n = std::to_string(number);
  return "[" + n + "]\r\nstart=" + std::to_string(start) + "\r\nend=" + std::to_string(end) +
         "\r\nlayer=" + std::to_string(number + 1) + "\r\noverlay=1\r\ncamera=0\r\n" + more + "[" + n +
         ".0]\r\n_name=" + media + "\r\n[" + n + ".1]\r\n_name=Standard drawing\r\n" + drawing + "\r\n";
}

const std::string redSquare = "Graphic\r\nSize=16\r\ntype=2\r\ncolor=ff0000";

class Film : public ::testing::Test {
 protected:
  Outcome run(const std::vector<std::string>& arguments) { return runCinora(arguments, {.folder = folder.path()}); }

  /// Renders a film and keeps its frames. Empty when it failed.
  std::string render(const std::string& text, const std::vector<std::string>& options = {}) {
    folder.write("film.zlo", text);
    std::vector<std::string> arguments{"render", "film.zlo", "-o", "film.raw"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return contentsOf(folder / "film.raw");
  }

  ::test::ScratchFolder folder;
};

Pixel pixelAt(const std::string& raw, int frame, int x, int y) {
  int16_t values[3] = {-1, -1, -1};
  size_t at = frame * frameBytes + (static_cast<size_t>(y) * width + x) * 6;
  if (at + 6 <= raw.size()) memcpy(values, &raw[at], 6);
  return {values[0], values[1], values[2]};
}

/// The pass that keeps frames within RGB may move a component by a few steps of 4096.
void expectPixel(const std::string& raw, int frame, int x, int y, Pixel expected, int tolerance = 4) {
  Pixel found = pixelAt(raw, frame, x, y);
  EXPECT_NEAR(found.y, expected.y, tolerance) << "frame " << frame << " at " << x << ',' << y;
  EXPECT_NEAR(found.cb, expected.cb, tolerance) << "frame " << frame << " at " << x << ',' << y;
  EXPECT_NEAR(found.cr, expected.cr, tolerance) << "frame " << frame << " at " << x << ',' << y;
}

/// The 16x16 square with its top left corner at (left, top): red inside its corners, black around them.
void expectSquare(const std::string& raw, int frame, int left, int top) {
  for (int x : {left, left + 15})
    for (int y : {top, top + 15}) expectPixel(raw, frame, x, y, red);
  expectPixel(raw, frame, left - 1, top, black);
  expectPixel(raw, frame, left + 16, top + 15, black);
  expectPixel(raw, frame, left, top - 1, black);
  expectPixel(raw, frame, left + 15, top + 16, black);
}

TEST_F(Film, AFigureLiesWhereItsDrawingSays) {
  std::string raw = render(header() + object(0, redSquare, "X=10.0\r\nY=-4.0", 3, 5));
  ASSERT_EQ(raw.size(), 10 * frameBytes);
  for (int frame : {2, 3, 4}) expectSquare(raw, frame, 34, 12);
  for (int frame : {0, 1, 5, 9}) expectPixel(raw, frame, 40, 20, black, 0);
}

TEST_F(Film, MovementGoesFromStartToEnd) {
  std::string raw = render(header() + object(0, redSquare, "X=-10.0,8.0,1"));
  for (int frame = 0; frame < 10; frame++) expectSquare(raw, frame, 24 - 10 + 2 * frame, 16);
}

TEST_F(Film, LaterLayersCoverEarlierOnesByTheirClearness) {
  std::string white = "Graphic\r\nSize=16\r\ntype=2\r\ncolor=ffffff";
  std::string raw =
      render(header(1) + object(0, white, "", 1, 1) + object(1, redSquare, "X=8.0\r\nClearness=50.0", 1, 1));
  expectPixel(raw, 0, 25, 24, {4095, 0, 0});
  expectPixel(raw, 0, 45, 24, {612, -346, 1023});
  expectPixel(raw, 0, 36, 24, {(4095 + 1224) / 2, -346, 1023});
}

TEST_F(Film, SettingsReachThePlugInForOneRun) {
  std::string grey = "Graphic\r\nSize=16\r\ntype=2\r\ncolor=c0c0c0";  // Y 192 * 16 * 16448 / 16384 = 3084
  std::string film = header(1) + object(0, grey, "", 1, 1) + object(1, grey, "blend=1", 1, 1);
  EXPECT_LE(pixelAt(render(film), 0, 32, 24).y, 4100);
  EXPECT_NEAR(pixelAt(render(film, {"--set", "saturation=0"}), 0, 32, 24).y, 6168, 2);
}

TEST_F(Film, VideosAreFrameExact) {
  Outcome made = runProgram({"sh", "-c",
                             "ffmpeg -v error -f lavfi -i color=black:s=64x48:r=30 -vf geq=lum=16+10*N:cb=128:cr=128 "
                             "-frames:v 20 -c:v libx264 -qp 0 -g 8 -bf 2 " +
                                 (folder / "ramp.mp4")});
  ASSERT_EQ(made.status, 0) << made.errors;
  std::string raw = render(header(20) + object(0, "Video file\r\nfile=ramp.mp4", "", 1, 20));
  ASSERT_EQ(raw.size(), 20 * frameBytes);
  for (int frame = 0; frame < 20; frame++) expectPixel(raw, frame, 11, 33, {10 * frame * 4096 / 219, 0, 0}, 2);

  raw = render(header(20) + object(0, "Video file\r\nvPlay=-100.0\r\nfile=ramp.mp4", "", 1, 20));
  EXPECT_GT(pixelAt(raw, 0, 11, 33).y, pixelAt(raw, 1, 11, 33).y);
  EXPECT_GT(pixelAt(raw, 1, 11, 33).y, pixelAt(raw, 12, 11, 33).y);
}

TEST_F(Film, FilesAreFoundFromTheCurrentFolderAndBesideTheProject) {
  runProgram({"ffmpeg", "-v", "error", "-f", "lavfi", "-i", "color=0x00ff00:s=16x16,format=rgb24", "-frames:v", "1",
              folder / "green.png"});
  std::filesystem::create_directory(folder / "elsewhere");
  folder.write("film.zlo", header(1) + object(0, "Image file\r\nfile=green.png", "", 1, 1));
  for (const std::string& from : {folder.path(), folder / "elsewhere"}) {
    ASSERT_EQ(runCinora({"render", folder / "film.zlo", "-o", folder / "a.raw"}, {.folder = from}).status, 0);
    expectPixel(contentsOf(folder / "a.raw"), 0, 32, 24, {9655 * 4080 >> 14, -5449 * 4080 >> 14, -6887 * 4080 >> 14});
  }
}

TEST_F(Film, AlphaIsThatOfTheObjects) {
  folder.write("film.zlo", header(1) + object(0, redSquare, "X=-16.0", 1, 1) +
                               object(1, redSquare, "X=16.0\r\nClearness=50.0", 1, 1));
  ASSERT_EQ(run({"render", "film.zlo", "-o", "film.png", "--alpha"}).status, 0);
  std::string pixels = decodeFilm(folder / "film.png", "rgba", width * height * 4).at(0);
  auto expect = [&](int x, int y, std::vector<int> rgba) {
    for (int i = 0; i < 4; i++) EXPECT_NEAR(static_cast<uint8_t>(pixels[(y * width + x) * 4 + i]), rgba[i], 1) << x;
  };
  expect(16, 24, {255, 0, 0, 255});
  expect(48, 24, {255, 0, 0, 128});
  EXPECT_EQ(pixels[(5 * width + 5) * 4 + 3], 0);
}

TEST_F(Film, EveryKindOfProjectRendersTheSame) {
  std::string direct = render(header() + object(0, redSquare, "X=-10.0,8.0,1") +
                              object(1, "Graphic\r\nSize=30\r\ntype=6\r\ncolor=00ff80", "Y=5.0\r\nRotation=33.00"));
  const char* names[] = {"film.zlo", "a.cnp", "b.zenlay_backup", "c.zlo", "d.cnp"};
  for (int i = 1; i < 5; i++) {
    Outcome outcome = run({"convert", names[i - 1], names[i]});
    ASSERT_EQ(outcome.status, 0) << names[i] << outcome.errors;
    ASSERT_EQ(run({"render", names[i], "-o", "other.raw"}).status, 0) << names[i];
    EXPECT_TRUE(contentsOf(folder / "other.raw") == direct) << names[i];
  }
  ASSERT_EQ(run({"convert", "film.zlo", "again.zlo"}).status, 0);
  ASSERT_EQ(run({"convert", "again.zlo", "twice.zlo"}).status, 0);
  EXPECT_TRUE(contentsOf(folder / "again.zlo") == contentsOf(folder / "twice.zlo"));
}

/// Puts the first object of a backup into scene 1: behind the backup's 36 bytes and the block's header of 256 come 76
/// bytes a layer, 220 a scene, 128 a movement script and 112 an effect.
void moveFirstObjectToSceneOne(std::string& backup) {
  auto word = [&](size_t at) {
    int32_t value;
    memcpy(&value, &backup[36 + at], 4);
    return value;
  };
  size_t object = 36 + 256 + 76 * word(0x6C) + 220 * word(0x68) + 128 * word(0x7C) + 112 * word(0x04);
  int32_t scene = 1;
  memcpy(&backup[object + offsetof(zenlay::ObjectRecord, scene)], &scene, 4);
}

TEST_F(Film, AnObjectFileHoldsTheCurrentSceneAndConvertSaysSo) {
  folder.write("film.zlo", header() + object(0, redSquare) + object(1, redSquare) + object(2, redSquare));
  ASSERT_EQ(run({"convert", "film.zlo", "film.zenlay_backup"}).status, 0);
  std::string backup = contentsOf(folder / "film.zenlay_backup");
  moveFirstObjectToSceneOne(backup);
  folder.write("scenes.zenlay_backup", backup);
  Outcome outcome = run({"convert", "scenes.zenlay_backup", "root.zlo"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors,
            "cinora: warning: root.zlo: holds scene 0 \"Root\" alone; 1 scene left out: 1 \"Scene 1\" (1 object)\n");
  EXPECT_EQ(Json::parse(run({"info", "root.zlo", "--json"}).output)["objects"].size(), 2u);
  EXPECT_EQ(run({"convert", "scenes.zenlay_backup", "all.cnp"}).errors, "");
  EXPECT_EQ(Json::parse(run({"info", "all.cnp", "--json"}).output)["objects"].size(), 3u);
}

TEST_F(Film, WhatAnObjectFileHoldsInVainIsToldInOneLine) {
  folder.write("film.zlo", header() + object(0, redSquare) + object(1, "Sparkle") + object(3, redSquare));
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"render", "film.zlo", "-o", "film.raw"},
                                                    {"info", "film.zlo"},
                                                    {"convert", "film.zlo", "film.cnp"}}) {
    Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(
        outcome.errors,
        "cinora: warning: film.zlo: 2 objects left out: [1] begins with \"Sparkle\", which is unknown, [3] is out of "
        "order\n");
  }
}

TEST_F(Film, InfoShowsWhatTheEditorShows) {
  folder.write("film.zlo", header() + object(0, redSquare, "X=-10.0,8.5,1\r\nZoom%=50.25\r\nClearness=-0.5"));
  std::string text = run({"info", "film.zlo"}).output;
  EXPECT_NE(text.find("            Size=16, rAspect=0.0, Line width=4000, type=2, color=ff0000\n"), text.npos) << text;
  EXPECT_NE(text.find("            X=-10.0..8.5, Y=0.0, Z=0.0, Zoom%=50.25, Clearness=-0.5, Rotation=0.00, blend=0\n"),
            text.npos)
      << text;
  folder.write("video.zlo", header() + object(0, "Video file\r\nLoop playback=1\r\nfile=a b.avi"));
  text = run({"info", "video.zlo"}).output;
  EXPECT_NE(text.find("vPlay=100.0, Loop playback=1, Import alpha channel=0, file=a b.avi\n"), text.npos) << text;
  Json track = Json::parse(run({"info", "film.zlo", "--json"}).output)["objects"][0]["slots"][1]["tracks"][3];
  EXPECT_EQ(track["start"], 5025);
}

TEST_F(Film, LookingChangesNothing) {
  std::string text =
      header() + object(0, "Video file\r\nfile=C:\\clips\\gone.avi") + object(1, "Image file\r\nfile=gone.png");
  folder.write("film.zlo", text);
  ASSERT_EQ(run({"convert", "film.zlo", "a.cnp"}).status, 0);
  Outcome outcome = run({"info", "a.cnp", "--json"});
  ASSERT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "cinora: warning: Some files specified by the objects were missing\n");
  Json info = Json::parse(outcome.output);
  ASSERT_EQ(info["objects"].size(), 2u);
  EXPECT_EQ(info["objects"][0]["slots"][0]["exdata"]["file"], "C:\\clips\\gone.avi");
  EXPECT_EQ(info["objects"][1]["slots"][0]["exdata"]["file"], "gone.png");
  EXPECT_EQ(info["clip"]["width"], 64);
  EXPECT_EQ(info["clip"]["length"], 10);
  ASSERT_EQ(run({"convert", "a.cnp", "b.zlo"}).status, 0);
  EXPECT_NE(contentsOf(folder / "b.zlo").find("file=C:\\clips\\gone.avi\r\n"), std::string::npos);
  EXPECT_EQ(contentsOf(folder / "film.zlo"), text);
}

TEST_F(Film, FootageIsNotOverwritten) {
  folder.write("clip.mp4", "footage");
  std::filesystem::create_symlink("clip.mp4", folder / "link.mp4");
  folder.write("film.zlo", header() + object(0, "Video file\r\nfile=clip.mp4"));
  for (const char* name : {"clip.mp4", "link.mp4"}) {
    Outcome outcome = runCinora({"render", folder / "film.zlo", "-o", folder / name}, {.folder = "/"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.errors.find("is a file the film is made of"), std::string::npos) << outcome.errors;
  }
  EXPECT_EQ(contentsOf(folder / "clip.mp4"), "footage");
  folder.write("in003.png", "picture");
  folder.write("figure.png", "figure");
  folder.write("made.zlo", header() + object(0, "Image file\r\nfile=in003.png") +
                               object(1, "Graphic\r\ntype=0\r\nname=*figure.png"));
  EXPECT_EQ(run({"render", "made.zlo", "-o", "in%03d.png", "--frames", "2-4"}).status, 2);
  EXPECT_EQ(run({"render", "made.zlo", "-o", "figure.png", "--frames", "1"}).status, 2);
  EXPECT_EQ(contentsOf(folder / "in003.png") + contentsOf(folder / "figure.png"), "picturefigure");
  EXPECT_EQ(run({"render", "made.zlo", "-o", "in%03d.png", "--frames", "4-5"}).status, 0);
}

TEST_F(Film, AFileOfALikeNameIsAnother) {
  folder.write("film.zlo", header() + object(0, redSquare));
  folder.write("Film.RAW", "mine");
  ASSERT_EQ(run({"render", "film.zlo", "-o", "film.raw"}).status, 0);
  ASSERT_EQ(run({"convert", "film.zlo", "12:30.cnp"}).status, 0);
  ASSERT_EQ(run({"render", "12:30.cnp", "-o", "12:30.mp4"}).status, 0);
  EXPECT_EQ(contentsOf(folder / "Film.RAW"), "mine");
  for (const char* name : {"film.raw", "12:30.mp4"}) EXPECT_TRUE(std::filesystem::exists(folder / name)) << name;
}

TEST_F(Film, MissingMediaIsSaidOnceAndTheRestIsDrawn) {
  folder.write("film.zlo", header() + object(0, "Video file\r\nfile=gone.avi") + object(1, redSquare));
  Outcome outcome = run({"render", "film.zlo", "-o", "film.raw"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.errors.find("gone.avi"), std::string::npos);
  EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
  expectSquare(contentsOf(folder / "film.raw"), 9, 24, 16);
}

TEST_F(Film, FilmsWithoutObjectsKeepTheirHeaderAndMakeNoBackup) {
  folder.write("empty.zlo", header());
  ASSERT_EQ(run({"convert", "empty.zlo", "again.zlo"}).status, 0);
  EXPECT_EQ(contentsOf(folder / "again.zlo"), header());
  Outcome outcome = run({"convert", "empty.zlo", "empty.zenlay_backup"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
  EXPECT_FALSE(std::filesystem::exists(folder / "empty.zenlay_backup"));
}

TEST_F(Film, FilesThatAreNoFilmsFail) {
  folder.write("good.zlo", header() + object(0, redSquare));
  ASSERT_EQ(run({"convert", "good.zlo", "good.zenlay_backup"}).status, 0);
  std::string backup = contentsOf(folder / "good.zenlay_backup");
  folder.write("empty.zlo", "");
  folder.write("words.zlo", "what is this\n[and this]\n");
  folder.write("cut.zenlay_backup", backup.substr(0, backup.size() - 1));
  folder.write("head.zenlay_backup", backup.substr(0, 36));
  folder.write("block.zenlay_backup", backup.substr(0, 36) + "nope" + backup.substr(40));
  for (const char* name :
       {"empty.zlo", "words.zlo", "cut.zenlay_backup", "head.zenlay_backup", "block.zenlay_backup"}) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"render", name, "-o", "film.raw"}, {"info", name}, {"convert", name, "out.zlo"}}) {
      Outcome outcome = run(arguments);
      EXPECT_EQ(outcome.status, 1) << name;
      EXPECT_EQ(outcome.output, "") << name;
      EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
      EXPECT_NE(outcome.errors.find(name), std::string::npos) << outcome.errors;
    }
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "film.raw"));
  EXPECT_FALSE(std::filesystem::exists(folder / "out.zlo"));
}

TEST_F(Film, SettingsBeyondReasonAreRefused) {
  folder.write("good.zlo", header() + object(0, redSquare));
  Outcome outcome =
      run({"render", "good.zlo", "-o", "film.raw", "--set", "max_w=2000000000", "--set", "max_h=2000000000"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "cinora: Unable to reserve memory\n");
}

TEST_F(Film, WithoutAnEditorItSaysWhereOneWasLookedFor) {
  folder.write("good.zlo", header() + object(0, redSquare));
  Outcome outcome = run({"info", "good.zlo", "--plugins", "nowhere"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "cinora: no editing plug-in was found in nowhere\n");
}

TEST_F(Film, DeepFoldersDoNotLengthenTheNameOfAFile) {
  std::string deep;
  for (int i = 0; i < 100; i++) deep += "folder/";
  std::filesystem::create_directories(folder / deep);
  folder.write((deep + "good.zlo").c_str(), header(1) + object(0, redSquare, "", 1, 1));
  std::string inside = folder / deep;
  EXPECT_EQ(runCinora({"convert", "good.zlo", "good.cnp"}, {.folder = inside}).status, 0);
  EXPECT_EQ(runCinora({"convert", "good.cnp", "again.zlo"}, {.folder = inside}).status, 0);
  EXPECT_EQ(runCinora({"render", "again.zlo", "-o", "a.raw"}, {.folder = inside}).status, 0);
}

TEST_F(Film, EffectsAreListedInRegistryOrder) {
  Outcome outcome = run({"effects", "--json"});
  ASSERT_EQ(outcome.status, 0) << outcome.errors;
  Json effects = Json::parse(outcome.output);
  ASSERT_EQ(effects.size(), 100u);
  for (int i = 0; i < 100; i++) EXPECT_EQ(effects[i]["index"], i);
  Json graphic = Json::parse(run({"effects", "Graphic", "--json"}).output);
  ASSERT_EQ(graphic.size(), 1u);
  EXPECT_EQ(graphic[0]["tracks"][0]["name"], "Size");
  EXPECT_EQ(graphic[0]["tracks"][0]["default"], 100);
  EXPECT_EQ(graphic[0]["tracks"][0]["max"], 4000);
  EXPECT_EQ(graphic[0]["exdata_size"], 264);
  std::string table = run({"effects"}).output;
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 100);
  EXPECT_NE(run({"effects", "Graphic"}).output.find("rAspect"), std::string::npos);
  EXPECT_EQ(run({"effects", "No such effect"}).status, 1);
}

}  // namespace
}  // namespace cinora::test
