#include "cinora/picture/frame_converter.h"

#include <algorithm>
#include <type_traits>

#include "cinora/picture/planes.h"
#include "cinora/support/failure.h"

extern "C" {
#include <libavutil/imgutils.h>
}

namespace cinora {
namespace {

using zenlay::FramePixel;
using zenlay::ObjectPixel;

constexpr int strideAlignment = 64;  // bytes; what FFmpeg's encoders like

enum class Layout { planes, planes16, bgr, bgra, frameRows };

struct DirectFormat {
  AVPixelFormat format;
  Layout layout;
  Chroma chroma;
};

/// Written straight from the rows.
constexpr DirectFormat directFormats[] = {
    {AV_PIX_FMT_YUV420P, Layout::planes, Chroma::half},      {AV_PIX_FMT_YUVJ420P, Layout::planes, Chroma::half},
    {AV_PIX_FMT_YUVA420P, Layout::planes, Chroma::half},     {AV_PIX_FMT_YUV422P, Layout::planes, Chroma::halfWide},
    {AV_PIX_FMT_YUVJ422P, Layout::planes, Chroma::halfWide}, {AV_PIX_FMT_YUVA422P, Layout::planes, Chroma::halfWide},
    {AV_PIX_FMT_YUV444P, Layout::planes, Chroma::full},      {AV_PIX_FMT_YUVJ444P, Layout::planes, Chroma::full},
    {AV_PIX_FMT_YUVA444P, Layout::planes, Chroma::full},     {AV_PIX_FMT_GRAY8, Layout::planes, Chroma::none},
    {AV_PIX_FMT_YUV444P16, Layout::planes16, Chroma::full},  {AV_PIX_FMT_YUVA444P16, Layout::planes16, Chroma::full},
    {AV_PIX_FMT_BGR24, Layout::bgr, Chroma::none},           {AV_PIX_FMT_BGRA, Layout::bgra, Chroma::none},
    {AV_PIX_FMT_RGB48LE, Layout::frameRows, Chroma::none},  // the frame's own six bytes a pixel, for .raw
};

const DirectFormat* directFormat(AVPixelFormat format) {
  for (const DirectFormat& row : directFormats)
    if (row.format == format) return &row;
  return nullptr;
}

/// The direct format that loses nothing on the way to `format`; none for formats that FFmpeg cannot make.
AVPixelFormat stageOf(AVPixelFormat format) {
  if (directFormat(format)) return format;
  const AVPixFmtDescriptor* about = av_pix_fmt_desc_get(format);
  constexpr uint64_t strange = AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BAYER;
  if (!about || (about->flags & strange) || !sws_isSupportedOutput(format)) return AV_PIX_FMT_NONE;
  bool alpha = about->flags & AV_PIX_FMT_FLAG_ALPHA;
  if (about->flags & AV_PIX_FMT_FLAG_RGB) return alpha ? AV_PIX_FMT_BGRA : AV_PIX_FMT_BGR24;
  return alpha ? AV_PIX_FMT_YUVA444P16 : AV_PIX_FMT_YUV444P16;
}

PlanesOut planesOf(const AVFrame& frame, Chroma chroma, bool fullRange) {
  PlanesOut planes{.chroma = chroma, .fullRange = fullRange};
  for (int i = 0; i < 4; i++) {
    planes.data[i] = frame.data[i];
    planes.stride[i] = frame.linesize[i];
  }
  return planes;
}

void writePlanes(const FramePixel* rows, int rowPixels, const PlanesOut& out, int width, int first, int last) {
  frameToPlanes(rows, rowPixels, out, width, first, last);
}
void writePlanes(const ObjectPixel* rows, int rowPixels, const PlanesOut& out, int width, int first, int last) {
  frameWithAlphaToPlanes(rows, rowPixels, out, width, first, last);
}
void writePlanes16(const FramePixel* rows, int rowPixels, const PlanesOut& out, int width, int first, int last) {
  frameToPlanes16(rows, rowPixels, out, width, first, last);
}
void writePlanes16(const ObjectPixel* rows, int rowPixels, const PlanesOut& out, int width, int first, int last) {
  frameWithAlphaToPlanes16(rows, rowPixels, out, width, first, last);
}

void writePacked(const FramePixel* row, uint8_t* out, Layout layout, int width) {
  if (layout == Layout::bgr) {
    frameToBgrRow(reinterpret_cast<zenlay::Bgr*>(out), row, width);
    return;
  }
  zenlay::Bgr* bgr = reinterpret_cast<zenlay::Bgr*>(out);  // from the end, each pixel a byte longer than its source
  frameToBgrRow(bgr, row, width);
  for (int x = width - 1; x >= 0; x--) {
    zenlay::Bgr colour = bgr[x];
    reinterpret_cast<zenlay::Bgra*>(out)[x] = {colour.b, colour.g, colour.r, 255};
  }
}
void writePacked(const ObjectPixel* row, uint8_t* out, Layout, int width) {
  objectToBgraRow(reinterpret_cast<zenlay::Bgra*>(out), row, width);
}

}  // namespace

bool FrameConverter::supports(AVPixelFormat format) { return stageOf(format) != AV_PIX_FMT_NONE; }

FrameConverter::FrameConverter(WorkerPool& pool, AVPixelFormat format, int width, int height, bool fullRange)
    : pool_(pool), format_(format), stage_(stageOf(format)), width_(width), height_(height), fullRange_(fullRange) {
  if (stage_ == AV_PIX_FMT_NONE) throw Failure("no way to make pictures of the format the encoder wants");
  if (stage_ == format_) return;
  scaler_.reset(sws_getContext(width, height, stage_, width, height, format_,
                               SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
  if (!scaler_) throw Failure("no way to make pictures of the format the encoder wants");
  int range = fullRange;
  const int* bt601 = sws_getCoefficients(SWS_CS_ITU601);
  sws_setColorspaceDetails(scaler_.get(), bt601, range, bt601, range, 0, 1 << 16, 1 << 16);
}

AvFrame FrameConverter::newFrame(AVPixelFormat format, AvBufferPool& buffers) {
  AvFrame frame(av_frame_alloc());
  int bytes = av_image_get_buffer_size(format, width_, height_, strideAlignment);
  if (!buffers && bytes > 0) buffers.reset(av_buffer_pool_init(bytes + strideAlignment, nullptr));
  if (frame && buffers) frame->buf[0] = av_buffer_pool_get(buffers.get());
  if (!frame || !frame->buf[0]) throw Failure("out of memory");
  frame->format = format;
  frame->width = width_;
  frame->height = height_;
  av_image_fill_arrays(frame->data, frame->linesize, frame->buf[0]->data, format, width_, height_, strideAlignment);
  bool rgb = av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB;
  frame->colorspace = rgb ? AVCOL_SPC_RGB : AVCOL_SPC_SMPTE170M;
  frame->color_range = rgb || fullRange_ ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
  frame->color_primaries = AVCOL_PRI_SMPTE170M;
  frame->color_trc = AVCOL_TRC_SMPTE170M;
  return frame;
}

template <typename Pixel>
AvFrame FrameConverter::convertRows(const Pixel* rows, int rowPixels) {
  AvFrame stage = newFrame(stage_, stageBuffers_);
  const DirectFormat& direct = *directFormat(stage_);
  PlanesOut planes = planesOf(*stage, direct.chroma, fullRange_);
  pool_.forRows(height_, [&](int first, int last) {
    if (direct.layout == Layout::planes) {
      writePlanes(rows, rowPixels, planes, width_, first, last);
    } else if (direct.layout == Layout::planes16) {
      writePlanes16(rows, rowPixels, planes, width_, first, last);
    } else {
      for (int y = first; y < last; y++) {
        uint8_t* out = stage->data[0] + static_cast<ptrdiff_t>(y) * stage->linesize[0];
        const Pixel* row = rows + static_cast<size_t>(y) * rowPixels;
        if (direct.layout != Layout::frameRows)
          writePacked(row, out, direct.layout, width_);
        else if constexpr (std::is_same_v<Pixel, FramePixel>)
          std::copy_n(row, width_, reinterpret_cast<FramePixel*>(out));
      }
    }
  });
  if (stage_ == format_) return stage;
  AvFrame frame = newFrame(format_, buffers_);
  sws_scale(scaler_.get(), stage->data, stage->linesize, 0, height_, frame->data, frame->linesize);
  return frame;
}

AvFrame FrameConverter::convert(const FramePixel* rows, int rowPixels) { return convertRows(rows, rowPixels); }
AvFrame FrameConverter::convert(const ObjectPixel* rows, int rowPixels) { return convertRows(rows, rowPixels); }

}  // namespace cinora
