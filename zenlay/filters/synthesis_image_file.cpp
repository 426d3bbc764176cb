// "Synthesis image file": puts a still picture into the object's image.
#include <algorithm>

#include "zenlay/effects/blend_modes.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/filters/synthesis_modes.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/image_data.h"

namespace zenlay {

namespace {

enum ImageSynthesisTrack { trackX, trackY, trackZoom };
enum ImageSynthesisCheck { checkTile, checkReference, checkMode };
enum ImageSynthesisMode { mixFront, mixBack, firstCombination, imageModes = firstCombination + synthesisModes };
constexpr int fullSize = 1000;

/// The picture in the work image, zoomed; pixels is null when it can't be read.
SynthesisPicture loadPicture(EffectDefinition* effect, EffectProcessInfo* info, const char* file) {
  SynthesisPicture picture{};
  if (!effect->services->loadImage(info->workImage, file, &picture.width, &picture.height, nullptr, 0)) return {};
  picture.pixels = info->workImage;
  picture.lineBytes = info->bufferLine * static_cast<int>(sizeof(ObjectPixel));
  picture.alpha = true;
  if (int zoom = effect->track[trackZoom]; zoom != fullSize) {
    SynthesisPicture kept = keepPicture(effect, picture);
    if (!kept.pixels) return {};
    picture = scalePicture(effect, info, kept, zoomedSize(kept.width, zoom, info->maxWidth),
                           zoomedSize(kept.height, zoom, info->maxHeight));
  }
  picture.x = effect->track[trackX];
  picture.y = effect->track[trackY];
  picture.tiled = effect->check[checkTile] != 0;
  return picture;
}

/// Blends every copy of the picture, clipped to the object.
void mixPicture(EffectDefinition* effect, EffectProcessInfo* info, const SynthesisPicture& picture, int blendMode) {
  uint32_t flags = blendSourceAlpha | blendDestinationAlpha | blendFlags(blendMode);
  forEachTile(picture, info->objectWidth, info->objectHeight, [&](int x, int y) {
    int left = std::max(x, 0), top = std::max(y, 0);
    int right = std::min(x + picture.width, info->objectWidth),
        bottom = std::min(y + picture.height, info->objectHeight);
    effect->services->blendCopy(info->objectImage, left, top, info->workImage, left - x, top - y, right - left,
                                bottom - top, 0, flags);
  });
}

int processImageSynthesis(EffectDefinition* effect, EffectProcessInfo* info) {
  ImageData& data = extraData<ImageData>(effect);
  const char* file = fileOf(data);
  if (!*file) return 1;
  SynthesisPicture picture = loadPicture(effect, info, file);
  if (!picture.pixels) return 1;
  int mode = data.mode >= 0 && data.mode < imageModes ? data.mode : mixFront;
  if (mode < firstCombination)
    mixPicture(effect, info, picture, mode == mixBack ? blendBehind : blendNormal);
  else
    combinePicture(effect->host_functions, info, picture, SynthesisMode{mode - firstCombination});
  return 1;
}

constexpr ExtraControl controls[] = {
    {checkReference, extraPicture, offsetof(ImageData, file)},
    {checkMode, extraList, offsetof(ImageData, mode)},
};

int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition* effect) {
  return operateControls(effect, controls, std::size(controls), message, wparam, lparam) ||
         checkImageFile(effect, message, wparam, lparam);
}

constinit TrackColumns tracks({
    {"X", 0, -1000, 1000, 1, -1000, 1000, 1},
    {"Y", 0, -1000, 1000, 1, -1000, 1000, -1},
    {"Zoom%", fullSize, 0, 8000, 10, 0, 8000},
});
constinit CheckColumns checks({
    {"Loop image", 0},
    {"Reference file", checkButton},
    {"Mix from front\0Mix from back\0Overwrite color info\0Overwrite with luminance as alpha\0"
     "Multiply with luminance as alpha\0",
     checkDropDown},
});

}  // namespace

constinit EffectDefinition synthesisImageFileEffect = defineEffect({
    .flag = effectFilter,
    .name = "Synthesis image file",
    .tracks = tracks,
    .checks = checks,
    .proc = processImageSynthesis,
    .window_proc = handleMessage,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(ImageData),
    .exdata_fields = imageDataFields,
});

}  // namespace zenlay
