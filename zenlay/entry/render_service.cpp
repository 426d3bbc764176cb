#include "zenlay/entry/render_service.h"

#include <cstdio>
#include <cstring>

#include "platform/system.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/convert.h"
#include "zenlay/render/own_frame.h"
#include "zenlay/render/pipeline.h"

namespace zenlay {
namespace {

constexpr int serviceNumber = 12337;
constexpr uint32_t serviceFrameFlags = processFlattening;  // onto an empty frame with alpha

platform::SharedMemory* serviceMapping;
OwnFrame rendered;

int endRender() {
  releaseFrame(rendered);
  return 1;
}

int beginRender(int32_t values[6]) {
  if (timelineView.sceneLength < 1) return 0;
  const HostFileInfo& clip = environment.clip;
  const int32_t state[6] = {environment.saveFirst,
                            environment.saveLast,
                            environment.outputWidth,
                            environment.outputHeight,
                            clip.rate,
                            clip.scale};
  memcpy(values, state, sizeof state);
  return reserveFrame(rendered);
}

/// Bottom-up 32-bit rows.
void convertFrame(const FrameProcessInfo& info) {
  Bgra* out = static_cast<Bgra*>(environment.workBuffer);
  overRows(environment.hostFunctions, info.height, [&](int first, int last) {
    for (int y = first; y < last; y++) {
      const char* row = reinterpret_cast<const char*>(info.frame) + int64_t{environment.workLineBytes} * y;
      objectToBgraRow(out + int64_t{info.width} * (info.height - 1 - y), reinterpret_cast<const ObjectPixel*>(row),
                      info.width);
    }
  });
}

void* renderFrame(int32_t frame) {
  if (!rendered.image) return nullptr;
  FrameProcessInfo info = infoOfFrame(rendered, frame, serviceFrameFlags);
  memset(info.frame, 0, static_cast<size_t>(environment.workLineBytes) * info.height);
  renderSceneFrame(&info, layersPerScene, 0, 0, 0);
  convertFrame(info);
  return environment.workBuffer;
}

}  // namespace

void publishRenderService() {
  char name[64];
  snprintf(name, sizeof name, "%s_%d_%d", "zenlay", serviceNumber, platform::processId());
  serviceMapping = platform::createSharedMemory(name, sizeof(RenderService));
  if (!serviceMapping) return;
  if (void* memory = platform::mapSharedMemory(serviceMapping)) {
    const RenderService service{beginRender, endRender, renderFrame};
    memcpy(memory, &service, sizeof service);
    platform::unmapSharedMemory(serviceMapping);
  }
}

void closeRenderService() {
  endRender();
  if (serviceMapping) platform::closeSharedMemory(serviceMapping);
  serviceMapping = nullptr;
}

}  // namespace zenlay
