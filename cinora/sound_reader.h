// The sound of a file at any rate, as 16-bit samples: what a block holds does not depend on what was read before it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cinora/sound_decoder.h"

namespace cinora {

class SoundReader {
 public:
  /// False, with a reason for the user, when the file has no sound that can be read.
  bool open(const std::string& path, std::string& error);
  const SoundFacts& facts() const { return decoder_.facts(); }
  /// What `read` counts in from now on, 1..maxSoundRate samples a second and 1 or more channels. The samples of the
  /// whole file; 0 when it cannot be delivered so.
  int64_t setOutput(int rate, int channels);
  /// Sample frames read into `out`, interleaved; fewer than `count` at the end. 0 before setOutput.
  int read(int64_t first, int count, int16_t* out);

 private:
  bool align(int64_t first);
  bool produce();
  int64_t windowEnd() const { return windowFirst_ + static_cast<int64_t>(window_.size()) / channels_; }

  SoundDecoder decoder_;
  int rate_ = 0, channels_ = 0;
  int64_t total_ = 0;
  int64_t unitIn_ = 1, unitOut_ = 1;  // samples after which both rates meet
  AvResampler resampler_;             // null: the file's own rate
  int64_t consumed_ = 0, produced_ = 0;
  std::vector<float> input_;
  std::vector<int16_t> output_;
  std::vector<int16_t> window_;  // sample frames from windowFirst_ on
  int64_t windowFirst_ = 0;
};

inline constexpr int maxSoundRate = 20000000;

}  // namespace cinora
