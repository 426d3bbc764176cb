#include "zenlay/render/nested_scene.h"

#include <algorithm>
#include <cstring>

#include "zenlay/host/environment.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/draw.h"
#include "zenlay/render/targets.h"

namespace zenlay {
namespace {

int pixelBytes(bool alpha) { return static_cast<int>(alpha ? sizeof(ObjectPixel) : sizeof(FramePixel)); }

/// The two pictures of the next nesting depth, the first of them empty; null when refused.
WorkImage* emptyPictures(bool alpha) {
  const int depth = sceneDepth + 1;
  if (depth < 1 || depth >= maxSceneDepth || !preparePictures(depth)) return nullptr;
  WorkImage* picture = renderLevels[depth].picture;
  const int line = environment.workStride * pixelBytes(alpha);
  clearImage(&picture[0], line, pixelBytes(alpha));
  if (picture[1].lineBytes != line) clearImage(&picture[1], line, pixelBytes(alpha));
  return picture;
}

/// The outer record with the pictures in place of its frame.
FrameProcessInfo recordFor(const EffectProcessInfo* outer, const WorkImage* picture, bool alpha) {
  FrameProcessInfo record = outer->host;
  record.flags = alpha ? processFlattening + 0u : 0u;
  record.frame = reinterpret_cast<FramePixel*>(picture[0].pixels);
  record.scratch = reinterpret_cast<FramePixel*>(picture[1].pixels);
  record.maxWidth = environment.workW;
  record.maxHeight = environment.workH;
  record.pixelBytes = pixelBytes(alpha);
  record.lineBytes = picture[0].lineBytes;
  return record;
}

bool render(FrameProcessInfo* record, const EffectProcessInfo* outer, int layers, int subFrame, int scene) {
  const int rendered = renderSceneFrame(record, layers, 0, subFrame, scene);
  resetProjection(outer->host.width, outer->host.height);
  return rendered;
}

/// What the host shows at `frame` where no layer is drawn: its picture where the frame has it, around it the colour of
/// its first pixel.
void showHostFrame(const EffectProcessInfo* outer, int frame, WorkImage* picture) {
  const HostFunctionTable* host = environment.hostFunctions;
  const FramePixel* from = host->getFrameBeforeFilter
                               ? host->getFrameBeforeFilter(environment.mainFilter, environment.edit, frame, 0)
                               : nullptr;
  if (!from) return;
  const int width = outer->host.width, height = outer->host.height;
  const int fromWidth = std::min(environment.clip.width, width - outer->offsetX);
  const int fromHeight = std::min(environment.clip.height, height - outer->offsetY);
  overRows(host, height, [&](int first, int last) {
    for (int y = first; y < last; y++) {
      FramePixel* row = reinterpret_cast<FramePixel*>(picture->pixels + ptrdiff_t{y} * picture->lineBytes);
      const int fromY = y - outer->offsetY;
      const bool inside = fromY >= 0 && fromY < fromHeight;
      if (!inside || fromWidth < width) std::fill_n(row, width, from[0]);
      if (inside)
        memcpy(row + outer->offsetX, from + ptrdiff_t{fromY} * environment.bufferWidth, fromWidth * sizeof(FramePixel));
    }
  });
  picture->used = {0, 0, width, height};
}

}  // namespace

const void* renderScenePicture(EffectProcessInfo* outer, int scene, int frame, int subFrame, int32_t* width,
                               int32_t* height, int32_t* lineBytes, bool* alpha) {
  if (scene < 1 || scene >= maxScenes) return nullptr;
  *alpha = scenes[scene].flags & sceneHasAlpha;
  const WorkImage* picture = emptyPictures(*alpha);
  if (!picture) return nullptr;
  FrameProcessInfo record = recordFor(outer, picture, *alpha);
  const ImageSize size = sceneSize(scene);
  record.width = size.width;
  record.height = size.height;
  record.frameNumber = frame;
  record.frameCount = sceneLength(scene);
  if (!render(&record, outer, layersPerScene, subFrame, scene)) return nullptr;
  *width = record.width;
  *height = record.height;
  *lineBytes = record.lineBytes;
  return record.frame;
}

const void* renderLayersBelow(EffectProcessInfo* outer, int frame, int32_t* lineBytes) {
  const bool alpha = frameHasAlpha(outer);
  const ObjectRecord* object = outer->currentObject;
  WorkImage* picture = object ? emptyPictures(alpha) : nullptr;
  if (!picture) return nullptr;
  if (outer->depth == 0 && !alpha) showHostFrame(outer, frame, picture);
  FrameProcessInfo record = recordFor(outer, picture, alpha);
  record.frameNumber = frame;
  if (!render(&record, outer, object->homeLayer, 0, object->scene)) return nullptr;
  *lineBytes = record.lineBytes;
  return record.frame;
}

}  // namespace zenlay
