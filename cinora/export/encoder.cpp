#include "cinora/export/encoder.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <thread>

#include "cinora/picture/frame_converter.h"
#include "cinora/support/failure.h"

namespace cinora {
namespace {

/// The user's words for codecs and the encoder that does each best, with what it is asked for by default.
struct CodecRow {
  const char* word;
  const char* encoder;
  int quality;          // -1: has none, or its own default is good
  const char* options;  // key=value, separated by colons
};
constexpr CodecRow codecTable[] = {
    {"h264", "libx264", 20, ""},
    {"avc", "libx264", 20, ""},
    {"h265", "libx265", 24, "x265-params=log-level=error"},
    {"hevc", "libx265", 24, "x265-params=log-level=error"},
    {"vp8", "libvpx", 10, "cpu-used=4"},
    {"vp9", "libvpx-vp9", 28, "cpu-used=4:row-mt=1"},
    {"av1", "libsvtav1", 30, "preset=8"},
    {"libaom-av1", "libaom-av1", 28, "cpu-used=6:row-mt=1"},
    {"mpeg4", "mpeg4", 3, ""},
    {"mpeg2", "mpeg2video", 3, ""},
    {"mjpeg", "mjpeg", 3, ""},
    {"prores", "prores_ks", -1, ""},
    {"ffv1", "ffv1", -1, "level=3:slicecrc=1"},
};

const CodecRow* rowOf(std::string_view name, const char* CodecRow::*column) {
  auto found = std::find_if(std::begin(codecTable), std::end(codecTable), [&](auto& r) { return name == r.*column; });
  return found == std::end(codecTable) ? nullptr : found;
}

/// In order of liking. Films want what every player shows; lossless codecs want every chroma sample; pictures RGB.
constexpr AVPixelFormat filmFormats[] = {
    AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUV422P,     AV_PIX_FMT_YUVJ422P,    AV_PIX_FMT_YUV422P10LE,
    AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUVJ444P, AV_PIX_FMT_YUV444P10LE, AV_PIX_FMT_YUV420P10LE, AV_PIX_FMT_BGR24,
    AV_PIX_FMT_RGB24,   AV_PIX_FMT_BGR0,     AV_PIX_FMT_GBRP,        AV_PIX_FMT_BGRA};
constexpr AVPixelFormat fullChromaFormats[] = {AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUVJ444P, AV_PIX_FMT_YUV444P10LE,
                                               AV_PIX_FMT_BGR24,   AV_PIX_FMT_RGB24,    AV_PIX_FMT_BGR0,
                                               AV_PIX_FMT_GBRP,    AV_PIX_FMT_BGRA};
constexpr AVPixelFormat pictureFormats[] = {AV_PIX_FMT_BGR24,    AV_PIX_FMT_RGB24,   AV_PIX_FMT_YUVJ444P,
                                            AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUV420P,
                                            AV_PIX_FMT_BGRA};
constexpr AVPixelFormat alphaFormats[] = {AV_PIX_FMT_YUVA444P, AV_PIX_FMT_YUVA420P, AV_PIX_FMT_YUVA444P10LE,
                                          AV_PIX_FMT_YUVA422P, AV_PIX_FMT_BGRA,     AV_PIX_FMT_RGBA,
                                          AV_PIX_FMT_ARGB,     AV_PIX_FMT_ABGR,     AV_PIX_FMT_GBRAP};
constexpr AVPixelFormat alphaPictureFormats[] = {AV_PIX_FMT_BGRA, AV_PIX_FMT_RGBA,     AV_PIX_FMT_ARGB,
                                                 AV_PIX_FMT_ABGR, AV_PIX_FMT_YUVA444P, AV_PIX_FMT_YUVA420P};

bool takes(const AVCodec* encoder, AVPixelFormat format) {
  const AVPixelFormat* list = encoder->pix_fmts;
  for (; list && *list != AV_PIX_FMT_NONE; list++)
    if (*list == format) return FrameConverter::supports(format);
  return false;
}

template <size_t n>
AVPixelFormat firstTaken(const AVCodec* encoder, const AVPixelFormat (&formats)[n]) {
  auto found = std::find_if(formats, formats + n, [&](AVPixelFormat format) { return takes(encoder, format); });
  return found == formats + n ? AV_PIX_FMT_NONE : *found;
}

bool divides(AVPixelFormat format, int width, int height) {
  const AVPixFmtDescriptor* about = av_pix_fmt_desc_get(format);
  return width % (1 << about->log2_chroma_w) == 0 && height % (1 << about->log2_chroma_h) == 0;
}

bool lossless(const AVCodec* encoder) {
  const AVCodecDescriptor* about = avcodec_descriptor_get(encoder->id);
  return about && (about->props & AV_CODEC_PROP_LOSSLESS) && !(about->props & AV_CODEC_PROP_LOSSY);
}

bool hasOption(AVCodecContext* codec, const char* name) {
  return codec->priv_data && av_opt_find(codec->priv_data, name, nullptr, 0, 0);
}

void setOption(AVCodecContext* codec, const char* name, const std::string& value, const char* what) {
  int result = av_opt_set(codec->priv_data, name, value.c_str(), 0);
  if (result < 0)
    throw WrongUsage(std::string(what) + " " + value + ": " + codec->codec->name + " says: " + ffmpegError(result));
}

void setDefaults(AVCodecContext* codec, const char* options) {
  AVDictionary* dictionary = nullptr;
  av_dict_parse_string(&dictionary, options, "=", ":", 0);
  av_opt_set_dict2(codec, &dictionary, AV_OPT_SEARCH_CHILDREN);
  av_dict_free(&dictionary);
}

/// crf where the encoder has it, its quantiser scale otherwise.
void setQuality(AVCodecContext* codec, const EncoderRequest& request, const CodecRow* row) {
  if (lossless(codec->codec)) {
    if (request.quality) throw WrongUsage(std::string("--quality: ") + codec->codec->name + " is lossless");
    return;
  }
  int quality = request.quality ? *request.quality : row ? row->quality : -1;
  if (quality < 0) return;
  codec->bit_rate = 0;
  if (hasOption(codec, "crf")) {
    setOption(codec, "crf", std::to_string(quality), "--quality");
  } else if (hasOption(codec, "qp")) {
    setOption(codec, "qp", std::to_string(quality), "--quality");
  } else {
    codec->flags |= AV_CODEC_FLAG_QSCALE;
    codec->global_quality = std::clamp(quality, 1, 1000) * FF_QP2LAMBDA;
  }
}

/// Of x264 and x265, which complain of others past all that could be caught.
constexpr const char* namedPresets[] = {"ultrafast", "superfast", "veryfast", "faster",   "fast",
                                        "medium",    "slow",      "slower",   "veryslow", "placebo"};

void checkNamedPreset(std::string_view encoder, const std::string& preset) {
  if ((encoder != "libx264" && encoder != "libx265") || (preset.size() == 1 && std::isdigit(preset[0]))) return;
  if (std::find(std::begin(namedPresets), std::end(namedPresets), preset) != std::end(namedPresets)) return;
  std::string all;
  for (const char* name : namedPresets) all += std::string(" ") + name;
  throw WrongUsage("--preset " + preset + ": " + std::string(encoder) + " has" + all);
}

void setPreset(AVCodecContext* codec, const std::string& preset) {
  if (preset.empty()) return;
  checkNamedPreset(codec->codec->name, preset);
  bool number = std::all_of(preset.begin(), preset.end(), [](unsigned char c) { return std::isdigit(c); });
  for (const char* name : {"preset", "cpu-used", "speed", "deadline"}) {
    if (hasOption(codec, name) &&
        (number || std::string_view(name) == "preset" || std::string_view(name) == "deadline")) {
      setOption(codec, name, preset, "--preset");
      return;
    }
  }
  throw WrongUsage(std::string("--preset: ") + codec->codec->name + " has no presets");
}

}  // namespace

const AVCodec* findEncoder(const EncoderRequest& request) {
  const CodecRow* row = rowOf(request.codec, &CodecRow::word);
  const AVCodec* encoder = avcodec_find_encoder_by_name(row ? row->encoder : request.codec.c_str());
  if (!encoder)
    if (const AVCodecDescriptor* about = avcodec_descriptor_get_by_name(request.codec.c_str()))
      encoder = avcodec_find_encoder(about->id);
  if (!encoder || encoder->type != AVMEDIA_TYPE_VIDEO)
    throw WrongUsage("there is no encoder \"" + request.codec + "\" for pictures");
  if (request.alpha && choosePixelFormat(encoder, request) == AV_PIX_FMT_NONE)
    throw WrongUsage(std::string("--alpha: ") + encoder->name + " has no alpha; vp9, ffv1 and prores have");
  return encoder;
}

AVPixelFormat choosePixelFormat(const AVCodec* encoder, const EncoderRequest& request) {
  if (request.alpha)
    return request.picture ? firstTaken(encoder, alphaPictureFormats) : firstTaken(encoder, alphaFormats);
  AVPixelFormat format = AV_PIX_FMT_NONE;
  if (request.picture) format = firstTaken(encoder, pictureFormats);
  if (!request.picture && lossless(encoder)) format = firstTaken(encoder, fullChromaFormats);
  if (format == AV_PIX_FMT_NONE) format = firstTaken(encoder, filmFormats);
  if (format == AV_PIX_FMT_NONE || divides(format, request.width, request.height)) return format;
  AVPixelFormat full = firstTaken(encoder, fullChromaFormats);
  return full == AV_PIX_FMT_NONE ? format : full;
}

AvCodec openEncoder(const AVCodec* encoder, AVPixelFormat format, const EncoderRequest& request, int extraFlags,
                    int maxBFrames) {
  AvCodec codec(avcodec_alloc_context3(encoder));
  if (!codec) throw Failure("out of memory");
  const AVPixFmtDescriptor* about = av_pix_fmt_desc_get(format);
  bool rgb = about->flags & AV_PIX_FMT_FLAG_RGB;
  bool full = rgb || std::string_view(about->name).starts_with("yuvj");
  codec->pix_fmt = format;
  codec->width = request.width;
  codec->height = request.height;
  codec->time_base = {request.scale, request.rate};
  codec->framerate = {request.rate, request.scale};
  codec->sample_aspect_ratio = {1, 1};
  codec->colorspace = rgb ? AVCOL_SPC_RGB : AVCOL_SPC_SMPTE170M;
  codec->color_range = full ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
  codec->color_primaries = AVCOL_PRI_SMPTE170M;
  codec->color_trc = AVCOL_TRC_SMPTE170M;
  codec->chroma_sample_location = AVCHROMA_LOC_CENTER;  // averaged 2x2
  int processors = static_cast<int>(std::thread::hardware_concurrency());
  codec->thread_count = request.threads > 0 ? request.threads : std::max(processors, 1);
  codec->flags |= extraFlags;
  if (maxBFrames >= 0) codec->max_b_frames = maxBFrames;

  const CodecRow* row = rowOf(encoder->name, &CodecRow::encoder);
  if (row) setDefaults(codec.get(), row->options);
  setQuality(codec.get(), request, row);
  setPreset(codec.get(), request.preset);
  int result = avcodec_open2(codec.get(), encoder, nullptr);
  if (result < 0) throw Failure(std::string(encoder->name) + " cannot be opened: " + ffmpegError(result));
  return codec;
}

}  // namespace cinora
