#include "zenlay/render/own_frame.h"

#include <algorithm>

#include "platform/system.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/timeline_view.h"

namespace zenlay {
namespace {

constexpr int64_t minBytes = 2097152;

}  // namespace

bool reserveFrame(OwnFrame& frame) {
  releaseFrame(frame);
  frame.bytes = static_cast<size_t>(std::max(environment.workBufferBytes, minBytes));
  for (FramePixel** area : {&frame.image, &frame.scratch})
    *area = static_cast<FramePixel*>(platform::reserveMemory(frame.bytes));
  if (frame.image && frame.scratch) return true;
  releaseFrame(frame);
  return false;
}

void releaseFrame(OwnFrame& frame) {
  for (FramePixel* area : {frame.image, frame.scratch})
    if (area) platform::releaseMemory(area, frame.bytes);
  frame = {};
}

FrameProcessInfo infoOfFrame(const OwnFrame& frame, int number, uint32_t flags) {
  FrameProcessInfo info{};
  info.flags = flags;
  info.frame = frame.image;
  info.scratch = frame.scratch;
  info.width = info.originalWidth = environment.outputWidth;
  info.height = info.originalHeight = environment.outputHeight;
  info.maxWidth = environment.bufferWidth;
  info.maxHeight = environment.maxHeight;
  info.frameNumber = number;
  info.frameCount = timelineView.sceneLength;
  info.edit = environment.edit;
  info.pixelBytes = sizeof(FramePixel);
  info.lineBytes = environment.bufferWidth * static_cast<int>(sizeof(FramePixel));
  return info;
}

}  // namespace zenlay
