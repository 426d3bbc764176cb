// A media file being written: streams of packets in one of FFmpeg's containers, under a temporary name until it is
// whole.
#pragma once

#include <memory>
#include <string>

#include "cinora/support/ffmpeg.h"
#include "platform/paths.h"

namespace cinora {

class Container {
 public:
  /// The format by the path's extension. Throws WrongUsage for an unknown one, Failure when there is no place for it.
  explicit Container(const std::string& path);
  const char* name() const { return format_->oformat->name; }
  /// Flags that encoders of its streams need.
  int encoderFlags() const { return format_->oformat->flags & AVFMT_GLOBALHEADER ? AV_CODEC_FLAG_GLOBAL_HEADER : 0; }
  /// Throws WrongUsage when it cannot hold what the encoder makes.
  void checkHolds(const AVCodec*) const;
  AVStream* addStream(const AVCodecContext*);
  /// After the streams and before the packets.
  void begin();
  /// All packets the encoder has ready, given a frame or (null) told to end. Throws Failure.
  void encode(AVCodecContext*, AVStream*, const AVFrame*, int64_t packetDuration);
  void finish();
  /// Throws Failure for an FFmpeg error.
  void check(int result, const char* doing) const;

 private:
  struct FreeFormat {
    void operator()(AVFormatContext* format) const {
      if (format->pb) avio_closep(&format->pb);
      avformat_free_context(format);
    }
  };

  bool place(const AVCodecContext*, AVPacket*) const;

  std::string path_;
  platform::ReplacementFile file_;
  std::unique_ptr<AVFormatContext, FreeFormat> format_;  // closed before the file goes
  AvPacket packet_;
  bool matroska_ = false, avi_ = false;
};

}  // namespace cinora
