// Objects on the timeline, for every test that drives the editor.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/ui/timeline/selection.h"

namespace zenlay::test {

struct Place {
  int start, end, layer;
  bool operator==(const Place&) const = default;
  friend void PrintTo(const Place& p, std::ostream* out) { *out << p.start << ".." << p.end << " on " << p.layer; }
};
using Places = std::vector<Place>;

class Stage : public testing::Test {
 protected:
  /// An object over exactly these frames, neither selected nor current.
  static int create(int first, int last, int layer, int effect) {
    int object = createObject(first, layer, effect, -1);
    EXPECT_GE(object, 0);
    EXPECT_EQ(objects[object].start, first);
    objects[object].end = last;
    rebuildOrder();
    return object;
  }
  static Place placeOf(int object) { return {objects[object].start, objects[object].end, objects[object].layer}; }
  /// Of every object on the timeline, by layer and frame.
  static Places places() {
    Places list;
    for (int e = 0; e < sceneObjectCount; e++) list.push_back(placeOf(indexOf(layerOrder[e])));
    return list;
  }
  static std::vector<int> selected() { return {selection().begin(), selection().end()}; }
};

}  // namespace zenlay::test
