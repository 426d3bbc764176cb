// Sound through the real program: from a file, through the film, into every kind of file, and back.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "cinora/media/media_reader.h"
#include "cinora/sound/sound_reader.h"
#include "tests/end_to_end/run_program.h"
#include "tests/support/file_bytes.h"

namespace cinora::test {
namespace {

using Samples = std::vector<int16_t>;
constexpr int rate = 44100;
constexpr double frequency = 441, turn = 2 * std::numbers::pi;  // a hundred samples a period

/// A tone on the left, half as loud on the right, as a WAV file.
std::string toneFile(int frames, double amplitude) {
  Samples samples;
  for (int i = 0; i < frames; i++)
    for (double part : {1.0, 0.5})
      samples.push_back(static_cast<int16_t>(std::lround(part * amplitude * std::sin(turn * frequency * i / rate))));
  return ::test::wavFile(samples, 2, rate);
}

/// Of channel `c` in whole periods from sample `first` on.
::test::Tone toneOf(const Samples& samples, int c, int first, int count) {
  return ::test::toneOf(&samples[2 * static_cast<size_t>(first) + c], 2, count, frequency, rate, first);
}

class SoundFilm : public ::testing::Test {
 protected:
  SoundFilm() { folder.write("tone.wav", toneFile(4 * rate, 8000)); }

