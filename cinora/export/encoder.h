// Choosing and opening FFmpeg's encoders.
#pragma once

#include <optional>
#include <string>

#include "cinora/support/ffmpeg.h"

namespace cinora {

struct EncoderRequest {
  std::string codec;           // the user's word: h264, vp9, ffv1 ... or an encoder's own name
  std::optional<int> quality;  // the encoder's own scale (crf or qscale); unset: a good one
  std::string preset;          // empty: the encoder's
  bool alpha = false;
  bool picture = false;  // a still picture: RGB rather than YCbCr where both will do
  int width = 0, height = 0;
  int rate = 25, scale = 1;  // frames per second = rate / scale
  int threads = 0;           // 0: one a processor
};

/// Throws WrongUsage for a codec nobody knows, one that does not encode pictures, or one without alpha when asked for.
const AVCodec* findEncoder(const EncoderRequest&);
/// With alpha when asked for. Sides that sub-sampled chroma does not divide get 4:4:4 where the encoder has it.
AVPixelFormat choosePixelFormat(const AVCodec*, const EncoderRequest&);
/// Throws Failure or WrongUsage with what the encoder did not like.
AvCodec openEncoder(const AVCodec*, AVPixelFormat, const EncoderRequest&, int extraFlags, int maxBFrames);

}  // namespace cinora
