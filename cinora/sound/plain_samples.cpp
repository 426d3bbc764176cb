#include "cinora/sound/plain_samples.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/paths.h"

namespace cinora {

bool PlainSamples::open(const std::string& path, int64_t offset, int channels) {
  file_.reset(platform::openFile(path, "rb"));
  offset_ = offset;
  channels_ = channels;
  return opened();
}

void PlainSamples::read(int64_t first, int count, int16_t* out) const {
  int64_t sampleBytes = int64_t{channels_} * 2;
  auto* to = reinterpret_cast<char*>(out);
  size_t left = static_cast<size_t>(count * sampleBytes);
  for (off_t at = offset_ + first * sampleBytes; left > 0;) {
    ssize_t got = pread(fileno(file_.get()), to, left, at);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    to += got;
    at += got;
    left -= static_cast<size_t>(got);
  }
  memset(to, 0, left);
}

}  // namespace cinora
