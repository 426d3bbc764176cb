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

}  // namespace zenlay
