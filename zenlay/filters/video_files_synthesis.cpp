// "Video files synthesis": puts the frames of a video file into the object's image.
#include <algorithm>

#include "platform/window.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/synthesis_modes.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/playback_time.h"
#include "zenlay/media/video_picture.h"

namespace zenlay {

namespace {

enum VideoSynthesisTrack { trackPosition, trackSpeed, trackX, trackY, trackZoom };
enum VideoSynthesisCheck { checkLoop, checkSynchronize, checkTile, checkReference, checkMode };
constexpr int fullSize = 1000;
constexpr int farthestOffset = 3600;

/// With "Synchronize with video files" the position is an offset to the frame last shown by a video object.
int frameToShow(EffectDefinition* effect, EffectProcessInfo* info, const HostFileInfo& file) {
  if (!effect->check[checkSynchronize]) return playbackFrameOf(effect, info, file);
  int count = std::max(file.frameCount, 1);
  int64_t frame = int64_t{lastVideoFrame} + effect->track[trackPosition];
  if (effect->check[checkLoop]) return static_cast<int>((frame % count + count) % count);
  return static_cast<int>(std::clamp<int64_t>(frame, 0, count - 1));
}

int processVideoSynthesis(EffectDefinition* effect, EffectProcessInfo* info) {
  VideoData& data = extraData<VideoData>(effect);
  HostFileInfo file{};
  MediaHandle handle = effect->services->openMedia(&data.media, openVideo, &file);
  if (!handle) return 1;
  data.frameCount = file.frameCount;
  data.rate = file.rate;
  data.scale = file.scale;

  int frame = frameToShow(effect, info, file);
  VideoPicture read = readVideoPicture(effect, info, handle, file, frame, false);
  if (!read.pixels) return 1;
  SynthesisPicture picture{read.pixels,
                           read.lineBytes,
                           read.alpha,
                           file.width,
                           file.height,
                           effect->track[trackX],
                           effect->track[trackY],
                           effect->check[checkTile] != 0};
  if (int zoom = effect->track[trackZoom]; zoom != fullSize) {
    SynthesisPicture kept = keepPicture(effect, picture);
    if (!kept.pixels) return 1;
    picture = scalePicture(effect, info, kept, zoomedSize(file.width, zoom, info->maxWidth),
                           zoomedSize(file.height, zoom, info->maxHeight));
  }
  bool known = data.mode >= 0 && data.mode < synthesisModes;
  combinePicture(effect->host_functions, info, picture, known ? SynthesisMode{data.mode} : synthesisColor);
  return 1;
}

constexpr ExtraControl controls[] = {
    {checkMode, extraList, offsetof(VideoData, mode)},
};

int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition* effect) {
  if (takeVideoFile(effect, message, wparam, lparam, checkReference)) return 1;
  if (operateControls(effect, controls, std::size(controls), message, wparam, lparam)) return 1;
  if (isCommand(message, wparam, commandChecked)) effect->services->objectChanged(effect->object_ref);
  return checkVideoFile(effect, message, wparam, lparam);
}

/// The position is an offset to the frame of a video object while the two are synchronized.
int showSynthesis(void*, uint32_t message, intptr_t, intptr_t, EditHandle, EffectDefinition* effect) {
  if (message != controlsFill) return 0;
  bool offset = effect->check_values[checkSynchronize] != 0;
  showVideoFile(effect, checkReference);
  if (offset) effect->services->setTrackRange(effect->object_ref, trackPosition, -farthestOffset, farthestOffset, 1);
  platform::Window* name = effect->services->getSettingsControl(effect->object_ref, trackNameButton, trackPosition);
  if (name) platform::setWindowText(name, offset ? "Offset" : "~Play");
  return showControls(effect, controls, std::size(controls), message);
}

constinit TrackColumns tracks({
    {"Playback position", 1, 1, 800000, 0, 1, 800000},
    {"vPlay", normalSpeed, -20000, 20000, 10, -8000, 8000},
    {"X", 0, -2000, 2000, 1, -2000, 2000, 1},
    {"Y", 0, -2000, 2000, 1, -2000, 2000, -1},
    {"Zoom%", fullSize, 0, 8000, 10, 0, 8000},
});
constinit CheckColumns checks({
    {"Loop playback", 0},
    {"Synchronize with video files", 0},
    {"Loop image", 0},
    {"Reference file", checkButton},
    {"Overwrite color info\0Overwrite with luminance as alpha\0Multiply with luminance as alpha\0", checkDropDown},
});
constexpr ExdataField fields[] = {
    {exdataString, sizeof(MediaReference::file), "file"},
    {exdataReserved, 20, nullptr},
    {exdataInteger, 4, "mode"},
};

}  // namespace

constinit EffectDefinition videoFilesSynthesisEffect = defineEffect({
    .flag = effectFilter,
    .name = "Video files synthesis",
    .tracks = tracks,
    .checks = checks,
    .proc = processVideoSynthesis,
    .window_proc = handleMessage,
    .show_controls = showSynthesis,
    .exdata_size = sizeof(VideoData),
    .exdata_fields = fields,
});

}  // namespace zenlay
