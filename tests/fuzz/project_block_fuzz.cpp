// Any bytes as a project block: loaded or refused, never a broken model; what was loaded is saved and loaded again.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "tests/fuzz/mutator.h"
#include "tests/support/fake_host.h"
#include "tests/support/test_effects.h"
#include "zenlay/files/project_block.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/sections.h"

namespace zenlay::test {
namespace {

void demandSoundModel() {
  std::string fault = modelFault();
  if (fault.empty()) return;
  fprintf(stderr, "%s\n", fault.c_str());
  abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  resetFakeHost();
  useTestEffects();
  loadProject(nullptr, nullptr, data, static_cast<int32_t>(size));
  demandSoundModel();
  int32_t bytes = 0;
  if (!saveProject(nullptr, nullptr, nullptr, &bytes)) return 0;
  int before = objectCount;
  std::vector<uint8_t> again(static_cast<size_t>(bytes));
  saveProject(nullptr, nullptr, again.data(), &bytes);
  loadProject(nullptr, nullptr, again.data(), bytes);
  demandSoundModel();
  if (objectCount != before) abort();
  return 0;
}

TEST(ProjectBlockFuzz, MutatedBlocksLeaveASoundModel) {
  resetFakeHost();
  useTestEffects();
  int video = createObject(0, 0, testVideo, -1);
  appendSection(video, objects[video].end + 1, objects[video].end + 9);
  createObject(0, 1, testForeign, -1);
  createObject(0, 2, testGraphic, -1);
  int32_t size = 0;
  ASSERT_EQ(saveProject(nullptr, nullptr, nullptr, &size), 1);
  std::vector<uint8_t> seed(static_cast<size_t>(size));
  saveProject(nullptr, nullptr, seed.data(), &size);
  int runs = fuzzFor(2.0, seed, [](const uint8_t* data, size_t count) { LLVMFuzzerTestOneInput(data, count); });
  EXPECT_GT(runs, 100);
  resetFakeHost();
}

}  // namespace zenlay::test
