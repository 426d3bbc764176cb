// Any bytes as an object file: read as far as they make sense, never a broken model; what was read is written and read
// again with the same number of objects.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/paths.h"
#include "tests/fuzz/mutator.h"
#include "tests/support/fake_host.h"
#include "tests/support/test_effects.h"
#include "zenlay/files/object_file.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"

namespace zenlay::test {
namespace {

constexpr char seedFile[] =
    "[zenlay]\r\nwidth=640\r\n[0]\r\nstart=1\r\nend=150\r\nlayer=1\r\noverlay=1\r\ncamera=0\r\n[0.0]\r\n"
    "_name=Video file\r\nvPlay=100.0\r\nfile=a.avi\r\n[0.1]\r\n_name=Blur\r\n_disable=1\r\nFine=12.345,1,1@swing,3\r\n"
    "[0.2]\r\n_name=Standard drawing\r\nX=0.0,200.0,1\r\nblend=3\r\n[1]\r\nstart=151\r\nend=200\r\nlayer=1\r\n"
    "overlay=1\r\nchain=1\r\n[1.0]\r\n_name=Video file\r\n[1.1]\r\n_name=Blur\r\n[1.2]\r\n_name=Standard drawing\r\n"
    "[2]\r\nstart=1\r\nend=9\r\nlayer=2\r\ngroup=3\r\n[2.0]\r\n_name=Foreign\r\n_exdata=0908\r\n"
    "[3]\r\nstart=1\r\nend=9\r\nlayer=3\r\noverlay=1\r\n[3.0]\r\n_name=Graphic\r\ncolor=ff00aa\r\nname=star\r\n"
    "[3.1]\r\n_name=Advanced drawing\r\n";

std::string filePath() { return testing::TempDir() + "object_file_fuzz_" + std::to_string(getpid()) + ".zlo"; }

void demand(bool sound, const std::string& fault) {
  if (sound) return;
  fprintf(stderr, "%s\n", fault.c_str());
  abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string path = filePath();
  resetFakeHost();
  useTestEffects();
  std::FILE* file = platform::openFile(path, "wb");
  if (!file) return 0;
  fwrite(data, 1, size, file);
  fclose(file);
  ObjectFileHeader header;
  readObjectFileHeader(path.c_str(), &header);
  readObjectFile(path.c_str(), 0, 0);
  demand(modelFault().empty(), modelFault());
  int before = objectCount;
  writeObjectFile(path.c_str());
  resetFakeHost();
  useTestEffects();
  readObjectFile(path.c_str(), 0, 0);
  demand(modelFault().empty(), modelFault());
  demand(objectCount == before, "objects lost on the way through a file");
  return 0;
}

TEST(ObjectFileFuzz, MutatedFilesLeaveASoundModel) {
  std::vector<uint8_t> seed(seedFile, seedFile + strlen(seedFile));
  int runs = fuzzFor(2.0, seed, [](const uint8_t* data, size_t size) { LLVMFuzzerTestOneInput(data, size); });
  EXPECT_GT(runs, 100);
  resetFakeHost();
  platform::removeFile(filePath());
}

}  // namespace zenlay::test
