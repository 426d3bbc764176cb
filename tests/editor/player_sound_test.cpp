// The sound of playback on a device of the test's own: what it is given, and the clock it gives.
#include "cinora/desktop/player_sound.h"

#include <gtest/gtest.h>

#include "cinora/desktop/player.h"
#include "tests/editor/editor_stage.h"
#include "tests/support/file_bytes.h"

namespace cinora::test {
namespace {

using desktop::SoundClock;
using desktop::SoundDevice;

constexpr int64_t millisecond = 1000000;

// A device that tells every 20 ms what it has played, asked every 4 ms.
TEST(SoundClock, RunsEvenlyBesideTheDevice) {
  for (double speed : {1.0, 0.998, 1.002}) {
    SoundClock clock;
    clock.start(0);
    int64_t before = 0;
    for (int64_t now = 0; now < 60000 * millisecond; now += 4 * millisecond) {
      auto played = static_cast<int64_t>(speed * static_cast<double>(std::max<int64_t>(now - 50 * millisecond, 0)));
      int64_t told = played / (20 * millisecond) * 20 * millisecond, heard = clock.read(now, told, false);
      ASSERT_GE(heard, before);
      if (before > 0) {
        ASSERT_LE(heard - before, 7 * millisecond) << "it jumps at " << now;
        ASSERT_NEAR(static_cast<double>(heard), static_cast<double>(played), 21.0 * millisecond) << now;
      }
      if (told == 0) {
        ASSERT_EQ(heard, 0) << "the device has not begun";
      }
      before = heard;
    }
    int64_t end = 60000 * millisecond;
    for (int i = 1; i <= 100; i++) before = clock.read(end + i * 10 * millisecond, 61000 * millisecond, false);
    EXPECT_LE(before, 61080 * millisecond) << "a device that pauses holds it";
    EXPECT_GT(clock.read(end + 2000 * millisecond, 61000 * millisecond, true), 61900 * millisecond)
        << "not behind the last sound";
  }
}

/// What the test sees of the device; it plays in real time, and tells it in steps.
struct Speaker {
  int opened = 0;
  bool works = true;
  int64_t capacity = 17640;  // sample frames
  std::vector<int16_t> given;
  QElapsedTimer since;

  int64_t played(int64_t step) const {
    int64_t most = std::max<int64_t>(static_cast<int64_t>(given.size()) / 2 - 1000, 0);  // never quite all
    int64_t now = works && since.isValid() ? since.nsecsElapsed() * 441 / 10000000 : 0;
    return std::min(now, most) / step * step;
  }
};

class FakeDevice : public SoundDevice {
 public:
  explicit FakeDevice(Speaker& speaker) : speaker_(speaker) {
    speaker_.opened++;
    speaker_.given.clear();
    speaker_.since.start();
  }
  int64_t room() override {
    return std::min<int64_t>(777,
                             speaker_.capacity + speaker_.played(1) - static_cast<int64_t>(speaker_.given.size()) / 2);
  }
  void write(const int16_t* samples, int64_t count) override {
    speaker_.given.insert(speaker_.given.end(), samples, samples + 2 * count);
  }
  int64_t heard() override { return speaker_.played(882); }

 private:
  Speaker& speaker_;
};

/// 50 frames of 25 a second, with a sound that is another in each.
struct SoundPlayback : testing::Test {
  EditorStage stage;
  Speaker speaker;
  desktop::PlaybackFilter filter;
  desktop::OpenSoundDevice open = [this](int rate, int channels) {
    EXPECT_EQ(rate, 44100);
    EXPECT_EQ(channels, 2);
    return std::make_unique<FakeDevice>(speaker);
  };
  std::vector<int> shown;
  std::optional<bool> endedByItself;
  desktop::Player player{stage.host(), filter,
                         [this](int frame) {
                           shown.push_back(frame);
                           return true;
                         },
                         [this](int, bool byItself) { endedByItself = byItself; }, open};

  SoundPlayback() {
    std::vector<int16_t> noise(2 * 500000);
    for (size_t i = 0; i < noise.size(); i++) noise[i] = static_cast<int16_t>(i / 2 * 7919);
    stage.folder.write("noise.wav", ::test::wavFile(noise, 2, 44100));
    stage.folder.write("film.zlo", squareFilm(50, 20) +
                                       "[1]\nstart=1\nend=50\nlayer=2\noverlay=1\naudio=1\n[1.0]\n_name=Audio "
                                       "file\nfile=noise.wav\n[1.1]\n_name=Standard playback\n");
    stage.window().openFile(stage.folder / "film.zlo");
  }
  std::vector<int16_t> blocks(std::initializer_list<int> frames) {
    std::vector<int16_t> all;
    for (int frame : frames) {
      const std::vector<int16_t>& block = stage.host().sound.block(stage.host(), frame).samples;
      all.insert(all.end(), block.begin(), block.end());
    }
    return all;
  }
};

TEST_F(SoundPlayback, TheDeviceIsGivenTheBlocksAndPassesJoin) {
  speaker.works = false;
  speaker.capacity = 7 * 1764;
  desktop::PlayerSound sound(stage.host(), open);
  sound.start(3, 6, 5, true);
  std::vector<int16_t> expected = blocks({5, 6, 3, 4, 5, 6, 3});
  ASSERT_NE(expected[0], expected[2 * 1764]);
  EXPECT_EQ(speaker.given, expected) << "as much as there is room for";
  sound.start(0, 1, 0, false);
  sound.feed(false);
  expected = blocks({0, 1});
  expected.resize(speaker.given.size());
  EXPECT_EQ(speaker.given, expected) << "and silence, until the device begins";
  EXPECT_EQ(speaker.given.size(), 2u * static_cast<size_t>(speaker.capacity));
}

TEST_F(SoundPlayback, EndsWithTheLastFrameThoughTheDeviceLags) {
  QElapsedTimer clock;
  clock.start();
  player.play(0, 49, 44);  // 240 ms
  ASSERT_TRUE(stage.wait([&] { return endedByItself.has_value(); }));
  EXPECT_TRUE(*endedByItself);
  EXPECT_GE(clock.elapsed(), 235);
  EXPECT_LT(clock.elapsed(), 500) << "it waited for sound that never came";
}

TEST_F(SoundPlayback, ALoopIsOneStreamAndStaysInTime) {
  player.setLoop(true);
  player.play(3, 6, 3);
  ASSERT_TRUE(stage.wait([&] { return speaker.since.elapsed() > 900; }));
  player.stop();
  EXPECT_EQ(speaker.opened, 1);
  int passes = 0;
  for (size_t i = 1; i < shown.size(); i++) passes += shown[i] < shown[i - 1];
  EXPECT_NEAR(passes, 5, 1);  // of 160 ms
  EXPECT_EQ(std::count_if(shown.begin(), shown.end(), [](int frame) { return frame < 3 || frame > 6; }), 0);
}

TEST_F(SoundPlayback, ADeviceThatPlaysNothingIsDoneWithout) {
  speaker.works = false;
  player.play(0, 49, 0);
  ASSERT_TRUE(stage.wait([&] { return player.frame() >= 5; })) << "the film goes on by itself";
  player.stop();
  desktop::PlayerSound none(stage.host(), [](int, int) { return nullptr; });
  none.start(0, 49, 0, false);
  EXPECT_EQ(none.heard(), std::nullopt);
}

}  // namespace
}  // namespace cinora::test
