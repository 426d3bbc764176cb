#include "zenlay/render/pipeline.h"

#include <algorithm>
#include <cstring>

#include "platform/system.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/binding.h"
#include "zenlay/render/draw.h"
#include "zenlay/render/handles.h"
#include "zenlay/render/live_objects.h"
#include "zenlay/render/object_render.h"
#include "zenlay/render/preview_overlay.h"

namespace zenlay {

namespace {

constexpr uint32_t ownFlags =
    processHandles | processTakesOpaque | processLaterTarget | processFastPreview | processPreparatory | processNested;

void resetInfo(EffectProcessInfo* info, const FrameProcessInfo& host, int depth, int frameOffset, int subFrame) {
  *info = {};
  info->host = host;
  info->host.flags &= ~ownFlags;
  if (preferences.fast_preview && !environment.saving) info->host.flags |= processFastPreview;
  if (depth > 0) info->host.flags |= processNested;
  if (frameHasAlpha(info)) info->host.lineBytes = environment.workLineBytes;
  info->depth = depth;
  info->frameOffset = frameOffset;
  info->hostFrame = depth > 0 ? renderLevels[depth - 1].info.hostFrame : host.frameNumber;
  info->subFrame = subFrame;
  info->zoom = zoomOne;
  info->num = 1;
  info->rate = environment.clip.rate;
  info->scale = environment.clip.scale;
  info->startTick = platform::tickCount();
  info->bufferLine = environment.workStride;
  info->bufferHeight = (environment.workH + 7) / 8 * 8;
  info->maxWidth = environment.workW;
  info->maxHeight = environment.workH;
}

uint8_t* rowOf(FramePixel* image, int lineBytes, int y) {
  return reinterpret_cast<uint8_t*>(image) + static_cast<ptrdiff_t>(lineBytes) * y;
}

/// Copies a rectangle of the frame's pixels between the frame and the scratch image.
void copyArea(FramePixel* to, int toX, int toY, FramePixel* from, int fromX, int fromY, int width, int height,
              int lineBytes, int pixelBytes) {
  overRows(environment.hostFunctions, height, [=](int first, int last) {
    for (int y = first; y < last; y++)
      memcpy(rowOf(to, lineBytes, toY + y) + static_cast<ptrdiff_t>(toX) * pixelBytes,
             rowOf(from, lineBytes, fromY + y) + static_cast<ptrdiff_t>(fromX) * pixelBytes,
             static_cast<size_t>(width) * pixelBytes);
  });
}

/// A frame with the host's picture in the middle, filled with the colour of its first pixel.
void enlarge(EffectProcessInfo* info, ImageSize scene, int pixelBytes) {
  FrameProcessInfo& host = info->host;
  int width = std::min(host.width, scene.width), height = std::min(host.height, scene.height);
  info->offsetX = (scene.width - width) / 2;
  info->offsetY = (scene.height - height) / 2;
  const uint8_t* colour = reinterpret_cast<const uint8_t*>(host.frame);
  uint8_t* first = rowOf(host.scratch, host.lineBytes, 0);
  for (int x = 0; x < scene.width; x++) memcpy(first + static_cast<size_t>(x) * pixelBytes, colour, pixelBytes);
  for (int y = 1; y < scene.height; y++)
    memcpy(rowOf(host.scratch, host.lineBytes, y), first, static_cast<size_t>(scene.width) * pixelBytes);
  copyArea(host.scratch, info->offsetX, info->offsetY, host.frame, 0, 0, width, height, host.lineBytes, pixelBytes);
  std::swap(host.frame, host.scratch);
}

void renderLayers(RenderLevel* level, int limit) {
  EffectProcessInfo* info = &level->info;
  broadcastEvent(eventSceneBegin, info);
  for (int layer = 0; layer < limit; layer++) {
    ObjectRecord* object = level->live[layer];
    if (!object) continue;
    info->currentObject = object;
    if (objectIsAllowed(object, info))
      renderObject(object, info, 0);
    else if (level->clipFlags[layer] & clipSource)
      info->clipValid = 0;
  }
  info->currentObject = nullptr;
  broadcastEvent(eventSceneEnd, info);
}

}  // namespace

int renderSceneFrame(FrameProcessInfo* frame, int layerLimit, int frameOffset, int subFrame, int scene) {
  if (!environment.projectOpen) return 1;
  int depth = sceneDepth + 1;
  if (depth >= maxSceneDepth || scene < 0 || scene >= maxScenes || !prepareLevel(depth)) return 0;
  int shown = scene == 0 ? currentScene : scene;
  int limit = std::clamp(layerLimit, 0, layersPerScene);
  if (shown == currentScene) limit = std::min(limit, layersInUse);

  RenderLevel& level = renderLevels[depth];
  EffectProcessInfo* info = &level.info;
  resetInfo(info, *frame, depth, frameOffset, subFrame);
  level.previous = {};
  level.runningObject = nullptr;
  level.flattening = false;
  const int pixelBytes = frameHasAlpha(info) ? sizeof(ObjectPixel) : sizeof(FramePixel);
  ImageSize hostSize{frame->width, frame->height}, size = sceneSize(shown);
  size.width = std::min(size.width, info->host.lineBytes / pixelBytes);
  bool larger = frame->scratch && (size.width > hostSize.width || size.height > hostSize.height);
  if (!frame->scratch) size = {std::min(size.width, hostSize.width), std::min(size.height, hostSize.height)};
  sceneDepth = depth;
  if (larger) enlarge(info, size, pixelBytes);
  info->host.width = size.width;
  info->host.height = size.height;
  if (depth == 0) clearHandles();

  collectLayers(&level, shown, frame->frameNumber, subFrame, limit);
  renderLayers(&level, limit);

  const bool edited = !environment.saving && !environment.playing && !(frame->flags & processWithoutOverlay);
  if (depth == 0 && edited && !frameHasAlpha(info)) drawPreviewOverlay(info);
  frame->width = size.width;
  frame->height = size.height;
  if (larger) {
    frame->width = std::min(size.width, hostSize.width);
    frame->height = std::min(size.height, hostSize.height);
    copyArea(info->host.scratch, 0, 0, info->host.frame, info->offsetX, info->offsetY, frame->width, frame->height,
             info->host.lineBytes, pixelBytes);
    std::swap(info->host.frame, info->host.scratch);
  }
  frame->frame = info->host.frame;
  frame->scratch = info->host.scratch;
  sceneDepth = depth - 1;
  return 1;
}

}  // namespace zenlay
