#include "cinora/media/media_reader.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "cinora/media/picture_decoder.h"
#include "cinora/media/picture_turn.h"
#include "cinora/picture/planes.h"

namespace cinora {
namespace {

using zenlay::Bgr;
using zenlay::Bgra;
using zenlay::FramePixel;
using zenlay::ObjectPixel;

/// What a decoded picture is read as.
enum class Layout { planes8, planes16, bgr, bgra };

struct Source {
  AVPixelFormat format = AV_PIX_FMT_NONE;  // the decoder's own, or what it is brought to first
  Layout layout = Layout::planes8;
  Chroma chroma = Chroma::full;
};

struct DirectFormat {
  AVPixelFormat format;
  Chroma chroma;
};
constexpr DirectFormat directFormats[] = {
    {AV_PIX_FMT_YUV420P, Chroma::half},      {AV_PIX_FMT_YUVJ420P, Chroma::half},
    {AV_PIX_FMT_YUVA420P, Chroma::half},     {AV_PIX_FMT_YUV422P, Chroma::halfWide},
    {AV_PIX_FMT_YUVJ422P, Chroma::halfWide}, {AV_PIX_FMT_YUVA422P, Chroma::halfWide},
    {AV_PIX_FMT_YUV444P, Chroma::full},      {AV_PIX_FMT_YUVJ444P, Chroma::full},
    {AV_PIX_FMT_YUVA444P, Chroma::full},     {AV_PIX_FMT_GRAY8, Chroma::none},
};

/// Packed and semi-planar 8-bit formats become the planes they hold, deeper ones 16-bit planes, colour BGR or BGRA.
Source sourceFor(AVPixelFormat format) {
  for (const DirectFormat& row : directFormats)
    if (row.format == format) return {format, Layout::planes8, row.chroma};
  const AVPixFmtDescriptor* d = av_pix_fmt_desc_get(format);
  bool alpha = hasAlphaChannel(format);
  bool colour =
      !d || d->nb_components < 3 || (d->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_FLOAT));
  if (d && d->nb_components == 1 && !(d->flags & (AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_FLOAT)) && d->comp[0].depth > 8)
    colour = false;  // deep grey
  if (colour) return {alpha ? AV_PIX_FMT_BGRA : AV_PIX_FMT_BGR24, alpha ? Layout::bgra : Layout::bgr, Chroma::full};
  if (d->comp[0].depth > 8)
    return {alpha ? AV_PIX_FMT_YUVA444P16 : AV_PIX_FMT_YUV444P16, Layout::planes16, Chroma::full};
  if (!alpha && d->log2_chroma_w == 1 && d->log2_chroma_h == 1)
    return {AV_PIX_FMT_YUV420P, Layout::planes8, Chroma::half};
  if (!alpha && d->log2_chroma_w == 1 && d->log2_chroma_h == 0)
    return {AV_PIX_FMT_YUV422P, Layout::planes8, Chroma::halfWide};
  return {alpha ? AV_PIX_FMT_YUVA444P : AV_PIX_FMT_YUV444P, Layout::planes8, Chroma::full};
}

/// The 8-bit format of the same planes without narrower chroma.
Source fullChroma(const Source& source) {
  return {hasAlphaChannel(source.format) ? AV_PIX_FMT_YUVA444P : AV_PIX_FMT_YUV444P, Layout::planes8, Chroma::full};
}

/// Makes `frame` one of that format and size, keeping it when it is.
bool reserveFrame(AvFrame& frame, AVPixelFormat format, int width, int height) {
  if (frame && frame->format == format) return true;  // a file has one size
  frame.reset(av_frame_alloc());
  if (!frame) return false;
  frame->format = format;
  frame->width = width;
  frame->height = height;
  if (av_frame_get_buffer(frame.get(), 0) >= 0) return true;
  frame.reset();
  return false;
}

bool isFullRange(const AVFrame& frame) {
  auto format = static_cast<AVPixelFormat>(frame.format);
  return frame.color_range == AVCOL_RANGE_JPEG || format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_YUVJ422P ||
         format == AV_PIX_FMT_YUVJ444P || format == AV_PIX_FMT_YUVJ440P || format == AV_PIX_FMT_YUVJ411P;
}

/// Y'CbCr of ITU-R BT.2020 (Kr 0.2627, Kb 0.0593) to BT.601 (Kr 0.299, Kb 0.114), by way of R'G'B'.
template <typename Pixel>
void bt2020ToBt601Row(Pixel* row, int n) {
  constexpr double kr = 0.2627, kb = 0.0593, kg = 1 - kr - kb;
  constexpr double tr = 0.299, tb = 0.114, tg = 1 - tr - tb;
  for (int i = 0; i < n; i++) {
    double r = row[i].y + 2 * (1 - kr) * row[i].cr;
    double b = row[i].y + 2 * (1 - kb) * row[i].cb;
    double g = (row[i].y - kr * r - kb * b) / kg;
    double y = tr * r + tg * g + tb * b;
    row[i].y = static_cast<int16_t>(std::lround(y));
    row[i].cb = static_cast<int16_t>(std::lround((b - y) / (2 * (1 - tb))));
    row[i].cr = static_cast<int16_t>(std::lround((r - y) / (2 * (1 - tr))));
  }
}

template <typename Pixel>
void toBt601Row(Pixel* row, int n, AVColorSpace from) {
  if (from == AVCOL_SPC_BT709) bt709ToBt601Row(row, n);
  if (from == AVCOL_SPC_BT2020_NCL || from == AVCOL_SPC_BT2020_CL) bt2020ToBt601Row(row, n);
}

uint32_t tagOf(const AVCodecParameters& p, const AVCodecTag* const* tables) {
  return p.codec_tag ? p.codec_tag : av_codec_get_tag(tables, p.codec_id);
}

int findStream(AVFormatContext* container, AVMediaType type) {
  int best = av_find_best_stream(container, type, -1, -1, nullptr, 0);
  // The cover of a sound file is no film.
  if (best >= 0 && (container->streams[best]->disposition & AV_DISPOSITION_ATTACHED_PIC)) return -1;
  return best;
}

void describeSound(const AVFormatContext& container, const AVStream& stream, MediaInfo& info) {
  const AVCodecParameters& p = *stream.codecpar;
  if (p.sample_rate <= 0 || p.ch_layout.nb_channels <= 0) return;
  const AVCodecTag* const tables[] = {avformat_get_riff_audio_tags(), nullptr};
  info.hasSound = true;
  info.soundRate = p.sample_rate;
  info.soundChannels = p.ch_layout.nb_channels;
  info.soundTag = tagOf(p, tables);
  AVRational perSample = {1, p.sample_rate};
  if (stream.duration > 0) {
    info.soundSamples = av_rescale_q(stream.duration, stream.time_base, perSample);
  } else if (container.duration > 0) {
    info.soundSamples = av_rescale_q(container.duration, AVRational{1, AV_TIME_BASE}, perSample);
  }
}

/// In pieces that need no memory of their own: rows are converted on several threads, where nothing may fail.
void bgraToFrameRow(FramePixel* row, const Bgra* packed, int width) {
  constexpr int pieceWidth = 256;
  ObjectPixel piece[pieceWidth];
  for (int left = 0; left < width; left += pieceWidth) {
    const int count = std::min(pieceWidth, width - left);
    bgraToObjectRow(piece, packed + left, count);
    for (int x = 0; x < count; x++) row[left + x] = {piece[x].y, piece[x].cb, piece[x].cr};
  }
}

}  // namespace

