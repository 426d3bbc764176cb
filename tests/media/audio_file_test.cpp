// "Audio file": which samples of the file a block holds.
#include <gtest/gtest.h>

#include "tests/media/fake_media.h"
#include "tests/media/playback_stage.h"
#include "zenlay/media/media_handles.h"
#include "zenlay/media/video_picture.h"

namespace zenlay::test {
namespace {

/// A file whose sample n is n at any rate, on the left, and -n on the right.
struct SoundFile {
  int length = 44100 * 10;  // at 44100
  int rate = 0, channels = 0, requests = 0;
  std::vector<std::pair<int, int>> reads;  // first, count
} file;

class AudioFile : public PlaybackStage {
 protected:
  AudioFile() : PlaybackStage(audioFileMedia) {
    file = {};
    installFakeMedia();
    HostFileInfo sound{};
    sound.flags = fileHasAudio;
    for (const char* name : {"a.wav", "video.mp4"}) fakeMedia.files[name] = sound;
    HostFunctionTable& f = fakeHost.functions;
    f.setAudioSampleRate = [](MediaHandle, int32_t rate, int32_t channels) -> int32_t {
      file.requests++;
      file.rate = rate;
      file.channels = channels;
      return static_cast<int32_t>(int64_t{file.length} * rate / 44100);
    };
    f.readAudioSamples = [](MediaHandle, int32_t first, int32_t count, int16_t* out) -> int32_t {
      int total = static_cast<int>(int64_t{file.length} * file.rate / 44100);
      count = std::min(count, total - first);
      file.reads.push_back({first, count});
      for (int i = 0; i < count; i++)
        for (int c = 0; c < file.channels; c++)
          out[i * file.channels + c] = static_cast<int16_t>(c ? -((first + i) % 30000) : (first + i) % 30000);
      return count;
    };
    stage.services.openMedia = openMedia;
    stage.setText(0, "a.wav");
  }

  ~AudioFile() override { closeAllMedia(); }

