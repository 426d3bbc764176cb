// Where rendered frames and sound go: a film, pictures, raw values, or sound alone.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cinora/support/ffmpeg.h"

namespace cinora {

enum class OutputKind { film, pictures, raw, sound };

inline constexpr char noSound[] = "none";  // OutputRequest::soundCodec of a film without sound

struct OutputRequest {
  std::string path;           // a pattern with one %d or %0Nd for a numbered sequence
  std::string codec, preset;  // empty: chosen by the file's extension
  std::string soundCodec;     // likewise
  std::optional<int> quality;
  bool alpha = false;
  int threads = 0;  // of the encoder; 0: one a processor
};

struct FrameShape {
  int width, height;
  int rate, scale;  // frames per second = rate / scale
};
struct SoundShape {
  int rate = 0, channels = 0;  // 0: no sound
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
  /// Whether sound is written; asked before the first write. `count` samples per channel that go on from the last ones,
  /// the first ones with the first frame.
  virtual bool takesSound() const { return false; }
  virtual void writeSound(const int16_t* /*samples*/, int /*count*/) {}
  virtual void finish() = 0;
};

/// Checks everything that can be told before a frame exists. Throws WrongUsage.
OutputKind checkOutput(const OutputRequest&, int frameCount);
/// Opens encoder and file of anything but sound alone. Throws Failure or WrongUsage.
std::unique_ptr<FrameWriter> makeWriter(const OutputRequest&, const FrameShape&, const SoundShape&);

std::unique_ptr<FrameWriter> makeFilmWriter(const OutputRequest&, const FrameShape&, const SoundShape&);
std::unique_ptr<FrameWriter> makePictureWriter(const OutputRequest&, const FrameShape&);
std::unique_ptr<FrameWriter> makeRawWriter(const OutputRequest&, const FrameShape&);

/// Sound alone, as FrameWriter.
class SoundWriter {
 public:
  virtual ~SoundWriter() = default;
  virtual void write(const int16_t* samples, int count) = 0;
  virtual void finish() = 0;
};
std::unique_ptr<SoundWriter> makeSoundWriter(const OutputRequest&, const SoundShape&);

/// "frame%05d.png" and 7 give "frame00007.png"; %% stands for a percent sign. Nothing when the pattern does not hold
/// exactly one number.
std::optional<std::string> numberedName(const std::string& pattern, int number);

}  // namespace cinora
