// The sound of a file at its own rate, any stretch of it exactly.
//
// Sample 0 is heard with the first picture, or is the first sample of a file without pictures. What a decoder delivers
// may depend on all it has decoded before. Where it does, the sound is cut into segments and each is decoded by itself,
// from a second ahead of it, so that every sample is the same however it is come to.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "cinora/media/packet_reader.h"
#include "cinora/sound/channel_mixer.h"

namespace cinora {

struct SoundFacts {
  int rate = 0, channels = 0;
  int64_t samples = 0;  // per channel, as the container tells
  uint32_t tag = 0;     // four-character or numbered codec tag
  // Of the pictures beside it, as the container tells; 0 when it doesn't.
  int32_t videoRate = 0, videoScale = 0, videoFrames = 0;
};

/// To nearest; written so that the compiler makes vectors of it.
inline int16_t toSample(float value) {
  constexpr float scale = 32768.0f, low = -32768.0f, high = 32767.0f;
  float scaled = std::min(std::max(value * scale, low), high);
  return static_cast<int16_t>(static_cast<int>(scaled + 32768.5f) - 32768);
}

class SoundDecoder {
 public:
  /// False, with a reason, when the file has no sound that can be decoded.
  bool open(const std::string& url, std::string& error);
  const SoundFacts& facts() const { return facts_; }
  /// Channels of what `read` gives, mixed as by ChannelMixer.
  void setChannels(int channels);
  /// Samples per channel, found by decoding the end of the file when first asked for.
  int64_t length();
  /// `count` interleaved sample frames from `first` on; what lies outside the sound is 0. Stretches that follow each
  /// other, or overlap a little, are not decoded again.
  void read(int64_t first, int count, float* out);
  /// The same to the nearest 16-bit samples.
  void read(int64_t first, int count, int16_t* out);
  /// Where in the file sample 0 lies if what `read` gives is there, sample behind sample; -1 if not. After length().
  int64_t plainOffset() const;

 private:
  bool openCodec();
  void findOrigin();
  void findGrid();
  bool restart();
  void position(int64_t sample);
  bool farBehindBeginning(int64_t sample) const;
  bool decodeFrom(int64_t sample);
  void followPlain(const AVPacket&);
  bool seekBefore(int64_t time);
  bool nextFrame();
  int64_t placeOf(const AVFrame&) const;
  template <class Sample, class Convert>
  void readAs(int64_t first, int count, Sample* out, Convert convert);
  void append(int64_t at, const float* samples, int64_t count);
  bool decodeMore();
  int64_t windowEnd() const { return windowFirst_ + static_cast<int64_t>(window_.size()) / channels_; }

  PacketReader reader_;
  AvCodec codec_;
  AvPacket packet_;
  AvFrame frame_;
  SoundFacts facts_;
  int channels_ = 2;
  int64_t origin_ = 0;     // samples between time 0 and sample 0
  bool seekable_ = false;  // places are known wherever decoding begins
  int seekFailures_ = 0;   // in a row
  bool segmented_ = false;
  int64_t segmentEnd_ = INT64_MAX;  // of the segment being decoded
  bool timesExact_ = false;         // a frame's time is its place to the sample
  int64_t grid_ = 0, gridAt_ = 0;   // else frames begin every `grid_` samples around `gridAt_`; 0: not known
  int64_t length_ = -1;
  int plainBytes_ = 0;        // of a sample frame; 0: not plain
  int64_t plainOffset_ = -1;  // by the packets read so far
  bool ended_ = false;
  bool sought_ = false;   // decoding began elsewhere than at the file's start
  bool held_ = false;     // packet_ was read while seeking and is the next to decode
  bool waiting_ = false;  // frame_ lies far behind the window's end
  bool placed_ = false;   // `next_` holds
  int64_t next_ = 0;      // sample behind the last frame
  ChannelMixer mixer_;
  std::vector<float> mixed_;
  std::vector<float> window_;  // sample frames from windowFirst_ on
  int64_t windowFirst_ = 0;
};

}  // namespace cinora
