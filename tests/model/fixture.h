// The fixture of the model's tests: an empty model over the test effects, checked after every test.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/fake_host.h"
#include "tests/support/test_effects.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/objects.h"

namespace zenlay::test {

class Model : public testing::Test {
 protected:
  void SetUp() override { startModel(); }
  void TearDown() override {
    EXPECT_EQ(modelFault(), "");
    startModel();
  }
  /// As at start-up, with memory to be had and tracks evaluated.
  static void startModel() {
    refuseGrowth = false;
    growthToRefuse = 0;
    resetFakeHost();
    useTestEffects();
    modelHooks = {.trackValues = evaluateSlot};
  }
  static int create(int frame, int layer, int effect = testFilterObject, int from = -1) {
    int object = createObject(frame, layer, effect, from);
    EXPECT_EQ(modelFault(), "");
    return object;
  }
  /// An object over exactly these frames.
  static int createOver(int first, int last, int layer, int effect = testFilterObject) {
    int object = create(first, layer, effect);
    if (object < 0 || objects[object].start != first) {
      ADD_FAILURE() << "frame " << first << " of layer " << layer << " is taken";
      return -1;
    }
    objects[object].end = last;
    return object;
  }
};

}  // namespace zenlay::test
