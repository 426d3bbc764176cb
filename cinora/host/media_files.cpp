#include "cinora/host/media_files.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <list>
#include <memory>

#include "cinora/media/media_reader.h"
#include "cinora/sound/sound_reader.h"
#include "platform/paths.h"

namespace zenlay {

/// What a MediaHandle points to.
struct HostMedia {
  std::string path;
  cinora::MediaReader reader;
  std::unique_ptr<cinora::SoundReader> sound;  // opened with openAudio, or when first asked for
  struct stat status {};                       // of the file when the sound was opened
};

}  // namespace zenlay

namespace cinora {
namespace {

constexpr int standardAudioRate = 44100;

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

zenlay::HostFileInfo soundInfo(const zenlay::HostMedia& media) {
  const SoundFacts& s = media.sound->facts();
  zenlay::HostFileInfo info{};
  info.flags = zenlay::fileHasAudio;
  info.name = media.path.c_str();
  info.rate = s.videoRate;
  info.scale = s.videoScale;
  info.frameCount = s.videoFrames;
  info.audioRate = s.rate;
  info.audioChannels = s.channels;
  info.audioFormat = s.tag;
  info.audioSampleCount = saturated(s.samples);
  return info;
}

struct KeptSound {
  std::string path;
  std::chrono::steady_clock::time_point closed;
  struct stat status;
  std::unique_ptr<SoundReader> sound;
};
constexpr size_t maxKeptSounds = 256;
constexpr std::chrono::seconds trustedFor{1};  // a file closed so lately is not looked at again
std::list<KeptSound> keptSounds;               // the one closed last in front

bool sameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
         a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

/// Of several readers of a file the one closed first: who opens them by turns gets the one that stands where he left.
bool takeKept(zenlay::HostMedia& media) {
  auto behind = std::find_if(keptSounds.rbegin(), keptSounds.rend(), [&](auto& k) { return k.path == media.path; });
  if (behind == keptSounds.rend()) return false;
  auto kept = std::prev(behind.base());
  bool trusted = std::chrono::steady_clock::now() - kept->closed < trustedFor;
  struct stat status {};
  if (!trusted) stat(platform::nativePath(media.path).c_str(), &status);
  bool same = trusted || sameFile(kept->status, status);
  if (same) {
    media.sound = std::move(kept->sound);
    media.status = kept->status;
  }
  keptSounds.erase(kept);
  return same;
}

bool openSound(zenlay::HostMedia& media) {
  if (media.sound || takeKept(media)) return true;
  if (stat(platform::nativePath(media.path).c_str(), &media.status) != 0) return false;
  auto sound = std::make_unique<SoundReader>();
  std::string reason;
  if (!sound->open(media.path, reason)) return false;
  media.sound = std::move(sound);
  return true;
}

}  // namespace

std::string findMedia(const std::string& path) {
  if (platform::fileExists(path)) return path;
  const std::string folder(platform::folderOf(host().projectFile));
  for (std::string_view name : {std::string_view(path), platform::fileName(path)})
    if (std::string beside = folder + std::string(name); platform::fileExists(beside)) return beside;
  return path;
}

zenlay::MediaHandle openMedia(const std::string& path, zenlay::HostFileInfo* info, uint32_t flags) {
  auto media = std::make_unique<zenlay::HostMedia>();
  media->path = findMedia(path);
  if ((flags & zenlay::openAudio) && !openSound(*media)) return nullptr;
  bool soundOnly = (flags & zenlay::openAudio) && !(flags & zenlay::openVideo);
  if (!soundOnly) {
    std::string reason;
    if (!media->reader.open(media->path, flags & zenlay::openAlpha, reason)) return nullptr;
    if ((flags & zenlay::openVideo) && !media->reader.info().hasVideo) return nullptr;
  }
  if (info) *info = soundOnly ? soundInfo(*media) : fileInfo(*media);
  return media.release();
}

void CloseMedia::operator()(zenlay::MediaHandle media) const { closeMedia(media); }

zenlay::HostEdit openMediaClip(const std::string& path) {
  zenlay::HostFileInfo info;
  OwnedMedia media(openMedia(path, &info, zenlay::openVideo));
  bool sound = media && info.flags & zenlay::fileHasAudio;
  ClipFormat format{info.width, info.height, info.rate, info.scale, standardAudioRate};
  if (sound) {
    format.audioRate = info.audioRate;
    format.audioChannels = std::min(info.audioChannels, format.audioChannels);
  }
  zenlay::HostEdit edit;
  if (!media || !openClip(edit, path, format)) return {};
  edit.mediaFrames = std::clamp(info.frameCount, 1, maxFrameCount);
  resizeClip(edit, edit.mediaFrames);
  edit.hasSound = sound && setMediaSoundRate(*media, format.audioRate, format.audioChannels) > 0;
  edit.media = std::move(media);
  return edit;
}

std::optional<ClipFormat> formatOfMedia(const std::string& path) {
  zenlay::HostEdit clip = openMediaClip(path);
  return clip.open ? std::optional(clip.format) : std::nullopt;
}

void closeMedia(zenlay::MediaHandle media) {
  if (media && media->sound) {
    keptSounds.push_front({media->path, std::chrono::steady_clock::now(), media->status, std::move(media->sound)});
    if (keptSounds.size() > maxKeptSounds) keptSounds.pop_back();
  }
  delete media;
}

bool readMediaFrame(Host& host, zenlay::HostMedia& media, int frame, zenlay::FramePixel* image) {
  const MediaInfo& info = media.reader.info();
  if (info.width > host.limits.maxWidth || info.height > host.limits.maxHeight) return false;
  if (!media.reader.prepareFrame(frame)) return false;
  host.pool.forRows(info.height,
                    [&](int first, int last) { media.reader.convertRows(image, host.limits.rowPixels, first, last); });
  return true;
}

const void* mediaFramePixels(zenlay::HostMedia& media, int frame) { return media.reader.readBgra(frame); }

int32_t setMediaSoundRate(zenlay::HostMedia& media, int rate, int channels) {
  return openSound(media) ? saturated(media.sound->setOutput(rate, channels)) : 0;
}

int32_t readMediaSound(zenlay::HostMedia& media, int64_t first, int count, int16_t* samples) {
  return openSound(media) ? media.sound->read(first, count, samples) : 0;
}

void dropKeptSound() { keptSounds.clear(); }

}  // namespace cinora
