// Films through FFmpeg's encoders and containers.
#include <optional>

#include "cinora/export/container.h"
#include "cinora/export/encoder.h"
#include "cinora/export/frame_writer.h"
#include "cinora/export/sound_encoder.h"
#include "cinora/support/failure.h"

namespace cinora {
namespace {

struct ContainerRow {
  const char* extension;
  const char* codec;
  const char* alphaCodec;  // null: none that players of this container know
  const char* soundCodec;
};
constexpr ContainerRow containerTable[] = {
    {".mp4", "h264", nullptr, "aac"},  {".m4v", "h264", nullptr, "aac"},    {".mkv", "h264", "ffv1", "aac"},
    {".mov", "h264", "prores", "aac"}, {".webm", "vp9", "vp9", "opus"},     {".avi", "h264", "ffv1", "pcm"},
    {".wav", nullptr, nullptr, "pcm"}, {".flac", nullptr, nullptr, "flac"},
};

const ContainerRow* containerRow(const std::string& path) {
  for (const ContainerRow& row : containerTable)
    if (platform::equalNoCase(platform::extensionOf(path), row.extension)) return &row;
  return nullptr;
}

std::string defaultCodec(const OutputRequest& request) {
  const ContainerRow* row = containerRow(request.path);
  const char* codec = !row ? nullptr : request.alpha ? row->alphaCodec : row->codec;
  if (codec) return codec;
  throw WrongUsage("--alpha: " + std::string(platform::extensionOf(request.path)) +
                   " films carry no alpha; .webm, .mov and .mkv do");
}

std::string soundCodecOf(const OutputRequest& request) {
  if (!request.soundCodec.empty()) return request.soundCodec;
  const ContainerRow* row = containerRow(request.path);
  return row ? row->soundCodec : noSound;
}

class FilmWriter : public FrameWriter {
 public:
  FilmWriter(const OutputRequest&, const FrameShape&, const SoundShape&);
  AVPixelFormat pixelFormat() const override { return codec_->pix_fmt; }
  bool fullRange() const override { return codec_->color_range == AVCOL_RANGE_JPEG; }
  void write(AvFrame, int number) override;
  bool takesSound() const override { return sound_.has_value(); }
  void writeSound(const int16_t* samples, int count) override { sound_->write(samples, count); }
  void finish() override;

 private:
  void addStream(const AVCodec*, const OutputRequest&, const FrameShape&);

  Container container_;
  AvCodec codec_;
  AVStream* stream_ = nullptr;
  std::optional<SoundEncoder> sound_;
  int64_t frames_ = 0;
};

FilmWriter::FilmWriter(const OutputRequest& request, const FrameShape& shape, const SoundShape& sound)
    : container_(request.path) {
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
  container_.checkHolds(encoder);
  bool avi = std::string_view(container_.name()) == "avi";
  AVPixelFormat pixels = choosePixelFormat(encoder, wanted);
  if (pixels == AV_PIX_FMT_NONE) throw WrongUsage(std::string(encoder->name) + " takes no pixel format made here");
  // .avi has no place for frames out of order.
  codec_ = openEncoder(encoder, pixels, wanted, container_.encoderFlags(), avi ? 0 : -1);
  addStream(encoder, request, shape);
  std::string soundCodec = soundCodecOf(request);
  if (sound.rate > 0 && soundCodec != noSound) sound_.emplace(container_, soundCodec, sound.rate, sound.channels);
  container_.begin();
}

void FilmWriter::addStream(const AVCodec* encoder, const OutputRequest& request, const FrameShape& shape) {
  stream_ = container_.addStream(codec_.get());
  stream_->avg_frame_rate = stream_->r_frame_rate = {shape.rate, shape.scale};
  std::string_view container = container_.name();
  if (encoder->id == AV_CODEC_ID_HEVC && (container == "mp4" || container == "mov"))
    stream_->codecpar->codec_tag = MKTAG('h', 'v', 'c', '1');  // the form every player takes
  bool blockAlpha = encoder->id == AV_CODEC_ID_VP9 || encoder->id == AV_CODEC_ID_VP8;
  if (request.alpha && blockAlpha) av_dict_set(&stream_->metadata, "alpha_mode", "1", 0);
}

void FilmWriter::write(AvFrame frame, int) {
  frame->pts = frames_++;
  container_.encode(codec_.get(), stream_, frame.get(), 1);
}

void FilmWriter::finish() {
  container_.encode(codec_.get(), stream_, nullptr, 1);
  if (sound_) sound_->finish();
  container_.finish();
}

class SoundFileWriter : public SoundWriter {
 public:
  SoundFileWriter(const OutputRequest& request, const SoundShape& shape)
      : container_(request.path), sound_(container_, soundCodecOf(request), shape.rate, shape.channels) {
    container_.begin();
  }
  void write(const int16_t* samples, int count) override { sound_.write(samples, count); }
  void finish() override {
    sound_.finish();
    container_.finish();
  }

 private:
  Container container_;
  SoundEncoder sound_;
};

}  // namespace

std::unique_ptr<FrameWriter> makeFilmWriter(const OutputRequest& request, const FrameShape& shape,
                                            const SoundShape& sound) {
  return std::make_unique<FilmWriter>(request, shape, sound);
}

std::unique_ptr<SoundWriter> makeSoundWriter(const OutputRequest& request, const SoundShape& shape) {
  return std::make_unique<SoundFileWriter>(request, shape);
}

}  // namespace cinora