struct MediaReader::State {
  MediaInfo info;
  PictureDecoder decoder;
  int codedWidth = 0, codedHeight = 0;  // as decoded; `info` has them as shown
  int turns = 0;                        // quarters, clockwise
  AvFrame converted;                    // to `source.format`, when that is not the decoder's own
  AvFrame turned;
  AvScaler scaler;
  // The prepared frame.
  const AVFrame* frame = nullptr;
  Source source;
  PlanesIn planes{};
  AVColorSpace space = AVCOL_SPC_UNSPECIFIED;
  std::vector<uint8_t> bitmap;
  std::vector<FramePixel> frameRows;
  std::vector<ObjectPixel> objectRows;

  bool convert(const AVFrame& decoded);
  bool turn();
  bool prepare(const AVFrame& decoded);
  PlanesIn planesFrom(int row) const;
  void writePackedRow(int row, uint8_t* out) const;
  void writePlaneRows(int row, int count, size_t stride);
};

/// Brings the picture to `source.format` and the file's size. Range and matrix stay as they are.
bool MediaReader::State::convert(const AVFrame& decoded) {
  if (!reserveFrame(converted, source.format, codedWidth, codedHeight)) return false;
  bool sameSize = decoded.width == codedWidth && decoded.height == codedHeight;
  int method = sameSize ? SWS_POINT : SWS_BICUBIC;
  scaler.reset(sws_getCachedContext(scaler.release(), decoded.width, decoded.height,
                                    static_cast<AVPixelFormat>(decoded.format), codedWidth, codedHeight, source.format,
                                    method | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP, nullptr,
                                    nullptr, nullptr));
  if (!scaler) return false;
  bool full = isFullRange(decoded);
  bool fromColour = source.layout == Layout::bgr || source.layout == Layout::bgra;
  const int* coefficients = sws_getCoefficients(SWS_CS_ITU601);
  sws_setColorspaceDetails(scaler.get(), coefficients, full || fromColour, coefficients, full || fromColour, 0, 1 << 16,
                           1 << 16);
  return sws_scale(scaler.get(), decoded.data, decoded.linesize, 0, decoded.height, converted->data,
                   converted->linesize) == codedHeight;
}

