// "Scene (audio)": which samples of the scene a block holds.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/media/playback_stage.h"

namespace zenlay::test {
namespace {

/// Scene 3, of whose samples `sampleAt` tells the left channel; the right one is its negative.
class SceneAudio : public PlaybackStage {
 protected:
  SceneAudio() : PlaybackStage(sceneAudioMedia) {
    sidesDiffer = 1;
    setFormat(35, 10, 1);
    length = 20;
    sampleAt = [](int n) { return 100 * n; };
    mixed.clear();
    EffectServiceTable& s = stage.services;
    s.sceneLength = [](int scene) { return scene == 3 ? length : 0; };
    s.mixScene = [](EffectProcessInfo*, int scene, int frame, int16_t* samples, int count) {
      EXPECT_EQ(scene, 3);
      EXPECT_LT(frame, length);
      mixed.push_back(frame);
      EXPECT_EQ(count, firstOf(frame + 1) - firstOf(frame));
      for (int i = 0; i < count; i++) {
        EXPECT_EQ(samples[2 * i], 0);
        samples[2 * i] = static_cast<int16_t>(sampleAt(firstOf(frame) + i));
        samples[2 * i + 1] = static_cast<int16_t>(-samples[2 * i]);
      }
      return 1;
    };
    int32_t scene = 3;
    stage.setData(0, &scene, 4);
  }
  void setFormat(int audioRate, int rate, int scale) {
    stage.block.rate = audioRate;
    stage.info.rate = rate;
    stage.info.scale = scale;
  }
  static int firstOf(int frame) {
    const SoundStage& s = *SoundStage::current;
    return static_cast<int>(int64_t{frame} * s.info.scale * s.block.rate / s.info.rate);
  }
  Row hostBlock(int frame) { return block(frame, firstOf(frame + 1) - firstOf(frame)); }
  static inline std::vector<int> mixed;
  static inline int length;
  static inline int (*sampleAt)(int);
};

/// A whole number of cycles in ten frames of 44100 / 30 samples: 1470 Hz.
int smoothTone(int n) { return static_cast<int>(std::lround(12000 * std::sin(2 * std::numbers::pi * n / 30))); }

TEST_F(SceneAudio, EveryFrameIsMixedOnce) {
  EXPECT_EQ(block(0, 4), Row({0, 100, 200, 300})) << "the host's blocks may be cut elsewhere";
  EXPECT_EQ(block(1, 3), Row({400, 500, 600}));
  EXPECT_EQ(block(2, 4), Row({700, 800, 900, 1000}));
  EXPECT_EQ(mixed, std::vector<int>({0, 1, 2, 3}));
  mixed.clear();
  EXPECT_EQ(block(10, 2), Row({3500, 3600})) << "elsewhere";
  EXPECT_EQ(mixed, std::vector<int>({10}));
}

TEST_F(SceneAudio, PositionLoopAndEnd) {
  setTracks(5, 1000);
  EXPECT_EQ(block(0, 2), Row({1400, 1500})) << "frame 5, counted from 1";
  EXPECT_EQ(block(15, 4), Row({6600, 6700, 6800, 6900})) << "52.5 truncated to a sample";
  EXPECT_EQ(block(16, 2), Row({0, 0}));
  stage.checks[0] = 1;
  EXPECT_EQ(block(15, 6), Row({6600, 6700, 6800, 6900, 0, 100}));
  EXPECT_EQ(block(16, 2), Row({200, 300})) << "goes on behind the wrap";
  EXPECT_EQ(block(36, 1), Row({(14 + 126 - 2 * 70) * 100}));
  // From frame 5 to 9: samples 14 to 27, of which frame 8 is the last.
  setTracks(5, 1000);
  stage.endValues[0] = 9;
  stage.modes[0] = 1;
  mixed.clear();
  Row laps = block(0, 30);
  for (int i = 0; i < 30; i++) EXPECT_EQ(laps[i], 100 * (14 + i % 14)) << i;
  EXPECT_EQ(mixed, std::vector<int>({4, 5, 6, 7, 4, 5, 6, 7, 4}));
}

TEST_F(SceneAudio, OtherSpeedsKeepTheTone) {
  setFormat(44100, 30, 1);
  sampleAt = smoothTone;
  length = 40;
  for (int speed : {500, 730, 1500, 3000}) {
    for (int loop : {0, 1}) {
      setTracks(11, speed);
      stage.checks[0] = loop;
      int frames = loop ? 60 : 30 * 1000 / speed - 2, wrong = 0;
      for (int frame = 3; frame < frames; frame++) {
        Row heard = hostBlock(frame);
        for (size_t i = 0; i < heard.size(); i++) {
          double place = static_cast<double>(firstOf(frame) + static_cast<int>(i)) * speed / 1000;
          double expected = 12000 * std::sin(2 * std::numbers::pi * place / 30);
          wrong += std::abs(heard[i] - expected) > 3;
        }
      }
      EXPECT_EQ(wrong, 0) << speed << (loop ? " over the wrap too" : "");
    }
  }
}

TEST_F(SceneAudio, WhatIsTooHighForTheSpeedGoes) {
  setFormat(44100, 30, 1);
  sampleAt = [](int n) { return static_cast<int>(std::lround(20000 * std::sin(2 * std::numbers::pi * 0.3 * n))); };
  length = 400;
  for (int speed : {2000, 20000}) {
    setTracks(11, speed);
    for (int frame = 0; frame < 4; frame++)
      for (int sample : hostBlock(frame)) EXPECT_NEAR(sample, 0, 8) << "0.3 of the rate, twice or more as high";
  }
}

TEST_F(SceneAudio, BlocksOutOfOrderAreTheSame) {
  setFormat(44100, 30000, 1001);  // 1471 or 1472 samples
  sampleAt = smoothTone;
  length = 40;
  stage.checks[0] = 1;
  for (int speed : {1000, 730, 1370}) {
    setTracks(3, speed);
    std::vector<Row> inOrder;
    stage.memory.clear();
    for (int frame = 0; frame < 70; frame++) inOrder.push_back(hostBlock(frame));
    for (int frame : {50, 69, 51, 0, 33}) EXPECT_EQ(hostBlock(frame), inOrder[frame]) << speed << " " << frame;
  }
}

TEST_F(SceneAudio, SilenceKeepsTheObjectGoing) {
  for (int32_t scene : {0, 50, 51, -1, 4}) {
    stage.setData(0, &scene, 4);
    EXPECT_EQ(block(0, 2), Row({0, 0})) << scene;
  }
  int32_t scene = 3;
  stage.setData(0, &scene, 4);
  setTracks(1, 99);
  EXPECT_EQ(block(0, 2), Row({0, 0})) << "below 10 %";
  setTracks(7, 1000);
  stage.checks[0] = stage.modes[0] = 1;
  EXPECT_EQ(block(1, 2), Row({0, 0})) << "an empty range";
  EXPECT_TRUE(mixed.empty());
  stage.modes[0] = 0;
  EXPECT_EQ(block(2, 2), Row({100 * (21 + 7), 100 * (21 + 8)})) << "heard again from where the time stands";
}

}  // namespace
}  // namespace zenlay::test
