// Any bytes as an alias file and as default settings: placed and added as far as they make sense, never a broken model;
// a chain that was placed is written and placed again as it was.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/paths.h"
#include "tests/fuzz/mutator.h"
#include "tests/support/fake_host.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/test_effects.h"
#include "zenlay/files/alias_file.h"
#include "zenlay/files/default_settings.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/sections.h"

namespace zenlay::test {
namespace {

constexpr char seedFile[] =
    "[vo]\r\nlength=10\r\nclipping=1\r\ncamera=1\r\n[vo.0]\r\n_name=Video file\r\nvPlay=100.0,2.0,1\r\nfile=a.avi\r\n"
    "[vo.1]\r\n_name=Blur\r\n_disable=1\r\nRange=5\r\nFine=12.345,1,1@swing,3\r\n[vo.2]\r\n_name=Advanced drawing\r\n"
    "X=0.0,200.0,1\r\nblend=3\r\n[vo]\r\nlength=7\r\n[vo.0]\r\n_name=Video file\r\nvPlay=2.0,7.0,1\r\n"
    "[vo.1]\r\n_name=Blur\r\nRange=5\r\n[vo.2]\r\n_name=Advanced drawing\r\nX=200.0\r\n";

void demand(bool sound, const std::string& fault) {
  if (sound) return;
  fprintf(stderr, "%s\n", fault.c_str());
  abort();
}
void demandSoundModel() { demand(modelFault().empty(), modelFault()); }

std::string contentsOf(const std::string& path) {
  std::string text;
  platform::readFile(path, text);
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const ::test::ScratchFolder folder;
  static const std::string path = folder / "Video file.zlc", copy = folder / "copy.zla";
  folder.write("Video file.zlc", {reinterpret_cast<const char*>(data), size});
  resetFakeHost();
  useTestEffects();
  environment.pluginDirectory = folder.path() + "/";
  aliasKind(path.c_str());
  int placed = placeAlias(path.c_str(), 0, 0);
  demandSoundModel();
  int first = createObject(0, 1, testVideo, -1), end = objects[first].end;
  appendSection(first, end + 1, end + 9);
  addAlias(path.c_str(), first);
  demandSoundModel();
  createObjectWithDefaults(0, 2, testVideo);
  demandSoundModel();
  if (placed < 0) return 0;
  writeAlias(placed, aliasWholeObject, 0, copy.c_str());
  std::string before = contentsOf(copy);
  int again = placeAlias(copy.c_str(), 0, 3);
  demand(again >= 0, "an alias was lost on the way through a file");
  demandSoundModel();
  writeAlias(again, aliasWholeObject, 0, copy.c_str());
  demand(contentsOf(copy) == before, "an alias changed on the way through a file");
  return 0;
}

TEST(AliasFileFuzz, MutatedFilesLeaveASoundModel) {
  std::vector<uint8_t> seed(seedFile, seedFile + strlen(seedFile));
  int runs = fuzzFor(2.0, seed, [](const uint8_t* data, size_t size) { LLVMFuzzerTestOneInput(data, size); });
  EXPECT_GT(runs, 100);
  resetFakeHost();
}

}  // namespace zenlay::test
