// A media file opened for reading: frame-exact pictures in any order, facts about its sound.
//
// One reader serves one thread at a time; `convertRows` alone may run on several at once. Reading the next frame never
// seeks. Only local files are opened.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "zenlay/host/host_interface.h"

namespace cinora {

struct MediaInfo {
  bool hasVideo = false, hasSound = false;
  int32_t width = 0, height = 0;  // pixels, turned as the file asks
  int32_t frameCount = 0;
  int32_t rate = 0, scale = 0;  // frames per second = rate / scale
  bool hasAlpha = false;
  int32_t bits = 0;                     // of readBgra: 32 when alpha was asked for and is there, else 24
  uint32_t videoTag = 0, soundTag = 0;  // four-character or numbered codec tags
  int32_t soundRate = 0, soundChannels = 0;
  int64_t soundSamples = 0;  // per channel
};

class MediaReader {
 public:
  MediaReader();
  ~MediaReader();
  MediaReader(const MediaReader&) = delete;
  MediaReader& operator=(const MediaReader&) = delete;

  /// False, with a reason for the user, when the file has neither pictures nor sound that can be read. A file cut short
  /// opens with what it has.
  bool open(const std::string& path, bool wantAlpha, std::string& error);
  const MediaInfo& info() const;

  /// Decodes `frame` (from 0, limited to the frames there are); one that cannot be decoded repeats the last one before
  /// it that can. False when there is none at all.
  bool prepareFrame(int frame);
  /// Rows firstRow..lastRow-1 of the prepared frame; `rows` is row 0, rows are `rowPixels` apart. firstRow is even,
  /// lastRow even or the height.
  void convertRows(zenlay::FramePixel* rows, int rowPixels, int firstRow, int lastRow) const;
  /// Both at once.
  bool readVideo(int frame, zenlay::FramePixel* rows, int rowPixels);
  /// Bottom-up rows of BGRA (straight alpha) or BGR by `info().bits`, padded to 4 bytes; valid until the next call.
  /// Null when there is no picture.
  const uint8_t* readBgra(int frame);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace cinora
