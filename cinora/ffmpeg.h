// FFmpeg's records with owners, its errors as text.
#pragma once

#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace cinora {

struct FreeFrame {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct FreePacket {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FreeCodec {
  void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
};
struct FreeScaler {
  void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};
struct FreeBufferPool {
  void operator()(AVBufferPool* pool) const { av_buffer_pool_uninit(&pool); }
};
using FramePtr = std::unique_ptr<AVFrame, FreeFrame>;
using PacketPtr = std::unique_ptr<AVPacket, FreePacket>;
using CodecPtr = std::unique_ptr<AVCodecContext, FreeCodec>;
using ScalerPtr = std::unique_ptr<SwsContext, FreeScaler>;
using BufferPoolPtr = std::unique_ptr<AVBufferPool, FreeBufferPool>;

/// From now on FFmpeg's log is kept back for ffmpegError.
void captureFfmpegLog();
/// The text of the code; for codes that say little ("Invalid argument") the last error that was logged.
std::string ffmpegError(int code);

}  // namespace cinora