  void move(int from, int to) {
    stage.beginValues[0] = stage.tracks[0] = from;
    stage.endValues[0] = to;
    stage.modes[0] = 1;
  }
};

TEST_F(AudioFile, BlocksFollowEachOtherOrTheTime) {
  EXPECT_EQ(block(0, 3), Row({0, 1, 2}));
  EXPECT_EQ(block(1, 3), Row({3, 4, 5})) << "behind the block before, whatever the time says";
  EXPECT_EQ(block(2, 2), Row({6, 7}));
  EXPECT_EQ(block(4, 2), Row({5880, 5881})) << "4 * 1470";
  EXPECT_EQ(block(4, 2), Row({5880, 5881})) << "the same frame does not follow itself";
  EXPECT_EQ(block(3, 2), Row({4410, 4411}));
  EXPECT_EQ(file.rate, 44100);
  EXPECT_EQ(file.channels, 2);
}

TEST_F(AudioFile, PositionAndSpeed) {
  setTracks(50, 2000);
  EXPECT_EQ(block(10, 1), Row({(22050 + 2 * 14700) / 2})) << "twice the speed is half the rate";
  EXPECT_EQ(file.rate, 22050);
  setTracks(50, 500);
  EXPECT_EQ(block(20, 1), Row({44100 + 29400 - 60000})) << "at twice the rate, samples counted modulo 30000";
  setTracks(0, 333);
  block(30, 1);
  EXPECT_EQ(file.rate, 132432) << "44100 * 100000 / 33300 + 0.5";
  EXPECT_EQ(file.reads.back().first, 44099) << "trunc(1 s * 0.333 * 132432)";
  setTracks(0, 99);
  file.reads.clear();
  EXPECT_EQ(block(40, 2), Row({0, 0})) << "below 10 %";
  EXPECT_TRUE(file.reads.empty());
}

TEST_F(AudioFile, MovingPositionMakesTheSpeed) {
  // From 1 s to 4.3 s over 99 frames, 3.3 s: normal speed.
  move(100, 430);
  EXPECT_EQ(block(0, 2), Row({44100 - 30000, 44101 - 30000}));
  EXPECT_EQ(file.rate, 44100);
  EXPECT_EQ(block(50, 1), Row({44100 + 50 * 1470 - 90000}));
  move(430, 100);
  EXPECT_EQ(block(60, 1), Row({0})) << "sound does not run backward";
  SoundStage::current->services.getObjectData = [](ObjectRef, ObjectData* data) {
    *data = ownData();
    data->lastFrame = 0;
    return 1;
  };
  move(0, 100);
  EXPECT_EQ(block(0, 1), Row({0})) << "one frame has no speed";
}

TEST_F(AudioFile, EndsAndLoops) {
  file.length = 10000;
  EXPECT_EQ(block(7, 3), Row({0, 0, 0})) << "behind the end";
  block(6, 1180);
  EXPECT_EQ(stage.own[2 * 1179], 9999);
  EXPECT_EQ(block(6, 1183)[1182], 0) << "missing samples are silence";
  stage.checks[0] = 1;
  EXPECT_EQ(block(7, 3), Row({3, 4, 5})) << "10003 samples into the film";
  EXPECT_EQ(block(7, 3), Row({290, 291, 292})) << "10290 by the time";
  Row wrapped = block(6, 1183);
  EXPECT_EQ(Row(wrapped.end() - 4, wrapped.end()), Row({9999, 0, 1, 2}));
  EXPECT_EQ(block(7, 2), Row({3, 4})) << "goes on behind the wrap";
  Row often = block(20, 25000);
  EXPECT_EQ(often[0], 29400 % 10000);
  EXPECT_EQ(often[24999], (29400 + 24999) % 10000) << "more than once in a block";
  // Between 0.1 s and 0.2 s: samples 4410 to 8819.
  move(10, 20);
  EXPECT_EQ(block(0, 1), Row({4410}));
  EXPECT_EQ(block(3, 1), Row({4410})) << "a whole range later";
  EXPECT_EQ(block(2, 1471)[1470], 4410);
  move(20, 20);
  EXPECT_EQ(block(30, 1), Row({0})) << "an empty range";
}

TEST_F(AudioFile, MissingFilesAreSilent) {
  stage.setText(0, "");
  EXPECT_TRUE(block(0, 1).empty());
  stage.setText(0, "gone.wav");
  EXPECT_TRUE(block(0, 1).empty());
  EXPECT_EQ(shownMessages(), std::vector<std::string>{"Failed to read the audio file\nFile not found"});
  EXPECT_TRUE(block(1, 1).empty());
  EXPECT_EQ(shownMessages().size(), 1u) << "the name is gone after the first failure";
}

TEST_F(AudioFile, FollowsAVideo) {
  static int32_t values[2], ends[2], modes[2], checks[1];
  static VideoData video;
  video = {};
  strcpy(video.media.file, "video.mp4");
  video.rate = 25;
  video.scale = 1;
  video.frameCount = 250;
  values[0] = ends[0] = 26;  // a second into the film
  values[1] = ends[1] = 2000;
  modes[0] = checks[0] = 0;
  videoData = {0, 99, values, ends, modes, checks, &video, nullptr};
  companion = videoRef;
  EXPECT_EQ(block(0, 1), Row({22050}));
  EXPECT_EQ(file.rate, 22050) << "its speed, not the object's own";
  EXPECT_EQ(block(10, 1), Row({22050 + 14700 - 30000}));
  EXPECT_EQ(fakeMedia.opened, std::vector<std::string>{"video.mp4"});
  stage.setText(0, "");
  EXPECT_EQ(block(10, 1), Row({22050 + 14700 - 30000})) << "needs no file of its own";
  videoData.lastFrame = 29;
  EXPECT_EQ(block(40, 1), Row({22050 + 40 * 1470 - 60000})) << "goes on behind the picture's end";
  videoData.lastFrame = 9999;
  values[1] = -1000;
  EXPECT_EQ(block(20, 1), Row({0})) << "backward";
  values[1] = 1000;
  checks[0] = 1;
  EXPECT_EQ(block(288, 1)[0], (44100 + 288 * 1470 - 441000) % 30000) << "loops with the film of ten seconds";
  strcpy(video.media.file, "mute.mp4");
  EXPECT_TRUE(block(0, 1).empty());
  EXPECT_TRUE(block(1, 1).empty());
  EXPECT_TRUE(shownMessages().empty()) << "a film without sound is no failure";
  stage.setText(0, "a.wav");
  stage.checks[1] = 0;
  EXPECT_EQ(block(4, 1), Row({5880})) << "no longer in sync";
}

TEST_F(AudioFile, TimeControlsChangeTheRate) {
  stage.block.speed = 200000;
  stage.at(5);
  stage.block.time = stage.info.absoluteFrame * 200;
  stage.info.absoluteFrame = 10;
  EXPECT_EQ(stage.run(Samples(4)), 1);
  EXPECT_EQ(file.rate, 22050);
  EXPECT_EQ(file.reads.back().first, 7350) << "10 frames of 1470, at half the rate";
  stage.block.speed = 0;
  stage.at(6);
  EXPECT_EQ(stage.run(Samples(4, 9)), 1);
  EXPECT_EQ(stage.own, Samples(4)) << "time stands";
}

TEST_F(AudioFile, LoopsGoOnUnderTimeControls) {
  file.length = 10000;
  stage.checks[0] = 1;
  stage.block.speed = normalTimeSpeed / 2;  // at twice the rate: laps of 20000 samples
  for (int frame = 0; frame <= 20; frame++) {
    stage.at(frame);
    stage.block.time = frame * 50;
    stage.info.absoluteFrame = frame / 2;
    stage.info.subFrame = frame % 2 * 50;
    EXPECT_EQ(stage.run(Samples(2 * 1471)), 1);
    // A sample a block more than time has passed.
    EXPECT_EQ(stage.own[0], frame * 1471 % 20000) << frame;
  }
}

TEST_F(AudioFile, BlocksOutOfOrderAreTheSame) {
  stage.info.rate = 30000;
  stage.info.scale = 1001;
  auto firstOf = [](int frame) { return static_cast<int>(int64_t{frame} * 1001 * 44100 / 30000); };
  for (int speed : {1000, 730, 1370}) {
    setTracks(150, speed);
    stage.memory.clear();
    std::vector<Row> inOrder;
    for (int frame = 0; frame < 70; frame++) inOrder.push_back(block(frame, firstOf(frame + 1) - firstOf(frame)));
    // The virtual rate is a whole number, so that other speeds than normal drift by less than a sample.
    for (int frame : {50, 69, 51, 0, 33})
      EXPECT_NEAR(block(frame, 1471)[0], inOrder[frame][0], speed != 1000) << speed << " " << frame;
  }
}

TEST_F(AudioFile, DividedObjectsGoOnWhereTheyWere) {
  setTracks(50, 2000);
  stage.effect.frame_begin = 20;
  auto divide = [&] {
    return stage.effect.window_proc(nullptr, messageEffectCommand, commandObjectEvent, objectDivided, nullptr,
                                    &stage.effect);
  };
  EXPECT_EQ(divide(), 1);
  EXPECT_EQ(stage.beginValues[0], 183) << "half a second and 20 frames at twice the speed, 1.8333 s";
  EXPECT_EQ(stage.endValues[0], 183);
  move(100, 430);
  EXPECT_EQ(divide(), 1);
  EXPECT_EQ(stage.beginValues[0], 100) << "a moving position was divided already";
}

}  // namespace
}  // namespace zenlay::test
