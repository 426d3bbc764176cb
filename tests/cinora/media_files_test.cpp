// Many sounds at once and long ones: what is read, what it costs, what stays in memory.
#include "cinora/host/media_files.h"

#include <gtest/gtest.h>
#include <time.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "cinora/sound/sound_reader.h"
#include "tests/support/scratch_folder.h"

namespace cinora {
namespace {

double processorSeconds() {
  timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Forty places of one file, read a block each by turns. Who opens and closes the file for every block, as one does that
// may hold few files open, hears the same, and it hardly costs more: each place finds the decoder that stands there.
TEST(MediaSounds, ManyPlacesOfAFileKeepTheirDecoders) {
  ::test::ScratchFolder folder;
  std::string path = folder / "noise.mp3";
  ASSERT_EQ(std::system(("ffmpeg -v error -f lavfi -i anoisesrc=r=44100:d=100:seed=4 " + path).c_str()), 0);
  Host host({.pluginFolder = BINARY_DIR "/test_modules", .threads = 1});
  constexpr int places = 40, blocks = 30, count = 1470;
  auto readAll = [&](auto open, auto close) {
    std::vector<int16_t> all, block(2 * count);
    double start = processorSeconds();
    for (int i = 0; i < blocks; i++)
      for (int place = 0; place < places; place++) {
        zenlay::MediaHandle media = open(place);
        EXPECT_GT(setMediaSoundRate(*media, 44100, 2), 98 * 44100);
        EXPECT_EQ(readMediaSound(*media, place * 100000 + i * count, count, block.data()), count);
        close(media);
        all.insert(all.end(), block.begin(), block.end());
      }
    return std::pair(all, processorSeconds() - start);
  };
  OwnedMedia held[places];
  for (OwnedMedia& media : held) media.reset(openMedia(path, nullptr, zenlay::openAudio));
  auto [expected, cost] = readAll([&](int place) { return held[place].get(); }, [](zenlay::MediaHandle) {});
  for (OwnedMedia& media : held) media.reset();
  auto [shared, sharedCost] = readAll([&](int) { return openMedia(path, nullptr, zenlay::openAudio); }, closeMedia);
  EXPECT_EQ(shared, expected);
  EXPECT_LT(sharedCost, 4 * cost);
}

int64_t residentBytes() {
  int64_t pages = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  return resident * sysconf(_SC_PAGESIZE);
}

// An hour of 8-bit mono, which has to be decoded, and what is kept of it.
TEST(MediaSounds, MemoryDoesNotGrowWithTheFile) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "what is freed stays resident for a while";
#endif
  ::test::ScratchFolder folder;
  constexpr uint32_t rate = 8000, seconds = 3600, bytes = rate * seconds;
  const uint32_t header[] = {0x46464952, bytes + 36, 0x45564157, 0x20746D66, 16,   0x00010001,
                             rate,       rate,       0x00080001, 0x61746164, bytes};
  folder.write("hour.wav",
               std::string(reinterpret_cast<const char*>(header), sizeof header) + std::string(bytes, '\x90'));
  SoundReader reader;
  std::string error;
  ASSERT_TRUE(reader.open(folder / "hour.wav", error)) << error;
  ASSERT_EQ(reader.setOutput(rate, 2), bytes);
  std::vector<int16_t> block(2 * rate);
  int64_t first = 0;
  for (uint32_t second = 0; second < seconds; second++) {
    ASSERT_EQ(reader.read(int64_t{second} * rate, rate, block.data()), rate);
    ASSERT_EQ(block[rate], 16 * 256);
    if (second == 60) first = residentBytes();
  }
  EXPECT_LT(residentBytes() - first, 4 << 20);
}

// Samples that no time finds again, so that decoding begins with the file.
TEST(MediaSounds, TheSilenceBeforeALateSoundTakesNoMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "what is freed stays resident for a while";
#endif
  ::test::ScratchFolder folder;
  std::string path = folder / "late.mkv";
  ASSERT_EQ(std::system(("ffmpeg -v error -f lavfi -i color=s=16x16:r=1:d=3601 -itsoffset 3600 -f lavfi -i "
                         "aevalsrc=0.5:s=48000:d=1 -c:a flac " +
                         path)
                            .c_str()),
            0);
  SoundReader reader;
  std::string error;
  ASSERT_TRUE(reader.open(path, error)) << error;
  ASSERT_EQ(reader.setOutput(48000, 2), 3601 * 48000);
  std::vector<int16_t> block(2 * 48000);
  const int64_t before = residentBytes();
  for (int second = 0; second < 3601; second++) {
    ASSERT_EQ(reader.read(int64_t{second} * 48000, 48000, block.data()), 48000);
    ASSERT_EQ(block[24000], second < 3600 ? 0 : 1 << 14) << second;
  }
  EXPECT_LT(residentBytes() - before, 8 << 20);
}

}  // namespace
}  // namespace cinora
