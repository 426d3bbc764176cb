#include "cinora/support/ffmpeg.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace cinora {
namespace {

std::mutex lastLineLock;
std::string lastLine;

void keepLine(void* source, int level, const char* format, va_list arguments) {
  if (level > AV_LOG_ERROR) return;
  char line[512];
  int prefix = 0;  // no "[libx264 @ 0x...]"
  av_log_format_line2(source, level, format, arguments, line, sizeof line, &prefix);
  std::string text = line;
  if (size_t close = text.find("] "); text.starts_with("[") && close != text.npos) text.erase(0, close + 2);
  while (!text.empty() && (text.back() == '\n' || text.back() == '.')) text.pop_back();
  std::lock_guard guard(lastLineLock);
  if (!text.empty()) lastLine = text;
}

}  // namespace

void captureFfmpegLog() {
  av_log_set_callback(keepLine);
  setenv("SVT_LOG", "1", 0);  // SVT-AV1 has a log of its own: only errors
}

std::string ffmpegError(int code) {
  char text[AV_ERROR_MAX_STRING_SIZE];
  av_strerror(code, text, sizeof text);
  std::lock_guard guard(lastLineLock);
  std::string said = std::exchange(lastLine, {});
  bool vague = code == AVERROR_EXTERNAL || code == AVERROR_UNKNOWN || code == AVERROR_INVALIDDATA ||
               code == AVERROR(EINVAL) || code == AVERROR(ENOSYS);
  return vague && !said.empty() ? said : text;
}

}  // namespace cinora
