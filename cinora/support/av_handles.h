// FFmpeg's objects, freed by their owners.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/bsf.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

#include <memory>

namespace cinora {

struct FreeAv {
  void operator()(AVFormatContext* c) const { avformat_close_input(&c); }
  void operator()(AVCodecContext* c) const { avcodec_free_context(&c); }
  void operator()(AVFrame* f) const { av_frame_free(&f); }
  void operator()(AVPacket* p) const { av_packet_free(&p); }
  void operator()(AVBSFContext* c) const { av_bsf_free(&c); }
  void operator()(SwrContext* c) const { swr_free(&c); }
  void operator()(SwsContext* c) const { sws_freeContext(c); }
};
using AvInput = std::unique_ptr<AVFormatContext, FreeAv>;
using AvFilter = std::unique_ptr<AVBSFContext, FreeAv>;
using AvCodec = std::unique_ptr<AVCodecContext, FreeAv>;
using AvFrame = std::unique_ptr<AVFrame, FreeAv>;
using AvPacket = std::unique_ptr<AVPacket, FreeAv>;
using AvResampler = std::unique_ptr<SwrContext, FreeAv>;
using AvScaler = std::unique_ptr<SwsContext, FreeAv>;

}  // namespace cinora
