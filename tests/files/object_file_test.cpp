#include "zenlay/files/object_file.h"

#include <cstring>

#include "platform/paths.h"
#include "tests/files/fixture.h"
#include "zenlay/files/effect_text.h"
#include "zenlay/files/section_reader.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"

namespace zenlay::test {
namespace {

class ObjectFile : public Files {
 protected:
  int import(const std::string& text, int frame = 0, int layer = 0) {
    folder.write("a.zlo", text);
    int end = readObjectFile(path.c_str(), frame, layer);
    EXPECT_EQ(modelFault(), "");
    return end;
  }
  std::string exported() {
    EXPECT_EQ(writeObjectFile(path.c_str()), 1);
    std::string text;
    EXPECT_TRUE(platform::readFile(path, text));
    return text;
  }
  const std::string path = folder / "a.zlo";
};

std::string withCrLf(const std::string& text) {
  std::string out;
  for (char c : text) out += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return out;
}

constexpr char film[] = R"([zenlay]
width=640
height=480
rate=30
scale=1
length=300
audio_rate=44100
audio_ch=2
[0]
start=1
end=150
layer=1
overlay=1
camera=0
[0.0]
_name=Video file
Playback position=1
vPlay=100.0
Loop playback=0
Import alpha channel=1
file=C:\clips\sample.avi
[0.1]
_name=Blur
_disable=1
Range=5
rAspect=-0.5
Fine=12.345
Fixed Size=1
[0.2]
_name=Standard drawing
X=0.0,200.0,1
Y=0.0,-1.5,15@swing,30
Z=0.0
Zoom%=100.00
blend=3
[1]
start=151
end=200
layer=1
overlay=1
camera=0
chain=1
[1.0]
_name=Video file
Playback position=1
vPlay=100.0
Loop playback=0
Import alpha channel=1
[1.1]
_name=Blur
_disable=1
Range=5
rAspect=-0.5
Fine=12.345
Fixed Size=1
[1.2]
_name=Standard drawing
X=200.0,300.0,1
Y=-1.5,2.0,15@swing,30
Z=0.0
Zoom%=100.00
[2]
start=11
end=20
layer=2
group=1
[2.0]
_name=Foreign
Size=77
Fixed Size=0
_exdata=09080706ff04
[3]
start=1
end=9
layer=3
group=1
overlay=1
clipping=1
camera=1
[3.0]
_name=Group control
X=0.0
range=-2
[4]
start=1
end=9
layer=4
overlay=1
audio=1
[4.0]
_name=Audio file
Playback position=1
vPlay=100.0
file=
[4.1]
_name=Standard playback
Volume=100.0
[5]
start=1
end=9
layer=5
overlay=1
camera=0
[5.0]
_name=Graphic
Size=100
type=200
color=0aff10
name=star 9
[5.1]
_name=Advanced drawing
X=0.0
Y=0.0
Z=0.0
Zoom%=100.00
blend=0
)";

TEST_F(ObjectFile, WritesWhatItReadByteForByte) {
  EXPECT_EQ(import(film), 199);
  EXPECT_EQ(objectCount, 6);
  int video = objectAt(0, 0);
  const ObjectRecord& o = objects[video];
  EXPECT_EQ(o.startValues[trackOf(o, 1, 1)], -5);
  EXPECT_EQ(o.startValues[trackOf(o, 1, 2)], 12345);
  EXPECT_EQ(o.endValues[trackOf(o, 2, 0)], 2000);
  EXPECT_EQ(o.modes[trackOf(o, 2, 1)] & 0xFFFF, 15);
  EXPECT_EQ(o.params[trackOf(o, 2, 1)], 30);
  EXPECT_EQ(slotFlagsOf(nextSection(video), 1), slotHandles);
  EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(video, 0)), "C:\\clips\\sample.avi");
  EXPECT_EQ(objects[objectAt(0, 2)].flags & (objectClipAbove | objectCameraTarget),
            unsigned{objectClipAbove | objectCameraTarget});
  EXPECT_EQ(exported(), withCrLf(film));
}

TEST_F(ObjectFile, UndoRemovesExactlyWhatWasImported) {
  setZoomLevel(19);
  int kept = createObject(250, 0, testFilterObject, -1);
  beginUndoStep();
  import(film);
  undo();
  EXPECT_EQ(objectCount, 1);
  EXPECT_NE(objects[kept].flags, 0u);
}

