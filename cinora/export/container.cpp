#include "cinora/export/container.h"

#include <cerrno>
#include <cstring>
#include <string_view>

#include "cinora/support/failure.h"

namespace cinora {

Container::Container(const std::string& path) : path_(path), file_(path), packet_(av_packet_alloc()) {
  if (file_.temporaryPath().empty()) throw Failure(path_ + ": " + strerror(errno));
  const AVOutputFormat* format = av_guess_format(nullptr, path_.c_str(), nullptr);
  if (!format) throw WrongUsage("FFmpeg knows no format for " + path_);
  AVFormatContext* opened = nullptr;
  if (!packet_ || avformat_alloc_output_context2(&opened, format, nullptr, file_.temporaryPath().c_str()) < 0)
    throw Failure("out of memory");
  format_.reset(opened);
  matroska_ = std::string_view(name()) == "matroska" || std::string_view(name()) == "webm";
  avi_ = std::string_view(name()) == "avi";
  if (matroska_ || avi_) format_->avoid_negative_ts = 0;  // which would make the pictures late for sound ahead of them
  format_->strict_std_compliance = FF_COMPLIANCE_EXPERIMENTAL;  // FLAC in .mp4, which players know by now
}

void Container::checkHolds(const AVCodec* encoder) const {
  if (avformat_query_codec(format_->oformat, encoder->id, FF_COMPLIANCE_NORMAL) <= 0)
    throw WrongUsage(std::string(platform::extensionOf(path_)) + " files cannot hold " + avcodec_get_name(encoder->id));
}

AVStream* Container::addStream(const AVCodecContext* codec) {
  AVStream* stream = avformat_new_stream(format_.get(), nullptr);
  if (!stream || avcodec_parameters_from_context(stream->codecpar, codec) < 0) throw Failure("out of memory");
  stream->time_base = codec->time_base;
  return stream;
}

void Container::begin() {
  const std::string url = "file:" + file_.temporaryPath();  // a colon in the name makes no protocol of it
  check(avio_open(&format_->pb, url.c_str(), AVIO_FLAG_WRITE), "cannot be written");
  AVDictionary* options = nullptr;
  av_dict_set(&options, "rf64", "auto", 0);  // lengths above 4 GiB in .wav; other containers know nothing of it
  int result = avformat_write_header(format_.get(), &options);
  av_dict_free(&options);
  check(result, "cannot be written");
}

/// Encoders put samples ahead of the first one, which players leave out where the container says how many. Matroska
/// does so for Opus, whose packets' times are those of what is left out, too; else it would make the pictures late, as
/// players begin with what comes first, and an AVI the sound. So a packet that lies mostly ahead of the film is not
/// written: false. The next ones may need it for their first samples.
bool Container::place(const AVCodecContext* codec, AVPacket* packet) const {
  if (matroska_ && codec->codec_id == AV_CODEC_ID_OPUS) {
    packet->pts += codec->initial_padding;
    packet->dts += codec->initial_padding;
  }
  const bool tellsPadding = !matroska_ && !avi_;
  return tellsPadding || codec->codec_type != AVMEDIA_TYPE_AUDIO || packet->pts + packet->duration / 2 >= 0;
}

void Container::encode(AVCodecContext* codec, AVStream* stream, const AVFrame* frame, int64_t packetDuration) {
  check(avcodec_send_frame(codec, frame), "cannot be encoded");
  for (;;) {
    int result = avcodec_receive_packet(codec, packet_.get());
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
    check(result, "cannot be encoded");
    if (!place(codec, packet_.get())) {
      av_packet_unref(packet_.get());
      continue;
    }
    if (packetDuration > 0) packet_->duration = packetDuration;
    av_packet_rescale_ts(packet_.get(), codec->time_base, stream->time_base);
    packet_->stream_index = stream->index;
    check(av_interleaved_write_frame(format_.get(), packet_.get()), "cannot be written");
    check(format_->pb->error, "cannot be written");
  }
}

void Container::finish() {
  check(av_write_trailer(format_.get()), "cannot be written");
  avio_flush(format_->pb);
  int error = format_->pb->error;
  int closing = avio_closep(&format_->pb);
  check(error, "cannot be written");
  check(closing, "cannot be written");
  if (!file_.commit()) throw Failure(path_ + " cannot be written: " + strerror(errno));
}

void Container::check(int result, const char* doing) const {
  if (result < 0) throw Failure(path_ + " " + doing + ": " + ffmpegError(result));
}

}  // namespace cinora
