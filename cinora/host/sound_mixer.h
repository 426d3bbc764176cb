// The film's sound in blocks, one a frame: the clip's own, then every sound filter in order.
//
// Whoever plays or writes the film takes its blocks here, as do filters that look at the sound while a picture is made.
// A block is made once: filters that go on from block to block are asked for each only once, in order.
#pragma once

#include <cstdint>
#include <deque>
#include <unordered_map>
#include <vector>

#include "cinora/host/edit.h"

namespace cinora {

class Host;

/// How much sound stays made, counted back from the frame made last: more than a filter looks ahead of its picture.
inline constexpr int keptSeconds = 11;

/// Samples per channel before `frame` begins: floor(frame * scale * audio rate / rate).
int64_t soundPosition(const ClipFormat&, int64_t frame);
/// Samples per channel of the frame's block; lengths differ by one where a frame holds no whole number of samples. 0
/// for frames that last so long that their sound cannot be made.
int soundBlockLength(const ClipFormat&, int64_t frame);

struct SoundBlock {
  int frame = -1;
  int count = 0;                 // per channel
  std::vector<int16_t> samples;  // interleaved
};

class SoundMixer {
 public:
  /// The finished block of a frame of the open edit, valid until the next call.
  const SoundBlock& block(Host&, int frame);
  /// The film has changed: blocks are made anew. Before playing or writing, too.
  void forget();

 private:
  std::unordered_map<int, SoundBlock> blocks_;  // by frame
  std::deque<int> order_;                       // of their making
  bool making_ = false;                         // a filter asks for sound while it makes some: there is none
};

}  // namespace cinora
