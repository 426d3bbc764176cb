// FFmpeg for writing: its headers, owners and errors as text.
#pragma once

#include <memory>
#include <string>

#include "cinora/support/av_handles.h"

extern "C" {
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
}

namespace cinora {

struct FreeBufferPool {
  void operator()(AVBufferPool* pool) const { av_buffer_pool_uninit(&pool); }
};
using AvBufferPool = std::unique_ptr<AVBufferPool, FreeBufferPool>;

/// From now on FFmpeg's log is kept back for ffmpegError.
void captureFfmpegLog();
/// The text of the code; for codes that say little ("Invalid argument") the last error that was logged.
std::string ffmpegError(int code);

}  // namespace cinora
