// Damaged bytes as object files, aliases, default settings and project blocks: what makes sense is read, the model
// stays sound, and what was read is written and read again as it was.
#include <chrono>
#include <functional>
#include <random>

#include "platform/paths.h"
#include "tests/files/fixture.h"
#include "zenlay/files/alias_file.h"
#include "zenlay/files/default_settings.h"
#include "zenlay/files/object_file.h"
#include "zenlay/files/project_block.h"
#include "zenlay/model/order.h"
#include "zenlay/model/sections.h"

namespace zenlay::test {
namespace {

void mutate(std::string& data, std::mt19937& random) {
  constexpr int32_t boundaries[] = {0, 1, -1, 2, 15, 49, 50, 63, 64, 65, 99, 100, 255, 320, 15000, 65535, INT32_MAX};
  auto pick = [&](size_t n) { return static_cast<size_t>(random()) % n; };
  data.resize(std::max<size_t>(data.size(), 8));
  // Half of the mutations hit the front, where the counts and sizes are.
  const size_t at = pick(random() % 2 ? std::min<size_t>(data.size(), 256) : data.size());
  const int32_t value = boundaries[pick(std::size(boundaries))];
  const std::string digits = std::to_string(value), bytes(reinterpret_cast<const char*>(&value), sizeof value);
  switch (pick(7)) {
    case 0:
      data[at] = static_cast<char>(random());
      break;
    case 1:
      data.replace(at & ~size_t{3}, bytes.size(), bytes);
      break;
    case 2:
      data.resize(at);
      break;
    case 3:
      data.insert(pick(data.size()), data.substr(at, pick(64)));
      break;
    case 4:
      data.erase(at, pick(64));
      break;
    case 5:
      data.replace(at, digits.size(), digits);
      break;
    default:
      data[at] = static_cast<char>(data[at] ^ 1 << pick(8));
  }
}

class RandomBytes : public Files {
 protected:
  /// Reads mutations of the seed for two seconds, each into an empty model.
  void readMutationsOf(const std::string& seed, const std::function<void(const std::string& bytes)>& read) {
    std::mt19937 random(20);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    int runs = 0;
    for (; std::chrono::steady_clock::now() < end && !HasFailure(); runs++) {
      std::string bytes = seed;
      for (unsigned i = 0, n = 1 + random() % 6; i < n; i++) mutate(bytes, random);
      startModel();
      read(bytes);
      EXPECT_EQ(modelFault(), "") << "run " << runs << ":\n" << bytes;
    }
    EXPECT_GT(runs, 100);
  }
  static void startModel() {
    resetFakeHost();
    useTestEffects();
  }
};

TEST_F(RandomBytes, AsAnObjectFile) {
  const std::string path = folder / "film.zlo";
  const std::string seed =
      "[zenlay]\r\nwidth=640\r\n[0]\r\nstart=1\r\nend=150\r\nlayer=1\r\noverlay=1\r\ncamera=0\r\n[0.0]\r\n"
      "_name=Video "
      "file\r\nvPlay=100.0\r\nfile=a.avi\r\n[0.1]\r\n_name=Blur\r\n_disable=1\r\nFine=12.345,1,1@swing,3\r\n"
      "[0.2]\r\n_name=Standard drawing\r\nX=0.0,200.0,1\r\nblend=3\r\n[1]\r\nstart=151\r\nend=200\r\nlayer=1\r\n"
      "overlay=1\r\nchain=1\r\n[1.0]\r\n_name=Video file\r\n[1.1]\r\n_name=Blur\r\n[1.2]\r\n_name=Standard drawing\r\n"
      "[2]\r\nstart=1\r\nend=9\r\nlayer=2\r\ngroup=3\r\n[2.0]\r\n_name=Foreign\r\n_exdata=0908\r\n"
      "[3]\r\nstart=1\r\nend=9\r\nlayer=3\r\noverlay=1\r\n[3.0]\r\n_name=Graphic\r\ncolor=ff00aa\r\nname=star\r\n"
      "[3.1]\r\n_name=Advanced drawing\r\n";
  readMutationsOf(seed, [&](const std::string& bytes) {
    folder.write("film.zlo", bytes);
    ObjectFileHeader header;
    readObjectFileHeader(path.c_str(), &header);
    readObjectFile(path.c_str(), 0, 0);
    EXPECT_EQ(modelFault(), "");
    const int before = objectCount;
    writeObjectFile(path.c_str());
    startModel();
    readObjectFile(path.c_str(), 0, 0);
    EXPECT_EQ(objectCount, before);
  });
}

TEST_F(RandomBytes, AsAnAliasAndAsDefaultSettings) {
  const std::string path = folder / "Video file.zlc", copy = folder / "copy.zla";
  auto written = [&](int object) {
    std::string text;
    writeAlias(object, aliasWholeObject, 0, copy.c_str());
    platform::readFile(copy, text);
    return text;
  };
  const std::string seed =
      "[vo]\r\nlength=10\r\nclipping=1\r\ncamera=1\r\n[vo.0]\r\n_name=Video file\r\nvPlay=100.0,2.0,1\r\nfile=a.avi\r\n"
      "[vo.1]\r\n_name=Blur\r\n_disable=1\r\nRange=5\r\nFine=12.345,1,1@swing,3\r\n[vo.2]\r\n_name=Advanced drawing\r\n"
      "X=0.0,200.0,1\r\nblend=3\r\n[vo]\r\nlength=7\r\n[vo.0]\r\n_name=Video file\r\nvPlay=2.0,7.0,1\r\n"
      "[vo.1]\r\n_name=Blur\r\nRange=5\r\n[vo.2]\r\n_name=Advanced drawing\r\nX=200.0\r\n";
  readMutationsOf(seed, [&](const std::string& bytes) {
    folder.write("Video file.zlc", bytes);
    environment.pluginDirectory = folder.path() + "/";
    aliasKind(path.c_str());
    const int placed = placeAlias(path.c_str(), 0, 0);
    EXPECT_EQ(modelFault(), "");
    const int first = createObject(0, 1, testVideo, -1), end = objects[first].end;
    appendSection(first, end + 1, end + 9);
    addAlias(path.c_str(), first);
    EXPECT_EQ(modelFault(), "");
    createObjectWithDefaults(0, 2, testVideo);
    if (placed < 0) return;
    const std::string before = written(placed);
    const int again = placeAlias(copy.c_str(), 0, 3);
    ASSERT_GE(again, 0);
    EXPECT_EQ(written(again), before);
  });
}

TEST_F(RandomBytes, AsAProjectBlock) {
  auto load = [](const std::string& bytes) {
    std::vector<uint8_t> block(bytes.begin(), bytes.end());
    loadProject(nullptr, nullptr, block.data(), static_cast<int32_t>(block.size()));
  };
  auto saved = [] {
    int32_t size = 0;
    if (!saveProject(nullptr, nullptr, nullptr, &size)) return std::string();
    std::string bytes(static_cast<size_t>(size), '\0');
    saveProject(nullptr, nullptr, reinterpret_cast<uint8_t*>(bytes.data()), &size);
    return bytes;
  };
  const int video = createObject(0, 0, testVideo, -1);
  appendSection(video, objects[video].end + 1, objects[video].end + 9);
  createObject(0, 1, testForeign, -1);
  createObject(0, 2, testGraphic, -1);
  readMutationsOf(saved(), [&](const std::string& bytes) {
    load(bytes);
    EXPECT_EQ(modelFault(), "");
    const int before = objectCount;
    const std::string again = saved();
    if (again.empty()) return;
    load(again);
    EXPECT_EQ(objectCount, before);
  });
}

}  // namespace
}  // namespace zenlay::test