TEST_F(ObjectFile, GroupsOfEveryImportAreFresh) {
  import(film);
  import(film, 300, 10);
  EXPECT_EQ(objects[objectAt(10, 1)].group, 1);
  EXPECT_EQ(objects[objectAt(0, 2)].group, 1);
  EXPECT_EQ(objects[objectAt(310, 11)].group, 2);
  EXPECT_EQ(objects[objectAt(300, 12)].group, 2);
  EXPECT_EQ(objects[objectAt(300, 10)].start, 300);
}

/// "[n]" with these lines and the filter object "Blur".
std::string blur(int number, const std::string& keys) {
  const std::string n = std::to_string(number);
  return "[" + n + "]\n" + keys + "\n[" + n + ".0]\n_name=Blur\n";
}

TEST_F(ObjectFile, DamagedAndOddFilesGiveTheStatedPart) {
  const std::string first = "start=1\nend=10\nlayer=1", next = "start=11\nend=12\nlayer=1";
  const struct {
    const char* what;
    std::string text;
    int objects, largestEnd;
  } rows[] = {
      {"a gap in the numbers", blur(0, first) + blur(2, next), 1, 9},
      {"a missing key ends the import", blur(0, "start=1\nlayer=1") + blur(1, next), 0, 0},
      {"an overlap is skipped, and the chain behind it",
       blur(0, first) + blur(1, "start=5\nend=20\nlayer=1") + blur(2, "start=21\nend=22\nlayer=1\nchain=1") +
           blur(3, next),
       2, 11},
      {"an unknown first effect",
       "[0]\n" + first + "\n[0.0]\n_name=Nothing\n[0.1]\n_name=Blur\n" + blur(1, "start=1\nend=3\nlayer=1"), 1, 2},
      {"a chain that starts nowhere", blur(0, first + "\nchain=1"), 0, 0},
      {"chain=2 is off", blur(0, first + "\nchain=2"), 1, 9},
      {"end before start", blur(0, "start=10\nend=1\nlayer=1"), 0, 0},
      {"layer 101", blur(0, "start=1\nend=10\nlayer=101"), 0, 0},
      {"numbers beyond 32 bits", blur(0, "start=99999999999999\nend=99999999999999\nlayer=1"), 1, INT32_MAX - 1},
      {"the first line is not _name", "[0]\n" + first + "\n[0.0]\nX=1\n_name=Blur\n", 0, 0},
      {"keys in another order, tabs, lines in front, the last one unended",
       "hello\n[zenlay]\n[0]\nlayer=1\n\nend=10\r\nstart=\t1\nnew=7\n[0.0]\n_name=Blur", 1, 9},
      {"a NUL ends the file", blur(0, first) + std::string("\0", 1) + blur(1, next), 1, 9},
  };
  for (const auto& row : rows) {
    deleteAllObjects();
    EXPECT_EQ(import(row.text), row.largestEnd) << row.what;
    EXPECT_EQ(objectCount, row.objects) << row.what;
  }
}

TEST_F(ObjectFile, EffectsAnObjectCannotTakeAreSkipped) {
  std::string text = "[0]\nstart=1\nend=10\nlayer=1\noverlay=1\n";
  for (int i = 0; i < 5; i++) text += "[0." + std::to_string(i) + "]\n_name=Wide\nWide=" + std::to_string(i) + "\n";
  text += "[0.5]\n_name=Unheard\n[0.6]\n_name=Plain\n";
  import(text);
  int o = objectAt(0, 0);
  EXPECT_EQ(usedSlots(o), 4) << "three of 20 tracks and the plain one";
  EXPECT_EQ(objects[o].startValues[trackOf(objects[o], 2, 0)], 2);
  EXPECT_EQ(objects[o].slots[3].effect, testFilterNoTracks);
}

TEST_F(ObjectFile, ContinuationsKeepTheChainsEffects) {
  // The drawing effect brings its media effect, which stands in front of it in every section.
  import(
      "[0]\nstart=1\nend=10\nlayer=1\noverlay=1\n[0.0]\n_name=Standard drawing\nX=1,2,1\n"
      "[1]\nstart=11\nend=20\nlayer=1\noverlay=1\nchain=1\n[1.0]\n_name=Standard drawing\nX=2,3,1\n"
      "[2]\nstart=21\nend=30\nlayer=1\noverlay=1\nchain=1\n[2.0]\n_name=Video file\nvPlay=7\n");
  int head = objectAt(0, 0), second = nextSection(head), third = nextSection(second);
  ASSERT_GE(third, 0);
  int x = trackOf(objects[head], 1, 0);
  EXPECT_EQ(objects[second].startValues[x], 20);
  EXPECT_EQ(objects[second].endValues[x], 30);
  EXPECT_EQ(objects[third].slots[0].effect, testGraphic);
  EXPECT_EQ(objects[third].startValues[x], 30) << "where the section before it ends";
}

