// "Video file": shows the frames of a video file.
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/media/effect_messages.h"
#include "zenlay/media/playback_time.h"
#include "zenlay/media/video_picture.h"

namespace zenlay {

namespace {

enum VideoFileCheck { checkLoop, checkAlpha, checkReference };

/// Moves the rows from the work image to the object image, whose rows are farther apart.
void copyRows(const HostFunctionTable* host, EffectProcessInfo* info, const VideoPicture& picture, int width,
              int height) {
  size_t bytes = width * sizeof(FramePixel);
  ptrdiff_t lineBytes = info->bufferLine * sizeof(ObjectPixel);
  auto* to = reinterpret_cast<uint8_t*>(info->objectImage);
  auto* from = static_cast<const uint8_t*>(picture.pixels);
  overRows(host, height, [&](int first, int last) {
    for (ptrdiff_t y = first; y < last; y++) memcpy(to + y * lineBytes, from + y * picture.lineBytes, bytes);
  });
}

int processVideoFile(EffectDefinition* effect, EffectProcessInfo* info) {
  const EffectServiceTable* services = effect->services;
  VideoData& data = extraData<VideoData>(effect);
  bool alpha = effect->check[checkAlpha] != 0;
  HostFileInfo file{};
  MediaHandle handle = services->openMedia(&data.media, alpha ? openVideo | openAlpha : openVideo, &file);
  if (!handle) return 0;
  data.frameCount = file.frameCount;
  data.rate = file.rate;
  data.scale = file.scale;

  int frame = playbackFrameOf(effect, info, file);
  VideoPicture picture = readVideoPicture(effect, info, handle, file, frame, alpha);
  if (!picture.pixels) return 0;
  info->objectWidth = file.width;
  info->objectHeight = file.height;
  if (picture.alpha) {
    services->swapImages(info);
    info->opaqueImage = 0;
  } else {
    copyRows(effect->host_functions, info, picture, file.width, file.height);
    info->opaqueImage = 1;
    if (!(info->host.flags & processTakesOpaque)) services->addAlpha(info);
  }
  lastVideoFrame = frame;
  return 1;
}

int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle edit,
                  EffectDefinition* effect) {
  if (isObjectEvent(message, wparam, lparam, objectDivided)) {
    const VideoData& data = extraData<VideoData>(effect);
    HostFileInfo video{};
    video.frameCount = data.frameCount;
    video.rate = data.rate;
    video.scale = data.scale;
    continuePlayback(effect, edit, video);
    return 1;
  }
  if (takeVideoFile(effect, message, wparam, lparam, checkReference)) return 1;
  return checkVideoFile(effect, message, wparam, lparam);
}

int showVideo(void*, uint32_t message, intptr_t, intptr_t, EditHandle, EffectDefinition* effect) {
  if (message == controlsFill) showVideoFile(effect, checkReference);
  return 0;
}

constinit TrackColumns tracks({
    {"Playback position", 1, 1, 800000, 0, 1, 800000},
    {"vPlay", normalSpeed, -20000, 20000, 10, -8000, 8000},
});
constinit CheckColumns checks({
    {"Loop playback", 0},
    {"Import alpha channel", 0},
    {"Reference file", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataString, sizeof(MediaReference::file), "file"},
    {exdataReserved, 24, nullptr},
};

}  // namespace

constinit EffectDefinition videoFileMedia = defineEffect({
    .flag = effectMedia | effectTakesOpaque,
    .name = "Video file",
    .tracks = tracks,
    .checks = checks,
    .proc = processVideoFile,
    .window_proc = handleMessage,
    .show_controls = showVideo,
    .exdata_size = sizeof(VideoData),
    .exdata_fields = fields,
});

}  // namespace zenlay
