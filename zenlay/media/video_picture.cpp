#include "zenlay/media/video_picture.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "zenlay/media/extra_controls.h"
#include "zenlay/media/media_handles.h"
#include "zenlay/media/playback_time.h"

namespace zenlay {

VideoPicture readVideoPicture(EffectDefinition* effect, EffectProcessInfo* info, MediaHandle handle,
                              const HostFileInfo& file, int frame, bool alpha) {
  const HostFunctionTable* host = effect->host_functions;
  HostSystemInfo system{};
  host->getSystemInfo(info->host.edit, &system);
  int lineBytes = info->bufferLine * static_cast<int>(sizeof(ObjectPixel));
  int64_t frameBytes = int64_t{system.bufferWidth} * file.height * static_cast<int64_t>(sizeof(FramePixel));
  bool fits = file.width <= system.bufferWidth && frameBytes <= int64_t{lineBytes} * info->bufferHeight;
  if (!alpha && fits) {
    FramePixel* rows = reinterpret_cast<FramePixel*>(info->workImage);
    if (!host->readVideoFrame(handle, frame, rows)) return {};
    return {rows, system.bufferWidth * static_cast<int>(sizeof(FramePixel)), false};
  }
  // With alpha, or wider than the rows of the host's own images.
  const void* bitmap = host->getVideoFramePixels(handle, frame);
  if (!bitmap) return {};
  effect->services->convertRgb(info->workImage, bitmap, file.width, file.height, file.videoBits);
  return {info->workImage, lineBytes, true};
}

int checkVideoFile(EffectDefinition* effect, uint32_t message, intptr_t wparam, intptr_t lparam) {
  if (!asksForFileCheck(message, wparam, lparam)) return 0;
  MediaReference& media = extraData<VideoData>(effect).media;
  constexpr uint32_t flags = uint32_t{openVideo} | mediaQuiet | mediaExistence;
  return effect->services->openMedia(&media, flags, nullptr) != nullptr;
}

namespace {

/// Still from the first frame on, at normal speed, for as long as the video lasts.
void playWhole(EffectDefinition* effect, const HostFileInfo& file) {
  const EffectServiceTable* services = effect->services;
  ObjectData object{};
  SystemDescription system{};
  if (services->chainLength(effect->object_ref) != 1 || !services->getObjectData(effect->object_ref, &object)) return;
  for (auto [track, value] : {std::pair{playPosition, 1}, std::pair{playSpeed, normalSpeed}}) {
    object.startValues[track] = object.endValues[track] = value;
    object.modes[track] = object.params[track] = 0;
  }
  object.checks[playLoop] = 0;
  services->getSystem(&system);
  int64_t frames = file.frameCount;
  if (file.rate > 0 && file.scale > 0 && system.rate > 0 && system.scale > 0)
    frames = frames * file.scale * system.rate / (int64_t{file.rate} * system.scale);
  services->changeObjectLength(effect->object_ref, static_cast<int>(std::clamp<int64_t>(frames, 1, INT32_MAX)), 0);
}

}  // namespace

int takeVideoFile(EffectDefinition* effect, uint32_t message, intptr_t wparam, intptr_t lparam, int check) {
  MediaReference opened{};
  HostFileInfo file{};
  if (!takesFile(effect, message, wparam, lparam, check, fileVideo, opened.file)) return 0;
  if (!effect->services->openMedia(&opened, openVideo, &file)) return 0;
  effect->services->recordUndo(effect->object_ref);
  VideoData& data = extraData<VideoData>(effect);
  data.media = opened;
  data.frameCount = file.frameCount;
  data.rate = file.rate;
  data.scale = file.scale;
  if (effect->flag & effectMedia) playWhole(effect, file);
  effect->services->objectChanged(effect->object_ref);
  return 1;
}

void showVideoFile(EffectDefinition* effect, int check) {
  VideoData& data = extraData<VideoData>(effect);
  data.media.file[sizeof data.media.file - 1] = 0;
  labelCheck(effect, check, fileNameOf(data.media.file));
  int frames = data.frameCount > 0 ? data.frameCount : effect->track_max[playPosition];
  effect->services->setTrackRange(effect->object_ref, playPosition, 1, frames, 1);
}

}  // namespace zenlay
