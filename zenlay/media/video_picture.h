// A frame of a video file as rows of pixels in the record's second image.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

/// Extra data of a reader of video; what lies behind `media` are working values of the file as last opened.
struct VideoData {
  MediaReference media;
  int32_t frameCount;
  int32_t rate, scale;
  int32_t mode;  // SynthesisMode
};
static_assert(sizeof(VideoData) == 284 && offsetof(VideoData, mode) == 280);

struct VideoPicture {
  const void* pixels;  // null when the frame can't be read
  int lineBytes;
  bool alpha;  // ObjectPixels, else FramePixels
};

/// Reads a frame into the work image. `file.width` x `file.height` pixels.
VideoPicture readVideoPicture(EffectDefinition*, EffectProcessInfo*, MediaHandle, const HostFileInfo& file, int frame,
                              bool alpha);
/// Counts a file that is gone after loading or when asked to check; opens nothing and keeps the name.
int checkVideoFile(EffectDefinition*, uint32_t message, intptr_t wparam, intptr_t lparam);

/// The file that the check's button or a drop brings: opened, stored and told. Of a media object with one section also
/// resets position, speed and looping, and the object lasts as long as the video. 1 when a file was taken.
int takeVideoFile(EffectDefinition*, uint32_t message, intptr_t wparam, intptr_t lparam, int check);
/// The file's name beside the check's button and the frames as the position's range.
void showVideoFile(EffectDefinition*, int check);

}  // namespace zenlay
