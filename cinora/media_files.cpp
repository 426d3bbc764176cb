#include "cinora/media_files.h"

#include <algorithm>
#include <memory>

#include "cinora/media_reader.h"
#include "platform/paths.h"

namespace zenlay {

/// What a MediaHandle points to.
struct HostMedia {
  std::string path;
  cinora::MediaReader reader;
};

}  // namespace zenlay

namespace cinora {
namespace {

constexpr int standardAudioRate = 44100;

/// A relative path that is not there is looked for beside the project.
std::string findMedia(const std::string& path) {
  bool absolute = !path.empty() && platform::isSeparator(path.front());
  if (absolute || platform::fileExists(path)) return path;
  std::string beside = std::string(platform::folderOf(host().projectFile)) + path;
  return platform::fileExists(beside) ? beside : path;
}

int32_t saturated(int64_t value) { return static_cast<int32_t>(std::min<int64_t>(value, INT32_MAX)); }

zenlay::HostFileInfo fileInfo(const zenlay::HostMedia& media) {
  const MediaInfo& m = media.reader.info();
  return {.flags = (m.hasVideo ? zenlay::fileHasVideo : 0u) | (m.hasSound ? zenlay::fileHasAudio : 0u),
          .name = media.path.c_str(),
          .width = m.width,
          .height = m.height,
          .rate = m.rate,
          .scale = m.scale,
          .audioRate = m.soundRate,
          .audioChannels = m.soundChannels,
          .videoFormat = m.videoTag,
          .videoBits = m.bits,
          .audioFormat = m.soundTag,
          .frameCount = m.frameCount,
          .audioSampleCount = saturated(m.soundSamples),
          .reserved = {}};
}

}  // namespace

zenlay::MediaHandle openMedia(const std::string& path, zenlay::HostFileInfo* info, uint32_t flags) {
  auto media = std::make_unique<zenlay::HostMedia>();
  media->path = findMedia(path);
  std::string reason;
  if (!media->reader.open(media->path, flags & zenlay::openAlpha, reason)) return nullptr;
  const MediaInfo& found = media->reader.info();
  if ((flags & zenlay::openVideo) && !found.hasVideo) return nullptr;
  if ((flags & zenlay::openAudio) && !found.hasSound) return nullptr;
  if (info) *info = fileInfo(*media);
  return media.release();
}

std::optional<ClipFormat> formatOfMedia(const std::string& path, int32_t* frameCount) {
  MediaReader reader;
  std::string reason;
  if (!reader.open(findMedia(path), false, reason)) return {};
  const MediaInfo& media = reader.info();
  ClipFormat format{media.width, media.height, media.rate, media.scale,
                    media.hasSound ? media.soundRate : standardAudioRate};
  if (!media.hasVideo || !validFormat(format)) return {};
  *frameCount = std::clamp(media.frameCount, 1, maxFrameCount);
  return format;
}

void closeMedia(zenlay::MediaHandle media) { delete media; }

bool readMediaFrame(Host& host, zenlay::HostMedia& media, int frame, zenlay::FramePixel* image) {
  const MediaInfo& info = media.reader.info();
  if (info.width > host.limits.maxWidth || info.height > host.limits.maxHeight) return false;
  if (!media.reader.prepareFrame(frame)) return false;
  host.pool.forRows(info.height,
                    [&](int first, int last) { media.reader.convertRows(image, host.limits.rowPixels, first, last); });
  return true;
}

const void* mediaFramePixels(zenlay::HostMedia& media, int frame) { return media.reader.readBgra(frame); }

}  // namespace cinora
