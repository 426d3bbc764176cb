// Pictures of sound: the line, the bars, the spectrum, and the object that shows them.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/media/sound_stage.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/media/spectrum.h"
#include "zenlay/media/waveform_drawing.h"

namespace zenlay::test {
namespace {

struct Canvas {
  int width, height;
  std::vector<ObjectPixel> pixels;
  WaveformImage image;
  Canvas(int w, int h) : width(w), height(h), pixels(static_cast<size_t>(w + 3) * h, {1, 2, 3, 0}) {
    image = {pixels.data(), w + 3, w, h};
  }
  /// Alphas of a column, top to bottom; what is drawn beyond the width shows as a failure.
  std::vector<int> column(int x) const {
    std::vector<int> alphas;
    for (int y = 0; y < height; y++) {
      alphas.push_back(pixels[static_cast<size_t>(y) * (width + 3) + x].a);
      for (int margin = 0; margin < 3; margin++)
        EXPECT_EQ(pixels[static_cast<size_t>(y) * (width + 3) + width + margin].a, 0);
    }
    return alphas;
  }
  /// '#' opaque, '.' transparent, '+' in between.
  std::string row(int y) const {
    std::string text;
    for (int x = 0; x < width; x++) {
      int a = pixels[static_cast<size_t>(y) * (width + 3) + x].a;
      text += a == 0 ? '.' : a == fullAlpha ? '#' : '+';
    }
    return text;
  }
};

using Column = std::vector<int>;

TEST(WaveLine, IsAsThickAsItIsDrawnAnywhere) {
  Canvas canvas(4, 8);
  Samples silence(10);
  drawWaveLine(canvas.image, silence.data(), 10, {});
  // The middle is between rows 3 and 4; the line reaches 0.75 to both sides.
  for (int x = 0; x < 4; x++) EXPECT_EQ(canvas.column(x), Column({0, 0, 0, 3072, 3072, 0, 0, 0}));
  EXPECT_EQ(canvas.pixels[0].y, 1) << "the colour stays";
}

TEST(WaveLine, ConnectsItsPointsAndStaysInside) {
  Canvas canvas(8, 16);
  Samples square{32767, -32768};
  drawWaveLine(canvas.image, square.data(), 2, {});
  for (int x = 1; x < 7; x++) {
    Column column = canvas.column(x);
    int sum = 0;
    for (int a : column) sum += a;
    EXPECT_NEAR(sum / 4096.0, 1.5 * std::hypot(1, 14.5 / 8), 0.05) << "as thick where it is steep";
  }
  EXPECT_GT(canvas.column(0)[0], 0);
  EXPECT_GT(canvas.column(7)[15], 0);

  Canvas low(8, 16);
  drawWaveLine(low.image, square.data(), 2, {.rows = 4});
  EXPECT_EQ(low.column(0)[5], 0) << "an extent of four rows";
  EXPECT_GT(low.column(0)[6], 0);

  Canvas mirrored(8, 16);
  drawWaveLine(mirrored.image, square.data(), 2, {.mirror = true});
  for (int x = 0; x < 8; x++) {
    Column column = mirrored.column(x);
    EXPECT_EQ(Column(column.rbegin(), column.rend()), column);
  }
  Canvas one(1, 1);
  drawWaveLine(one.image, square.data(), 2, {});
  EXPECT_EQ(one.column(0), Column({fullAlpha}));
}

TEST(LevelBars, GrowInStepsWithGaps) {
  const float levels[] = {1.0f, 0.5f, 0.0f, 2.0f};
  Canvas canvas(8, 4);
  drawLevelBars(canvas.image, levels, 4, {.columns = 4, .columnGap = 50});
  EXPECT_EQ(canvas.row(0), "#.....#.");
  EXPECT_EQ(canvas.row(1), "#.....#.");
  EXPECT_EQ(canvas.row(2), "#.#...#.");
  EXPECT_EQ(canvas.row(3), "#.#...#.");

  Canvas steps(4, 8);
  drawLevelBars(steps.image, levels, 4, {.rows = 2, .rowGap = 50});
  // A step is four rows, two of them lit, from the bottom.
  EXPECT_EQ(steps.row(0), "....");
  EXPECT_EQ(steps.row(2), "#..#");
  EXPECT_EQ(steps.row(3), "#..#");
  EXPECT_EQ(steps.row(4), "....");
  EXPECT_EQ(steps.row(7), "##.#");

  Canvas mirrored(4, 8);
  drawLevelBars(mirrored.image, levels, 4, {.mirror = true});
  for (int y = 0; y < 4; y++) EXPECT_EQ(mirrored.row(y), mirrored.row(7 - y));
  EXPECT_EQ(mirrored.row(0), "#..#");
  EXPECT_EQ(mirrored.row(2), "##.#");

  Canvas grouped(2, 2);
  drawLevelBars(grouped.image, levels, 4, {});
  EXPECT_EQ(grouped.row(0), "##") << "the largest level of two";
  Canvas hidden(8, 4);
  drawLevelBars(hidden.image, levels, 4, {.columns = 4, .columnGap = 100});
  EXPECT_EQ(hidden.row(3), "........");
  Canvas wide(8, 1);
  drawLevelBars(wide.image, levels, 4, {.columns = 9});
  EXPECT_EQ(wide.row(0), "####..##") << "more bars than columns: one a column";
}

TEST(Spectrum, AToneStandsInItsBand) {
  for (int bin : {8, 100, 700}) {
    Samples tone(spectrumBlock * 2);
    for (size_t i = spectrumBlock; i < tone.size(); i++)
      tone[i] = static_cast<int16_t>(std::lround(16384 * std::sin(2 * std::numbers::pi * bin * i / spectrumBlock)));
    float levels[spectrumLevels];
    soundSpectrum(tone.data(), static_cast<int>(tone.size()), levels);
    int band = static_cast<int>(std::lround(std::log(bin) / std::log(1023.0) * 511));
    EXPECT_NEAR(levels[band], 0.5, 0.02) << bin << ", the louder of two blocks";
    for (int i = 0; i < spectrumLevels; i++) {
      EXPECT_LE(levels[i], 0.51f);
      double distance = std::pow(1023.0, i / 511.0) - bin;
      EXPECT_LT(levels[i], std::abs(distance) > 4 ? 0.002f : 1.0f) << bin << " in band " << i;
    }
  }
  float silent[spectrumLevels];
  soundSpectrum(nullptr, 0, silent);
  EXPECT_EQ(silent[100], 0);
}

/// The edit's sound: frame n holds the sample 1000 * n on the left and nothing on the right.
class WaveformDisplay : public ::testing::Test {
 protected:
  WaveformDisplay() : stage(audioWaveformDisplayMedia) {
    stage.info.audio = nullptr;
    stage.tracks = {16, 16, 1000, 0};
    stage.services.convertRgb = [](ObjectPixel* to, const void* from, int, int, int) {
      const uint8_t* bgr = static_cast<const uint8_t*>(from);
      *to = {bgr[0], bgr[1], bgr[2], fullAlpha};
    };
    stage.services.recordUndo = [](ObjectRef) {};
    stage.services.objectChanged = [](ObjectRef) {};
    fakeHost.functions.getAudioFiltered = [](EditHandle, int32_t frame, int16_t* samples) -> int32_t {
      if (frame >= 20) return 0;
      for (int i = 0; i < 1470; i++) {
        samples[2 * i] = static_cast<int16_t>(1000 * frame);
        samples[2 * i + 1] = 0;
      }
      return 1470;
    };
  }
  /// Middle of the line in a column, in rows from the top.
  double heightAt(int x) {
    double sum = 0, weight = 0;
    for (int y = 0; y < stage.info.objectHeight; y++) {
      sum += (y + 0.5) * stage.pixel(x, y).a;
      weight += stage.pixel(x, y).a;
    }
    return sum / weight;
  }
  SoundStage stage;
};

TEST_F(WaveformDisplay, ShowsTheSoundOfTheFrame) {
  stage.info.hostFrame = 10;
  stage.info.absoluteFrame = 3;  // of a scene inside
  ASSERT_EQ(stage.EffectStage::run(), 1);
  EXPECT_EQ(stage.info.objectWidth, 16);
  EXPECT_EQ(stage.info.objectHeight, 16);
  EXPECT_EQ(parts(stage.pixel(0, 0)), std::vector<int>({255, 255, 255, 0}));
  // (10000 + 0) / 2 = 5000 of 32768, of the 7.25 rows above the middle.
  for (int x : {0, 5, 15}) EXPECT_NEAR(heightAt(x), 8 - 7.25 * 5000 / 32768, 0.1) << x;
  stage.tracks[2] = 5000;
  stage.EffectStage::run();
  EXPECT_NEAR(heightAt(5), 8 - 7.25 * 25000 / 32768, 0.1);
  stage.info.hostFrame = 20;
  stage.EffectStage::run();
  EXPECT_NEAR(heightAt(5), 8, 0.01) << "no sound there";
  fakeHost.clip.flags = fileHasVideo;
  stage.info.hostFrame = 10;
  stage.EffectStage::run();
  EXPECT_NEAR(heightAt(5), 8, 0.01) << "a clip without sound";
}

TEST_F(WaveformDisplay, MoreSamplesThanAFrameLieAroundItsMiddle) {
  // Three frames of 1470 samples and 30 more on each side: over 16 columns the frames are 5.3 columns wide.
  int32_t samples = 3 * 1470 + 60;
  stage.setData(296, &samples, sizeof samples);
  stage.tracks[2] = 3000;
  auto framesAt = [&](int frame) {
    stage.info.hostFrame = frame;
    EXPECT_EQ(stage.EffectStage::run(), 1);
    Column frames;
    for (int x : {1, 4, 6, 8, 12, 14})
      frames.push_back(static_cast<int>(std::lround((8 - heightAt(x)) / (7.25 * 1500 / 32768))));
    return frames;
  };
  EXPECT_EQ(framesAt(10), Column({9, 9, 10, 10, 11, 11}));
  EXPECT_EQ(framesAt(0), Column({0, 0, 0, 0, 1, 1})) << "nothing before the film";
  EXPECT_EQ(framesAt(19), Column({18, 18, 19, 19, 0, 0})) << "and behind it";
}

/// Where in its file, of `fileLength` samples, the display reads.
TEST_F(WaveformDisplay, ReadsItsFileWhereTheTimeIs) {
  static std::vector<std::pair<int, int>> reads;  // first, count
  constexpr int fileLength = 44100;
  stage.checks[3] = 0;
  stage.services.openMedia = [](MediaReference*, uint32_t, HostFileInfo*) { return reinterpret_cast<MediaHandle>(1); };
  fakeHost.functions.setAudioSampleRate = [](MediaHandle, int32_t, int32_t) -> int32_t { return fileLength; };
  fakeHost.functions.readAudioSamples = [](MediaHandle, int32_t first, int32_t count, int16_t* out) -> int32_t {
    reads.push_back({first, count});
    std::fill_n(out, 2 * count, int16_t{16384});
    return count;
  };
  auto readAt = [&](int frame, int start, int end, int mode, int32_t samples) {
    stage.info.absoluteFrame = frame + 40;
    stage.info.host.frameNumber = frame;
    stage.effect.frame_begin = 40;
    stage.effect.frame_end = 50;
    stage.beginValues[3] = start;
    stage.endValues[3] = end;
    stage.modes[3] = mode;
    stage.setData(296, &samples, sizeof samples);
    reads.clear();
    EXPECT_EQ(stage.EffectStage::run(), 1);
    return reads.empty() ? std::pair(-1, 0) : reads[0];
  };
  using Read = std::pair<int, int>;
  EXPECT_EQ(readAt(0, 0, 0, 0, 0), Read(0, 1470));
  EXPECT_EQ(readAt(7, 10, 10, 0, 0), Read(4410 + 7 * 1470, 1470)) << "a still position goes on with the film";
  EXPECT_EQ(readAt(7, 10, 60, 1, 0), Read(4410 + 7 * 2205, 1470)) << "a moving one through its values";
  EXPECT_EQ(readAt(7, 10, 10, 0, 470), Read(4410 + 7 * 1470 + 500, 470));
  EXPECT_EQ(readAt(0, 0, 0, 0, 2470), Read(0, 1471)) << "500 samples before the file are silence";
  EXPECT_EQ(heightAt(0), 8);
  EXPECT_LT(heightAt(8), 5);
  EXPECT_EQ(readAt(0, 99, 99, 0, 0), Read(43659, 441)) << "the file ends";
  EXPECT_EQ(readAt(31, 0, 0, 0, 0), Read(-1, 0));
}

TEST_F(WaveformDisplay, SizesAreLimited) {
  stage.tracks[0] = 0;
  stage.tracks[1] = 2000;
  ASSERT_EQ(stage.EffectStage::run(), 1);
  EXPECT_EQ(stage.info.objectWidth, 1);
  EXPECT_EQ(stage.info.objectHeight, 48);
}

TEST_F(WaveformDisplay, EveryPresetIsAnotherPicture) {
  auto choose = [&](int item) {
    return stage.effect.window_proc(nullptr, messageEffectCommand, commandDropDown, item, nullptr, &stage.effect);
  };
  for (int none : {-1, 5}) EXPECT_EQ(choose(none), 0);
  stage.tracks = {64, 48, 1000, 0};
  std::vector<std::vector<int>> pictures;
  for (int item = 0; item < 5; item++) {
    EXPECT_EQ(choose(item), 1);
    stage.info.hostFrame = 10;
    ASSERT_EQ(stage.EffectStage::run(), 1);
    std::vector<int> picture;
    for (int y = 0; y < 48; y++)
      for (int x = 0; x < 64; x++) picture.push_back(stage.pixel(x, y).a);
    for (const auto& other : pictures) EXPECT_NE(picture, other) << item;
    pictures.push_back(picture);
  }
}

}  // namespace
}  // namespace zenlay::test
