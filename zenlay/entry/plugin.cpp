// The filter records and their per-frame, save and start-up callbacks.
#include "zenlay/entry/plugin.h"

#include "zenlay/effects/effect_services.h"
#include "zenlay/files/project_block.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/audio_mix.h"
#include "zenlay/render/convert.h"
#include "zenlay/render/pipeline.h"
#include "zenlay/ui/input/window_procedure.h"
#include "zenlay/ui/project/backup.h"
#include "zenlay/ui/project/clip.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay {
namespace {

constexpr uint32_t mainFlags = 0x40062004;
constexpr uint32_t audioFlags = 0x00340004;

void limitToRgbRange(const FrameProcessInfo& info) {
  overRows(environment.hostFunctions, info.height, [&](int first, int last) {
    for (int y = first; y < last; y++) {
      char* row = reinterpret_cast<char*>(info.frame) + static_cast<int64_t>(info.lineBytes) * y;
      saturateRow(reinterpret_cast<FramePixel*>(row), info.width);
    }
  });
}

int processFrame(HostFilterRecord*, FrameProcessInfo* info) {
  if (objectCount == 0) return 1;
  environment.edit = info->edit;
  renderSceneFrame(info, layersPerScene, 0, 0, 0);
  environment.outputWidth = info->width;
  environment.outputHeight = info->height;
  if (environment.projectOpen && preferences.saturation) limitToRgbRange(*info);
  return 1;
}

int processAudio(HostFilterRecord*, FrameProcessInfo* info) {
  if (objectCount == 0) return 1;
  environment.edit = info->edit;
  mixSceneSound(*info, currentScene);
  return 1;
}

int startAudio(HostFilterRecord* filter) {
  HostSystemInfo system{};
  return filter->functions->getSystemInfo(nullptr, &system) && !(system.flags & hostRefuses);
}

int saveStart(HostFilterRecord*, int32_t first, int32_t last, EditHandle) {
  writeAutomaticBackup(true);
  environment.saveFirst = first;
  environment.saveLast = last;
  environment.saving = true;
  enableSettings(false);
  return 1;
}

int saveEnd(HostFilterRecord*, EditHandle) {
  environment.saving = false;
  enableSettings(true);
  return 1;
}

int loadAndShow(HostFilterRecord* filter, EditHandle edit, const void* data, int32_t size) {
  int loaded = loadProject(filter, edit, data, size);
  showModel();
  return loaded;
}

}  // namespace

constinit HostFilterRecord mainFilterRecord = {
    .flags = mainFlags,
    .name = "Zenlay",
    .process = processFrame,
    .initialise = startUp,
    .exit = shutDown,
    .windowProcedure = timelineWindowProcedure,
    .information = "Zenlay(zenlay) version 0.92",
    .saveStart = saveStart,
    .saveEnd = saveEnd,
    .projectLoad = loadAndShow,
    .projectSave = saveProject,
};

constinit HostFilterRecord audioFilterRecord = {
    .flags = audioFlags,
    .name = "Zenlay(Audio)",
    .process = processAudio,
    .initialise = startAudio,
    .information = "Zenlay(Audio) ver 0.92",
};

}  // namespace zenlay
