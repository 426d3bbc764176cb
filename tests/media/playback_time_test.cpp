#include "zenlay/media/playback_time.h"

#include <gtest/gtest.h>

namespace zenlay {
namespace {

PlaybackTime at(int frames, int speed = normalSpeed) {
  PlaybackTime time{};
  time.played = int64_t{speed} * frames * 100;
  time.rate = time.videoRate = 30;
  time.scale = time.videoScale = 1;
  time.frameCount = 100;
  time.position = time.sectionStart = time.sectionEnd = 1;
  time.backward = speed < 0;
  return time;
}

TEST(PlaybackTime, StaticPositionAddsTheFramesPlayed) {
  struct Row {
    int elapsed, speed, position, expected;
  } rows[] = {
      {0, 1000, 1, 0},    {10, 1000, 1, 10},  {3, 500, 1, 1},     {10, 1000, 21, 30},
      {99, 1000, 1, 99},  {100, 1000, 1, 99},  // stays on the last frame
      {0, 1000, 120, 99},                      // position beyond the end
      {1, 950, 1, 1},     {1, 949, 1, 0},      // 0.95 + 0.05 reaches the next frame, 0.949 doesn't
      {0, -1000, 1, 99},  {1, -1000, 1, 98},  {99, -1000, 1, 0},  {200, -1000, 1, 0},
      {1, -950, 1, 98},   {1, -949, 1, 99},   {0, -1000, 11, 89}, {7, 0, 5, 4},
  };
  for (const Row& row : rows) {
    PlaybackTime time = at(row.elapsed, row.speed);
    time.position = row.position;
    EXPECT_EQ(playbackFrame(time), row.expected) << row.elapsed << " at " << row.speed << " from " << row.position;
  }
}

TEST(PlaybackTime, RatesConvertExactly) {
  PlaybackTime time = at(5);
  time.rate = 30000;
  time.scale = time.videoScale = 1001;
  time.videoRate = 24000;
  EXPECT_EQ(playedFrames(time), 4);
  time.played = normalSpeed * 4 * 100;  // 3.2 frames
  EXPECT_EQ(playedFrames(time), 3);

  time = at(0);
  time.videoRate = 60;
  time.played = normalSpeed * 50;  // half a project frame is one of the video's
  EXPECT_EQ(playedFrames(time), 1);

  // a whole hour at 29.97 frames per second, where a float would be off: 107892 frames of both
  time = at(107892);
  time.rate = time.videoRate = 30000;
  time.scale = time.videoScale = 1001;
  EXPECT_EQ(playedFrames(time), 107892);
}

TEST(PlaybackTime, SectionsAddUp) {
  PlaybackTime time = at(0);
  time.played = (int64_t{10} * 1000 + int64_t{4} * -1000) * 100;  // ten frames forward, then four back
  EXPECT_EQ(playbackFrame(time), 6);
  time.played = (int64_t{2} * 1000 - int64_t{5} * 1000) * 100;
  EXPECT_EQ(playbackFrame(time), 0);
}

TEST(PlaybackTime, LoopWrapsByWholeLengths) {
  struct Row {
    int elapsed, speed, position, expected;
  } rows[] = {{99, 1000, 1, 99}, {100, 1000, 1, 0}, {250, 1000, 1, 50}, {0, 1000, 120, 19},
              {0, -1000, 1, 99}, {99, -1000, 1, 0}, {100, -1000, 1, 99}};
  for (const Row& row : rows) {
    PlaybackTime time = at(row.elapsed, row.speed);
    time.position = row.position;
    time.loop = true;
    EXPECT_EQ(playbackFrame(time), row.expected) << row.elapsed << " at " << row.speed << " from " << row.position;
  }
}

TEST(PlaybackTime, MovingPositionIsTheFrameOrTheLoopsRange) {
  PlaybackTime time = at(50);
  time.moving = true;
  for (auto [value, expected] : {std::pair{40, 39}, {1, 0}, {0, 0}, {-5, 0}, {100, 99}, {101, 99}}) {
    time.position = value;
    EXPECT_EQ(playbackFrame(time), expected) << value;
  }
  struct Row {
    int start, end, elapsed, speed, expected;
  } rows[] = {{11, 20, 0, 1000, 10},   {11, 20, 9, 1000, 19}, {11, 20, 10, 1000, 10}, {11, 20, 0, -1000, 19},
              {11, 20, 10, -1000, 19}, {20, 11, 3, 1000, 13}, {5, 5, 7, 1000, 4},     {91, 500, 10, 1000, 90}};
  for (const Row& row : rows) {
    time = at(row.elapsed, row.speed);
    time.moving = time.loop = true;
    time.sectionStart = row.start;
    time.sectionEnd = row.end;
    EXPECT_EQ(playbackFrame(time), row.expected) << row.start << ".." << row.end << " after " << row.elapsed;
  }
}

TEST(PlaybackTime, HostileValuesStayInside) {
  PlaybackTime time = at(0);
  time.played = int64_t{20000} * 320000 * 100;
  time.videoRate = INT32_MAX;
  time.scale = INT32_MAX;
  EXPECT_EQ(playbackFrame(time), 99);
  time.loop = true;
  EXPECT_GE(playbackFrame(time), 0);
  EXPECT_LT(playbackFrame(time), 100);
  time = at(10);
  time.videoScale = 0;
  EXPECT_EQ(playbackFrame(time), 0);
  time = at(10);
  time.frameCount = 0;
  EXPECT_EQ(playbackFrame(time), 0);
}

}  // namespace
}  // namespace zenlay