bool MediaReader::State::turn() {
  if (!reserveFrame(turned, source.format, info.width, info.height)) return false;
  turnPicture(*turned, *frame, turns);
  frame = turned.get();
  return true;
}

bool MediaReader::State::prepare(const AVFrame& decoded) {
  auto format = static_cast<AVPixelFormat>(decoded.format);
  source = sourceFor(format);
  if (turns % 2 && !canQuarterTurn(source.format)) source = fullChroma(source);
  bool sameSize = decoded.width == codedWidth && decoded.height == codedHeight;
  frame = &decoded;
  if (source.format != format || !sameSize) frame = convert(decoded) ? converted.get() : nullptr;
  if (!frame || (turns != 0 && !turn())) {
    frame = nullptr;
    return false;
  }
  space = decoded.colorspace;
  bool alpha = source.layout != Layout::bgra && hasAlphaChannel(source.format);
  for (int i = 0; i < 4; i++) {
    bool used = i < 3 || alpha;
    planes.data[i] = used ? frame->data[i] : nullptr;
    planes.stride[i] = used ? frame->linesize[i] : 0;
  }
  planes.chroma = source.chroma;
  planes.fullRange = isFullRange(decoded);
  return true;
}

MediaReader::MediaReader() = default;
MediaReader::~MediaReader() = default;

const MediaInfo& MediaReader::info() const {
  static const MediaInfo none;
  return state_ ? state_->info : none;
}

bool MediaReader::open(const std::string& path, bool wantAlpha, std::string& error) {
  av_log_set_level(AV_LOG_QUIET);
  state_.reset();
  std::string url = mediaUrl(path, error);
  if (url.empty()) return false;
  PacketReader reader;
  if (!reader.open(url, error)) return false;
  AVFormatContext* container = reader.container();

  auto state = std::make_unique<State>();
  MediaInfo& info = state->info;
  int sound = findStream(container, AVMEDIA_TYPE_AUDIO);
  if (sound >= 0) describeSound(*container, *container->streams[sound], info);
  int video = findStream(container, AVMEDIA_TYPE_VIDEO);
  if (video >= 0) {
    const AVCodecTag* const tables[] = {avformat_get_riff_video_tags(), nullptr};
    const AVStream& stream = *container->streams[video];
    info.videoTag = tagOf(*stream.codecpar, tables);
    info.width = state->codedWidth = stream.codecpar->width;
    info.height = state->codedHeight = stream.codecpar->height;
    state->turns = quarterTurns(stream);
    if (state->turns % 2) std::swap(info.width, info.height);
    info.hasVideo =
        info.width > 0 && info.height > 0 && reader.select(video) && state->decoder.open(std::move(reader), wantAlpha);
  }
  if (info.hasVideo) {
    const MediaIndex& index = state->decoder.index();
    info.frameCount = index.frameCount;
    info.rate = index.rate;
    info.scale = index.scale;
    info.hasAlpha = state->decoder.hasAlpha();
    info.bits = wantAlpha && info.hasAlpha ? 32 : 24;
  } else if (!info.hasSound) {
    error = "There is no picture and no sound in it that can be read";
    return false;
  }
  state_ = std::move(state);
  return true;
}

bool MediaReader::prepareFrame(int frame) {
  if (!state_ || !state_->info.hasVideo) return false;
  const MediaIndex& index = state_->decoder.index();
  const AVFrame* decoded = state_->decoder.picture(index.picture(std::clamp(frame, 0, index.frameCount - 1)));
  state_->frame = nullptr;
  return decoded && state_->prepare(*decoded);
}

