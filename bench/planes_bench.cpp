// 1920 x 1080 pictures between 8-bit planes or packed rows and frame rows, against libswscale's nearest equivalent: the
// same 8-bit side, and 16-bit 4:4:4 planes (yuv444p16, the cheapest 16-bit format it has) for the frame. Both on two
// threads. libswscale replicates chroma (SWS_POINT) on the way in; on the way out it is measured both averaging
// (SWS_AREA, as frameToPlanes does) and dropping samples (SWS_POINT).
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "bench/workers.h"
#include "cinora/picture/planes.h"
#include "zenlay/effects/effect_services.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

namespace {

using zenlay::FramePixel;
using zenlay::ObjectPixel;

constexpr int width = 1920, height = 1080;

struct FrameFree {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
using Frame = std::shared_ptr<AVFrame>;

Frame newFrame(AVPixelFormat format) {
  Frame frame(av_frame_alloc(), FrameFree());
  frame->format = format;
  frame->width = width;
  frame->height = height;
  av_frame_get_buffer(frame.get(), 64);
  for (int i = 0; i < 4 && frame->buf[i]; ++i) {
    for (size_t k = 0; k < frame->buf[i]->size; ++k) frame->buf[i]->data[k] = static_cast<uint8_t>(k * 37 + k / 1920);
  }
  return frame;
}

std::function<void()> libraryConversion(AVPixelFormat from, AVPixelFormat to, int flags) {
  std::shared_ptr<SwsContext> context(sws_alloc_context(), sws_freeContext);
  const auto set = [&context](const char* key, int value) { av_opt_set_int(context.get(), key, value, 0); };
  set("srcw", width), set("srch", height), set("src_format", from);
  set("dstw", width), set("dsth", height), set("dst_format", to);
  set("sws_flags", flags), set("threads", bench::workerCount);
  if (sws_init_context(context.get(), nullptr, nullptr) < 0) std::abort();
  Frame source = newFrame(from), destination = newFrame(to);
  return [=] {
    if (sws_scale_frame(context.get(), destination.get(), source.get()) < 0) std::abort();
  };
}

/// Ranges of row pairs spread over the workers.
template <class Work>
void overRowPairs(Work work) {
  zenlay::overRows(bench::workerHost(), height / 2, [&](int first, int last) { work(first * 2, last * 2); });
  benchmark::ClobberMemory();
}

template <class Planes>
Planes planesOf(const Frame& frame, cinora::Chroma chroma) {
  Planes planes{{}, {}, chroma, false};
  for (int i = 0; i < 4; ++i) {
    planes.data[i] = frame->data[i];
    planes.stride[i] = frame->linesize[i];
  }
  return planes;
}

constexpr double bar = 1.5;

void addPlanes(const char* name, AVPixelFormat format, cinora::Chroma chroma) {
  const auto rows = std::make_shared<std::vector<FramePixel>>(size_t{width} * height, FramePixel{2048, 100, -100});
  const Frame frame = newFrame(format);
  bench::addRatio(
      std::string(name) + "_to_frame/point", bar,
      [=] {
        const auto planes = planesOf<cinora::PlanesIn>(frame, chroma);
        overRowPairs(
            [&](int first, int last) { cinora::planesToFrame(planes, rows->data(), width, width, first, last); });
      },
      libraryConversion(format, AV_PIX_FMT_YUV444P16, SWS_POINT));
  const auto out = [=] {
    const auto planes = planesOf<cinora::PlanesOut>(frame, chroma);
    overRowPairs([&](int first, int last) { cinora::frameToPlanes(rows->data(), width, planes, width, first, last); });
  };
  bench::addRatio(std::string("frame_to_") + name + "/point", bar, out,
                  libraryConversion(AV_PIX_FMT_YUV444P16, format, SWS_POINT));
  if (chroma == cinora::Chroma::full) return;
  bench::addRatio(std::string("frame_to_") + name + "/area", bar, out,
                  libraryConversion(AV_PIX_FMT_YUV444P16, format, SWS_AREA));
}

void addPacked() {
  const auto rows = std::make_shared<std::vector<ObjectPixel>>(size_t{width} * height, ObjectPixel{2048, 9, -9, 99});
  const Frame frame = newFrame(AV_PIX_FMT_BGRA);
  const auto start = [frame](int y) {
    return reinterpret_cast<zenlay::Bgra*>(frame->data[0] + ptrdiff_t{y} * frame->linesize[0]);
  };
  bench::addRatio(
      "bgra_to_object", bar,
      [=] {
        overRowPairs([&](int first, int last) {
          for (int y = first; y < last; ++y) cinora::bgraToObjectRow(&(*rows)[size_t{width} * y], start(y), width);
        });
      },
      libraryConversion(AV_PIX_FMT_BGRA, AV_PIX_FMT_YUVA444P16, SWS_POINT));
  bench::addRatio(
      "object_to_bgra", bar,
      [=] {
        overRowPairs([&](int first, int last) {
          for (int y = first; y < last; ++y) cinora::objectToBgraRow(start(y), &(*rows)[size_t{width} * y], width);
        });
      },
      libraryConversion(AV_PIX_FMT_YUVA444P16, AV_PIX_FMT_BGRA, SWS_POINT));
}

}  // namespace

int main(int argc, char** argv) {
  addPlanes("yuv420p", AV_PIX_FMT_YUV420P, cinora::Chroma::half);
  addPlanes("yuv422p", AV_PIX_FMT_YUV422P, cinora::Chroma::halfWide);
  addPlanes("yuv444p", AV_PIX_FMT_YUV444P, cinora::Chroma::full);
  addPacked();
  return bench::runRatios(argc, argv);
}
