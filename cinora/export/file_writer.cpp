// Pictures, numbered or single, and raw frames.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <deque>
#include <utility>

#include "cinora/export/encoder.h"
#include "cinora/export/frame_writer.h"
#include "cinora/support/failure.h"
#include "platform/paths.h"
#include "zenlay/host/host_interface.h"

namespace cinora {
namespace {

/// A file that takes its name when it is whole.
class NewFile {
 public:
  explicit NewFile(const std::string& path) : path_(path), replacement_(path) {
    if (!replacement_.temporaryPath().empty()) file_ = platform::openFile(replacement_.temporaryPath(), "wb");
    if (!file_) fail();
  }
  ~NewFile() {
    if (file_) fclose(file_);
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void write(const void* bytes, size_t count) {
    if (fwrite(bytes, 1, count, file_) != count) fail();
  }
  void commit() {
    std::FILE* file = std::exchange(file_, nullptr);
    if (fclose(file) != 0 || !replacement_.commit()) fail();
  }

 private:
  [[noreturn]] void fail() { throw Failure(path_ + " cannot be written: " + strerror(errno)); }

  std::string path_;
  platform::ReplacementFile replacement_;
  std::FILE* file_ = nullptr;
};

struct PictureRow {
  const char* extension;
  const char* encoder;
  int quality;  // -1: the encoder's own
};
constexpr PictureRow pictureTable[] = {
    {".png", "png", -1},  {".jpg", "mjpeg", 2},  {".jpeg", "mjpeg", 2},    {".bmp", "bmp", -1},
    {".tif", "tiff", -1}, {".tiff", "tiff", -1}, {".webp", "libwebp", -1},
};

const PictureRow& pictureRow(const std::string& path) {
  for (const PictureRow& row : pictureTable)
    if (platform::equalNoCase(platform::extensionOf(path), row.extension)) return row;
  throw WrongUsage("no picture format: " + path);
}

class PictureWriter : public FrameWriter {
 public:
  PictureWriter(const OutputRequest& request, const FrameShape& shape)
      : pattern_(request.path), packet_(av_packet_alloc()) {
    const PictureRow& row = pictureRow(request.path);
    EncoderRequest wanted{.codec = row.encoder,
                          .quality = request.quality,
                          .preset = "",
                          .alpha = request.alpha,
                          .picture = true,
                          .width = shape.width,
                          .height = shape.height,
                          .threads = request.threads};
    if (!wanted.quality && row.quality >= 0) wanted.quality = row.quality;
    const AVCodec* encoder = findEncoder(wanted);
    codec_ = openEncoder(encoder, choosePixelFormat(encoder, wanted), wanted, 0, -1);
  }
  AVPixelFormat pixelFormat() const override { return codec_->pix_fmt; }
  bool fullRange() const override { return codec_->color_range == AVCOL_RANGE_JPEG; }
  void write(AvFrame frame, int number) override {
    frame->pts = frames_++;
    numbers_.push_back(number);
    encode(frame.get());
  }
  void finish() override { encode(nullptr); }

 private:
  /// Every picture stands alone, so packets come in the order of the frames.
  void encode(const AVFrame* frame) {
    int result = avcodec_send_frame(codec_.get(), frame);
    while (result >= 0) {
      result = avcodec_receive_packet(codec_.get(), packet_.get());
      if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
      if (result < 0) break;
      NewFile file(numberedName(pattern_, numbers_.front()).value_or(pattern_));
      numbers_.pop_front();
      file.write(packet_->data, packet_->size);
      file.commit();
      av_packet_unref(packet_.get());
    }
    throw Failure(pattern_ + " cannot be encoded: " + ffmpegError(result));
  }

  std::string pattern_;
  AvCodec codec_;
  AvPacket packet_;
  std::deque<int> numbers_;  // of frames the encoder still holds
  int64_t frames_ = 0;
};

/// height x width x 3 values Y, Cb, Cr a frame, signed 16-bit little-endian, top-down.
class RawWriter : public FrameWriter {
 public:
  explicit RawWriter(const OutputRequest& request) : file_(request.path) {}
  AVPixelFormat pixelFormat() const override { return AV_PIX_FMT_RGB48LE; }  // six bytes a pixel, as the frame's own
  bool fullRange() const override { return true; }
  void write(AvFrame frame, int) override {
    for (int y = 0; y < frame->height; y++)
      file_.write(frame->data[0] + static_cast<ptrdiff_t>(y) * frame->linesize[0],
                  sizeof(zenlay::FramePixel) * frame->width);
  }
  void finish() override { file_.commit(); }

 private:
  NewFile file_;
};

}  // namespace

std::unique_ptr<FrameWriter> makePictureWriter(const OutputRequest& request, const FrameShape& shape) {
  return std::make_unique<PictureWriter>(request, shape);
}

std::unique_ptr<FrameWriter> makeRawWriter(const OutputRequest& request, const FrameShape&) {
  return std::make_unique<RawWriter>(request);
}

}  // namespace cinora
