// Edits of a full project, 15,000 objects on 100 layers and a full history, each with undo and order as one command
// makes it. Times are the best and the median of the runs in milliseconds of the thread (nothing here waits), so that
// a busy machine does not count, beside the most they may take.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"

namespace {

using namespace zenlay;

constexpr int objectsALayer = maxObjects / layersPerScene, frames = 40, length = 20;
constexpr int runs = 200, refill = 400;

int created[layersPerScene][objectsALayer];

/// Pictures of `length` frames, one every `frames` frames, moving; one record is left free for what is added.
void fillProject() {
  registerBuiltIns(nullptr, nullptr, nullptr);
  freeObjects();
  modelHooks = {.trackValues = evaluateSlot};
  setZoomLevel(21);
  timelineView.sceneLength = objectsALayer * frames;
  for (int i = 0; i < maxObjects - 1; i++) {
    int layer = i % layersPerScene, place = i / layersPerScene;
    int object = createObject(place * frames, layer, effectGraphic, -1);
    objects[object].end = objects[object].start + length - 1;
    objects[object].modes[0] = modeRectilinear;
    created[layer][place] = object;
  }
  rebuildOrder();
}

/// Steps of one snapshot, so many that old ones are pushed out.
void fillHistory(int steps) {
  for (int i = 0; i < steps; i++) {
    beginUndoStep();
    recordUndo(created[i % layersPerScene][0], undoSnapshot);
  }
}

double threadSeconds() {
  timespec time;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

struct Times {
  std::string name;
  double best, median, bar;
};
std::vector<Times> table;

/// Times `edit`, given the number of the run; what it did is undone afterwards.
void addEdit(const char* name, double bar, std::function<void(int)> edit) {
  benchmark::RegisterBenchmark(name,
                               [=](benchmark::State& state) {
                                 std::vector<double> taken;
                                 int run = 0;
                                 for (auto _ : state) {
                                   fillHistory(refill);
                                   const double start = threadSeconds();
                                   beginUndoStep();
                                   edit(run);
                                   const double seconds = threadSeconds() - start;
                                   run++;
                                   state.SetIterationTime(seconds);
                                   taken.push_back(seconds * 1e3);
                                   undo();
                                 }
                                 std::sort(taken.begin(), taken.end());
                                 table.push_back({name, taken.front(), taken[taken.size() / 2], bar});
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond)
      ->Iterations(runs);
}

int some(int run) { return created[run * 37 % layersPerScene][run * 11 % (objectsALayer - 1)]; }

void addEdits() {
  addEdit("rebuildOrder", 3, [](int) { rebuildOrder(); });
  addEdit("split one object", 5, [](int run) { splitObject(some(run), objects[some(run)].start + 7); });
  addEdit("add a midpoint", 5, [](int run) { addSection(some(run), objects[some(run)].start + 7, sectionSplit); });
  addEdit("move one object", 5, [](int run) {
    int object = some(run);
    recordUndo(object, undoPosition);
    objects[object].start += 5;
    objects[object].end += 5;
    rebuildOrder();
  });
  addEdit("lengthen one object", 5, [](int run) { setObjectLength(some(run), length + 9); });
  addEdit("delete one object", 5, [](int run) { deleteObject(some(run)); });
  addEdit("undo one deletion", 5, [](int run) {
    beginUndoStep();
    deleteObject(some(run));
    undo();
  });
  addEdit("delete a layer (150 objects)", 50, [](int run) { deleteLayer(90 + run % 10); });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  fillProject();
  fillHistory(3000);
  addEdits();
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\n%d objects, %d undo steps at the end\n%-44s %9s %9s %5s\n", objectCount, undoSteps(), "name",
              "best ms", "median ms", "bar");
  for (const Times& t : table)
    std::printf("%-44s %9.3f %9.3f %5.0f%s\n", t.name.c_str(), t.best, t.median, t.bar,
                t.median > t.bar ? "  MISSED" : "");
  benchmark::Shutdown();
  return 0;
}
