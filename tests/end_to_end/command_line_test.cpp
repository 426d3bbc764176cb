// The program with the small editor of tests/support/modules: everything the host itself does. Its films are "WIDTH
// HEIGHT RATE SCALE FRAMES"; on the left half frame f has half luma 256 f, Cb 512, Cr -512 over the background.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <cstring>

#include "platform/paths.h"
#include "tests/end_to_end/run_program.h"

namespace cinora::test {
namespace {

class CommandLine : public ::testing::Test {
 protected:
  Outcome run(std::vector<std::string> arguments, RunOptions options = {}) {
    if (arguments.size() > 1) arguments.insert(arguments.end(), {"--plugins", BINARY_DIR "/test_modules"});
    options.folder = folder.path();
    return runCinora(arguments, options);
  }
  void film(const char* name, const char* text) { folder.write(name, text); }

  ::test::ScratchFolder folder;
};

/// Errors without the lines about the modules that are broken on purpose.
std::string complaint(const Outcome& outcome) {
  std::string text;
  size_t at = 0;
  while (at < outcome.errors.size()) {
    size_t end = outcome.errors.find('\n', at) + 1;
    std::string line = outcome.errors.substr(at, end - at);
    if (line.find("foreign.cnf") == line.npos && line.find("Sulk") == line.npos) text += line;
    at = end;
  }
  return text;
}

int16_t valueAt(const std::string& raw, size_t index) {
  int16_t value;
  memcpy(&value, &raw[index * 2], 2);
  return value;
}

TEST_F(CommandLine, RawHoldsTheFramesAskedFor) {
  film("a.zlo", "6 4 25 1 10");
  ASSERT_EQ(run({"render", "a.zlo", "-o", "a.raw", "--frames", "3-5", "--threads", "3"}).status, 0);
  std::string raw = contentsOf(folder / "a.raw");
  ASSERT_EQ(raw.size(), 3u * 6 * 4 * 3 * 2);
  for (int frame = 2; frame <= 4; frame++) {
    for (int pixel = 0; pixel < 24; pixel++) {
      size_t at = ((frame - 2) * 24 + pixel) * 3;
      bool left = pixel % 6 < 3;
      EXPECT_EQ(valueAt(raw, at), left ? 128 * frame : 0) << frame << ' ' << pixel;
      EXPECT_EQ(valueAt(raw, at + 1), left ? 256 : 0);
      EXPECT_EQ(valueAt(raw, at + 2), left ? -256 : 0);
    }
  }
}

TEST_F(CommandLine, FilmsKeepRateLengthAndColour) {
  film("a.zlo", "64 48 30000 1001 9");
  const struct {
    const char* name;
    std::vector<const char*> options;
    const char *codec, *pixels;
  } rows[] = {
      {"a.mp4", {"--preset", "ultrafast", "--quality", "10"}, "h264", "yuv420p"},
      {"a.mkv", {"--codec", "h265", "--preset", "ultrafast"}, "hevc", "yuv420p"},
      {"a.webm", {}, "vp9", "yuv420p"},
      {"a.mov", {"--codec", "prores"}, "prores", "yuv422p10le"},
      {"b.mkv", {"--codec", "ffv1"}, "ffv1", "yuv444p"},
      {"a.avi", {"--codec", "mpeg4"}, "mpeg4", "yuv420p"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::vector<std::string> arguments{"render", "a.zlo", "-o", row.name};
    arguments.insert(arguments.end(), row.options.begin(), row.options.end());
    Outcome outcome = run(arguments);
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(complaint(outcome), "");
    std::string path = folder / row.name;
    EXPECT_EQ(probe(path, "codec_name"), row.codec);
    EXPECT_EQ(probe(path, "pix_fmt"), row.pixels);
    EXPECT_EQ(probe(path, "nb_read_frames"), "9");
    EXPECT_EQ(probe(path, "r_frame_rate"), "30000/1001");
    std::vector<std::string> frames = decodeFilm(path, "yuv444p", 64 * 48 * 3);
    ASSERT_EQ(frames.size(), 9u);
    // Frame 8, row 20, left: Y 1024 of 4096 is 16 + 219 / 4 = 70.75; Cb 256 is 128 + 224 / 16 = 142, Cr 114.
    const std::string& last = frames[8];
    size_t at = 20 * 64 + 12, plane = 64 * 48;
    EXPECT_NEAR(static_cast<uint8_t>(last[at]), 71, 3);
    EXPECT_NEAR(static_cast<uint8_t>(last[plane + at]), 142, 3);
    EXPECT_NEAR(static_cast<uint8_t>(last[2 * plane + at]), 114, 3);
    EXPECT_NEAR(static_cast<uint8_t>(last[at + 36]), 16, 3);
  }
  EXPECT_EQ(probe(folder / "a.mp4", "color_range"), "tv");
  EXPECT_EQ(probe(folder / "a.mp4", "color_space"), "smpte170m");
}

TEST_F(CommandLine, OddSizesKeepEveryPixel) {
  film("odd.zlo", "67 35 25 1 3");
  for (const char* name : {"odd.mp4", "odd.webm", "odd.png"}) {
    Outcome outcome = run({"render", "odd.zlo", "-o", name, "--frames", name == std::string("odd.png") ? "2" : "1-3"});
    ASSERT_EQ(outcome.status, 0) << name << outcome.errors;
    EXPECT_EQ(probe(folder / name, "width"), "67");
    EXPECT_EQ(probe(folder / name, "height"), "35");
  }
}

// The bar covers half of what is below it: alpha 2048 of 4096. Its own colour in frame 8 is Y 2048, Cb 512, Cr -512:
// R = 0.5 - 1.402 / 8, G = 0.5 - 0.344 / 8 + 0.714 / 8, B = 0.5 + 1.772 / 8, of 255: 83, 139, 184.
TEST_F(CommandLine, AlphaIsTakenFromTwoBackgrounds) {
  film("a.zlo", "64 48 25 1 9");
  for (const char* name : {"a.webm", "a.mov", "a.mkv", "a%d.png", "a%d.tif"}) {
    SCOPED_TRACE(name);
    Outcome outcome = run({"render", "a.zlo", "-o", name, "--alpha"});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    bool pictures = strchr(name, '%');
    std::string path = folder / (pictures ? std::string("a9") + strchr(name, '.') : name);
    std::vector<std::string> frames = decodeFilm(path, "rgba", 64 * 48 * 4);
    ASSERT_EQ(frames.size(), pictures ? 1u : 9u);
    const char* left = &frames.back()[(20 * 64 + 12) * 4];
    const int expected[] = {83, 139, 184, 128};
    for (int i = 0; i < 4; i++) EXPECT_NEAR(static_cast<uint8_t>(left[i]), expected[i], pictures ? 1 : 5) << i;
    EXPECT_NEAR(static_cast<uint8_t>(left[36 * 4 + 3]), 0, pictures ? 0 : 3);
  }
  EXPECT_EQ(run({"render", "a.zlo", "-o", "a.mp4", "--alpha"}).status, 2);
  EXPECT_EQ(run({"render", "a.zlo", "-o", "b.mkv", "--alpha", "--codec", "av1"}).status, 2);
  EXPECT_EQ(run({"render", "a.zlo", "-o", "a%d.jpg", "--alpha"}).status, 2);
}

TEST_F(CommandLine, SequencesAreNumberedByTheFilm) {
  film("a.zlo", "16 16 25 1 12");
  ::test::ScratchFolder out;
  ASSERT_EQ(run({"render", "a.zlo", "-o", out / "f%03d.png", "--frames", "9-11"}).status, 0);
  EXPECT_EQ(namesIn(out.path()), (std::vector<std::string>{"f009.png", "f010.png", "f011.png"}));
  ASSERT_EQ(run({"render", "a.zlo", "-o", out / "one.bmp", "--frames", "12"}).status, 0);
  // Frame 11 at the left, half luma 2816 with Cb 256 and Cr -256: R = 1408 - 359, G = 1408 - 88 + 183, B = 1408 + 454.
  std::string pixels = decodeFilm(out / "one.bmp", "rgb24", 16 * 16 * 3).at(0);
  EXPECT_NEAR(static_cast<uint8_t>(pixels[0]), 1049 * 255 / 4096, 1);
  EXPECT_NEAR(static_cast<uint8_t>(pixels[1]), 1503 * 255 / 4096, 1);
  EXPECT_NEAR(static_cast<uint8_t>(pixels[2]), 1862 * 255 / 4096, 1);
}

TEST_F(CommandLine, WrongUseIsTwoAndFailureOneWithOneLine) {
  film("a.zlo", "16 16 25 1 5");
  film("no.zlo", "what is this");
  film("bad.cnp", "CINORA but not quite");
  film("huge.zlo", "[zenlay]\nwidth=2000000000\nheight=16\n");
  film("wide.zlo", "60000 16 25 1 5");
  film("breaks.zlo", "16 16 25 1 14");
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char* says;
  } rows[] = {
      {{}, 1, "there is no display"},
      {{"a.zlo"}, 1, "cinora render a.zlo"},
      {{"nonsense"}, 2, "\"nonsense\" is neither a command nor a file"},
      {{"render"}, 2, "INPUT"},
      {{"render", "", "-o", "a.mp4"}, 2, "INPUT: must not be empty"},
      {{"render", "a.zlo", "-o", ""}, 2, "--output: must not be empty"},
      {{"render", "a.zlo", "-o", "a.mp4", "--codec", ""}, 2, "--codec: must not be empty"},
      {{"render", "a.zlo", "-o", "a.mp4", "--frames", ""}, 2, "--frames: must not be empty"},
      {{"convert", "a.zlo"}, 2, "OUTPUT"},
      {{"convert", "a.zlo", ""}, 2, "OUTPUT: must not be empty"},
      {{"convert", "a.zlo", "../" + std::string(platform::fileName(folder.path())) + "/a.zlo"}, 2, "to be converted"},
      {{"info", "line\nbreak.zlo"}, 1, "line?break.zlo"},
      {{"effects", ""}, 2, "NAME: must not be empty"},
      {{"render", "a.zlo"}, 2, "--output"},
      {{"render", "a.zlo", "-o", "a.mp4", "--nonsense"}, 2, "--nonsense"},
      {{"render", "a.zlo", "-o", "a.xyz"}, 2, "a.xyz"},
      {{"render", "a.zlo", "-o", "a.wav", "--alpha"}, 2, "a.wav"},
      {{"render", "a.avi", "-o", "a.mp4"}, 2, "a.avi"},
      {{"render", "a.zlo", "-o", "a.mp4", "--frames", "0-3"}, 2, "--frames"},
      {{"render", "a.zlo", "-o", "a.mp4", "--frames", "3-2"}, 2, "--frames"},
      {{"render", "a.zlo", "-o", "a.mp4", "--frames", "2-6"}, 2, "5 frames"},
      {{"render", "a.zlo", "-o", "a.png"}, 2, "%05d"},
      {{"render", "a.zlo", "-o", "a%d%d.png"}, 2, "%05d"},
      {{"render", "a.zlo", "-o", "a.mp4", "--codec", "nosuch"}, 2, "nosuch"},
      {{"render", "a.zlo", "-o", "a.mp4", "--codec", "aac"}, 2, "aac"},
      {{"render", "a.zlo", "-o", "a.webm", "--codec", "h264"}, 2, "h264"},
      {{"render", "a.zlo", "-o", "a.mkv", "--codec", "ffv1", "--quality", "3"}, 2, "lossless"},
      {{"render", "a.zlo", "-o", "a.mp4", "--codec", "mpeg4", "--preset", "fast"}, 2, "--preset"},
      {{"render", "a.zlo", "-o", "a.mp4", "--preset", "silly"}, 2, "--preset silly: libx264 has ultrafast"},
      {{"render", "a.zlo", "-o", "a.flac", "--audio-codec", "mp3"}, 2, "cannot hold mp3"},
      {{"render", "a.zlo", "-o", "a.raw", "--alpha"}, 2, "--alpha"},
      {{"render", "a.zlo", "-o", "a.mp4", "--set", "novalue"}, 2, "KEY=VALUE"},
      {{"render", "a.zlo", "-o", "a.mp4", "--threads", "0"}, 2, "--threads"},
      {{"render", "nothere.zlo", "-o", "a.mp4"}, 1, "nothere.zlo"},
      {{"render", ".", "-o", "a.mp4"}, 2, "."},
      {{"render", "no.zlo", "-o", "a.mp4"}, 1, "Not a film. Really not"},
      {{"render", "huge.zlo", "-o", "a.mp4"}, 1, "2000000000x16"},
      {{"render", "wide.zlo", "-o", "a.mp4"}, 1, "60000x16"},
      {{"render", "breaks.zlo", "-o", "a.mp4"}, 1, "frame 5"},
      {{"render", "a.zlo", "-o", "nowhere/a.mp4"}, 1, "nowhere/a.mp4"},
      {{"render", "a.zlo", "-o", "nowhere/a.png", "--frames", "1"}, 1, "nowhere/a.png"},
      {{"info", "bad.cnp"}, 1, "not a Cinora project"},
      {{"effects", "Nonsense"}, 1, "Nonsense"},
      {{"convert", "a.zlo", "b.txt"}, 2, "b.txt"},
      {{"convert", "a.zlo", "b.zenlay_backup"}, 1, "nothing to back up"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::PrintToString(row.arguments));
    Outcome outcome = run(row.arguments);
    EXPECT_EQ(outcome.status, row.status);
    std::string said = complaint(outcome);
    EXPECT_NE(said.find(row.says), said.npos) << said;
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    EXPECT_EQ(outcome.output, "");
  }
  EXPECT_EQ(namesIn(folder.path()),
            (std::vector<std::string>{"a.zlo", "bad.cnp", "breaks.zlo", "huge.zlo", "no.zlo", "wide.zlo"}));
}

TEST_F(CommandLine, FullDisksLeaveNothingUnderTheFinalName) {
  film("a.zlo", "640 480 25 1 20");
  folder.write("old.mkv", "an older film");
  std::vector<std::string> before = namesIn(folder.path());
  const std::vector<std::string> outputs[] = {
      {"old.mkv", "--codec", "ffv1"}, {"a.mp4", "--codec", "mpeg4", "--quality", "1"}, {"a.raw"}, {"a%d.bmp"}};
  for (const auto& output : outputs) {
    SCOPED_TRACE(output[0]);
    std::vector<std::string> arguments{"render", "a.zlo", "-o"};
    arguments.insert(arguments.end(), output.begin(), output.end());
    Outcome outcome = run(arguments, {.fileSizeLimit = 4096});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(complaint(outcome).find("File too large"), std::string::npos) << outcome.errors;
    EXPECT_EQ(namesIn(folder.path()), before);
  }
  EXPECT_EQ(contentsOf(folder / "old.mkv"), "an older film");
  std::filesystem::create_symlink("/dev/full", folder / "full.mkv");
  Outcome outcome = run({"render", "a.zlo", "-o", "full.mkv"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(complaint(outcome).find("No space left"), std::string::npos) << outcome.errors;
}

TEST_F(CommandLine, ClosedOrFullStandardStreamsHarmNothing) {
  film("a.zlo", "16 16 25 1 13");  // warns
  auto shell = [&](const std::string& line) {
    return runProgram({"sh", "-c", BINARY_DIR "/bin/cinora " + line}, {.folder = folder.path()}).status;
  };
  std::string modules = " --plugins " BINARY_DIR "/test_modules ";
  EXPECT_EQ(shell("render a.zlo -o a.raw" + modules), 0);
  EXPECT_EQ(shell("render a.zlo -o b.raw" + modules + "0<&- 1>&- 2>&-"), 0);
  EXPECT_TRUE(contentsOf(folder / "a.raw") == contentsOf(folder / "b.raw"));
  for (const char* stream : {">&-", ">/dev/full"})
    for (const std::string& command : {"info a.zlo" + modules, "effects" + modules, std::string("--help ")})
      EXPECT_EQ(shell(command + stream), 1) << command << stream;
}

TEST_F(CommandLine, InterruptedItCleansUp) {
  film("a.zlo", "1280 720 25 1 100000");
  ::test::ScratchFolder out;
  for (int signal : {SIGINT, SIGTERM}) {
    for (const char* name : {"a.mp4", "a.raw"}) {
      RunOptions options{.signal = signal, .signalAfter = 150, .until = out.path()};
      if (name == std::string("a.raw")) options.fileSizeLimit = 4L << 30;
      Outcome outcome = run({"render", "a.zlo", "-o", out / name}, options);
      EXPECT_EQ(outcome.status, 1);
      EXPECT_EQ(complaint(outcome), "cinora: interrupted\n");
      EXPECT_EQ(namesIn(out.path()), std::vector<std::string>{});
    }
  }
}

TEST_F(CommandLine, InterruptedInAFrameThatNeverEndsItEndsAllTheSame) {
  film("a.zlo", "64 48 25 1 15");
  ::test::ScratchFolder out;
  Outcome outcome = run({"render", "a.zlo", "-o", out / "a.mp4"}, {.signal = SIGINT, .until = out.path()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(complaint(outcome), "cinora: interrupted\n");
  EXPECT_EQ(namesIn(out.path()), std::vector<std::string>{});
}

TEST_F(CommandLine, BeforeThereIsAnythingToCleanUpSignalsEndIt) {
  film("a.zlo", "64 48 25 1 16");
  const std::vector<std::string> commands[] = {
      {"info", "a.zlo"}, {"convert", "a.zlo", "b.zlo"}, {"render", "a.zlo", "-o", "a.mp4"}};
  for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
    for (const auto& command : commands) {
      Outcome outcome = run(command, {.signal = signal, .until = folder / "opening"});
      EXPECT_EQ(outcome.status, 128 + signal) << command[0];
      EXPECT_EQ(complaint(outcome), "");
      std::filesystem::remove(folder / "opening");
    }
  }
  EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"a.zlo"});
}

TEST_F(CommandLine, OnlyRegularFilesAreRead) {
  ASSERT_EQ(mkfifo((folder / "pipe.zlo").c_str(), 0600), 0);
  std::filesystem::create_directory(folder / "folder.cnp");
  std::filesystem::create_symlink("/dev/zero", folder / "device.zenlay_backup");
  for (const char* name : {"pipe.zlo", "folder.cnp", "device.zenlay_backup"}) {
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"info", name}, {"convert", name, "out.zlo"}, {"render", name, "-o", "out.raw"}}) {
      Outcome outcome = run(command);
      EXPECT_EQ(outcome.status, 1) << name;
      std::string what = name[0] == 'f' ? " is a folder\n" : " is no regular file\n";
      EXPECT_EQ(complaint(outcome), std::string("cinora: ") + name + what);
    }
  }
  EXPECT_EQ(namesIn(folder.path()), (std::vector<std::string>{"device.zenlay_backup", "folder.cnp", "pipe.zlo"}));
}

