// Start-up and shut-down of the module. The order of the steps is part of the contract with the host and with other
// plug-ins; each failure returns at once and leaves what was set up before.
#include <algorithm>
#include <cstring>

#include "platform/paths.h"
#include "platform/system.h"
#include "platform/window.h"
#include "zenlay/effects/effect_services.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/entry/plugin.h"
#include "zenlay/entry/render_service.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/module_files.h"
#include "zenlay/host/preferences.h"
#include "zenlay/media/figures.h"
#include "zenlay/media/image_loading.h"
#include "zenlay/media/media_handles.h"
#include "zenlay/media/media_services.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/audio_mix.h"
#include "zenlay/render/draw.h"
#include "zenlay/render/effect_commands.h"
#include "zenlay/render/image_cache.h"
#include "zenlay/render/pipeline.h"
#include "zenlay/render/work_memory.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

constexpr int minHostBuild = 9933;
constexpr int maxShadow = 0x10000;
constexpr int shadowAlignment = 16;
constexpr int cameraViewWidth = 640, cameraViewHeight = 480;

platform::HookHandle* keyboardHook;

int onPlayback(int32_t frame, int32_t flags) {
  playbackNotification(frame, static_cast<uint32_t>(flags));
  return 1;
}

void onObjectReleased(int) { showObject(-1); }

void onObjectChanged(int object) {
  settingsObjectChanged(object);
  redrawChain(object);
}

void onObjectDeleted(int object) {
  forgetObject(object);
  freeWorkMemoryOf(object);
}

void resetState(HostFilterRecord* filter, const HostSystemInfo& system) {
  WindowHandle window = filter->window;
  environment = Environment{};
  environment.hostBuild = system.build;
  environment.timelineWindow = window;
  environment.mainFilter = filter;
  environment.hostMainWindow = window ? platform::windowOwner(window) : nullptr;

  freeObjects();
  freeImageCache();
  resetPreferences();
  resetTimelineView();
  clearScenes();
  nearPercent = defaultNearPercent;
  resetProjection(cameraViewWidth, cameraViewHeight);
  rebuildOrder();
}

void takePathsAndLimits(const HostSystemInfo& system) {
  environment.modulePath = platform::modulePathOf(reinterpret_cast<const void*>(&startUp));
  environment.pluginDirectory = platform::folderOf(environment.modulePath);
  environment.backupDirectory = environment.pluginDirectory + "backup/";
  environment.maxWidth = system.maxWidth;
  environment.maxHeight = system.maxHeight;
  environment.maxFrames = system.maxFrames;
  environment.bufferWidth = system.bufferWidth;
  environment.bufferHeight = system.bufferHeight;
  environment.font = system.font;
}

/// Reads the sizes and reserves the work buffer; false when it cannot be had.
bool takeWorkBuffer(HostFilterRecord* filter) {
  const HostFunctionTable* host = filter->functions;
  environment.hostFunctions = host;
  if (!deriveWorkSize(environment, host->readIntSetting(filter, "max_w", 0), host->readIntSetting(filter, "max_h", 0)))
    return false;
  environment.shadowMax = std::clamp(host->readIntSetting(filter, "shadow_max", defaultShadowMax), 0, maxShadow);
  environment.shadowMaxAligned = (environment.shadowMax + shadowAlignment - 1) / shadowAlignment * shadowAlignment;
  environment.workBuffer = platform::reserveMemory(static_cast<size_t>(environment.workBufferBytes));
  return environment.workBuffer != nullptr;
}

void linkHostFilters(int count) {
  constexpr PlaybackCallback callback = onPlayback;
  for (int i = 0; i < count; i++) {
    HostFilterRecord* filter = environment.hostFunctions->getFilterRecord(i);
    if (!filter || !filter->name) continue;
    if (strcmp(filter->name, playbackFilter) == 0 && filter->window)
      platform::postMessage(filter->window, messageCommand, playbackLink, reinterpret_cast<intptr_t>(callback));
    if (strcmp(filter->name, mainFilterRecord.name) == 0 && filter->name != mainFilterRecord.name) {
      showMessage(
          "Multiple Zenlay plug-ins have been registered\nThere is a possibility that it may not operate normally",
          boxError);
      continue;
    }
    adoptHostFilter(filter);
  }
}

}  // namespace

int startUp(HostFilterRecord* filter) {
  platform::maskFloatingPointExceptions();
  HostSystemInfo system{};
  if (!filter->functions->getSystemInfo(nullptr, &system) || (system.flags & hostRefuses)) return 0;
  if (!platform::hasSse2()) {
    showMessage("Only works with CPU that supports SSE2", boxError);
    return 0;
  }
  if (system.build < minHostBuild) {
    showMessage("It does not work in this version of Cinora", boxError);
    return 0;
  }
  resetState(filter, system);
  takePathsAndLimits(system);
  if (!takeWorkBuffer(filter)) {
    showMessage("Unable to reserve memory", boxError);
    return 0;
  }
  setHandleLimit(filter->functions->readIntSetting(filter, "avi_handle_max", defaultMediaHandles));
  initialiseImageCache(filter->functions->readIntSetting(filter, "image_cache_max", defaultImageCacheSlots));
  readModuleFiles(environment.modulePath);
  loadImagePlugins(environment.pluginDirectory.c_str());
  buildFigureList(environment.pluginDirectory.c_str());
  modelHooks = {.objectReleased = onObjectReleased,
                .objectChanged = onObjectChanged,
                .objectDeleted = onObjectDeleted,
                .sendCommand = sendEffectCommand,
                .hideControls = hideEffectControls,
                .trackValues = evaluateSlot};
  installMediaServices();
  registerBuiltIns(filter->functions, &effectServices, filter);
  linkHostFilters(system.filterCount);
  scanAliases();
  publishRenderService();
  keyboardHook = platform::installKeyHook(settingsKey);
  return 1;
}

int shutDown(HostFilterRecord*) {
  if (keyboardHook) platform::removeKeyHook(keyboardHook);
  keyboardHook = nullptr;
  closeRenderService();
  exitEffects();
  modelHooks = {};
  freeRenderBuffers();
  freeSoundBuffers();
  freeWorkMemory();
  unloadImagePlugins();
  freeFigureList();
  freeImageCache();
  closeAllMedia();
  if (environment.workBuffer) {
    platform::releaseMemory(environment.workBuffer, static_cast<size_t>(environment.workBufferBytes));
  }
  environment.workBuffer = nullptr;
  freeObjects();
  freeClipboard();
  return 1;
}

}  // namespace zenlay
