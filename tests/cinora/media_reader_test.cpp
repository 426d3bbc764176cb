// The pixels of pictures from files: colours, alpha, how the camera was held; and what else a file holds.
#include "tests/cinora/numbered_film.h"

namespace cinora::test {
namespace {

TEST(MediaReaderTest, AlphaComesStraight) {
  ScratchFolder scratch;
  // Left half: red at alpha 128; right half: green, opaque.
  std::string source =
      "-f lavfi -i \"color=s=64x32:r=5:d=1,format=gbrap,geq=r='if(lt(X,32),255,0)':"
      "g='if(lt(X,32),0,255)':b=0:a='if(lt(X,32),128,255)'\" ";
  const Format alphaFormats[] = {
      {"a.webm", "-c:v libvpx-vp9 -pix_fmt yuva420p -lossless 1 -deadline realtime -cpu-used 8"},
      {"a.mov", "-c:v prores_ks -profile:v 4444 -pix_fmt yuva444p10le -alpha_bits 16"},
      {"f.mkv", "-c:v ffv1 -pix_fmt yuva420p"},
      {"p.mov", "-c:v png -pix_fmt rgba"},
      {"p.avi", "-c:v png -pix_fmt rgba"},
      {"q.mov", "-c:v qtrle -pix_fmt argb"},
  };
  for (const Format& format : alphaFormats) {
    SCOPED_TRACE(format.name);
    ASSERT_TRUE(ffmpeg(source + format.options + " " + (scratch / format.name)));
    Film film;
    ASSERT_TRUE(film.open(scratch / format.name, true)) << film.error;
    EXPECT_TRUE(film.reader.info().hasAlpha);
    ASSERT_EQ(film.reader.info().bits, 32);
    ASSERT_EQ(film.reader.info().frameCount, 5);
    const std::array<int, 4> left = {0, 0, 255, 128}, right = {0, 255, 0, 255};
    std::array<int, 4> l = film.bgraAt(3, 8, 5), r = film.bgraAt(1, 50, 30);
    for (int i = 0; i < 4; i++) {
      EXPECT_NEAR(l[i], left[i], 3) << i;
      EXPECT_NEAR(r[i], right[i], 3) << i;
    }
    Film plain;
    ASSERT_TRUE(plain.open(scratch / format.name, false)) << plain.error;
    EXPECT_TRUE(plain.reader.info().hasAlpha);
    EXPECT_EQ(plain.reader.info().bits, 24);
    EXPECT_EQ(plain.bgraAt(0, 50, 5)[3], -1);
    EXPECT_NEAR(plain.bgraAt(0, 50, 5)[1], 255, 3);
    ASSERT_TRUE(plain.reader.readVideo(2, plain.rows.data(), 64));
    EXPECT_NEAR(plain.rows[8].y, 0.299 * 4096, 30);  // the colour as it is, whatever its alpha
  }
  ASSERT_TRUE(ffmpeg(source + "-pix_fmt yuv420p -c:v libx264 " + (scratch / "o.mp4")));
  Film opaque;
  ASSERT_TRUE(opaque.open(scratch / "o.mp4", true));
  EXPECT_FALSE(opaque.reader.info().hasAlpha);
  EXPECT_EQ(opaque.reader.info().bits, 24);
}

TEST(MediaReaderTest, PicturesStandUprightHoweverTheCameraWasHeld) {
  ScratchFolder scratch;
  // Clockwise from the left top: red, green, blue, white.
  std::string source =
      "-f lavfi -i \"color=s=48x32:r=5:d=1,format=gbrp,geq=r='if(lt(X,24),255,0)':"
      "g='255*eq(lt(X,24),gte(Y,16))':b='255*gte(Y,16)'\" ";
  const std::array<int, 3> colours[4] = {{0, 0, 255}, {0, 255, 0}, {255, 0, 0}, {255, 255, 255}};
  const Format stored[] = {
      {"half.mov", "-c:v libx264 -qp 0 -pix_fmt yuv420p"},
      {"wide.mov", "-c:v mjpeg -q:v 1 -pix_fmt yuvj422p"},
      {"deep.mov", "-c:v prores_ks -pix_fmt yuv422p10le"},
      {"packed.mov", "-c:v png -pix_fmt rgb24"},
      {"alpha.mov", "-c:v png -pix_fmt rgba"},
  };
  for (const Format& format : stored) {
    ASSERT_TRUE(ffmpeg(source + format.options + " " + (scratch / format.name)));
    for (int turns = 0; turns < 4; turns++) {
      SCOPED_TRACE(format.name + std::string(" turned by ") + std::to_string(turns));
      std::string path = scratch / "turned.mov";
      // Written this way, the angle goes counter-clockwise.
      ASSERT_TRUE(ffmpeg("-i " + (scratch / format.name) +
                         " -c copy -metadata:s:v rotate=" + std::to_string(360 - 90 * turns) + " " + path));
      Film film;
      ASSERT_TRUE(film.open(path, true)) << film.error;
      int width = turns % 2 ? 32 : 48, height = 80 - width;
      ASSERT_EQ(film.reader.info().width, width);
      ASSERT_EQ(film.reader.info().height, height);
      ASSERT_TRUE(film.reader.readVideo(1, film.rows.data(), width));
      const int places[4][2] = {{5, 3}, {width - 5, 3}, {width - 5, height - 3}, {5, height - 3}};
      for (int i = 0; i < 4; i++) {
        auto [x, y] = places[i];
        std::array<int, 3> expected = colours[(i - turns) & 3];
        std::array<int, 4> found = film.bgraAt(2, x, y);
        for (int c = 0; c < 3; c++) EXPECT_NEAR(found[c], expected[c], 6) << "corner " << i << " component " << c;
        double luma = (0.114 * expected[0] + 0.587 * expected[1] + 0.299 * expected[2]) / 255 * 4096;
        EXPECT_NEAR(film.rows[size_t(y) * width + x].y, luma, 60) << "corner " << i;
      }
    }
  }
}

TEST(MediaReaderTest, ColourMatricesAndRanges) {
  ScratchFolder scratch;
  struct Row {
    const char *matrix, *range, *format;
  };
  const Row rows[] = {
      {"bt601", "tv", "yuv420p"}, {"bt709", "tv", "yuv420p"},      {"bt2020", "tv", "yuv422p"},
      {"bt601", "pc", "yuv444p"}, {"bt709", "pc", "yuv420p"},      {"bt709", "tv", "yuv422p10le"},
      {"bt601", "tv", "yuv410p"}, {"bt2020", "tv", "yuv420p10le"}, {"bt601", "pc", "yuv420p10le"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.matrix) + " " + row.range + " " + row.format);
    std::string space = row.matrix == std::string("bt709")    ? "bt709"
                        : row.matrix == std::string("bt2020") ? "bt2020nc"
                                                              : "smpte170m";
    ASSERT_TRUE(ffmpeg("-f lavfi -i \"color=0xC86432:s=50x30:r=5:d=1,format=gbrp,scale=out_color_matrix=" +
                       std::string(row.matrix) + ":out_range=" + row.range + ",format=" + row.format +
                       "\" -c:v ffv1 -colorspace " + space + " -color_range " + row.range + " " + (scratch / "c.mkv")));
    Film film;
    ASSERT_TRUE(film.open(scratch / "c.mkv")) << film.error;
    std::array<int, 4> colour = film.bgraAt(2, 49, 29);
    EXPECT_NEAR(colour[0], 0x32, 3);
    EXPECT_NEAR(colour[1], 0x64, 3);
    EXPECT_NEAR(colour[2], 0xC8, 3);
    ASSERT_TRUE(film.reader.readVideo(4, film.rows.data(), 50));
    EXPECT_NEAR(film.rows[29 * 50 + 49].y, (0.299 * 0xC8 + 0.587 * 0x64 + 0.114 * 0x32) * 4096 / 255, 40);
  }
}

TEST(MediaReaderTest, RgbPicturesKeepEveryValue) {
  ScratchFolder scratch;
  for (const char* format : {"bgr24", "bgra", "rgb24", "gbrp", "gray"}) {
    SCOPED_TRACE(format);
    bool packed = format == std::string("bgr24");
    std::string codec = packed ? "rawvideo -f avi" : format == std::string("rgb24") ? "png -f mov" : "ffv1 -f matroska";
    bool grey = format == std::string("gray");
    ASSERT_TRUE(ffmpeg("-f lavfi -i \"color=s=65x3:r=5:d=1,format=gbrp,geq=r='X*3':g='" +
                       std::string(grey ? "X*3" : "255-X") + "':b='" + (grey ? "X*3" : "Y*100") + "'\" -pix_fmt " +
                       format + " -c:v " + codec + " " + (scratch / "c.bin")));
    Film film;
    ASSERT_TRUE(film.open(scratch / "c.bin")) << film.error;
    for (int x = 0; x < 65; x += 8) {
      std::array<int, 4> colour = film.bgraAt(1, x, 2);
      EXPECT_EQ(colour[0], grey ? x * 3 : 200) << x;
      EXPECT_EQ(colour[1], grey ? x * 3 : 255 - x) << x;
      EXPECT_EQ(colour[2], x * 3) << x;
    }
  }
}

TEST(MediaReaderTest, AFrameIsTheSameWithAndWithoutAlphaBesideIt) {
  constexpr int width = 513, height = 2;
  ScratchFolder scratch;
  std::vector<int16_t> seen[2];
  for (bool alpha : {false, true}) {
    std::string file = scratch / (alpha ? "a.mkv" : "a.avi");
    ASSERT_TRUE(ffmpeg("-f lavfi -i \"color=s=513x2:r=5:d=1,format=gbrp,geq=r='X/2':g='255-X/3':b='Y*100'\" -pix_fmt " +
                       std::string(alpha ? "bgra -c:v ffv1 " : "bgr24 -c:v rawvideo ") + file));
    MediaReader reader;
    std::string error;
    ASSERT_TRUE(reader.open(file, false, error)) << error;
    std::vector<FramePixel> rows(width * height);
    ASSERT_TRUE(reader.prepareFrame(1));
    reader.convertRows(rows.data(), width, 0, height);
    for (const FramePixel& pixel : rows) seen[alpha].insert(seen[alpha].end(), {pixel.y, pixel.cb, pixel.cr});
  }
  EXPECT_EQ(seen[0], seen[1]);
  EXPECT_NE(seen[0].front(), seen[0][3 * width - 3]);
}

TEST(MediaReaderTest, RowsConvertInParts) {
  ScratchFolder scratch;
  ASSERT_TRUE(ffmpeg("-f lavfi -i testsrc=s=64x46:r=5:d=1 -pix_fmt yuv420p -c:v ffv1 " + (scratch / "t.mkv")));
  Film film;
  ASSERT_TRUE(film.open(scratch / "t.mkv"));
  std::vector<FramePixel> padded(size_t(70) * 46, FramePixel{1, 2, 3});
  ASSERT_TRUE(film.reader.readVideo(3, film.rows.data(), 64));
  ASSERT_TRUE(film.reader.prepareFrame(3));
  film.reader.convertRows(padded.data(), 70, 20, 46);
  film.reader.convertRows(padded.data(), 70, 0, 20);
  for (int y = 0; y < 46; y++) {
    for (int x = 0; x < 64; x++) ASSERT_EQ(padded[y * 70 + x].y, film.rows[y * 64 + x].y);
    ASSERT_EQ(padded[y * 70 + 64].cr, 3);
  }
}

TEST(MediaReaderTest, SoundFacts) {
  ScratchFolder scratch;
  ASSERT_TRUE(ffmpeg("-f lavfi -i sine=r=44100:d=2 -ac 2 " + (scratch / "s.wav")));
  Film sound;
  ASSERT_TRUE(sound.open(scratch / "s.wav")) << sound.error;
  EXPECT_FALSE(sound.reader.info().hasVideo);
  EXPECT_TRUE(sound.reader.info().hasSound);
  EXPECT_EQ(sound.reader.info().soundRate, 44100);
  EXPECT_EQ(sound.reader.info().soundChannels, 2);
  EXPECT_EQ(sound.reader.info().soundSamples, 88200);
  EXPECT_EQ(sound.reader.info().soundTag, 1u);
  EXPECT_EQ(sound.numberAt(0), -1);
  EXPECT_EQ(sound.reader.readBgra(0), nullptr);

  ASSERT_TRUE(
      ffmpeg(numbered(50) + "-f lavfi -i sine=r=48000:d=2 -c:v mpeg4 -c:a pcm_s16le -shortest " + (scratch / "b.avi")));
  Film both;
  ASSERT_TRUE(both.open(scratch / "b.avi")) << both.error;
  EXPECT_TRUE(both.reader.info().hasVideo && both.reader.info().hasSound);
  EXPECT_EQ(both.reader.info().soundRate, 48000);
  EXPECT_EQ(both.numberAt(31), 31);
}

TEST(MediaReaderTest, WhatCannotBeOpened) {
  ScratchFolder scratch;
  scratch.write("text.mp4", "hello");
  scratch.write("list.m3u8", "#EXTM3U\n#EXTINF:1,\nhttp://localhost:9/x.ts\n#EXT-X-ENDLIST\n");
  for (std::string path :
       {scratch / "none.avi", scratch / "text.mp4", scratch / "list.m3u8", scratch.path(), std::string("/dev/zero"),
        std::string("C:\\a.avi"), std::string("http://localhost/a.mp4"), std::string()}) {
    Film film;
    EXPECT_FALSE(film.open(path)) << path;
    EXPECT_FALSE(film.error.empty()) << path;
    EXPECT_EQ(film.numberAt(0), -1);
  }
}

}  // namespace
}  // namespace cinora::test
