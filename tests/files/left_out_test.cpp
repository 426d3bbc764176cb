#include "zenlay/files/left_out.h"

#include "tests/files/fixture.h"
#include "zenlay/files/object_file.h"
#include "zenlay/model/scenes.h"

namespace zenlay::test {
namespace {

class LeftOutOfFiles : public Files {
 protected:
  std::string noteOf(const std::string& text) {
    folder.write("a.zlo", text);
    readObjectFile((folder / "a.zlo").c_str(), 0, 0);
    return leftOutNote;
  }
};

std::string object(int number, const std::string& keys, const std::string& effects = "Graphic") {
  std::string n = std::to_string(number), text = "[" + n + "]\noverlay=1\n" + keys;
  size_t at = 0;
  for (int slot = 0; at < effects.size(); slot++) {
    size_t end = std::min(effects.find('|', at), effects.size());
    text += "[" + n + "." + std::to_string(slot) + "]\n_name=" + effects.substr(at, end - at) + "\n";
    at = end + 1;
  }
  return text;
}

TEST_F(LeftOutOfFiles, ReadingTellsWhatAndWhy) {
  const std::string first = "start=1\nend=5\nlayer=1\n", second = "start=6\nend=9\nlayer=1\n";
  const struct {
    std::string text, note;
  } rows[] = {
      {object(0, first) + object(1, second), ""},
      {object(1, first), "1 object left out: [1] is out of order"},
      {object(0, first) + object(2, second) + object(3, second),
       "2 objects left out: [2] is out of order, [3] is out of order"},
      {object(0, first) + object(1, first), "1 object left out: [1] overlaps another object"},
      {object(0, "start=5\nend=4\nlayer=1\n"), "1 object left out: [0] has no valid frames or layer"},
      {object(0, "start=1\nend=4\nlayer=101\n"), "1 object left out: [0] has no valid frames or layer"},
      {object(0, first, ""), "1 object left out: [0] has no effect"},
      {object(0, first, "Sparkle|Blur"), "1 object left out: [0] begins with \"Sparkle\", which is unknown"},
      {object(0, first, "Sparkle") + object(1, second + "chain=1\n"),
       "2 objects left out: [0] begins with \"Sparkle\", which is unknown, [1] continues no object"},
      {object(0, first, "Audio file"),
       "1 object left out: [0] begins with \"Audio file\", which needs overlay=1 and audio=1"},
      {object(0, first, "Graphic|Audio file"), "1 effect left out: \"Audio file\" of [0] needs overlay=1 and audio=1"},
      {object(0, first) + object(1, "start=6\n") + object(2, second),
       "2 objects left out: [1] lacks start, end or layer and ends the reading, [2] comes behind it"},
      {object(0, first, "Graphic|Sparkle|Standard drawing"), "1 effect left out: \"Sparkle\" of [0] is unknown"},
      {object(0, first, "Graphic|Standard drawing") + object(1, second + "chain=1\n", "Graphic|Advanced drawing"),
       "1 effect left out: \"Advanced drawing\" of [1] differs from its chain"},
      {object(0, first, "Graphic|Sparkle") + object(1, first),
       "1 object left out: [1] overlaps another object; 1 effect left out: \"Sparkle\" of [0] is unknown"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(noteOf(row.text), row.note) << row.text;
    deleteAllObjects();
  }
}

TEST_F(LeftOutOfFiles, TheLineStaysShort) {
  std::string text = object(0, "start=1\nend=5\nlayer=1\n", std::string(1000, 'x'));
  for (int i = 1; i < 9; i++) text += object(i, "start=1\nend=5\nlayer=200\n");
  std::string note = noteOf(text);
  EXPECT_TRUE(note.starts_with("9 objects left out: ")) << note;
  EXPECT_TRUE(note.ends_with(" and 4 more")) << note;
  EXPECT_LT(note.size(), 400u);
}

TEST_F(LeftOutOfFiles, WritingTellsOfOtherScenes) {
  noteOf(object(0, "start=1\nend=5\nlayer=1\n"));
  auto write = [this] {
    EXPECT_EQ(writeObjectFile((folder / "b.zlo").c_str()), 1);
    return leftOutNote;
  };
  EXPECT_EQ(write(), "");
  switchScene(3, nullptr, nullptr);
  EXPECT_EQ(write(), "holds scene 3 \"Scene 3\" alone; 1 scene left out: 0 \"Root\" (1 object)");
  noteOf(object(0, "start=1\nend=5\nlayer=1\n") + object(1, "start=1\nend=5\nlayer=2\n"));
  switchScene(0, nullptr, nullptr);
  EXPECT_EQ(write(), "holds scene 0 \"Root\" alone; 1 scene left out: 3 \"Scene 3\" (2 objects)");
}

}  // namespace
}  // namespace zenlay::test
