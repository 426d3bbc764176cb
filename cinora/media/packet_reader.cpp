#include "cinora/media/packet_reader.h"

#include <sys/stat.h>

#include <new>
#include <utility>

#include "platform/paths.h"

namespace cinora {
namespace {

// MPEG-4 in AVI often packs a reference picture and the B picture behind it into one packet; the filter gives each its
// own, so that packets and pictures are one and the same.
constexpr char unpackFilter[] = "mpeg4_unpack_bframes";

}  // namespace

std::string mediaUrl(const std::string& path, std::string& error) {
  std::string native = platform::nativePath(path);
  struct stat status;
  if (native.empty() || stat(native.c_str(), &status) != 0) {
    error = "File not found";
    return "";
  }
  if (!S_ISREG(status.st_mode)) {
    error = "Not a file";
    return "";
  }
  return "file:" + native;
}

bool PacketReader::open(const std::string& url, std::string& error) {
  AVFormatContext* opened = nullptr;
  AVDictionary* options = nullptr;
  av_dict_set(&options, "protocol_whitelist", "file", 0);  // what a playlist may lead to
  av_dict_set(&options, "max_size", "16384",
              0);  // bytes of plain samples in a packet: fewer are slow to read, more to probe
  int result = avformat_open_input(&opened, url.c_str(), nullptr, &options);
  av_dict_free(&options);
  AvInput container(result < 0 ? nullptr : opened);
  if (container) result = avformat_find_stream_info(container.get(), nullptr);
  if (result < 0) {
    char reason[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(result, reason, sizeof reason);
    error = reason;
    return false;
  }
  container_ = std::move(container);
  filter_.reset();
  url_ = url;
  stream_ = -1;
  return true;
}

bool PacketReader::select(int stream) {
  if (stream < 0 || stream >= static_cast<int>(container_->nb_streams)) return false;
  stream_ = stream;
  for (int i = 0; i < static_cast<int>(container_->nb_streams); i++)
    container_->streams[i]->discard = i == stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
  filter_.reset();
  if (selected()->codecpar->codec_id != AV_CODEC_ID_MPEG4) return true;
  AVBSFContext* filter = nullptr;
  const AVBitStreamFilter* kind = av_bsf_get_by_name(unpackFilter);
  if (!kind || av_bsf_alloc(kind, &filter) < 0) return false;
  filter_.reset(filter);
  return avcodec_parameters_copy(filter->par_in, selected()->codecpar) >= 0 && av_bsf_init(filter) >= 0;
}

bool PacketReader::next(AVPacket* packet) {
  for (;;) {
    if (filter_) {
      int result = av_bsf_receive_packet(filter_.get(), packet);
      if (result == 0) return true;
      if (result == AVERROR_EOF) return false;  // any other failure is one packet's
    }
    int result = av_read_frame(container_.get(), packet);
    if (result < 0) return false;
    if (packet->stream_index != stream_) {
      av_packet_unref(packet);
    } else if (!filter_) {
      return true;
    } else if (av_bsf_send_packet(filter_.get(), packet) < 0) {
      av_packet_unref(packet);
    }
  }
}

bool PacketReader::seek(int64_t timestamp) {
  if (filter_) av_bsf_flush(filter_.get());
  return av_seek_frame(container_.get(), stream_, timestamp, AVSEEK_FLAG_BACKWARD) >= 0;
}

bool PacketReader::restart() {
  PacketReader fresh;
  std::string ignored;
  if (!fresh.open(url_, ignored) || !fresh.select(stream_)) return false;
  *this = std::move(fresh);
  return true;
}

}  // namespace cinora
