// From frame rows to the pictures encoders take.
#pragma once

#include "cinora/support/ffmpeg.h"
#include "cinora/support/worker_pool.h"
#include "zenlay/host/host_interface.h"

namespace cinora {

/// Makes FFmpeg frames of one format and size. Buffers are used again once an encoder has let go of them. Colour stays
/// BT.601; YCbCr comes in limited range unless `fullRange`, and is tagged so.
class FrameConverter {
 public:
  /// Throws Failure for a format that `supports` denies.
  FrameConverter(WorkerPool&, AVPixelFormat, int width, int height, bool fullRange);
  static bool supports(AVPixelFormat);

  /// Splits the rows over the workers. Throws Failure when memory lacks.
  AvFrame convert(const zenlay::FramePixel* rows, int rowPixels);
  /// With alpha, where the format has it.
  AvFrame convert(const zenlay::ObjectPixel* rows, int rowPixels);

 private:
  AvFrame newFrame(AVPixelFormat, AvBufferPool&);
  template <typename Pixel>
  AvFrame convertRows(const Pixel* rows, int rowPixels);

  WorkerPool& pool_;
  AVPixelFormat format_, stage_;  // the stage is written from the rows; swscale makes the format from it if they differ
  int width_, height_;
  bool fullRange_;
  AvBufferPool buffers_, stageBuffers_;
  AvScaler scaler_;
};

}  // namespace cinora
