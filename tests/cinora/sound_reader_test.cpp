// Sound out of real files: exact in any order, at any rate, from every container.
#include "cinora/sound/sound_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <random>

#include "tests/support/every_target.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace cinora {
namespace {

using ::test::ScratchFolder;
using Samples = std::vector<int16_t>;

bool ffmpeg(const std::string& arguments) {
  return std::system(("ffmpeg -v error -nostdin -y -threads 1 " + arguments).c_str()) == 0;
}

Samples readStretch(SoundReader& reader, int64_t first, int count, int channels) {
  Samples samples(static_cast<size_t>(count) * channels, 7777);
  int got = reader.read(first, count, samples.data());
  samples.resize(static_cast<size_t>(got) * channels);
  return samples;
}

/// The whole sound in blocks of changing length.
Samples readAll(SoundReader& reader, int64_t total, int channels) {
  Samples all;
  for (int64_t at = 0, block = 0; at < total; block++) {
    int count = block % 2 ? 1471 : 1472;
    Samples next = readStretch(reader, at, count, channels);
    if (next.empty()) break;
    all.insert(all.end(), next.begin(), next.end());
    at += static_cast<int64_t>(next.size()) / channels;
  }
  return all;
}

struct Format {
  const char *name, *options;
};
// A sweep with noise, different on both sides, so that no two places sound alike.
constexpr char source[] =
    "-f lavfi -i \"aevalsrc='0.3*sin(2*PI*(200+100*t)*t)+0.1*random(0)|0.3*sin(2*PI*(3000-60*t)*t)':s=44100:d=24\" ";
constexpr char picture[] = "-f lavfi -i \"color=s=32x32:r=30000/1001:d=24\" ";
constexpr Format formats[] = {
    {"plain.wav", ""},
    {"deep.wav", "-c:a pcm_s24le"},
    {"adpcm.wav", "-c:a adpcm_ms"},
    {"lossless.flac", ""},
    {"music.mp3", ""},
    {"bare.mp3", "-write_xing 0 -q:a 4"},
    {"music.m4a", "-c:a aac"},
    {"bare.aac", "-c:a aac"},
    {"music.ogg", "-c:a libvorbis"},
    {"voice.opus", "-c:a libopus"},
    {"music.mka", "-c:a aac"},
    {"vorbis.webm", "-c:a libvorbis"},
    {"opus.webm", "-c:a libopus"},
    {"old.mp2", ""},
    {"surround.ac3", ""},
};
constexpr Format films[] = {
    {"film.mp4", "-c:v libx264 -preset ultrafast -bf 2 -c:a aac"},
    {"film.mkv", "-c:v libx264 -preset ultrafast -bf 2 -c:a aac"},
    {"film.ts", "-c:v libx264 -preset ultrafast -c:a mp2"},
    {"film.avi", "-c:v mpeg4 -c:a libmp3lame"},
};

class SoundReaderTest : public ::testing::Test {
 protected:
  void writeWav(const char* name, const Samples& samples, int channels, int rate) {
    folder.write(name, ::test::wavFile(samples, channels, rate));
  }
  std::string make(const Format& format, const std::string& sources) {
    std::string path = folder / format.name;
    return ffmpeg(sources + format.options + " " + path) ? path : "";
  }
  ScratchFolder folder;
};

/// Every block read alone, in any order, is what playing through gave.
void expectSameInAnyOrder(const std::string& path, int rate, bool film) {
  SoundReader reader, jumping;
  std::string error;
  ASSERT_TRUE(reader.open(path, error)) << path << error;
  ASSERT_TRUE(jumping.open(path, error));
  int64_t total = reader.setOutput(rate, 2);
  ASSERT_NEAR(static_cast<double>(total) / rate, 24.0, film ? 0.2 : 0.1) << path;
  ASSERT_EQ(jumping.setOutput(rate, 2), total);
  Samples all = readAll(reader, total, 2);
  ASSERT_EQ(static_cast<int64_t>(all.size()), total * 2) << path;
  std::mt19937 random(5);
  for (int i = 0; i < 12; i++) {
    int64_t at = i == 0 ? total - 900 : random() % (total - 3000);
    int count = std::min<int>(1471, static_cast<int>(total - at));
    Samples block = readStretch(jumping, at, count, 2);
    ASSERT_EQ(block.size(), static_cast<size_t>(count) * 2) << path;
    Samples expected(all.begin() + at * 2, all.begin() + (at + count) * 2);
    ASSERT_EQ(block, expected) << path << " at " << at << " of " << total << ", " << rate << " Hz";
  }
}

TEST_F(SoundReaderTest, AnyStretchIsExactInAnyOrder) {
  for (const Format& format : formats) {
    std::string path = make(format, source);
    ASSERT_FALSE(path.empty()) << format.name;
    expectSameInAnyOrder(path, 44100, false);
  }
  expectSameInAnyOrder(folder / "music.m4a", 48000, false);
  for (const Format& format : films) {
    std::string path = make(format, std::string(picture) + source);
    ASSERT_FALSE(path.empty()) << format.name;
    expectSameInAnyOrder(path, 44100, true);
  }
}

TEST_F(SoundReaderTest, RatesWithoutACommonMeasureAreExactToo) {
  std::string path = make(formats[0], source);
  for (int rate : {44101, 132433, 8000, 29400, 441000, 4410}) expectSameInAnyOrder(path, rate, false);
}

TEST_F(SoundReaderTest, PlainSamplesComeAsTheyAre) {
  Samples samples;
  for (int i = 0; i < 6000; i++) samples.push_back(static_cast<int16_t>(i * 11 - 32768));
  writeWav("plain.wav", samples, 2, 44100);
  SoundReader reader;
  std::string error;
  ASSERT_TRUE(reader.open(folder / "plain.wav", error)) << error;
  EXPECT_EQ(reader.facts().rate, 44100);
  EXPECT_EQ(reader.facts().channels, 2);
  int16_t untouched = 5;
  EXPECT_EQ(reader.read(0, 1, &untouched), 0) << "no rate was set";
  EXPECT_EQ(reader.setOutput(44100, 2), 3000);
  EXPECT_EQ(readStretch(reader, 0, 3000, 2), samples);
  EXPECT_EQ(readStretch(reader, 2999, 100, 2), Samples({samples[5998], samples[5999]})) << "only what there is";
  EXPECT_TRUE(readStretch(reader, 3000, 1, 2).empty());
  EXPECT_TRUE(readStretch(reader, -1, 1, 2).empty());
  EXPECT_EQ(reader.setOutput(0, 2), 0);
  EXPECT_EQ(reader.setOutput(44100, 0), 0);
}

TEST_F(SoundReaderTest, ChannelsBecomeThoseOfTheProject) {
  writeWav("mono.wav", {100, -200, 32767}, 1, 8000);
  writeWav("stereo.wav", {100, 300, -32768, -32768, 32767, -32767}, 2, 8000);
  writeWav("nine.wav", {90, 80, 90, 80, 90, 80, 90, 80, 90}, 9, 8000);
  struct Row {
    const char* file;
    int channels;
    Samples expected;
  };
  const Row rows[] = {
      {"mono.wav", 2, {100, 100, -200, -200, 32767, 32767}},
      {"mono.wav", 1, {100, -200, 32767}},
      {"stereo.wav", 1, {200, -32768, 0}},
      {"nine.wav", 2, {90, 80}},
      {"nine.wav", 1, {86}},  // 770 / 9
  };
  for (const Row& row : rows) {
    SoundReader reader;
    std::string error;
    ASSERT_TRUE(reader.open(folder / row.file, error)) << error;
    int total = static_cast<int>(reader.setOutput(8000, row.channels));
    EXPECT_EQ(readStretch(reader, 0, total, row.channels), row.expected) << row.file << " " << row.channels;
  }
}

/// A sample too early or too late makes an error of a sixth.
TEST_F(SoundReaderTest, CompressedSoundStandsWhereItWas) {
  constexpr Format placed[] = {{"a.flac", ""},
                               {"a.mp3", "-b:a 256k"},
                               {"a.m4a", "-c:a aac -b:a 256k"},
                               {"a.ogg", "-c:a libvorbis -q:a 8"},
                               {"a.opus", "-c:a libopus -b:a 256k"},
                               {"a.webm", "-c:a libopus -b:a 256k"}};
  SoundReader plain;
  std::string error;
  ASSERT_TRUE(plain.open(make(formats[0], source), error));
  ASSERT_GT(plain.setOutput(44100, 2), 0);
  constexpr int64_t places[] = {15 * 44100, 30000};
  for (const Format& format : placed) {
    SoundReader reader;
    ASSERT_TRUE(reader.open(make(format, source), error)) << format.name;
    ASSERT_GT(reader.setOutput(44100, 2), 0);
    for (int64_t at : places) {
      Samples expected = readStretch(plain, at, 8000, 2), found = readStretch(reader, at, 8000, 2);
      double sum = 0, off = 0;
      for (size_t i = 1; i < expected.size(); i += 2) {
        sum += double(expected[i]) * expected[i];
        off += double(expected[i] - found[i]) * (expected[i] - found[i]);
      }
      EXPECT_LT(std::sqrt(off / sum), 0.08) << format.name << " at " << at;
    }
  }
}

Samples sine(double frequency, double amplitude, int count) {
  Samples samples;
  for (int i = 0; i < count; i++)
    samples.push_back(
        static_cast<int16_t>(std::lround(amplitude * std::sin(2 * std::numbers::pi * frequency * i / 44100.0))));
  return samples;
}

TEST_F(SoundReaderTest, ResamplingKeepsLevelAndPlace) {
  struct Row {
    int rate, frequency;
    double amplitude;  // of 10000 that went in
  };
  const Row rows[] = {{48000, 1000, 10000},   {96000, 1000, 10000}, {22050, 1000, 10000},  {44101, 1000, 10000},
                      {29400, 1000, 10000},   {4410, 1000, 10000},  {48000, 15000, 10000}, {44099, 15000, 10000},
                      {441000, 15000, 10000}, {22050, 15000, 0},    {4410, 3000, 0},       {8001, 5000, 0}};
  for (const Row& row : rows) {
    writeWav("tone.wav", sine(row.frequency, 10000, 44100), 1, 44100);
    SoundReader reader;
    std::string error;
    ASSERT_TRUE(reader.open(folder / "tone.wav", error));
    EXPECT_EQ(reader.setOutput(row.rate, 1), row.rate);
    int from = row.rate / 4, count = row.rate / 2;  // whole periods, or nearly
    ::test::Tone tone =
        ::test::toneOf(readStretch(reader, from, count, 1).data(), 1, count, row.frequency, row.rate, from);
    EXPECT_NEAR(tone.amplitude, row.amplitude, 5) << row.rate << " " << row.frequency;
    EXPECT_NEAR(row.amplitude > 0 ? tone.delay : 0, 0, 0.01) << row.rate;
    EXPECT_LT(tone.rest, 2) << row.rate << " " << row.frequency;
  }
}

TEST(WeightedSums, AreTheSameOnEveryProcessor) {
  std::mt19937 random(3);
  std::vector<float> samples(200), before(96), behind(96);
  for (auto* values : {&samples, &before, &behind})
    for (float& value : *values) value = static_cast<float>(random()) / 4294967296.0f - 0.5f;
  std::vector<std::vector<float>> results;
  zenlay::test::onEveryTarget([&] {
    std::vector<float> sums(2);
    WeightedStretch stretch{samples.data(), before.data(), behind.data(), 0.3f};
    weightedSums(&stretch, 1, 96, 2, 100, sums.data());
    results.push_back(sums);
  });
  double exact = 0;
  for (int i = 0; i < 96; i++) exact += samples[100 + i] * (0.7 * before[i] + 0.3 * behind[i]);
  EXPECT_NEAR(results[0][1], exact, 1e-5);
  for (const auto& sums : results) EXPECT_EQ(sums, results[0]);
}

/// A speed that moves: every block at another rate, beginning at the sample nearest to where the last one ended.
TEST_F(SoundReaderTest, ChangingRatesDoNotClick) {
  writeWav("tone.wav", sine(1000, 10000, 6 * 44100), 1, 44100);
  SoundReader reader;
  std::string error;
  ASSERT_TRUE(reader.open(folder / "tone.wav", error));
  Samples played;
  int64_t next = 0, before = 44100;
  for (int block = 0; block < 90; block++) {
    int rate = 44100 * 1000 / (1000 + 10 * block);  // 100 to 190 percent
    ASSERT_GT(reader.setOutput(rate, 1), 0);
    next = (next * rate + before / 2) / before;
    before = rate;
    Samples samples = readStretch(reader, next, 1471 + block % 2, 1);
    next += static_cast<int64_t>(samples.size());
    played.insert(played.end(), samples.begin(), samples.end());
  }
  ASSERT_EQ(played.size(), 90u * 1471 + 45);
  int sharpest = 0;  // turn of the curve
  for (size_t i = 2; i < played.size(); i++)
    sharpest = std::max(sharpest, std::abs(played[i] - 2 * played[i - 1] + played[i - 2]));
  double steepest = 2 * std::numbers::pi * 1900 / 44100;
  EXPECT_LT(sharpest, 10000 * steepest * steepest * 1.02);
}

TEST_F(SoundReaderTest, SoundBeginsWithTheFirstPicture) {
  // The sound is cut off so that its stream begins half a second behind the pictures.
  std::string path = folder / "late.mp4";
  ASSERT_TRUE(ffmpeg(std::string(picture) +
                     "-itsoffset 0.5 -f lavfi -i \"aevalsrc=0.5:s=44100:d=2\" -t 3 -c:v libx264 "
                     "-preset ultrafast -c:a aac " +
                     path));
  SoundReader reader;
  std::string error;
  ASSERT_TRUE(reader.open(path, error)) << error;
  ASSERT_GT(reader.setOutput(44100, 1), 44100);
  EXPECT_EQ(readStretch(reader, 20000, 1, 1), Samples({0}));
  EXPECT_GT(readStretch(reader, 22050 + 4000, 1, 1)[0], 12000);
  EXPECT_EQ(reader.facts().videoRate, 30000);
  EXPECT_EQ(reader.facts().videoScale, 1001);
}

TEST_F(SoundReaderTest, WhatIsNoSoundIsRefused) {
  std::string error;
  SoundReader reader;
  EXPECT_FALSE(reader.open(folder / "missing.wav", error));
  EXPECT_EQ(error, "File not found");
  folder.write("noise.wav", std::string(5000, 'x'));
  EXPECT_FALSE(SoundReader().open(folder / "noise.wav", error));
  ASSERT_TRUE(ffmpeg(std::string(picture) + "-t 1 -c:v mpeg4 " + (folder / "silent.avi")));
  EXPECT_FALSE(SoundReader().open(folder / "silent.avi", error));
  EXPECT_FALSE(SoundReader().open(folder.path(), error));
  writeWav("cut.wav", Samples(4000, 100), 2, 44100);
  std::ifstream whole(folder / "cut.wav", std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(whole)), {});
  folder.write("cut.wav", bytes.substr(0, 44 + 1000));
  SoundReader cut;
  ASSERT_TRUE(cut.open(folder / "cut.wav", error)) << error;
  EXPECT_EQ(cut.setOutput(44100, 2), 250);
}

}  // namespace
}  // namespace cinora
