// Where rendered frames go: a film, pictures, or raw values.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cinora/ffmpeg.h"

namespace cinora {

enum class OutputKind { film, pictures, raw };

struct OutputRequest {
  std::string path;           // a pattern with one %d or %0Nd for a numbered sequence
  std::string codec, preset;  // empty: chosen by the file's extension
  std::optional<int> quality;
  bool alpha = false;
  int threads = 0;  // of the encoder; 0: one a processor
};

struct FrameShape {
  int width, height;
  int rate, scale;  // frames per second = rate / scale
};

/// Frames in the format and order the writer says. Nothing stands under the final name before finish(), and nothing is
/// left behind by a writer that goes away without it (pictures of a sequence that were whole stay).
class FrameWriter {
 public:
  virtual ~FrameWriter() = default;
  virtual AVPixelFormat pixelFormat() const = 0;
  virtual bool fullRange() const = 0;
  /// `number` counts the film's frames from 1. Throws Failure.
  virtual void write(AvFrame, int number) = 0;
  virtual void finish() = 0;
};

/// Checks everything that can be told before a frame exists. Throws WrongUsage.
OutputKind checkOutput(const OutputRequest&, int frameCount);
/// Opens encoder and file. Throws Failure or WrongUsage.
std::unique_ptr<FrameWriter> makeWriter(const OutputRequest&, const FrameShape&);

std::unique_ptr<FrameWriter> makeFilmWriter(const OutputRequest&, const FrameShape&);
std::unique_ptr<FrameWriter> makePictureWriter(const OutputRequest&, const FrameShape&);
std::unique_ptr<FrameWriter> makeRawWriter(const OutputRequest&, const FrameShape&);

/// "frame%05d.png" and 7 give "frame00007.png"; %% stands for a percent sign. Nothing when the pattern does not hold
/// exactly one number.
std::optional<std::string> numberedName(const std::string& pattern, int number);

}  // namespace cinora
