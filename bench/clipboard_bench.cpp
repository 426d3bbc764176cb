// Pasting 1,000 objects among 14,000 and undoing it, beside a copy of the object table's bytes.
#include <cstdio>
#include <cstring>
#include <vector>

#include "bench/ratio.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/environment.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"

namespace {

using namespace zenlay;

constexpr int pasted = 1000, present = maxObjects - pasted;
constexpr int perLayer = present / layersPerScene;

/// Two media effects: with the file name of a video and with a text's many bytes.
void useEffects() {
  static EffectDefinition effects[2]{};
  const int extraBytes[] = {284, 2140};
  for (int i = 0; i < 2; i++) {
    effects[i].flag = effectBuiltIn | effectHasExtraData | effectMedia;
    effects[i].name = "Media";
    effects[i].exdata_size = extraBytes[i];
    effectList[i] = &effects[i];
  }
  effectCount = 2;
}

/// 140 objects a layer, each at `place(n, layer)`; the first ten of every layer are copied.
template <class Place>
void fill(Place place, bool holes) {
  freeObjects();
  useEffects();
  clearScenes();
  clearClipboard();
  setZoomLevel(zoomLevels - 1);
  timelineView.sceneLength = 1 << 20;
  for (int n = 0; n < perLayer; n++)
    for (int layer = 0; layer < layersPerScene; layer++) {
      FrameRange frames = place(n, layer);
      int object = createObject(frames.first, layer, n & 1, -1);
      objects[object].end = frames.last;
    }
  for (const LayerRange& range : layerRanges)
    for (int i = 0; i < pasted / layersPerScene; i++) copyToClipboard(indexOf(layerOrder[range.first + i]));
  for (int i = 0; i < present / 2 && holes; i += 2)
    if (objects[i].slots[0].effect == 0) dropObject(i);  // every second of those with little extra data
  rebuildOrder();
}

void pasteAndUndo() {
  const int before = objectCount;
  beginUndoStep();
  pasteClipboard(0, 0, nullptr, nullptr);
  if (objectCount != before + pasted) std::printf("pasted %d\n", objectCount - before);
  undo();
}

void copyTable() {
  static std::vector<ObjectRecord> copy(maxObjects);
  memcpy(copy.data(), objects, maxObjects * sizeof(ObjectRecord));
  benchmark::DoNotOptimize(copy.data());
}

template <class Place>
void addPaste(const char* name, Place place, bool holes = false) {
  bool filled = false;
  bench::addRatio(
      name, 8.0,
      [=]() mutable {
        if (!filled) fill(place, holes);
        filled = true;
        pasteAndUndo();
      },
      copyTable);
}

}  // namespace

int main(int argc, char** argv) {
  addPaste("paste 1000, objects end to end", [](int n, int) { return FrameRange{n * 10, n * 10 + 9}; });
  addPaste(
      "paste 1000, holes in the extra data",
      [](int n, int) {
        return FrameRange{n * 10, n * 10 + 9};
      },
      true);
  addPaste("paste 1000, gaps too small for most", [](int n, int) { return FrameRange{n * 14, n * 14 + 7 + n % 3}; });
  addPaste("paste 1000, ragged", [](int n, int layer) {
    unsigned noise = static_cast<unsigned>(n * layersPerScene + layer) * 2654435761u;
    int first = n * 20 + static_cast<int>(noise >> 8 & 3);
    return FrameRange{first, first + 1 + static_cast<int>(noise >> 16 & 7)};
  });
  int result = bench::runRatios(argc, argv);
  freeClipboard();
  freeObjects();
  return result;
}
