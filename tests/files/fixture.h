// The fixture of the tests of files: an empty model over the test effects, checked after every test, and a folder.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/fake_host.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/test_effects.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/objects.h"

namespace zenlay::test {

class Files : public testing::Test {
 protected:
  Files() {
    resetFakeHost();
    useTestEffects();
  }
  ~Files() override {
    EXPECT_EQ(modelFault(), "");
    freeObjects();
  }
  ::test::ScratchFolder folder;
};

}  // namespace zenlay::test
