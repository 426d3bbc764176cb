// Which picture of a file is which frame.
#include <algorithm>
#include <random>

#include "cinora/support/av_handles.h"
#include "platform/paths.h"
#include "tests/cinora/numbered_film.h"

namespace cinora::test {
namespace {

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

TEST(FrameOrder, EveryFrameExactlyInAnyOrder) {
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

TEST(FrameOrder, PackedPicturesComeInOrder) {
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

TEST(FrameOrder, UnevenPicturesFollowTheAverageRate) {
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

TEST(FrameOrder, RatesOfThirtyThousandOver1001) {
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

TEST(FrameOrder, FilmCutWithinAGroupStartsWhereItShows) {
  ScratchFolder scratch;
  ASSERT_TRUE(ffmpeg(numbered(60) + "-c:v libx264 -g 30 -bf 2 " + (scratch / "whole.mp4")));
  ASSERT_TRUE(ffmpeg("-ss 0.4 -i " + (scratch / "whole.mp4") + " -c copy " + (scratch / "cut.mp4")));
  Film film;
  ASSERT_TRUE(film.open(scratch / "cut.mp4")) << film.error;
  ASSERT_EQ(film.reader.info().frameCount, 50);  // its edit list hides the first ten
  for (int frame : {0, 1, 49, 25, 19, 20, 3}) ASSERT_EQ(film.numberAt(frame), frame + 10);
}

TEST(FrameOrder, DamagedFilesDeliverWhatTheyHave) {
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

TEST(FrameOrder, UndecodablePicturesRepeatTheLastGoodOne) {
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

}  // namespace
}  // namespace cinora::test