TEST_F(CommandLine, ProjectsKeepClipAndData) {
  film("a.zlo", "32 16 30000 1001 7");
  ASSERT_EQ(run({"convert", "a.zlo", "a.cnp"}).status, 0);
  ASSERT_EQ(run({"convert", "a.cnp", "b.zlo"}).status, 0);
  EXPECT_EQ(contentsOf(folder / "b.zlo"), "32 16 30000 1001 7");
  ASSERT_EQ(run({"render", "a.zlo", "-o", "a.raw"}).status, 0);
  ASSERT_EQ(run({"render", "a.cnp", "-o", "b.raw"}).status, 0);
  EXPECT_TRUE(contentsOf(folder / "a.raw") == contentsOf(folder / "b.raw"));
  EXPECT_EQ(contentsOf(folder / "a.raw").size(), 7u * 32 * 16 * 6);

  Outcome full = run({"convert", "a.zlo", "full.cnp"}, {.fileSizeLimit = 50});
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(contentsOf(folder / "full.cnp"), "");
}

TEST_F(CommandLine, FiltersHearOfEverythingInOrder) {
  film("a.zlo", "32 16 25 1 7");
  // The editor starts after the others; then its window is set up, the clip opened, its length told.
  EXPECT_EQ(run({"info", "a.zlo", "--json"}).output, "{\"log\": \"start EAL 467 465 464 \"}\n");
  EXPECT_EQ(run({"effects", "--json"}).output, "[{\"index\": 0, \"name\": \"Bar\"}]\n");
}

TEST_F(CommandLine, WarningsDontStopARender) {
  film("a.zlo", "16 16 25 1 13");
  Outcome outcome = run({"render", "a.zlo", "-o", "a.raw"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(complaint(outcome), "cinora: warning: File not found\n");
  EXPECT_EQ(contentsOf(folder / "a.raw").size(), 13u * 16 * 16 * 6);
}

}  // namespace
}  // namespace cinora::test