void MediaReader::convertRows(FramePixel* rows, int rowPixels, int firstRow, int lastRow) const {
  const State& s = *state_;
  if (!s.frame) return;
  int width = s.info.width;
  if (s.source.layout == Layout::planes8) planesToFrame(s.planes, rows, rowPixels, width, firstRow, lastRow);
  if (s.source.layout == Layout::planes16) planes16ToFrame(s.planes, rows, rowPixels, width, firstRow, lastRow);
  for (int y = firstRow; y < lastRow; y++) {
    FramePixel* row = rows + int64_t{y} * rowPixels;
    const uint8_t* packed = s.frame->data[0] + int64_t{y} * s.frame->linesize[0];
    if (s.source.layout == Layout::bgr) {
      bgrToFrameRow(row, reinterpret_cast<const Bgr*>(packed), width);
    } else if (s.source.layout == Layout::bgra) {
      bgraToFrameRow(row, reinterpret_cast<const Bgra*>(packed), width);
    } else {
      toBt601Row(row, width, s.space);
    }
  }
}

bool MediaReader::readVideo(int frame, FramePixel* rows, int rowPixels) {
  if (!prepareFrame(frame)) return false;
  convertRows(rows, rowPixels, 0, state_->info.height);
  return true;
}

/// The planes as they are from row `row` (even) on.
PlanesIn MediaReader::State::planesFrom(int row) const {
  PlanesIn from = planes;
  for (int i = 0; i < 4; i++) {
    bool halved = (i == 1 || i == 2) && source.chroma == Chroma::half;
    if (from.data[i]) from.data[i] += int64_t{halved ? row / 2 : row} * from.stride[i];
  }
  return from;
}

/// One row of a picture decoded as BGR or BGRA.
void MediaReader::State::writePackedRow(int row, uint8_t* out) const {
  const uint8_t* packed = frame->data[0] + int64_t{row} * frame->linesize[0];
  int from = source.layout == Layout::bgra ? 4 : 3, to = info.bits / 8;
  for (int x = 0; x < info.width; x++) {
    std::copy_n(packed + x * from, 3, out + x * to);
    if (to == 4) out[4 * x + 3] = from == 4 ? packed[4 * x + 3] : 255;
  }
}

/// `count` rows, at most 2, of a picture decoded as planes, from `row` (even) on.
void MediaReader::State::writePlaneRows(int row, int count, size_t stride) {
  int width = info.width;
  auto target = [&](int i) { return bitmap.data() + (info.height - 1 - row - i) * stride; };
  bool deep = source.layout == Layout::planes16;
  if (info.bits == 32) {
    objectRows.resize(size_t{2} * width);
    (deep ? planes16ToObject : planesToObject)(planesFrom(row), objectRows.data(), width, width, 0, count);
    for (int i = 0; i < count; i++) {
      ObjectPixel* pixels = objectRows.data() + size_t(i) * width;
      toBt601Row(pixels, width, space);
      objectToBgraRow(reinterpret_cast<Bgra*>(target(i)), pixels, width);
    }
  } else {
    frameRows.resize(size_t{2} * width);
    (deep ? planes16ToFrame : planesToFrame)(planesFrom(row), frameRows.data(), width, width, 0, count);
    for (int i = 0; i < count; i++) {
      FramePixel* pixels = frameRows.data() + size_t(i) * width;
      toBt601Row(pixels, width, space);
      frameToBgrRow(reinterpret_cast<Bgr*>(target(i)), pixels, width);
    }
  }
}

const uint8_t* MediaReader::readBgra(int frame) {
  if (!prepareFrame(frame)) return nullptr;
  State& s = *state_;
  int height = s.info.height;
  size_t stride = (size_t(s.info.width) * s.info.bits / 8 + 3) & ~size_t{3};
  s.bitmap.resize(stride * height);
  bool packed = s.source.layout == Layout::bgr || s.source.layout == Layout::bgra;
  for (int row = 0; row < height; row += packed ? 1 : 2) {
    if (packed) {
      s.writePackedRow(row, s.bitmap.data() + (height - 1 - row) * stride);
    } else {
      s.writePlaneRows(row, std::min(2, height - row), stride);
    }
  }
  return s.bitmap.data();
}

}  // namespace cinora