struct NumberRow {
  const char* text;
  int32_t scale, value;
};

TEST_F(ObjectFile, Numbers) {
  const NumberRow rows[] = {
      {"5", 10, 50},
      {"5.25", 10, 52},
      {"-0.5", 10, -5},
      {"12.345", 1000, 12345},
      {"-12.3456", 1000, -12345},
      {"7,3.5", 10, 70},
      {"1.", 100, 100},
      {".5", 10, 5},
      {"+3", 1, 3},
      {"99999999999", 1, INT32_MAX},
      {"-99999999999", 10, INT32_MIN},
      {"x", 1, 0},
      {"3.9", 1, 3},
  };
  for (const NumberRow& row : rows) EXPECT_EQ(readScaled(row.text, row.scale), row.value) << row.text;
  EXPECT_EQ(scaledText(-5, 10), "-0.5");
  EXPECT_EQ(scaledText(-12345, 100), "-123.45");
  EXPECT_EQ(scaledText(7, 0), "7");
  EXPECT_EQ(scaledText(12, 1000), "0.012");
  EXPECT_EQ(scaledText(INT32_MIN, 10), "-214748364.8");
  for (int32_t value : {INT32_MIN, INT32_MAX, 0, -1}) EXPECT_EQ(readScaled(scaledText(value, 100).c_str(), 100), value);
}

TEST_F(ObjectFile, Headers) {
  ObjectFileHeader header;
  folder.write("a.zlo", "[zenlay]\nwidth=1920\nlength=77\nalpha=0\nname=" + std::string(70, 'n'));
  EXPECT_EQ(readObjectFileHeader(path.c_str(), &header), 1);
  EXPECT_EQ(header.width, 1920);
  EXPECT_EQ(header.height, 480);
  EXPECT_EQ(header.length, 77);
  EXPECT_EQ(header.flags, unsigned{sceneHasAlpha}) << "the line's presence counts";
  EXPECT_EQ(strlen(header.name), 63u);
  folder.write("a.zlo", "[0]\nstart=1\n");
  EXPECT_EQ(readObjectFileHeader(path.c_str(), &header), 0);
  EXPECT_EQ(header.width, 640);
  setSceneName(0, "First");
  scenes[0].flags |= sceneHasAlpha;
  EXPECT_NE(exported().find("audio_ch=2\r\nalpha=1\r\nname=First\r\n"), std::string::npos);
}

TEST_F(ObjectFile, FailuresAreTold) {
  EXPECT_EQ(readObjectFile((path + ".none").c_str(), 0, 0), -1);
  EXPECT_EQ(writeObjectFile((folder / "no/such/folder/a.zlo").c_str()), 0);
  EXPECT_EQ(writeObjectFile("/dev/full"), 0);
  const std::vector<std::string> told = {"Failed to read the file", "Failed to create the file",
                                         "Failed to write file"};
  EXPECT_EQ(shownMessages(), told);
}

TEST_F(ObjectFile, MoreObjectsThanThereIsRoomFor) {
  std::string text;
  constexpr int overlapping = maxObjects, tooMany = maxObjects + 3;
  for (int i = 0; i < tooMany; i++) {
    std::string n = std::to_string(i), frame = std::to_string(i == overlapping ? 1 : i / 100 * 10 + 1);
    text += "[" + n + "]\nstart=" + frame + "\nend=" + frame + "\nlayer=" + std::to_string(i % 100 + 1) +
            "\noverlay=1\ngroup=" + std::to_string(i / 2 + 1) + "\n[" + n + ".0]\n_name=Video file\nfile=a.mp4\n[" + n +
            ".1]\n_name=Blur\nRange=9\n[" + n + ".2]\n_name=Standard drawing\nX=1.0,2.0,1\n";
  }
  import(text);
  EXPECT_EQ(objectCount, maxObjects);
  EXPECT_EQ(shownMessages().size(), 1u) << "one message for all that do not fit";
}

}  // namespace
}  // namespace zenlay::test
