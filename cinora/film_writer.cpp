// Films through FFmpeg's encoders and containers.
#include <cerrno>
#include <cstring>

#include "cinora/encoder.h"
#include "cinora/failure.h"
#include "cinora/frame_writer.h"
#include "platform/paths.h"

namespace cinora {
namespace {

struct ContainerRow {
  const char* extension;
  const char* codec;
  const char* alphaCodec;  // null: none that players of this container know
};
constexpr ContainerRow containerTable[] = {
    {".mp4", "h264", nullptr},  {".m4v", "h264", nullptr}, {".mkv", "h264", "ffv1"},
    {".mov", "h264", "prores"}, {".webm", "vp9", "vp9"},   {".avi", "h264", "ffv1"},
};

std::string defaultCodec(const OutputRequest& request) {
  std::string_view extension = platform::extensionOf(request.path);
  for (const ContainerRow& row : containerTable) {
    if (!platform::equalNoCase(extension, row.extension)) continue;
    const char* codec = request.alpha ? row.alphaCodec : row.codec;
    if (codec) return codec;
  }
  throw WrongUsage("--alpha: " + std::string(extension) + " films carry no alpha; .webm, .mov and .mkv do");
}

struct FreeFormat {
  void operator()(AVFormatContext* format) const {
    if (format->pb) avio_closep(&format->pb);
    avformat_free_context(format);
  }
};

class FilmWriter : public FrameWriter {
 public:
  FilmWriter(const OutputRequest&, const FrameShape&);
  AVPixelFormat pixelFormat() const override { return codec_->pix_fmt; }
  bool fullRange() const override { return codec_->color_range == AVCOL_RANGE_JPEG; }
  void write(AvFrame, int number) override;
  void finish() override;

 private:
  void openContainer(const AVCodec*);
  void addStream(const AVCodec*, const OutputRequest&, const FrameShape&);
  void encode(const AVFrame*);  // null: drain
  void check(int result, const char* doing) const;

  std::string path_;
  platform::ReplacementFile file_;
  std::unique_ptr<AVFormatContext, FreeFormat> format_;  // closed before the file goes
  AvCodec codec_;
  AvPacket packet_;
  AVStream* stream_ = nullptr;
  int64_t frames_ = 0;
};

FilmWriter::FilmWriter(const OutputRequest& request, const FrameShape& shape)
    : path_(request.path), file_(request.path), packet_(av_packet_alloc()) {
  if (file_.temporaryPath().empty()) throw Failure(path_ + ": " + strerror(errno));
  EncoderRequest wanted{.codec = request.codec.empty() ? defaultCodec(request) : request.codec,
                        .quality = request.quality,
                        .preset = request.preset,
                        .alpha = request.alpha,
                        .width = shape.width,
                        .height = shape.height,
                        .rate = shape.rate,
                        .scale = shape.scale,
                        .threads = request.threads};
  const AVCodec* encoder = findEncoder(wanted);
  openContainer(encoder);
  bool avi = std::string_view(format_->oformat->name) == "avi";
  int flags = format_->oformat->flags & AVFMT_GLOBALHEADER ? AV_CODEC_FLAG_GLOBAL_HEADER : 0;
  AVPixelFormat pixels = choosePixelFormat(encoder, wanted);
  if (pixels == AV_PIX_FMT_NONE) throw WrongUsage(std::string(encoder->name) + " takes no pixel format made here");
  codec_ = openEncoder(encoder, pixels, wanted, flags, avi ? 0 : -1);  // .avi has no place for frames out of order
  addStream(encoder, request, shape);
}

void FilmWriter::openContainer(const AVCodec* encoder) {
  const AVOutputFormat* container = av_guess_format(nullptr, path_.c_str(), nullptr);
  if (!container) throw WrongUsage("FFmpeg knows no film format for " + path_);
  AVFormatContext* format = nullptr;
  if (avformat_alloc_output_context2(&format, container, nullptr, file_.temporaryPath().c_str()) < 0)
    throw Failure("out of memory");
  format_.reset(format);
  if (avformat_query_codec(container, encoder->id, FF_COMPLIANCE_NORMAL) == 0)
    throw WrongUsage(std::string(platform::extensionOf(path_)) + " films cannot hold " + avcodec_get_name(encoder->id));
}

void FilmWriter::addStream(const AVCodec* encoder, const OutputRequest& request, const FrameShape& shape) {
  stream_ = avformat_new_stream(format_.get(), nullptr);
  if (!stream_ || avcodec_parameters_from_context(stream_->codecpar, codec_.get()) < 0) throw Failure("out of memory");
  stream_->time_base = codec_->time_base;
  stream_->avg_frame_rate = stream_->r_frame_rate = {shape.rate, shape.scale};
  std::string_view container = format_->oformat->name;
  if (encoder->id == AV_CODEC_ID_HEVC && (container == "mp4" || container == "mov"))
    stream_->codecpar->codec_tag = MKTAG('h', 'v', 'c', '1');  // the form every player takes
  bool blockAlpha = encoder->id == AV_CODEC_ID_VP9 || encoder->id == AV_CODEC_ID_VP8;
  if (request.alpha && blockAlpha) av_dict_set(&stream_->metadata, "alpha_mode", "1", 0);
  check(avio_open(&format_->pb, file_.temporaryPath().c_str(), AVIO_FLAG_WRITE), "cannot be written");
  check(avformat_write_header(format_.get(), nullptr), "cannot be written");
}

void FilmWriter::check(int result, const char* doing) const {
  if (result < 0) throw Failure(path_ + " " + doing + ": " + ffmpegError(result));
}

void FilmWriter::encode(const AVFrame* frame) {
  check(avcodec_send_frame(codec_.get(), frame), "cannot be encoded");
  for (;;) {
    int result = avcodec_receive_packet(codec_.get(), packet_.get());
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
    check(result, "cannot be encoded");
    av_packet_rescale_ts(packet_.get(), codec_->time_base, stream_->time_base);
    packet_->duration = av_rescale_q(1, codec_->time_base, stream_->time_base);
    packet_->stream_index = stream_->index;
    check(av_interleaved_write_frame(format_.get(), packet_.get()), "cannot be written");
    check(format_->pb->error, "cannot be written");
  }
}

void FilmWriter::write(AvFrame frame, int) {
  frame->pts = frames_++;
  encode(frame.get());
}

void FilmWriter::finish() {
  encode(nullptr);
  check(av_write_trailer(format_.get()), "cannot be written");
  avio_flush(format_->pb);
  int error = format_->pb->error;
  int closing = avio_closep(&format_->pb);
  check(error, "cannot be written");
  check(closing, "cannot be written");
  if (!file_.commit()) throw Failure(path_ + " cannot be written: " + strerror(errno));
}

}  // namespace

std::unique_ptr<FrameWriter> makeFilmWriter(const OutputRequest& request, const FrameShape& shape) {
  return std::make_unique<FilmWriter>(request, shape);
}

}  // namespace cinora
