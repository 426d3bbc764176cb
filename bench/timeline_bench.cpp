// The timeline of a full project, 15,000 objects, in a window of 1600 x 900 pixels: redrawn whole, and one step of
// dragging 100 selected objects with everything that step redraws. Text costs what copying its pixels costs, as it does
// once a desktop has rendered it. Best and median of the runs in milliseconds, beside the most they may take.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <vector>

#include "platform/backend.h"
#include "platform/user_input.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/input/window_procedure.h"
#include "zenlay/ui/timeline/drag.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace {

using namespace zenlay;

constexpr int width = 1600, height = 900, runs = 200, selectedObjects = 100;
constexpr double bar = 8;

std::vector<uint32_t> pixels(width* height);
platform::Canvas* canvas;
platform::Window* window;

void prepareWindow() {
  static platform::DesktopBackend table{};
  table.windowCanvas = [](platform::Window* asking) { return asking == window ? canvas : nullptr; };
  table.renderText = [](const char* text, platform::TextFont, double) {
    int columns = 6 * static_cast<int>(strlen(text));
    return platform::CoverageMask{columns, 13, 0, 0, std::vector<uint8_t>(static_cast<size_t>(columns) * 13, 128)};
  };
  platform::setDesktopBackend(&table);
  auto forward = [](platform::Window* w, uint32_t message, intptr_t first, intptr_t second, void*) -> intptr_t {
    return timelineWindowProcedure(w, message, first, second, nullptr, nullptr);
  };
  window = platform::createWindow(nullptr, forward, nullptr, {.style = platform::windowVisible});
  canvas = platform::wrapCanvas(window, pixels.data(), {width, height}, 1);
  environment.timelineWindow = window;
}

const HostFunctionTable& hostFunctions() {
  static HostFunctionTable f{};
  f.getCurrentFrame = [](EditHandle) -> int32_t { return 0; };
  f.setCurrentFrame = [](EditHandle, int32_t frame) -> int32_t { return frame; };
  f.getFrameCount = [](EditHandle) -> int32_t { return timelineView.sceneLength; };
  f.setFrameCount = [](EditHandle, int32_t) -> int32_t { return 1; };
  f.getSelection = [](EditHandle, int32_t*, int32_t*) -> int32_t { return 0; };
  f.readIntSetting = [](HostFilterRecord*, const char*, int32_t fallback) { return fallback; };
  f.readStringSetting = [](HostFilterRecord*, const char*, char* out, const char* fallback) -> int32_t {
    strcpy(out, fallback);
    return 1;
  };
  f.addMenuItem = [](HostFilterRecord*, const char*, WindowHandle, int32_t, int32_t, int32_t) -> int32_t { return 1; };
  return f;
}

/// `length` frames of every `spacing`, spread over so many layers.
void fillProject(int layersUsed, int spacing, int length) {
  freeObjects();
  timelineView.sceneLength = maxObjects / layersUsed * spacing;
  for (int i = 0; i < maxObjects; i++) {
    int object = takeFreeObject();
    ObjectRecord& o = objects[object];
    o.flags = objectFlagsOf(effectList[i % 3 ? effectGraphic : effectText]);
    o.slots[0] = {i % 3 ? effectGraphic : effectText, 0, 0, 0};
    o.slotFlags[0] = newSlotFlags;
    o.layer = o.homeLayer = i % layersUsed;
    o.start = i / layersUsed * spacing + (length > 10 ? i % layersUsed % 10 : 0);
    o.end = o.start + length - 1;
  }
  rebuildOrder();
}

void measure(const char* name, const std::function<void(int)>& work) {
  std::vector<double> times;
  for (int i = 0; i < runs; i++) {
    auto start = std::chrono::steady_clock::now();
    work(i);
    times.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  }
  std::sort(times.begin(), times.end());
  double best = times.front(), median = times[times.size() / 2];
  std::printf("%-52s %8.3f %8.3f %6.1f%s\n", name, best, median, bar, median > bar ? "  MISSED" : "");
}

void repaint(int) { platform::sendMessage(window, platform::messagePaint, 0, 0); }

/// Ctrl holds the selection, which is spread over the project; the mouse goes to and fro by so many pixels.
void measureDrag(const char* name, int reach) {
  clearSelection();
  for (int i = 0; i < selectedObjects; i++) addToSelection(151 * i % maxObjects);
  platform::Point at{xOfFrame((objects[0].start + objects[0].end) / 2), rowsTop + 10};
  platform::user::mouse(window, platform::messageLeftDown, at, platform::mouseCtrl | platform::mouseLeft);
  int steps = 0, before = objects[0].start;
  measure(name, [&](int i) {
    platform::Point to{at.x + (i % 2 ? 0 : reach), at.y};
    platform::user::mouse(window, platform::messageMouseMove, to, platform::mouseCtrl | platform::mouseLeft);
    steps += objects[0].start != before;
    before = objects[0].start;
  });
  platform::user::mouse(window, platform::messageLeftUp, at, 0);
  if (steps < runs / 2) std::printf("  only %d of %d steps moved anything\n", steps, runs);
}

}  // namespace

int main() {
  environment.hostFunctions = &hostFunctions();
  environment.clip.rate = 30, environment.clip.scale = 1;
  environment.maxFrames = 1000000;
  registerBuiltIns(environment.hostFunctions, nullptr, nullptr);
  rebuildOrder();
  prepareWindow();
  platform::sendMessage(window, messageWindowSetUp, 0, 0);
  platform::setClientSize(window, {width, height});
  preferences.auto_scroll = 0;
  std::printf("%-52s %8s %8s %6s\n", "milliseconds", "best", "median", "bar");

  setTimelineZoom(14);  // 0.2 pixel a frame
  fillProject(100, 50, 20);
  updateScrollBars();
  measure("full redraw, 4050 of the objects in view", repaint);
  measureDrag("drag step, objects spread over 100 layers", 2);
  preferences.grid.grid = 1;
  measure("full redraw with a beat grid", repaint);
  preferences.grid.grid = 0;
  fillProject(27, 14, 6);
  measure("full redraw, all objects in view", repaint);
  measureDrag("drag step, all objects in view", 1);
  platform::destroyWindow(window);
}
