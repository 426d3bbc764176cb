// "Blur": softens the object's image, or the frame, by two rounds of box averages; "Light Stre" lets bright areas
// spread.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/filters/box_blur.h"
#include "zenlay/filters/light_domain.h"
#include "zenlay/filters/placement_tracks.h"

namespace zenlay {
namespace {

enum BlurTrack { trackRange, trackAspect, trackLight };
enum BlurCheck { checkFixedSize };

constexpr TrackColumns tracks({
    {"Range", 5, 0, 1000, 1, 0, 300},  // pixels
    aspectTrack(),
    {"Light Stre", 0, 0, 60, 1, 0, 60},
});
constexpr CheckColumns checks({
    {"Fixed Size", 0},
});

struct Radii {
  int x, y;
};

/// The aspect takes from the vertical radius when positive, from the horizontal one when negative.
Radii readRadii(const EffectDefinition* effect) {
  int range = std::clamp(effect->track[trackRange], 0, maxBoxRadius);
  int aspect = std::clamp(effect->track[trackAspect], -1000, 1000);
  return {aspect < 0 ? (1000 + aspect) * range / 1000 : range, aspect > 0 ? (1000 - aspect) * range / 1000 : range};
}

Radii firstRound(Radii r) { return {r.x - r.x / 2, r.y - r.y / 2}; }
Radii secondRound(Radii r) { return {r.x / 2, r.y / 2}; }

Radii limited(Radii r, int x, int y) {
  return {std::clamp(r.x, 0, std::max(x, 0)), std::clamp(r.y, 0, std::max(y, 0))};
}

ImageTarget grown(const ImageTarget& image, Radii by) {
  return {image.pixels, image.width + 2 * by.x, image.height + 2 * by.y, image.lineBytes};
}

/// Two rounds, the first into `work` and the second back. With boxGrow `image` takes the new size.
void blurTwice(const HostFunctionTable* host, ImageTarget* image, const ImageTarget& work, Radii radii, BoxEdge edge,
               int light, bool alpha) {
  const auto round = light > 0 ? lightRound : boxRound;
  const Radii first = firstRound(radii), second = secondRound(radii);
  if (light > 0) toLight(host, *image, light, alpha);
  ImageTarget between{work.pixels, image->width, image->height, work.lineBytes};
  if (edge == boxGrow) between = grown(between, first);
  round(host, between, *image, first.x, first.y, edge, alpha);
  if (edge == boxGrow) *image = grown(*image, radii);
  round(host, *image, between, second.x, second.y, edge, alpha);
  if (light > 0) fromLight(host, *image, light, alpha);
}

/// Puts the image into the middle of a transparent one in `work`, larger by the radii on every side.
ImageTarget surround(const ImageTarget& image, const ImageTarget& work, Radii radii) {
  const ImageTarget wide = grown({work.pixels, image.width, image.height, work.lineBytes}, radii);
  for (int y = 0; y < wide.height; y++) {
    std::byte* row = static_cast<std::byte*>(wide.pixels) + ptrdiff_t{y} * wide.lineBytes;
    memset(row, 0, wide.width * sizeof(ObjectPixel));
    int from = y - radii.y;
    if (from < 0 || from >= image.height) continue;
    memcpy(row + radii.x * sizeof(ObjectPixel),
           static_cast<const std::byte*>(image.pixels) + ptrdiff_t{from} * image.lineBytes,
           image.width * sizeof(ObjectPixel));
  }
  return wide;
}

int blurObjectImage(EffectDefinition* effect, EffectProcessInfo* info) {
  const bool fixedSize = effect->check[checkFixedSize];
  Radii radii = readRadii(effect);
  if (!fixedSize) {
    radii = limited(radii, (info->maxWidth - info->objectWidth) / 2, (info->maxHeight - info->objectHeight) / 2);
  }
  if ((radii.x == 0 && radii.y == 0) || info->objectWidth <= 0 || info->objectHeight <= 0) return 1;
  if (info->opaqueImage) effect->services->addAlpha(info);

  const int lineBytes = info->bufferLine * static_cast<int>(sizeof(ObjectPixel));
  ImageTarget image{info->objectImage, info->objectWidth, info->objectHeight, lineBytes};
  ImageTarget work{info->workImage, 0, 0, lineBytes};
  BoxEdge edge = fixedSize ? boxKeep : boxGrow;
  const Radii largest = firstRound(radii);
  if (!fixedSize && ((largest.x && image.width <= 2 * largest.x) || (largest.y && image.height <= 2 * largest.y))) {
    image = surround(image, work, radii);
    std::swap(info->objectImage, info->workImage);
    work.pixels = info->workImage;
    edge = boxKeep;
  }
  blurTwice(effect->host_functions, &image, work, radii, edge, effect->track[trackLight], true);
  info->objectWidth = image.width;
  info->objectHeight = image.height;
  return 1;
}

int blurFrame(EffectDefinition* effect, EffectProcessInfo* info) {
  const FrameProcessInfo& host = info->host;
  const bool alpha = host.flags & processFlattening;  // the frame of a scene with an alpha channel
  const Radii radii = limited(readRadii(effect), host.width / 2, host.height / 2);
  if ((radii.x == 0 && radii.y == 0) || host.width > info->bufferLine || host.height > info->bufferHeight) return 1;
  ImageTarget frame{host.frame, host.width, host.height, host.lineBytes};
  const ImageTarget work{info->workImage, 0, 0, info->bufferLine * static_cast<int>(sizeof(ObjectPixel))};
  blurTwice(effect->host_functions, &frame, work, radii, boxKeep, effect->track[trackLight], alpha);
  return 1;
}

int blur(EffectDefinition* effect, EffectProcessInfo* info) {
  return effect->flag & effectFilter ? blurObjectImage(effect, info) : blurFrame(effect, info);
}

}  // namespace

constinit EffectDefinition blurEffect = defineEffect({
    .flag = effectFilter,
    .name = "Blur",
    .tracks = tracks,
    .checks = checks,
    .proc = blur,
});

constinit EffectDefinition blurObject = defineEffect({
    .name = "Blur",
    .tracks = tracks,
    .proc = blur,
});

}  // namespace zenlay
