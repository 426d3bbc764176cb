// One stream of encoded sound in a container.
#pragma once

#include <vector>

#include "cinora/export/container.h"

namespace cinora {

class SoundEncoder {
 public:
  /// Adds its stream to a container that has not begun. `codec` is the user's word (aac, opus, vorbis, flac, pcm, mp3
  /// ...) or an encoder's own name. Rates that the encoder does not know are resampled to the next one above. Throws
  /// WrongUsage or Failure.
  SoundEncoder(Container&, const std::string& codec, int rate, int channels);
  /// `count` samples per channel, interleaved.
  void write(const int16_t* samples, int count);
  /// What is left.
  void finish();

 private:
  void convert(const int16_t* samples, int count);
  void encodeFull(bool last);

  Container& container_;
  AvCodec codec_;
  AVStream* stream_ = nullptr;
  AvResampler converter_;  // to the encoder's rate and format
  AvFrame converted_;
  std::vector<std::vector<uint8_t>> planes_;  // waiting for the encoder
  int waiting_ = 0;                           // samples per channel
  int sampleBytes_ = 0;                       // of a sample frame in one plane
  int64_t position_ = 0;                      // samples given to the encoder
};

}  // namespace cinora
