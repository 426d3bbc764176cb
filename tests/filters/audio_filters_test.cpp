// Volume fade, monaural, audio delay and standard playback: numbers worked out by hand.
#include <gtest/gtest.h>

#include <random>

#include "tests/media/sound_stage.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/media/sound_samples.h"

namespace zenlay::test {
namespace {

TEST(SoundSamples, VectorsGiveThePlainBits) {
  std::mt19937 random(3);
  for (int n : {0, 1, 2, 7, 15, 16, 31, 64, 333}) {
    Samples a(n), b(n);
    for (int i = 0; i < n; i++) {
      a[i] = static_cast<int16_t>(random());
      b[i] = static_cast<int16_t>(random());
    }
    for (auto [even, odd] : {std::pair{4096, 4096}, {0, 4096}, {20480, 1}, {4095, 20480}}) {
      Samples plain = a, vector = a;
      plainAddSamples(plain.data(), b.data(), n, even, odd);
      addSamples(vector.data(), b.data(), n, even, odd);
      EXPECT_EQ(vector, plain) << n << " " << even << " " << odd;
      plain = vector = a;
      plainScaleSamples(plain.data(), n, even & 4095);
      scaleSamples(vector.data(), n, even & 4095);
      EXPECT_EQ(vector, plain) << n;
    }
  }
  Samples loud{20000, -20000, 100, -1};
  amplifySamples(loud.data(), 4, 2 * soundOne);
  EXPECT_EQ(loud, Samples({32767, -32768, 200, -2}));
}

TEST(StandardPlayback, AddsWithVolumeAndBalance) {
  struct Row {
    int volume, balance, channels;
    Samples mix, own, expected;
  };
  const Row rows[] = {
      {1000, 0, 2, {100, -100, 30000, -30000}, {5, 7, 5000, -5000}, {105, -93, 32767, -32768}},
      {1000, 1000, 2, {1, 1}, {1000, 1000}, {1, 1001}},
      {1000, -1000, 2, {1, 1}, {1000, 1000}, {1001, 1}},
      // G = 2048; left 2048 * 750 / 1000 = 1536; 1000 * 1536 >> 12 = 375, -1000 gives -375; -3 * 2048 >> 12 = -2.
      {500, 250, 2, {0, 0, 0, 0}, {1000, -3, -1000, 5}, {375, -2, -375, 2}},
      // G = 333 * 4096 / 1000 = 1363; right 1363 * 667 / 1000 = 909.
      {333, -333, 2, {0, 0}, {10000, 10000}, {3327, 2219}},
      {5000, 0, 2, {0, 0}, {6553, 6554}, {32765, 32767}},
      {0, 0, 2, {7, 8}, {32767, -32768}, {7, 8}},
      {500, 1000, 1, {0, 0, 0}, {100, 200, -300}, {50, 100, -150}},  // no sides in mono
      {500, 1000, 3, {0, 0, 0}, {100, 200, -300}, {50, 100, -150}},
  };
  for (const Row& row : rows) {
    SoundStage stage(standardPlayback);
    stage.tracks = {row.volume, row.balance};
    stage.mix = row.mix;
    EXPECT_EQ(stage.run(row.own, row.channels), 1);
    EXPECT_EQ(stage.mix, row.expected) << row.volume << " " << row.balance << " " << row.channels;
    EXPECT_EQ(stage.own, row.own);
  }
}

TEST(VolumeFade, GainOfTheBlock) {
  struct Row {
    int in, out, frame;
    int expected;  // of the sample 4096; -1 ends the object
  };
  // Frames 0..99 at 30 frames per second: 50 hundredths are 15 frames.
  const Row rows[] = {
      {50, 50, 0, 256},  // 4096 / 16
      {50, 50, 1, 512},      {50, 50, 14, 3840}, {50, 50, 15, 4096}, {50, 50, 84, 4096}, {50, 50, 85, 3840},
      {50, 50, 99, 256},     {0, 0, 0, 4096},    {0, 0, 99, 4096},   {3, 0, 0, 4096},  // not a whole frame
      {4, 0, 0, 2048},                                                                 // 1.2 frames: one
      {1000, 1000, 50, 680},  // in 51 * 4096 / 301, out 50 * 4096 / 301
  };
  for (const Row& row : rows) {
    SoundStage stage(volumeFadeEffect);
    stage.tracks = {row.in, row.out};
    stage.at(row.frame);
    EXPECT_EQ(stage.run({4096, -4096}), 1);
    EXPECT_EQ(stage.own, Samples({static_cast<int16_t>(row.expected), static_cast<int16_t>(-row.expected)}))
        << row.in << " " << row.out << " " << row.frame;
  }
  // 1000 frames per second: 10 s fade over 10000 frames, whose first gain is 4096 / 10001, below one.
  SoundStage stage(volumeFadeEffect);
  stage.info.rate = 1000;
  stage.block.end = 50000;
  stage.tracks = {1000, 0};
  EXPECT_EQ(stage.run({1000, 1000}), 0);
  stage.at(2);
  EXPECT_EQ(stage.run({4096, -1}), 1);
  EXPECT_EQ(stage.own, Samples({1, -1})) << "shifts round downwards";
}

TEST(Monaural, MixesByRatio) {
  struct Row {
    int ratio;
    Samples in, expected;
  };
  const Row rows[] = {
      {0, {100, 301, -3, 0, 32767, 32767, -32768, -32768}, {200, 200, -2, -2, 32767, 32767, -32768, -32768}},
      {-1000, {100, 301}, {100, 100}},
      {1000, {100, 301}, {301, 301}},
      // wR = 500 * 4096 / 1000 = 2048, wL = 6144.
      {-500, {1000, 2000}, {1250, 1250}},
      {500, {1000, 2000}, {1750, 1750}},
      // wR = 999 * 4096 / 1000 = 4091, wL = 4101: (4101 * 8192 + 0) >> 13.
      {-1, {8192, 0}, {4101, 4101}},
  };
  for (const Row& row : rows) {
    SoundStage stage(monauralEffect);
    stage.tracks = {row.ratio};
    EXPECT_EQ(stage.run(row.in), 1);
    EXPECT_EQ(stage.own, row.expected) << row.ratio;
  }
  for (int channels : {1, 3}) {
    SoundStage stage(monauralEffect);
    EXPECT_EQ(stage.run({1, 2, 3, 4, 5, 6}, channels), 1);
    EXPECT_EQ(stage.own, Samples({1, 2, 3, 4, 5, 6}));
  }
}

/// An impulse of that height at the front of `frames` sample frames.
Samples impulse(int frames, int channels, int16_t height) {
  Samples samples(static_cast<size_t>(frames) * channels);
  for (int c = 0; c < channels; c++) samples[c] = static_cast<int16_t>(height + c);
  return samples;
}

TEST(AudioDelay, OneEchoAtTheDelay) {
  SoundStage stage(audioDelayEffect);
  stage.block.rate = 1000;  // a millisecond is a sample
  stage.tracks = {500, 3};
  EXPECT_EQ(stage.run(impulse(5, 2, 1000)), 1);
  EXPECT_EQ(stage.own, Samples({1000, 1001, 0, 0, 0, 0, 500, 500, 0, 0}));
  // The next block goes on: nothing is left of an impulse five samples ago, its own one echoes in the block after it.
  stage.at(1);
  stage.run({0, 0, 0, 0, 800, 0, -800, 0, 0, 0});
  EXPECT_EQ(stage.own, Samples({0, 0, 0, 0, 800, 0, -800, 0, 0, 0}));
  stage.at(2);
  stage.run(Samples(8));
  EXPECT_EQ(stage.own, Samples({400, 0, -400, 0, 0, 0, 0, 0}));
  stage.at(3);
  stage.run(impulse(2, 2, 1000));
  stage.at(5);
  stage.run(Samples(8));
  EXPECT_EQ(stage.own, Samples(8)) << "a block that does not follow clears the ring";
  stage.tracks = {1000, 0};
  stage.at(6);
  stage.run({100, 20000, -5, -20000});
  EXPECT_EQ(stage.own, Samples({200, 32767, -10, -32768})) << "no delay: the sound doubles";
}

TEST(AudioDelay, RingWraps) {
  // Blocks of 1000 sample frames; an impulse in the first one comes back after `delay` samples, modulo the ring.
  for (auto [rate, ms, delay] : {std::tuple{44100, 1000, 44100}, {65535, 1000, 65535}, {96000, 1000, 96000 - 65536}}) {
    for (int channels : {1, 2, 6}) {
      SoundStage stage(audioDelayEffect);
      stage.block.rate = rate;
      stage.tracks = {1000, ms};
      Samples all;
      for (int frame = 0; frame < 140; frame++) {
        stage.at(frame);
        stage.run(frame == 0 ? impulse(1000, channels, 900) : Samples(1000 * channels), channels);
        all.insert(all.end(), stage.own.begin(), stage.own.end());
      }
      std::vector<size_t> heard;
      for (size_t i = 0; i < all.size(); i += channels)
        if (all[i]) heard.push_back(i / channels);
      EXPECT_EQ(heard, (std::vector<size_t>{0, static_cast<size_t>(delay)})) << rate << " " << channels;
      int echoed = 0;
      for (int c = 0; c < channels; c++) echoed += all[static_cast<size_t>(delay) * channels + c] != 0;
      EXPECT_EQ(echoed, std::min(channels, 2)) << "of many channels the first two";
    }
  }
}

TEST(AudioDelay, BlockLengthsDoNotMatter) {
  std::mt19937 random(9);
  Samples input(2 * 30000);
  for (int16_t& sample : input) sample = static_cast<int16_t>(random() >> 4);
  auto through = [&](auto lengthOf) {
    SoundStage stage(audioDelayEffect);
    stage.tracks = {700, 37};
    Samples output;
    for (size_t at = 0, frame = 0; at < input.size(); frame++) {
      size_t length = std::min<size_t>(lengthOf(frame) * 2, input.size() - at);
      stage.at(static_cast<int>(frame));
      stage.run(Samples(input.begin() + at, input.begin() + at + length));
      output.insert(output.end(), stage.own.begin(), stage.own.end());
      at += length;
    }
    return output;
  };
  Samples expected = input;
  for (size_t i = 2 * 1631; i < input.size(); i++) {  // 37 * 44100 / 1000
    int sum = input[i] + (input[i - 2 * 1631] * 2867 >> 12);
    expected[i] = static_cast<int16_t>(std::clamp(sum, -32768, 32767));
  }
  EXPECT_EQ(through([](size_t frame) { return frame % 2 ? 1471 : 1472; }), expected);
  EXPECT_EQ(through([](size_t) { return 30000; }), expected);
  EXPECT_EQ(through([](size_t) { return 1; }), expected);
}

TEST(AudioDelay, TheObjectWorksOnTheMix) {
  SoundStage stage(audioDelayObject);
  stage.block.rate = 1000;
  stage.tracks = {500, 1};
  stage.mix = {100, 200, 0, 0};
  EXPECT_EQ(stage.run({9, 9, 9, 9}), 1);
  EXPECT_EQ(stage.mix, Samples({100, 200, 50, 100}));
  EXPECT_EQ(stage.own, Samples({9, 9, 9, 9}));
}

}  // namespace
}  // namespace zenlay::test
