#include "cinora/media_files.h"

#include <vector>

#include "cinora/media_reader.h"
#include "platform/paths.h"

namespace zenlay {

/// What a MediaHandle points to.
struct HostMedia {
  cinora::MediaReader reader;
  std::vector<uint8_t> pixels;  // of the last getVideoFramePixels
};

}  // namespace zenlay

namespace cinora {
namespace {

/// A relative path that is not there is looked for beside the project.
std::string findMedia(const std::string& path) {
  bool absolute = !path.empty() && platform::isSeparator(path.front());
  if (absolute || platform::fileExists(path)) return path;
  std::string beside = std::string(platform::folderOf(host().projectFile)) + path;
  return platform::fileExists(beside) ? beside : path;
}

}  // namespace

zenlay::MediaHandle openMedia(const std::string& path, zenlay::HostFileInfo* info, uint32_t flags) {
  auto media = std::make_unique<zenlay::HostMedia>();
  std::string error;
  if (!media->reader.open(findMedia(path), flags & zenlay::openAlpha, &error)) return nullptr;
  const zenlay::HostFileInfo& found = media->reader.info();
  if ((flags & zenlay::openVideo) && !(found.flags & zenlay::fileHasVideo)) return nullptr;
  if ((flags & zenlay::openAudio) && !(found.flags & zenlay::fileHasAudio)) return nullptr;
  if (info) *info = found;
  return media.release();
}

void closeMedia(zenlay::MediaHandle media) { delete media; }

bool readMediaFrame(zenlay::HostMedia& media, int frame, zenlay::FramePixel* image, const Limits& limits) {
  const zenlay::HostFileInfo& info = media.reader.info();
  if (info.width > limits.maxWidth || info.height > limits.maxHeight) return false;
  return media.reader.readVideo(frame, image, limits.rowPixels);
}

const void* mediaFramePixels(zenlay::HostMedia& media, int frame) {
  const zenlay::HostFileInfo& info = media.reader.info();
  size_t rowBytes = (static_cast<size_t>(info.width) * (info.videoBits / 8) + 3) & ~size_t{3};
  media.pixels.resize(rowBytes * info.height);
  bool read = info.videoBits == 32 ? media.reader.readBgra(frame, media.pixels.data())
                                   : media.reader.readBgr(frame, media.pixels.data());
  return read ? media.pixels.data() : nullptr;
}

}  // namespace cinora
