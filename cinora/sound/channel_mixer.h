// Decoded sound with the number of channels that is wanted.
#pragma once

#include "cinora/support/av_handles.h"

namespace cinora {

class ChannelMixer {
 public:
  /// The frame's samples, interleaved. Mono goes to all channels at full level; more are mixed by their places, and
  /// dealt out in turn where they have none. Silence when there is no way to mix them.
  void mix(const AVFrame&, int channels, float* out);

 private:
  bool prepare(const AVFrame&, int channels);

  AvResampler mixer_;
  int format_ = -1, inChannels_ = 0, outChannels_ = 0;  // it was made for
};

}  // namespace cinora