  static std::string header(const char* frames = "30\r\nscale=1", int length = 90) {
    return "[zenlay]\r\nwidth=64\r\nheight=48\r\nrate=" + std::string(frames) + "\r\nlength=" + std::to_string(length) +
           "\r\naudio_rate=44100\r\naudio_ch=2\r\n";
  }
  static std::string sound(int start, int end, const std::string& effects = "", const std::string& playback = "") {
    return "[0]\r\nstart=" + std::to_string(start) + "\r\nend=" + std::to_string(end) +
           "\r\nlayer=1\r\noverlay=1\r\naudio=1\r\n[0.0]\r\n_name=Audio file\r\nfile=tone.wav\r\n" + effects +
           (effects.empty() ? "[0.1]" : "[0.2]") + "\r\n_name=Standard playback\r\n" + playback;
  }
  Outcome render(const std::string& text, std::vector<std::string> arguments) {
    folder.write("film.zlo", text);
    arguments.insert(arguments.begin(), {"render", "film.zlo", "-o"});
    return runCinora(arguments, {.folder = folder.path()});
  }
  /// The whole sound of a file, at the film's rate.
  Samples heard(const std::string& name) {
    SoundReader reader;
    std::string error;
    EXPECT_TRUE(reader.open(folder / name, error)) << name << ": " << error;
    int64_t total = reader.setOutput(rate, 2);
    Samples samples(static_cast<size_t>(total) * 2);
    EXPECT_EQ(reader.read(0, static_cast<int>(total), samples.data()), total);
    return samples;
  }
  ::test::ScratchFolder folder;
};

// Whatever an encoder puts ahead of the film makes neither the pictures late nor the sound's beginning silent.
TEST_F(SoundFilm, PictureAndSoundBeginTogether) {
  auto levelAtBegin = [&](const std::string& name) {
    Samples samples = heard(name);
    double sum = 0;
    for (int i = 0; i < 1000; i++) sum += samples[2 * i] * samples[2 * i];
    return std::sqrt(sum / 1000);
  };
  std::string film = header() + sound(1, 90);
  ASSERT_EQ(render(film, {"a.mp4"}).status, 0);
  const double level = levelAtBegin("a.mp4");
  EXPECT_GT(level, 4000);
  const char* const rows[][2] = {
      {"a.mkv", "aac"}, {"b.mkv", "mp3"}, {"a.webm", "opus"}, {"a.avi", "mp3"}, {"b.avi", "pcm"}};
  for (auto [name, codec] : rows) {
    ASSERT_EQ(render(film, {name, "--audio-codec", codec}).status, 0) << name;
    EXPECT_GT(levelAtBegin(name), 0.5 * level) << name;  // less of it where the first packet's slope is missing
    Outcome probed = runProgram({"ffprobe", "-v", "error", "-select_streams", "v", "-count_packets", "-show_entries",
                                 "stream=start_time,nb_read_packets", "-of", "csv=p=0", folder / name});
    EXPECT_EQ(probed.output, "0.000000,90\n") << name;
  }
  // Opus at a rate of its own has a delay of its own.
  film.replace(film.find("44100"), 5, "22050");
  ASSERT_EQ(render(film, {"c.webm"}).status, 0);
  Outcome probed = runProgram({"ffprobe", "-v", "error", "-show_entries", "packet=pts", "-of", "csv=p=0",
                               "-read_intervals", "%+#1", folder / "c.webm"});
  EXPECT_TRUE(probed.output.starts_with("0") || probed.output.starts_with("-7")) << probed.output;
}

TEST_F(SoundFilm, ToneComesBackFromEveryKindOfFile) {
  struct Row {
    const char *file, *codec, *expected;  // expected: FFmpeg's name of what was written
    double level, delay;                  // how far both may be off
  };
  const Row rows[] = {
      {"a.wav", "", "pcm_s16le", 1, 0.01}, {"a.flac", "", "flac", 1, 0.01},
      {"a.mp4", "", "aac", 60, 0.5},       {"a.mov", "", "aac", 60, 0.5},
      {"a.m4v", "", "aac", 60, 0.5},       {"a.mkv", "", "aac", 60, 24},
      {"a.webm", "", "opus", 60, 24},      {"a.avi", "", "pcm_s16le", 1, 0.01},
      {"b.mp4", "opus", "opus", 60, 1},    {"b.webm", "vorbis", "vorbis", 80, 48},
      {"b.mkv", "flac", "flac", 1, 24},    {"b.mov", "pcm", "pcm_s16le", 1, 0.01},
      {"b.mp4", "flac", "flac", 1, 0.01},  {"c.mp4", "mp3", "mp3", 300, 1},
      {"c.mkv", "mp3", "mp3", 300, 24},    {"b.avi", "aac", "aac", 60, 0.5},
      {"c.avi", "mp3", "mp3", 300, 48},    {"b.wav", "pcm_s24le", "pcm_s24le", 1, 0.01},
  };
  // The tone begins with frame 31, a second into the film.
  std::string film = header() + sound(31, 90);
  for (const Row& row : rows) {
    std::vector<std::string> arguments{row.file};
    if (*row.codec) arguments.insert(arguments.end(), {"--audio-codec", row.codec});
    Outcome outcome = render(film, arguments);
    ASSERT_EQ(outcome.status, 0) << row.file << ": " << outcome.errors;
    Outcome probed = runProgram({"ffprobe", "-v", "error", "-select_streams", "a", "-show_entries", "stream=codec_name",
                                 "-of", "csv=p=0", folder / row.file});
    EXPECT_EQ(probed.output.substr(0, strlen(row.expected)), row.expected) << row.file;
    Samples samples = heard(row.file);
    double frames = static_cast<double>(samples.size()) / 2 / rate * 30;
    EXPECT_NEAR(frames, 90, 1.5) << row.file << ": as long as the pictures";
    ASSERT_GE(samples.size(), 2u * (rate * 29 / 10));
    EXPECT_LT(toneOf(samples, 0, 10000, 30000).rest, 10) << row.file << ": silence before";
    ::test::Tone left = toneOf(samples, 0, rate + 4100, 60000), right = toneOf(samples, 1, rate + 4100, 60000);
    EXPECT_NEAR(left.amplitude, 8000, row.level) << row.file;
    EXPECT_NEAR(right.amplitude, 4000, row.level) << row.file;
    EXPECT_LT(left.rest, row.level + 2) << row.file;
    EXPECT_NEAR(left.delay, 0, row.delay) << row.file;
  }
}

TEST_F(SoundFilm, PlainSamplesAreTheFilesOwn) {
  ASSERT_EQ(render(header() + sound(31, 90), {"a.wav"}).status, 0);
  SoundReader tone;
  std::string error;
  ASSERT_TRUE(tone.open(folder / "tone.wav", error));
  ASSERT_EQ(tone.setOutput(rate, 2), 4 * rate);
  Samples expected(2 * 2 * rate), film = heard("a.wav");
  tone.read(0, 2 * rate, expected.data());
  ASSERT_EQ(film.size(), 2u * 3 * rate);
  EXPECT_EQ(Samples(film.begin() + 2 * rate, film.end()), expected);
  EXPECT_EQ(Samples(film.begin(), film.begin() + 2 * rate), Samples(2 * rate));
  EXPECT_EQ(contentsOf(folder / "a.wav").substr(12, 4), "JUNK") << "room for lengths above 4 GiB";
}

TEST_F(SoundFilm, RangesBeginWithTheirFirstFrame) {
  std::string film = header("30000\r\nscale=1001", 90) + sound(1, 90, "[0.1]\r\n_name=Audio delay\r\n");
  ASSERT_EQ(render(film, {"whole.wav"}).status, 0);
  Samples whole = heard("whole.wav");
  EXPECT_EQ(whole.size(), 2u * (int64_t{90} * 1001 * rate / 30000));
  ASSERT_EQ(render(film, {"part.wav", "--frames", "21-40"}).status, 0);
  Samples part = heard("part.wav");
  int64_t first = int64_t{20} * 1001 * rate / 30000, last = int64_t{40} * 1001 * rate / 30000;
  ASSERT_EQ(part.size(), static_cast<size_t>(2 * (last - first)));
  // The echo of 100 ms begins anew; behind it all is as in the whole film.
  EXPECT_EQ(Samples(part.begin() + 2 * 4410, part.end()),
            Samples(whole.begin() + 2 * (first + 4410), whole.begin() + 2 * last));
  ASSERT_EQ(render(film, {"film.mp4", "--frames", "21-40"}).status, 0);
  ::test::Tone tone = toneOf(heard("film.mp4"), 0, 10000, 10000);
  EXPECT_GT(tone.amplitude, 8000);
}

// 107892 frames of 1001/30000 s are 3599.9964 s. In the last three seconds the picture turns white, and a tone begins.
TEST_F(SoundFilm, PictureAndSoundAreTogetherAfterAnHour) {
  constexpr int frames = 107892, turning = 107800;
  constexpr int64_t turningSample = int64_t{turning} * 1001 * rate / 30000;
  std::string shown = "start=" + std::to_string(turning + 1) + "\r\nend=" + std::to_string(frames);
  std::string film = header("30000\r\nscale=1001", frames) + sound(turning + 1, frames) + "[1]\r\n" + shown +
                     "\r\nlayer=2\r\noverlay=1\r\ncamera=0\r\n[1.0]\r\n_name=Graphic\r\nSize=200\r\ntype=2\r\n"
                     "color=ffffff\r\n[1.1]\r\n_name=Standard drawing\r\n";
  film.replace(film.find("width=64"), 8, "width=16").replace(film.find("height=48"), 9, "height=16");
  Outcome outcome = render(film, {"hour.mp4", "--codec", "mpeg4", "--audio-codec", "flac"});
  ASSERT_EQ(outcome.status, 0) << outcome.errors;

  SoundReader heard;
  MediaReader seen;
  std::string error;
  ASSERT_TRUE(heard.open(folder / "hour.mp4", error)) << error;
  ASSERT_TRUE(seen.open(folder / "hour.mp4", false, error)) << error;
  EXPECT_EQ(seen.info().frameCount, frames);
  int64_t total = heard.setOutput(rate, 2);
  EXPECT_EQ(total, int64_t{frames} * 1001 * rate / 30000);
  zenlay::FramePixel pixels[16 * 16];
  ASSERT_TRUE(seen.readVideo(turning - 1, pixels, 16));
  EXPECT_LT(pixels[100].y, 200);
  ASSERT_TRUE(seen.readVideo(turning, pixels, 16));
  EXPECT_GT(pixels[100].y, 3800);
  Samples end(static_cast<size_t>(total - turningSample + 100) * 2);
  ASSERT_EQ(heard.read(turningSample - 100, static_cast<int>(end.size() / 2), end.data()), end.size() / 2);
  EXPECT_EQ(Samples(end.begin(), end.begin() + 202), Samples(202)) << "the tone begins with 0";
  for (int i = 1; i < 10; i++)
    EXPECT_EQ(end[2 * (100 + i)], std::lround(8000 * std::sin(turn * frequency * i / rate))) << i;
  auto lastTime = [&](const char* stream) {
    Outcome probed = runProgram({"ffprobe", "-v", "error", "-select_streams", stream, "-show_entries",
                                 "stream=duration", "-of", "csv=p=0", folder / "hour.mp4"});
    return std::stod(probed.output);
  };
  EXPECT_NEAR(lastTime("v"), 3599.9964, 0.0001);
  EXPECT_NEAR(lastTime("a"), 3599.9964, 0.0001);
}

TEST_F(SoundFilm, SilentFilmsAndWrongWords) {
  std::string film = header("30\r\nscale=1", 10) + sound(1, 10);
  ASSERT_EQ(render(film, {"a.mp4", "--audio-codec", "none"}).status, 0);
  SoundReader reader;
  std::string error;
  EXPECT_FALSE(reader.open(folder / "a.mp4", error));
  struct Row {
    std::vector<std::string> arguments;
    int status;
    const char* says;
  };
  const Row rows[] = {
      {{"b.mp4", "--audio-codec", "nonsense"}, 2, "nonsense"},
      {{"b.webm", "--audio-codec", "aac"}, 2, "aac"},
      {{"b.png", "--audio-codec", "aac", "--frames", "1"}, 2, "no sound"},
      {{"b.wav", "--audio-codec", "none"}, 2, "sound"},
      {{"b.wav", "--codec", "h264"}, 2, "no film"},
      {{"b.wav", "--quality", "3"}, 2, "no pictures"},
      {{"b.mp4", "--audio-codec", "h264"}, 2, "for sound"},
  };
  for (const Row& row : rows) {
    Outcome outcome = render(film, row.arguments);
    EXPECT_EQ(outcome.status, row.status) << row.arguments[0];
    EXPECT_NE(outcome.errors.find(row.says), std::string::npos) << outcome.errors;
    EXPECT_EQ(contentsOf(folder / row.arguments[0]), "") << "nothing is left";
  }
}

TEST_F(SoundFilm, TheWaveformShowsTheFilm) {
  std::string film = header("30\r\nscale=1", 10) + sound(1, 10) +
                     "[1]\r\nstart=1\r\nend=10\r\nlayer=2\r\noverlay=1\r\ncamera=0\r\n[1.0]\r\n_name=Audio waveform "
                     "display\r\nWidth=64\r\nHeight=48\r\nVolume=400.0\r\n[1.1]\r\n_name=Standard drawing\r\n";
  ASSERT_EQ(render(film, {"film.raw"}).status, 0);
  std::string raw = contentsOf(folder / "film.raw");
  ASSERT_EQ(raw.size(), 10u * 64 * 48 * 6);
  // 8000 (left) and 4000 (right) make 6000, times 4 is three quarters of full scale: rows 6 to 42.
  int low = 48, high = -1;
  for (int y = 0; y < 48; y++)
    for (int x = 0; x < 64; x++) {
      int16_t luma;
      memcpy(&luma, &raw[(size_t{5} * 64 * 48 + y * 64 + x) * 6], 2);
      if (luma > 1000) low = std::min(low, y), high = std::max(high, y);
    }
  EXPECT_NEAR(low, 6, 1);
  EXPECT_NEAR(high, 41, 1);
  ASSERT_EQ(render(film, {"with.wav"}).status, 0);
  EXPECT_NEAR(toneOf(heard("with.wav"), 0, 1000, 10000).amplitude, 8000, 1);
}

}  // namespace
}  // namespace cinora::test
