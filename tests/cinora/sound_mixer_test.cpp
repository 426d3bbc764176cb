// Blocks of the film's sound: their lengths, and that each is made once.
#include "cinora/host/sound_mixer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "cinora/export/exporter.h"
#include "cinora/host/frame_renderer.h"
#include "cinora/host/host.h"
#include "cinora/sound/sound_reader.h"
#include "cinora/support/failure.h"
#include "tests/support/scratch_folder.h"

namespace cinora {
namespace {

TEST(SoundBlocks, StayWithThePictureForAnHour) {
  struct Row {
    int rate, scale, audioRate, frames;
    int shortest, longest;
    int64_t samples;  // after an hour
  };
  const Row rows[] = {
      // 107892 frames are 3599.9964 s.
      {30000, 1001, 44100, 107892, 1471, 1472, 158759841}, {30000, 1001, 48000, 107892, 1601, 1602, 172799827},
      {24000, 1001, 44100, 86313, 1839, 1840, 158758737},  {30, 1, 44100, 108000, 1470, 1470, 158760000},
      {7, 3, 22051, 8400, 9450, 9451, 79383600},           {60, 1, 8000, 216000, 133, 134, 28800000},
  };
  for (const Row& row : rows) {
    ClipFormat format{64, 48, row.rate, row.scale, row.audioRate, 2};
    int64_t sum = 0;
    for (int frame = 0; frame < row.frames; frame++) {
      ASSERT_EQ(soundPosition(format, frame), sum);
      // Less than a sample before the picture, never behind it.
      int64_t early = int64_t{frame} * row.scale * row.audioRate - sum * row.rate;
      ASSERT_GE(early, 0) << frame;
      ASSERT_LT(early, row.rate) << frame;
      int length = soundBlockLength(format, frame);
      ASSERT_GE(length, row.shortest);
      ASSERT_LE(length, row.longest);
      sum += length;
    }
    EXPECT_EQ(sum, row.samples) << row.rate << "/" << row.scale << " " << row.audioRate;
  }
  EXPECT_EQ(soundBlockLength({64, 48, 1, 10000000, 768000, 2}, 0), 0) << "a frame of months has no sound";
  EXPECT_EQ(soundBlockLength({64, 48, 10000000, 1, 8000, 2}, 1248), 0) << "shorter than a sample";
  EXPECT_EQ(soundBlockLength({64, 48, 10000000, 1, 8000, 2}, 1249), 1);
}

/// The test module's sound filter adds the number of its calls to the first sample and the frame's number to the last.
class SoundMixerTest : public ::testing::Test {
 protected:
  Host& start(const char* clip, int frames) {
    HostOptions options;
    options.pluginFolder = BINARY_DIR "/test_modules";
    options.threads = 2;
    running.emplace(options);
    EXPECT_TRUE(running->openEdit(clip));
    EXPECT_TRUE(running->setFrameCount(frames));
    return *running;
  }
  std::optional<Host> running;
};

TEST_F(SoundMixerTest, ABlockIsMadeOnce) {
  Host& host = start("64x48_30000-1001fps_44100Hz.zenlay", 400);
  const SoundBlock& block = host.sound.block(host, 7);
  EXPECT_EQ(block.count, 1471);
  ASSERT_EQ(block.samples.size(), 2u * 1471);
  EXPECT_EQ(block.samples.back(), 7);
  int16_t calls = block.samples[0];
  std::vector<int16_t> asked(2 * 1471 + 1, 99);
  EXPECT_EQ(hostFunctions.getAudioFiltered(host.editHandle(), 7, asked.data()), 1471);
  EXPECT_EQ(asked[0], calls) << "the same block";
  EXPECT_EQ(asked[2 * 1471], 99) << "and no more than that";
  EXPECT_EQ(host.sound.block(host, 8).samples[0], calls + 1);
  // Eleven seconds (329.7 frames) and two frames stay: those of 7..337.
  for (int frame = 9; frame < 338; frame++) host.sound.block(host, frame);
  EXPECT_EQ(host.sound.block(host, 7).samples[0], calls) << "still kept";
  host.sound.block(host, 338);
  EXPECT_EQ(host.sound.block(host, 8).samples[0], static_cast<int16_t>(calls + 1));
  EXPECT_EQ(host.sound.block(host, 7).samples[0], static_cast<int16_t>(calls + 332)) << "the oldest went";
  EXPECT_EQ(hostFunctions.getAudioFiltered(host.editHandle(), 400, asked.data()), 0);
  EXPECT_EQ(hostFunctions.getAudioFiltered(host.editHandle(), -1, asked.data()), 0);
  EXPECT_EQ(hostFunctions.getAudioFiltered(nullptr, 0, asked.data()), 0);
}

TEST_F(SoundMixerTest, ChangesOfTheFilmForget) {
  Host& host = start("64x48_30fps_8000Hz.zenlay", 10);
  int16_t calls = host.sound.block(host, 2).samples[0];
  host.setFrameCount(11);
  EXPECT_EQ(host.sound.block(host, 2).samples[0], calls + 1);
  host.noteChange(false);
  EXPECT_EQ(host.sound.block(host, 2).samples[0], calls + 1) << "the cursor moved";
  host.noteChange(true);
  EXPECT_EQ(host.sound.block(host, 2).samples[0], calls + 2) << "an object was edited";
  ASSERT_TRUE(host.openEdit("64x48_25fps_8000Hz.zenlay"));
  EXPECT_EQ(host.sound.block(host, 0).count, 320);
}

/// A film as the clip: 15 grey frames, one second of a value that grows by 3 a sample on the left and is -7 on the
/// right.
TEST_F(SoundMixerTest, AFilmIsWhatItsClipShowsAndSoundsLike) {
  ::test::ScratchFolder folder;
  std::string film = folder / "film.mkv", mute = folder / "mute.mkv", wav = folder / "out.wav";
  std::string picture = "ffmpeg -v error -y -f lavfi -i color=gray:s=16x8:r=15:d=1,format=yuv444p ";
  ASSERT_EQ(
      std::system((picture + "-f lavfi -i \"aevalsrc='3*n/32768|-7/32768':s=8000:d=1\" -c:v ffv1 -c:a pcm_s16le " +
                   film + " && " + picture + "-c:v ffv1 " + mute)
                      .c_str()),
      0);
  Host& host = start(film.c_str(), 20);
  zenlay::HostFileInfo info;
  ASSERT_EQ(hostFunctions.getFileInfo(host.editHandle(), &info), 1);
  EXPECT_EQ(info.flags, zenlay::fileHasVideo | zenlay::fileHasAudio);
  EXPECT_EQ(info.audioRate, 8000);
  int16_t made = host.sound.block(host, 0).samples[0];  // by the filter alone
  const SoundBlock& block = host.sound.block(host, 7);
  ASSERT_EQ(block.count, 533);  // 4266 - 3733
  for (int i = 1; i + 1 < block.count; i++) {
    ASSERT_EQ(block.samples[2 * i], 3 * (3733 + i));
    ASSERT_EQ(block.samples[2 * i + 1], -7);
  }
  EXPECT_EQ(block.samples[0], 3 * 3733 + made + 1) << "filters add to it";
  const SoundBlock& behind = host.sound.block(host, 15);
  EXPECT_EQ(std::count(behind.samples.begin() + 1, behind.samples.end() - 1, 0), 2 * behind.count - 2);

  auto luma = [&](int frame) {
    RenderedFrame shown = renderFrame(host, frame);
    return shown.rows[3 * shown.rowPixels + 15].y;  // where the editor leaves the clip alone
  };
  EXPECT_NEAR(luma(0), 4096 * (126 - 16) / 219, 2);
  EXPECT_NEAR(luma(14), 4096 * (126 - 16) / 219, 2);
  EXPECT_EQ(luma(15), 0) << "the film is over";
  exportFilm(host, {.output = {.path = wav}, .last = 19}, [](int, int) { return true; });
  SoundReader reader;
  std::string error;
  ASSERT_TRUE(reader.open(wav, error)) << error;
  EXPECT_EQ(reader.setOutput(8000, 2), 10666);

  ASSERT_TRUE(host.openEdit(mute));
  ASSERT_EQ(hostFunctions.getFileInfo(host.editHandle(), &info), 1);
  EXPECT_EQ(info.flags, zenlay::fileHasVideo);
  EXPECT_THROW(exportFilm(host, {.output = {.path = wav}}, [](int, int) { return true; }), Failure);
}

}  // namespace
}  // namespace cinora
