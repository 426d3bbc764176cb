#include "cinora/media/media_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "cinora/support/av_handles.h"
#include "platform/paths.h"
#include "tests/support/scratch_folder.h"

namespace cinora {
namespace {

using ::test::ScratchFolder;
using zenlay::FramePixel;

constexpr int blocks = 10, blockSize = 16;  // a block per bit of the frame number, lowest first

bool ffmpeg(const std::string& arguments) {
  return std::system(("ffmpeg -v error -nostdin -y -threads 2 " + arguments).c_str()) == 0;
}

/// A film whose pictures carry their numbers.
std::string numbered(int frames, int rate = 25) {
  return "-f lavfi -i \"color=s=160x32:r=" + std::to_string(rate) + ":d=" + std::to_string(double(frames) / rate) +
         ",format=yuv420p,geq=lum='if(bitand(N,pow(2,floor(X/16))),235,16)':cb=128:cr=128\" ";
}

class Film {
 public:
  bool open(const std::string& path, bool alpha = false) {
    bool opened = reader.open(path, alpha, error);
    rows.resize(size_t(reader.info().width) * reader.info().height);
    return opened;
  }
  /// The number that the picture shown at `frame` carries; -1 when nothing is read.
  int numberAt(int frame) {
    if (!reader.readVideo(frame, rows.data(), reader.info().width)) return -1;
    int number = 0;
    for (int bit = 0; bit < blocks; bit++)
      if (rows[size_t(16) * reader.info().width + bit * blockSize + blockSize / 2].y > 2048) number |= 1 << bit;
    return number;
  }
  std::array<int, 4> bgraAt(int frame, int x, int y) {
    const uint8_t* bitmap = reader.readBgra(frame);
    if (!bitmap) return {-1, -1, -1, -1};
    const MediaInfo& i = reader.info();
    size_t bytes = i.bits / 8, stride = (i.width * bytes + 3) / 4 * 4;
    const uint8_t* at = bitmap + (i.height - 1 - y) * stride + x * bytes;
    return {at[0], at[1], at[2], bytes == 4 ? at[3] : -1};
  }
  MediaReader reader;
  std::string error;
  std::vector<FramePixel> rows;
};

struct Format {
  const char *name, *options;
};
constexpr Format formats[] = {
    {"b_frames.mp4", "-c:v libx264 -preset veryfast -g 20 -bf 3"},
    {"open_gop.mkv", "-c:v libx264 -preset veryfast -x264-params open-gop=1:bframes=3:keyint=20:min-keyint=20"},
    {"stream.ts", "-c:v libx264 -preset veryfast -g 20 -bf 2"},
    {"bare.h264", "-c:v libx264 -preset veryfast -g 20 -bf 2"},
    {"old.avi", "-c:v mpeg4 -q:v 3 -g 20 -bf 2"},
    {"old_no_b.avi", "-c:v mpeg4 -q:v 3 -g 20"},
    {"mpeg2.mpg", "-c:v mpeg2video -q:v 3 -g 15 -bf 2"},
    {"vp8.webm", "-c:v libvpx -b:v 1M -auto-alt-ref 1 -lag-in-frames 16 -g 30"},
    {"vp9.webm", "-c:v libvpx-vp9 -b:v 1M -auto-alt-ref 1 -lag-in-frames 16 -g 30 -deadline realtime -cpu-used 8"},
    {"h264.avi", "-c:v libx264 -preset veryfast -g 20 -bf 3"},
    {"hevc.mkv", "-c:v libx265 -preset ultrafast -x265-params log-level=none:keyint=20:bframes=3"},
    {"div3.avi", "-c:v msmpeg4v3 -q:v 3 -g 20"},
    {"wmv.asf", "-c:v wmv2 -q:v 3 -g 20"},
    {"clip.flv", "-c:v flv1 -q:v 3 -g 20"},
    {"anim.gif", ""},
    {"av1.mkv", "-c:v libaom-av1 -cpu-used 8 -usage realtime -g 20"},
    {"intra.avi", "-c:v mjpeg -q:v 3"},
    {"lossless.mkv", "-c:v ffv1"},
    {"studio.mov", "-c:v prores_ks -profile:v 0"},
};

TEST(MediaReaderTest, EveryFrameExactlyInAnyOrder) {
  ScratchFolder scratch;
  constexpr int count = 90;
  for (const Format& format : formats) {
    SCOPED_TRACE(format.name);
    ASSERT_TRUE(ffmpeg(numbered(count) + format.options + " " + (scratch / format.name)));
    Film film;
    ASSERT_TRUE(film.open(scratch / format.name)) << film.error;
    const MediaInfo& info = film.reader.info();
    ASSERT_EQ(info.frameCount, count);
    EXPECT_EQ(info.width, 160);
    EXPECT_EQ(info.height, 32);
    EXPECT_DOUBLE_EQ(double(info.rate) / info.scale, 25);
    EXPECT_EQ(info.bits, 24);
    EXPECT_FALSE(info.hasSound);
    for (int i = 0; i < count; i++) ASSERT_EQ(film.numberAt(i), i);
    for (int i = count - 1; i >= 0; i--) ASSERT_EQ(film.numberAt(i), i) << "backward";
    std::mt19937 random(7);
    for (int i = 0; i < 40; i++) {
      int frame = static_cast<int>(random() % count);
      ASSERT_EQ(film.numberAt(frame), frame) << "random";
      ASSERT_EQ(film.numberAt(frame), frame) << "again";
    }
    EXPECT_EQ(film.numberAt(count + 5), count - 1);
    EXPECT_EQ(film.numberAt(-1), 0);
    for (int frame : {40, 10, 75}) {  // the first access of a fresh reader
      Film fresh;
      ASSERT_TRUE(fresh.open(scratch / format.name));
      ASSERT_EQ(fresh.numberAt(frame), frame) << "fresh";
    }
  }
}

/// Rewrites MPEG-4 the way old encoders stored it in AVI: a reference picture in one packet with the B picture behind
/// it, each packet then one late, and a packet of a picture "not coded" at the end of the run.
void packPictures(const std::string& from, const std::string& to) {
  AVFormatContext* opened = nullptr;
  ASSERT_GE(avformat_open_input(&opened, from.c_str(), nullptr, nullptr), 0);
  AvInput in(opened);
  ASSERT_GE(avformat_find_stream_info(in.get(), nullptr), 0);
  AvPacket packet(av_packet_alloc());
  std::vector<std::string> pictures;
  std::vector<bool> keys, bidirectional;
  while (av_read_frame(in.get(), packet.get()) >= 0) {
    pictures.emplace_back(reinterpret_cast<char*>(packet->data), packet->size);
    pictures.back().append(20, '\0');  // none as short as one not coded
    size_t header = pictures.back().find(std::string("\0\0\1\xB6", 4));
    bidirectional.push_back((pictures.back()[header + 4] & 0xC0) == 0x80);
    keys.push_back(packet->flags & AV_PKT_FLAG_KEY);
    av_packet_unref(packet.get());
  }
  std::string mark(
      "\0\0\1\xB2"
      "DivX503b1393p",
      17),
      notCoded("\0\0\1\xB6\x50\x4F\x7F", 7);
  std::vector<std::string> packed;
  size_t size = pictures.size();
  for (size_t i = 0; i < size; i++) {
    bool last = i + 1 == size || !bidirectional[i + 1];
    if (!bidirectional[i]) {
      packed.push_back(last ? pictures[i] : pictures[i] + pictures[i + 1]);
    } else {
      packed.push_back(last ? notCoded : pictures[i + 1]);
    }
  }
  packed[0].insert(packed[0].find(std::string("\0\0\1\xB6", 4)), mark);

  AVFormatContext* out = nullptr;
  ASSERT_GE(avformat_alloc_output_context2(&out, nullptr, "avi", to.c_str()), 0);
  AVStream* stream = avformat_new_stream(out, nullptr);
  avcodec_parameters_copy(stream->codecpar, in->streams[0]->codecpar);
  stream->codecpar->codec_tag = MKTAG('X', 'V', 'I', 'D');
  stream->time_base = {1, 25};
  ASSERT_GE(avio_open(&out->pb, to.c_str(), AVIO_FLAG_WRITE), 0);
  ASSERT_GE(avformat_write_header(out, nullptr), 0);
  for (size_t i = 0; i < packed.size(); i++) {
    ASSERT_GE(av_new_packet(packet.get(), static_cast<int>(packed[i].size())), 0);
    std::copy(packed[i].begin(), packed[i].end(), packet->data);
    packet->pts = packet->dts = static_cast<int64_t>(i);
    if (keys[i]) packet->flags |= AV_PKT_FLAG_KEY;
    ASSERT_GE(av_write_frame(out, packet.get()), 0);
    av_packet_unref(packet.get());
  }
  av_write_trailer(out);
  avio_closep(&out->pb);
  avformat_free_context(out);
}

TEST(MediaReaderTest, PackedPicturesComeInOrder) {
  ScratchFolder scratch;
  for (int bPictures : {1, 2}) {
    SCOPED_TRACE(bPictures);
    ASSERT_TRUE(ffmpeg(numbered(60) + "-c:v mpeg4 -q:v 3 -g 12 -bf " + std::to_string(bPictures) + " " +
                       (scratch / "plain.avi")));
    packPictures(scratch / "plain.avi", scratch / "packed.avi");
    Film film;
    ASSERT_TRUE(film.open(scratch / "packed.avi")) << film.error;
    ASSERT_EQ(film.reader.info().frameCount, 60);
    for (int i = 0; i < 60; i++) ASSERT_EQ(film.numberAt(i), i);
    for (int i = 59; i >= 0; i--) ASSERT_EQ(film.numberAt(i), i);
    for (int i : {41, 7, 33, 12, 58}) ASSERT_EQ(film.numberAt(i), i);
  }
}

TEST(MediaReaderTest, UnevenPicturesFollowTheAverageRate) {
  ScratchFolder scratch;
  // Pictures 0..9 a 25th apart, from then on every second one: 10, 12, ... 48.
  std::string uneven =
      "-f lavfi -i \"color=s=160x32:r=25:d=2,format=yuv420p,"
      "geq=lum='if(bitand(N,pow(2,floor(X/16))),235,16)':cb=128:cr=128,"
      "select='lt(n,10)+not(mod(n,2))'\" -vsync vfr -c:v libx264 -bf 2 ";
  for (const char* name : {"v.mkv", "v.mp4"}) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(ffmpeg(uneven + (scratch / name)));
    Film film;
    ASSERT_TRUE(film.open(scratch / name)) << film.error;
    const MediaInfo& info = film.reader.info();
    double rate = double(info.rate) / info.scale;
    EXPECT_NEAR(rate, 29 / (48 / 25.0), 0.05);  // 30 pictures, 29 steps in 48 / 25 s
    ASSERT_EQ(info.frameCount, 30);
    for (int frame = 0; frame < info.frameCount; frame++) {
      int wanted = static_cast<int>(frame / rate * 25 + 0.02);
      if (wanted > 10) wanted -= wanted % 2;
      ASSERT_EQ(film.numberAt(frame), wanted) << frame;
    }
  }
}

TEST(MediaReaderTest, RatesOfThirtyThousandOver1001) {
  ScratchFolder scratch;
  for (const char* name : {"r.mp4", "r.mkv", "r.avi"}) {  // ticks of 1/30000 s, of a millisecond, of a frame
    SCOPED_TRACE(name);
    ASSERT_TRUE(ffmpeg("-f lavfi -i color=s=32x32:r=30000/1001:d=4 -c:v mpeg4 " + (scratch / name)));
    Film film;
    ASSERT_TRUE(film.open(scratch / name)) << film.error;
    EXPECT_EQ(film.reader.info().rate, 30000);
    EXPECT_EQ(film.reader.info().scale, 1001);
    EXPECT_EQ(film.reader.info().frameCount, 120);
  }
}

TEST(MediaReaderTest, FilmCutWithinAGroupStartsWhereItShows) {
  ScratchFolder scratch;
  ASSERT_TRUE(ffmpeg(numbered(60) + "-c:v libx264 -g 30 -bf 2 " + (scratch / "whole.mp4")));
  ASSERT_TRUE(ffmpeg("-ss 0.4 -i " + (scratch / "whole.mp4") + " -c copy " + (scratch / "cut.mp4")));
  Film film;
  ASSERT_TRUE(film.open(scratch / "cut.mp4")) << film.error;
  ASSERT_EQ(film.reader.info().frameCount, 50);  // its edit list hides the first ten
  for (int frame : {0, 1, 49, 25, 19, 20, 3}) ASSERT_EQ(film.numberAt(frame), frame + 10);
}

TEST(MediaReaderTest, DamagedFilesDeliverWhatTheyHave) {
  ScratchFolder scratch;
  std::string bytes;
  for (const Format& format : formats) {
    SCOPED_TRACE(format.name);
    std::string path = scratch / format.name;
    ASSERT_TRUE(ffmpeg(numbered(60) + format.options + " " + path));
    ASSERT_TRUE(platform::readFile(path, bytes));
    for (double part : {0.0, 0.02, 0.6, 0.97}) {
      scratch.write(format.name, bytes.substr(0, static_cast<size_t>(bytes.size() * part)));
      Film film;
      if (!film.open(path)) {
        EXPECT_FALSE(film.error.empty());
        continue;
      }
      int count = film.reader.info().frameCount;
      ASSERT_LE(count, 60);
      for (int i = 0; i + 3 < count; i++) ASSERT_EQ(film.numberAt(i), i) << part;
      for (int i = count - 1; i >= 0; i--) {
        int number = film.numberAt(i);
        ASSERT_TRUE(number == i || i + 3 >= count)
            << part << ": " << number << " at " << i << " of " << count;  // the last ones may be half there
      }
    }
    std::mt19937 random(11);
    std::string damaged = bytes;
    for (size_t i = 2000; i < bytes.size(); i += 300) damaged[i] = static_cast<char>(random());
    scratch.write(format.name, damaged);
    Film film;
    if (!film.open(path)) continue;
    for (int i = 0; i < film.reader.info().frameCount; i++) film.numberAt(i);
    for (int i = film.reader.info().frameCount - 1; i >= 0; i -= 7) film.numberAt(i);
  }
}

TEST(MediaReaderTest, UndecodablePicturesRepeatTheLastGoodOne) {
  ScratchFolder scratch;
  ASSERT_TRUE(ffmpeg(numbered(12) + "-c:v mjpeg -q:v 3 " + (scratch / "a.avi")));
  std::string bytes;
  ASSERT_TRUE(platform::readFile(scratch / "a.avi", bytes));
  size_t at = 0;
  for (int picture = 0; picture < 8; picture++) {  // pictures 0, 1 and 5..7 lose their data
    at = bytes.find("\xFF\xD8\xFF", at) + 3;
    if (picture < 2 || picture >= 5) std::fill_n(bytes.begin() + static_cast<long>(at) - 3, 200, '\0');
  }
  scratch.write("a.avi", bytes);
  const int shown[12] = {2, 2, 2, 3, 4, 4, 4, 4, 8, 9, 10, 11};
  Film film;
  ASSERT_TRUE(film.open(scratch / "a.avi")) << film.error;
  ASSERT_EQ(film.reader.info().frameCount, 12);
  for (int i = 0; i < 12; i++) EXPECT_EQ(film.numberAt(i), shown[i]) << i;
  for (int i = 11; i >= 0; i--) EXPECT_EQ(film.numberAt(i), shown[i]) << i;
  for (int i : {6, 1, 7, 0, 5, 8}) EXPECT_EQ(film.numberAt(i), shown[i]) << i;
}

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
}  // namespace cinora
