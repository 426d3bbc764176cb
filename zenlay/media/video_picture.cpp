#include "zenlay/media/video_picture.h"

#include "zenlay/media/effect_messages.h"
#include "zenlay/media/media_handles.h"

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

}  // namespace zenlay
