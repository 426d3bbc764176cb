#include "platform/picture.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "platform/paths.h"

namespace platform {
namespace {

constexpr size_t maxFileBytes = size_t{1} << 30;
constexpr int64_t maxPixels = int64_t{1} << 28;
// A picture of up to `freePixels` is believed whatever its file's size. Beyond, the best packing that pictures reach in
// earnest (one colour, run lengths within deflate) is the limit.
constexpr int64_t freePixels = 1 << 24;
constexpr int64_t maxPixelsPerByte = 4096;

// The whole file is one packet for demuxers whose name ends so; the others listed split it themselves.
constexpr std::string_view wholeFileEnding = "_pipe";
constexpr std::string_view splittingDemuxers[] = {"gif", "ico", "apng"};

struct FreeFormat {
  void operator()(AVFormatContext* c) const { avformat_close_input(&c); }
};
struct FreeCodec {
  void operator()(AVCodecContext* c) const { avcodec_free_context(&c); }
};
struct FreeFrame {
  void operator()(AVFrame* f) const { av_frame_free(&f); }
};
struct FreePacket {
  void operator()(AVPacket* p) const { av_packet_free(&p); }
};
struct FreeIo {
  void operator()(AVIOContext* io) const {
    av_freep(&io->buffer);
    avio_context_free(&io);
  }
};
struct FreeScaler {
  void operator()(SwsContext* c) const { sws_freeContext(c); }
};
using Frame = std::unique_ptr<AVFrame, FreeFrame>;
using Codec = std::unique_ptr<AVCodecContext, FreeCodec>;
using Packet = std::unique_ptr<AVPacket, FreePacket>;

struct Source {
  const std::string& bytes;
  size_t at = 0;
  int64_t pixelLimit = 0;
  int maxSide = 0;
};

int readSource(void* opaque, uint8_t* buffer, int size) {
  auto* source = static_cast<Source*>(opaque);
  size_t count = std::min<size_t>(size, source->bytes.size() - source->at);
  if (count == 0) return AVERROR_EOF;
  memcpy(buffer, source->bytes.data() + source->at, count);
  source->at += count;
  return static_cast<int>(count);
}

int64_t seekSource(void* opaque, int64_t offset, int whence) {
  auto* source = static_cast<Source*>(opaque);
  auto size = static_cast<int64_t>(source->bytes.size());
  if (whence & AVSEEK_SIZE) return size;
  whence &= ~AVSEEK_FORCE;
  int64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? static_cast<int64_t>(source->at) : size;
  if (base + offset < 0 || base + offset > size) return AVERROR(EINVAL);
  source->at = static_cast<size_t>(base + offset);
  return base + offset;
}

bool acceptable(const Source& source, int width, int height) {
  return width > 0 && height > 0 && width <= source.maxSide && height <= source.maxSide &&
         int64_t{width} * height <= source.pixelLimit;
}

/// Called before the decoder's picture is allocated.
int allocateFrame(AVCodecContext* codec, AVFrame* frame, int flags) {
  if (!acceptable(*static_cast<Source*>(codec->opaque), frame->width, frame->height)) return AVERROR(EINVAL);
  return avcodec_default_get_buffer2(codec, frame, flags);
}

Packet wholeFile(const std::string& bytes) {
  Packet packet(av_packet_alloc());
  if (!packet || av_new_packet(packet.get(), static_cast<int>(bytes.size())) < 0) return {};
  memcpy(packet->data, bytes.data(), bytes.size());
  packet->flags |= AV_PKT_FLAG_KEY;
  return packet;
}

Codec openCodec(AVCodecID id, const AVCodecParameters* parameters, Source& source) {
  const AVCodec* decoder = avcodec_find_decoder(id);
  if (!decoder || decoder->type != AVMEDIA_TYPE_VIDEO) return {};
  Codec codec(avcodec_alloc_context3(decoder));
  if (!codec || (parameters && avcodec_parameters_to_context(codec.get(), parameters) < 0)) return {};
  codec->max_pixels = source.pixelLimit;
  codec->opaque = &source;
  codec->get_buffer2 = allocateFrame;
  codec->thread_count = 1;
  codec->thread_type = 0;
  // Damage refuses the picture, but the TIFF decoder also takes tags it has no use for as damage.
  codec->err_recognition = id == AV_CODEC_ID_TIFF ? 0 : AV_EF_EXPLODE;
  if (avcodec_open2(codec.get(), decoder, nullptr) < 0) return {};
  return codec;
}

Frame decodePacket(AVCodecContext* codec, const AVPacket* packet) {
  Frame frame(av_frame_alloc());
  if (!frame || avcodec_send_packet(codec, packet) < 0) return {};
  int result = avcodec_receive_frame(codec, frame.get());
  if (result == AVERROR(EAGAIN)) {
    avcodec_send_packet(codec, nullptr);
    result = avcodec_receive_frame(codec, frame.get());
  }
  return result < 0 ? Frame{} : std::move(frame);
}

bool isStillDemuxer(const AVInputFormat* format, bool& wholeFilePacket) {
  std::string_view name = format->name;
  wholeFilePacket = name.ends_with(wholeFileEnding);
  return wholeFilePacket ||
         std::find(std::begin(splittingDemuxers), std::end(splittingDemuxers), name) != std::end(splittingDemuxers);
}

/// By the file's content; null when it is no picture or has no mark.
Frame decodeMarked(Source& source) {
  constexpr int bufferBytes = 1 << 16;
  auto* buffer = static_cast<uint8_t*>(av_malloc(bufferBytes));
  std::unique_ptr<AVIOContext, FreeIo> io(
      buffer ? avio_alloc_context(buffer, bufferBytes, 0, &source, readSource, nullptr, seekSource) : nullptr);
  if (!io) return {};
  const AVInputFormat* format = nullptr;
  bool whole = false;
  if (av_probe_input_buffer2(io.get(), &format, "", nullptr, 0, 0) < 0 || !isStillDemuxer(format, whole)) return {};
  AVFormatContext* opened = avformat_alloc_context();
  if (!opened) return {};
  opened->pb = io.get();
  if (avformat_open_input(&opened, "", format, nullptr) < 0) return {};
  std::unique_ptr<AVFormatContext, FreeFormat> container(opened);
  Packet packet(av_packet_alloc());
  if (container->nb_streams == 0 || !packet) return {};
  const AVCodecParameters* parameters = container->streams[0]->codecpar;
  if (whole) {
    packet = wholeFile(source.bytes);
  } else {
    do {
      av_packet_unref(packet.get());
      if (av_read_frame(container.get(), packet.get()) < 0) return {};
    } while (packet->stream_index != 0);
  }
  Codec codec = openCodec(parameters->codec_id, parameters, source);
  return codec && packet ? decodePacket(codec.get(), packet.get()) : Frame{};
}

/// By the extension, for formats without a mark (.tga).
Frame decodeByExtension(Source& source, const std::string& name) {
  const AVOutputFormat* pictures = av_guess_format("image2", nullptr, nullptr);
  if (!pictures) return {};
  AVCodecID id = av_guess_codec(pictures, nullptr, name.c_str(), nullptr, AVMEDIA_TYPE_VIDEO);
  if (id != AV_CODEC_ID_TARGA) return {};
  Codec codec = openCodec(id, nullptr, source);
  Packet packet = wholeFile(source.bytes);
  return codec && packet ? decodePacket(codec.get(), packet.get()) : Frame{};
}

/// A colour or grey picture with 8 bits a component in bytes of their own.
bool isByteColour(const AVPixFmtDescriptor& d) {
  constexpr uint64_t others =
      AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_FLOAT;
  if (d.flags & others) return false;
  for (int i = 0; i < d.nb_components; i++)
    if (d.comp[i].depth != 8 || d.comp[i].shift != 0) return false;
  return (d.flags & AV_PIX_FMT_FLAG_RGB) || d.nb_components <= 2;
}

/// Red, green, blue, alpha components of the format; grey serves as all three, -1 = opaque.
void componentsOf(const AVPixFmtDescriptor& d, int component[4]) {
  bool grey = d.nb_components <= 2;
  bool alpha = d.flags & AV_PIX_FMT_FLAG_ALPHA;
  for (int i = 0; i < 3; i++) component[i] = grey ? 0 : i;
  component[3] = alpha ? d.nb_components - 1 : -1;
}

constexpr int bgraPlace[4] = {2, 1, 0, 3};  // of red, green, blue, alpha

void copyByteRow(const AVFrame& frame, const AVPixFmtDescriptor& d, int row, uint8_t* out) {
  int component[4];
  componentsOf(d, component);
  for (int i = 0; i < 4; i++) {
    uint8_t* target = out + bgraPlace[i];
    if (component[i] < 0) {
      for (int x = 0; x < frame.width; x++) target[4 * x] = 255;
      continue;
    }
    const AVComponentDescriptor& c = d.comp[component[i]];
    const uint8_t* source = frame.data[c.plane] + int64_t{row} * frame.linesize[c.plane] + c.offset;
    for (int x = 0; x < frame.width; x++) target[4 * x] = source[x * c.step];
  }
}

/// The palette's entries are BGRA already.
void copyPaletteRow(const AVFrame& frame, int row, uint8_t* out) {
  const uint8_t* source = frame.data[0] + int64_t{row} * frame.linesize[0];
  for (int x = 0; x < frame.width; x++) memcpy(out + 4 * x, frame.data[1] + 4 * source[x], 4);
}

/// Bit maps and deeper components, rounded to 8 bits.
void copyAnyRow(const AVFrame& frame, const AVPixFmtDescriptor& d, int row, std::vector<uint16_t>& line, uint8_t* out) {
  const uint8_t* planes[4] = {frame.data[0], frame.data[1], frame.data[2], frame.data[3]};
  int component[4];
  componentsOf(d, component);
  for (int i = 0; i < 4; i++) {
    uint8_t* target = out + bgraPlace[i];
    if (component[i] < 0) {
      for (int x = 0; x < frame.width; x++) target[4 * x] = 255;
      continue;
    }
    av_read_image_line2(line.data(), planes, frame.linesize, &d, 0, row, component[i], frame.width, 0, sizeof line[0]);
    int top = (1 << d.comp[component[i]].depth) - 1;
    for (int x = 0; x < frame.width; x++) target[4 * x] = static_cast<uint8_t>((line[x] * 255 + top / 2) / top);
  }
}

Frame toBgra(const AVFrame& frame) {
  Frame converted(av_frame_alloc());
  if (!converted) return {};
  converted->format = AV_PIX_FMT_BGRA;
  converted->width = frame.width;
  converted->height = frame.height;
  if (av_frame_get_buffer(converted.get(), 0) < 0) return {};
  std::unique_ptr<SwsContext, FreeScaler> scaler(
      sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), frame.width, frame.height,
                     AV_PIX_FMT_BGRA, SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
  if (!scaler || sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, converted->data,
                           converted->linesize) != frame.height)
    return {};
  return converted;
}

bool copyBottomUp(const AVFrame& decoded, Picture* picture) {
  const AVPixFmtDescriptor* d = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(decoded.format));
  if (!d) return false;
  Frame converted;
  const AVFrame* frame = &decoded;
  bool colour = (d->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) || d->nb_components <= 2;
  if (!colour || (d->flags & AV_PIX_FMT_FLAG_FLOAT)) {
    converted = toBgra(decoded);
    if (!converted) return false;
    frame = converted.get();
    d = av_pix_fmt_desc_get(AV_PIX_FMT_BGRA);
  }
  bool bytes = isByteColour(*d);
  std::vector<uint16_t> line(frame->width);
  size_t rowBytes = size_t{4} * frame->width;
  picture->width = frame->width;
  picture->height = frame->height;
  picture->pixels.resize(rowBytes * frame->height);
  for (int row = 0; row < frame->height; row++) {
    uint8_t* out = picture->pixels.data() + (frame->height - 1 - row) * rowBytes;
    if (d->flags & AV_PIX_FMT_FLAG_PAL) {
      copyPaletteRow(*frame, row, out);
    } else if (bytes) {
      copyByteRow(*frame, *d, row, out);
    } else {
      copyAnyRow(*frame, *d, row, line, out);
    }
  }
  return true;
}

}  // namespace

bool decodePicture(std::string_view path, Picture* picture, int maxSide) {
  av_log_set_level(AV_LOG_QUIET);
  try {
    std::string bytes;
    if (!readFile(path, bytes, maxFileBytes) || bytes.empty()) return false;
    Source source{bytes};
    source.pixelLimit =
        std::min(maxPixels, std::max(freePixels, static_cast<int64_t>(bytes.size()) * maxPixelsPerByte));
    source.maxSide = maxSide;
    std::string name(fileName(path));
    Frame frame = decodeMarked(source);
    if (!frame) frame = decodeByExtension(source, name);
    if (!frame || !acceptable(source, frame->width, frame->height)) return false;
    return !picture || copyBottomUp(*frame, picture);
  } catch (const std::exception&) {  // out of memory
    return false;
  }
}

}  // namespace platform
