// The sound of a file at its own rate, any stretch of it exactly.
//
// Sample 0 is heard with the first picture, or is the first sample of a file without pictures. After a seek the decoder
// starts far enough ahead that what it delivers does not depend on where it started.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cinora/ffmpeg.h"
#include "cinora/packet_reader.h"

extern "C" {
#include <libswresample/swresample.h>
}

namespace cinora {

struct FreeSwr {
  void operator()(SwrContext* c) const { swr_free(&c); }
};
using AvResampler = std::unique_ptr<SwrContext, FreeSwr>;

struct SoundFacts {
  int rate = 0, channels = 0;
  int64_t samples = 0;  // per channel, estimated from the container
  uint32_t tag = 0;     // four-character or numbered codec tag
  int32_t videoRate = 0, videoScale = 0, videoFrames = 0;  // as the container tells; 0 when unknown
};

class SoundDecoder {
 public:
  /// False, with a reason, when the file has no sound that can be decoded.
  bool open(const std::string& path, std::string& error);
  const SoundFacts& facts() const { return facts_; }
  /// Channels of what `read` gives. Mono goes to both sides at full level; more channels are mixed by their places.
  void setChannels(int channels);
  /// Samples per channel, found by decoding the end of the file when first asked for.
  int64_t length();
  /// `count` interleaved sample frames from `first` on; what lies outside the sound is 0. Stretches that follow each
  /// other, or overlap the last second, are not decoded again.
  void read(int64_t first, int count, float* out);

 private:
  bool openCodec();
  bool decodeNext();
  bool convert(const AVFrame&, int64_t at);
  bool prepareMixer(const AVFrame&);
  int64_t placeOf(const AVFrame&);
  bool restart();
  void seekBefore(int64_t sample);
  void append(int64_t at, int samples);
  void trim(int64_t keepFrom);

  std::string path_;
  PacketReader reader_;
  AvCodec codec_;
  AvPacket packet_;
  AvFrame frame_;
  SoundFacts facts_;
  int channels_ = 0;
  AVRational timeBase_{};
  int64_t origin_ = 0;      // time of sample 0, in AV_TIME_BASE units
  int64_t grid_ = 0;        // samples between the places where frames may begin; 0: anywhere
  int64_t gridPhase_ = 0;
  bool timesTell_ = false;  // a frame's time tells its first sample exactly
  int64_t length_ = -1;
  bool ended_ = false, sent_ = false, counting_ = false;
  int64_t next_ = 0;  // first sample of the next frame, where frames are counted
  AvResampler mixer_;
  AVSampleFormat mixerFormat_ = AV_SAMPLE_FMT_NONE;
  AVChannelLayout mixerLayout_{};
  std::vector<float> mixed_;
  std::vector<float> window_;  // sample frames from windowFirst_ on
  int64_t windowFirst_ = 0;
};

}  // namespace cinora
