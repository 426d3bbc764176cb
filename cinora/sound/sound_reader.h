// The sound of a file at any rate, as 16-bit samples: what a block holds does not depend on what was read before it.
//
// Except where the rate changes while reading goes on: places are then rounded to the new rate's samples, and the first
// block bends its time by that part of a sample, so that nothing clicks.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cinora/sound/plain_samples.h"
#include "cinora/sound/resampling_filter.h"
#include "cinora/sound/sound_decoder.h"

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
  void copy(int64_t first, int count, int16_t* out);
  void resample(ResamplingPlace, int count, int16_t* out);
  double placeOf(int64_t sample) const { return static_cast<double>(sample) * unitIn_ / unitOut_; }

  std::string path_;
  SoundDecoder decoder_;
  PlainSamples plain_;  // open: those of the file
  int rate_ = 0, channels_ = 0;
  int64_t total_ = 0;
  int64_t unitIn_ = 1, unitOut_ = 1;                // samples after which both rates meet
  std::shared_ptr<const ResamplingFilter> filter_;  // null: not needed yet
  double readUpTo_ = -1;                            // place in the file of the sample behind the last one read
  bool turned_ = false;                             // the rate has changed since
  std::vector<float> input_, planes_, sums_;
  std::vector<WeightedStretch> stretches_;
};

inline constexpr int maxSoundRate = 20000000;

}  // namespace cinora
