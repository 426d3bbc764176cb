// Opening the object settings window on the real desktop: an object of 12 effects and 64 tracks after a small one,
// until everything is drawn; at most 30 ms.
#define QT_NO_KEYWORDS
#include <benchmark/benchmark.h>

#include <QApplication>

#include "platform/backend.h"
#include "platform/qt/qt_desktop.h"
#include "zenlay/effects/registry.h"
#include "zenlay/entry/plugin.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay {
namespace {

/// Tracks 3, 8, 7, 6, 5, 5, 4, 4, 4, 3, 3 and 12.
constexpr const char* filters[] = {"Displacement map", "Noise", "Mask",     "Gradient",   "Video files synthesis",
                                   "Shadow",           "Glow",  "Emission", "Chroma Key", "Blur"};

HostFunctionTable functions;

HostFunctionTable hostOf() {
  HostFunctionTable host{};
  host.getSystemInfo = [](EditHandle, HostSystemInfo* info) {
    *info = {};
    info->maxWidth = info->bufferWidth = 1920;
    info->maxHeight = info->bufferHeight = 1080;
    info->maxFrames = 100000;
    info->build = 10000;
    return 1;
  };
  host.readIntSetting = [](HostFilterRecord*, const char*, int32_t fallback) { return fallback; };
  host.getFrameCount = [](EditHandle) { return 1000; };
  return host;
}

int create(int layer) {
  int object = createObject(0, layer, effectGraphic, -1);
  for (int slot = 0; slot < usedSlots(object); slot++) setChainSlotDefaults(object, slot);
  return object;
}

void add(int object, int effect) {
  int slot = addEffect(object, effect);
  if (slot >= 0) setChainSlotDefaults(object, slot);
}

void startEditor() {
  static bool started;
  if (started) return;
  started = true;
  functions = hostOf();
  mainFilterRecord.functions = &functions;
  mainFilterRecord.window = platform::createWindow(nullptr, nullptr, nullptr, {});
  mainFilterRecord.initialise(&mainFilterRecord);
  environment.projectOpen = true;
  timelineView.sceneLength = 1000;
  if (!settingsWindow()) createSettingsWindow();
}

/// An object of 12 effects and 64 tracks; -1 when the effects are not what they were.
int createFull() {
  int full = create(0);
  add(full, effectAdvancedDrawing);
  for (const char* name : filters) add(full, findEffect(name, 0, 1));
  return usedSlots(full) == maxSlots && objects[full].trackCount == maxTracks ? full : -1;
}

void settle() {
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QApplication::processEvents();
}

void openObject(benchmark::State& bench, bool first) {
  startEditor();
  int full = createFull(), small = create(1);
  if (full < 0) bench.SkipWithError("the object has not 12 effects and 64 tracks");
  for (auto _ : bench) {
    bench.PauseTiming();
    if (first) {
      destroySettingsWindow();
      settle();
      createSettingsWindow();
    } else {
      showObject(small);
    }
    settle();
    bench.ResumeTiming();
    showObject(full);
    settle();
  }
  showObject(-1);
  deleteAllObjects();
}

void createWindow(benchmark::State& bench) {
  startEditor();
  for (auto _ : bench) {
    bench.PauseTiming();
    destroySettingsWindow();
    settle();
    bench.ResumeTiming();
    createSettingsWindow();
    settle();
  }
}

BENCHMARK_CAPTURE(openObject, afterAnother, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(openObject, first, true)->Unit(benchmark::kMillisecond);
BENCHMARK(createWindow)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zenlay

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("QT_QPA_PLATFORM", "offscreen").toUtf8());
  QApplication application(argc, argv);
  platform::qt::startDesktop();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  platform::qt::stopDesktop();
}
