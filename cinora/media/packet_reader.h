// The packets of one stream of a file, in the order they are stored.
#pragma once

#include <string>

#include "cinora/support/av_handles.h"

namespace cinora {

/// What FFmpeg opens the file by; empty, with a reason, when it is no regular file.
std::string mediaUrl(const std::string& path, std::string& error);

class PacketReader {
 public:
  /// False, with a reason, when the file is no media file. Reads enough of it to know its streams.
  bool open(const std::string& url, std::string& error);
  AVFormatContext* container() const { return container_.get(); }
  /// The stream that `next` reads from now on. False when its packets need a filter that is not there.
  bool select(int stream);
  int stream() const { return stream_; }
  AVStream* selected() const { return container_->streams[stream_]; }
  /// What a decoder is opened with.
  const AVCodecParameters* parameters() const { return filter_ ? filter_->par_out : selected()->codecpar; }
  /// False at the end of the file, and where it breaks off.
  bool next(AVPacket*);
  /// To a packet not later than the one with that timestamp, if the container can; `next` tells where it came out.
  bool seek(int64_t timestamp);
  /// Opens the file anew: the first packet is the next one.
  bool restart();

 private:
  AvInput container_;
  AvFilter filter_;
  std::string url_;
  int stream_ = -1;
};

}  // namespace cinora
