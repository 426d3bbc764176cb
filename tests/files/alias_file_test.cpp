#include "zenlay/files/alias_file.h"

#include <cstring>

#include "platform/paths.h"
#include "tests/files/fixture.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/default_settings.h"
#include "zenlay/model/extra_data.h"
#include "zenlay/model/order.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/pipeline.h"

namespace zenlay::test {
namespace {

constexpr char chainAlias[] =
    "[vo]\r\nlength=10\r\nclipping=1\r\ncamera=1\r\n"
    "[vo.0]\r\n_name=Graphic\r\nSize=100,200,1\r\ntype=7\r\ncolor=0aff10\r\nname=star\r\n"
    "[vo.1]\r\n_name=Blur\r\n_disable=1\r\nRange=5\r\nrAspect=-0.5\r\nFine=12.345,1.500,5,30\r\nFixed Size=1\r\n"
    "[vo.2]\r\n_name=Advanced drawing\r\nX=1.5\r\nY=0.0\r\nZ=0.0\r\nZoom%=50.00\r\nblend=3\r\n"
    "[vo]\r\nlength=20\r\nclipping=1\r\ncamera=1\r\n"
    "[vo.0]\r\n_name=Graphic\r\nSize=200,50,1\r\ntype=7\r\ncolor=0aff10\r\nname=star\r\n"
    "[vo.1]\r\n_name=Blur\r\n_disable=1\r\nRange=5\r\nrAspect=-0.5\r\nFine=12.345,1.500,5,30\r\nFixed Size=1\r\n"
    "[vo.2]\r\n_name=Advanced drawing\r\nX=1.5\r\nY=0.0\r\nZ=0.0\r\nZoom%=50.00\r\nblend=3\r\n"
    "[vo]\r\nlength=5\r\nclipping=1\r\ncamera=1\r\n"
    "[vo.0]\r\n_name=Graphic\r\nSize=50,60,1\r\ntype=7\r\ncolor=0aff10\r\nname=star\r\n"
    "[vo.1]\r\n_name=Blur\r\n_disable=1\r\nRange=5\r\nrAspect=-0.5\r\nFine=12.345,1.500,5,30\r\nFixed Size=1\r\n"
    "[vo.2]\r\n_name=Advanced drawing\r\nX=1.5\r\nY=0.0\r\nZ=0.0\r\nZoom%=50.00\r\nblend=3\r\n";

class Alias : public Files {
 protected:
  Alias() {
    setZoomLevel(19);  // 51 frames is the default length
    environment.pluginDirectory = folder.path() + "/";
  }
  int place(std::string_view text, int frame = 0, int layer = 0) {
    folder.write("alias.zla", text);
    int object = placeAlias(path.c_str(), frame, layer);
    EXPECT_EQ(modelFault(), "") << text;
    return object;
  }
  int add(std::string_view text, int object) {
    folder.write("alias.zla", text);
    int added = addAlias(path.c_str(), object);
    EXPECT_EQ(modelFault(), "") << text;
    return added;
  }
  std::string written(int object, int first = aliasWholeObject, int last = 0) {
    std::string text;
    EXPECT_EQ(writeAlias(object, first, last, path.c_str()), 1);
    EXPECT_TRUE(platform::readFile(path, text));
    return text;
  }
  const std::string path = folder / "alias.zla";
};

TEST_F(Alias, AChainIsWrittenAsItWasRead) {
  beginUndoStep();
  int head = place(chainAlias, 40, 7);
  ASSERT_GE(head, 0);
  int second = nextSection(head), third = nextSection(second);
  const ObjectRecord& o = objects[third];
  EXPECT_EQ(objects[head].start, 40);
  EXPECT_EQ(objects[second].start, 50);
  EXPECT_EQ(o.start, 70);
  EXPECT_EQ(o.end, 74);
  EXPECT_EQ(o.layer, 7);
  EXPECT_EQ(o.endValues[trackOf(o, 0, 0)], 60);
  EXPECT_EQ(o.startValues[trackOf(o, 1, 2)], 12345);
  EXPECT_EQ(o.params[trackOf(o, 1, 2)], 30);
  EXPECT_EQ(slotFlagsOf(third, 1), slotHandles);
  EXPECT_EQ(o.flags & (objectClipAbove | objectCameraTarget), unsigned{objectClipAbove | objectCameraTarget});
  EXPECT_EQ(extraDataOf(head, 0)[1], 0x0A);
  EXPECT_EQ(written(second), chainAlias) << "from any of its sections";
  undo();
  EXPECT_EQ(objectCount, 0) << "one step takes it away";
}

TEST_F(Alias, GoesBehindWhatIsInTheWay) {
  int blocks[] = {createObject(30, 0, testFilterObject, -1), createObject(111, 0, testFilterObject, -1)};
  objects[blocks[0]].end = 75;
  objects[blocks[1]].end = 120;
  int head = place(chainAlias);
  EXPECT_EQ(objects[head].start, 76) << "the first section fits before frame 30, the chain of 35 frames does not";
  EXPECT_EQ(objects[nextSection(nextSection(head))].end, 110) << "to the frame";
}

TEST_F(Alias, SlotsAreNumberedFromNothing) {
  int head = place(chainAlias);
  EXPECT_EQ(
      written(head, 1, 1),
      "[vo.0]\r\n_name=Blur\r\n_disable=1\r\nRange=5\r\nrAspect=-0.5\r\nFine=12.345,1.500,5,30\r\nFixed Size=1\r\n");
  std::string media = written(nextSection(head), 0, 0);
  EXPECT_NE(media.find("[vo.0]\r\n_name=Graphic\r\nSize=200,50,1\r\ntype=7"), std::string::npos) << "of that section";
  EXPECT_NE(media.find("[vo.1]\r\n_name=Advanced drawing\r\n"), std::string::npos);
  std::string filters = written(head, 1, 2);
  EXPECT_NE(filters.find("[vo.1]\r\n_name=Advanced drawing\r\n"), std::string::npos);
  int audio = createObject(0, 50, testAudioFile, -1), plain = createObject(0, 51, testFilterObject, -1);
  EXPECT_EQ(written(audio, 1, 1), "[ao.0]\r\n_name=Standard playback\r\nVolume=100.0\r\n");
  EXPECT_EQ(written(plain).substr(0, 25), "[v]\r\nlength=51\r\n[v.0]\r\n_n");
}

TEST_F(Alias, EffectsAloneMakeAnObject) {
  struct Row {
    const char* text;
    int slots[2];
    int length;
  };
  const Row rows[] = {
      {"[vo.0]\n_name=Video file\nvPlay=5.0\n[vo.1]\n_name=Advanced drawing\nX=7\n", {testVideo, testAdvanced}, 51},
      {"[v.0]\n_name=Blur\nRange=9\n", {testFilterObject, -1}, 51},
      {"[vo.0]\n_name=Blur\nRange=9\n", {testFilter, -1}, 51},
      {"[vo.0]\n_name=Group control\nX=3\n", {testGroup, -1}, 51},
      {"[vo.0]\n_name=Standard drawing\nX=3\n", {testGraphic, testDrawing}, 51},
      {"[vo]\nlength=3\n[vo.0]\n_name=Standard drawing\nX=3\n", {testGraphic, testDrawing}, 3},
      {"[vo]\nlength=3\n[vo.0]\n_name=Video file\n[vo.1]\n_name=Unheard\n[vo]\nlength=4\n[vo.0]\n_name=Video file\n",
       {testVideo, testDrawing},
       3},
  };
  int layer = 0;
  for (const Row& row : rows) {
    int object = place(row.text, 10, layer++);
    ASSERT_GE(object, 0) << row.text;
    const ObjectRecord& o = objects[object];
    EXPECT_EQ(o.slots[0].effect, row.slots[0]) << row.text;
    EXPECT_EQ(o.slots[1].effect, row.slots[1]) << row.text;
    EXPECT_EQ(o.end - o.start + 1, row.length) << row.text;
  }
  EXPECT_EQ(objects[objectAt(10, 3)].flags & objectCameraTarget, unsigned{objectCameraTarget}) << "by definition";
}

struct KindRow {
  const char* text;
  int kind;
};

TEST_F(Alias, Kinds) {
  const KindRow rows[] = {
      {"[vo]\nlength=1\n[vo.0]\n_name=Video file\n", 0x13},
      {"[vo]\nlength=1\n[vo.0]\n_name=Video file\n[vo.1]\n_name=Standard drawing\n", 0x1B},
      {"[ao]\nlength=1\n[ao.0]\n_name=Audio file\n", 0x17},
      {"[v]\nlength=1\n[v.0]\n_name=Blur\n", 0x11},
      {"[vo.0]\n_name=Blur\n", 0x3},
      {"[v.0]\n_name=Blur\n", 0x1},
      {"[a.0]\n_name=Audio delay\n", 0x5},
      {"[vo.0]\n_name=Video file\n[vo.1]\n_name=Standard drawing\n", 0xB},
      {"[vo.0]\n_name=Group control\n", 0x13},
      {"[vo.0]\n_name=Video file\n[vo.1]\n_name=Blur\n", 0x1B},
      {"[vo.0]\n_name=Unheard\n", 0x3},
      {"hello\n[zenlay]\nwidth=3\n", 0},
      {"[0]\nstart=1\n", 0},
      {"[vx.0]\n_name=Blur\n", 0},
      {"[vo.1]\n_name=Blur\n", 0},
      {"[vo.0", 0},
      {"", 0},
  };
  for (const KindRow& row : rows) {
    folder.write("alias.zla", row.text);
    EXPECT_EQ(aliasKind(path.c_str()), row.kind) << row.text;
  }
  EXPECT_EQ(aliasKind((path + "x").c_str()), 0);
}

struct PlaceRow {
  const char* what;
  std::string text;
  int objects;
};

TEST_F(Alias, DamagedFilesGiveTheStatedPart) {
  const std::string blur = "[v.0]\n_name=Blur\n";
  const PlaceRow rows[] = {
      {"no length", "[v]\nclipping=1\n" + blur, 0},
      {"a length of nothing", "[v]\nlength=0\n" + blur, 0},
      {"a length below nothing", "[v]\nlength=-4\n" + blur, 0},
      {"a chain cut short", "[v]\nlength=4\n" + blur + "[v]\nclipping=1\n" + blur, 1},
      {"another kind of header", "[v]\nlength=4\n" + blur + "[vo]\nlength=4\n[vo.0]\n_name=Blur\n", 1},
      {"another kind of effect", "[v]\nlength=4\n" + blur + "[vo.1]\n_name=Blur\n", 1},
      {"a gap in the numbers", "[v]\nlength=4\n" + blur + "[v.2]\n_name=Blur\n", 1},
      {"an unknown first effect", "[v]\nlength=4\n[v.0]\n_name=Unheard\n[v.1]\n_name=Blur\n", 0},
      {"an unknown continuation", "[v]\nlength=4\n" + blur + "[v]\nlength=4\n[v.0]\n_name=Unheard\n", 1},
      {"the first line is not _name", "[v]\nlength=4\n[v.0]\nRange=1\n_name=Blur\n", 0},
      {"frames beyond 32 bits", "[v]\nlength=2147483647\n" + blur + "[v]\nlength=2147483647\n" + blur, 0},
      {"the longest there is", "[v]\nlength=2147483647\n" + blur, 1},
      {"a header alone", "[v]\nlength=4\n", 0},
  };
  for (const PlaceRow& row : rows) {
    deleteAllObjects();
    EXPECT_EQ(place(row.text) >= 0, row.objects > 0) << row.what;
    EXPECT_EQ(objectCount, row.objects) << row.what;
  }
  deleteAllObjects();
  std::string many = "[v]\nlength=4\n" + blur;
  for (int i = 1; i < 40; i++) many += "[v." + std::to_string(i) + "]\n_name=Blur\n";
  int object = place(many, 0, 3);
  EXPECT_EQ(usedSlots(object), maxSlots);
  EXPECT_EQ(place("[v]\nlength=4\n" + blur, 0, 100), -1);
  EXPECT_EQ(objects[place("[v]\nlength=4\n" + blur, -5, 5)].start, 0);
}

TEST_F(Alias, MoreSectionsThanThereIsRoomFor) {
  std::string text;
  for (int i = 0; i < maxObjects + 1000; i++) text += "[vo]\nlength=2\n[vo.0]\n_name=Video file\n";
  int head = place(text);
  EXPECT_EQ(objectCount, maxObjects);
  EXPECT_EQ(chainRange(head).last, 2 * maxObjects - 1);
  EXPECT_EQ(shownMessages(), std::vector<std::string>{"Unable to add more object"});
}

TEST_F(Alias, FailuresAreTold) {
  int object = createObject(0, 0, testVideo, -1);
  EXPECT_EQ(placeAlias((path + "x").c_str(), 0, 0), -1);
  EXPECT_EQ(addAlias((path + "x").c_str(), object), -1);
  EXPECT_EQ(writeAlias(object, aliasWholeObject, 0, (folder / "none/a.zla").c_str()), 0);
  EXPECT_EQ(writeAlias(object, aliasWholeObject, 0, "/dev/full"), 0);
  EXPECT_EQ(writeAlias(object, 0, 0, ""), 0);
  EXPECT_EQ(writeAlias(object, 0, 2, path.c_str()), 0);
  EXPECT_EQ(writeAlias(objectCount, 0, 0, path.c_str()), 0);
  const std::vector<std::string> told = {
      "Failed to read the file", "Failed to read the file", "Failed to create the file", "Failed to write file",
      "Failed to save the file", "Failed to save the file", "Failed to save the file"};
  EXPECT_EQ(shownMessages(), told);
}

TEST_F(Alias, NothingIsHalfMadeWithoutMemory) {
  bool refused = true;
  for (int growth = 1; refused; growth++) {
    freeObjects();
    for (int i = 0; i < objectGrowth - 2; i++) createObject(i, i % 90, testFilterObject, -1);
    beginUndoStep();
    int before = objectCount;
    growthToRefuse = growth;
    place(chainAlias, 0, 95);
    refused = refuseGrowth;
    refuseGrowth = false;
    growthToRefuse = 0;
    EXPECT_EQ(objectCount == before + 3, !refused) << growth;
    EXPECT_LT(growth, 10);
  }
}

TEST_F(Alias, EveryEffectThereIs) {
  registerBuiltIns(&fakeHost.functions, &effectServices, nullptr);
  for (int effect = 0; effect < registryCount; effect++) {
    freeObjects();
    int object = createObjectWithDefaults(0, 0, effect);
    ASSERT_GE(object, 0);
    ObjectRecord& o = objects[object];
    for (int t = 0; t < o.trackCount; t++) o.startValues[t] = o.endValues[t] = 12345 + t;
    const std::string whole = written(object);
    int again = place(whole, 0, 1);
    ASSERT_GE(again, 0) << effectList[effect]->name;
    EXPECT_EQ(written(again), whole);
    EXPECT_EQ(memcmp(objects[again].slots, o.slots, sizeof o.slots), 0) << effectList[effect]->name;
    EXPECT_EQ(objects[again].flags, o.flags) << effectList[effect]->name;
    EXPECT_EQ(memcmp(objects[again].startValues, o.startValues, sizeof o.startValues), 0);
    EXPECT_EQ(o.extraDataSize, objects[again].extraDataSize);
  }
  freeObjects();
  exitEffects();
}

TEST_F(Alias, EffectsAreAddedToAWholeChain) {
  int head = place(chainAlias);
  int second = nextSection(head), third = nextSection(second);
  strcpy(objects[head].name, "Mine");
  const std::string before = written(head);
  beginUndoStep();
  EXPECT_EQ(add("[vo.0]\n_name=Video file\nvPlay=5.0,9.0,1\nImport alpha channel=0\nfile=b.avi\n"
                "[vo.1]\n_name=Standard drawing\nX=1.0,2.0,5,8\nY=-3.0\n_disable=1\n",
                second),
            2);
  EXPECT_EQ(objects[third].slots[0].effect, testVideo);
  EXPECT_EQ(objects[third].slots[2].effect, testDrawing);
  EXPECT_EQ(objects[head].name[0], 0) << "a new source takes the name away";
  EXPECT_STREQ(reinterpret_cast<char*>(extraDataOf(third, 0)), "b.avi");
  const ObjectRecord &a = objects[head], &b = objects[second], &c = objects[third];
  EXPECT_EQ(a.startValues[1], 50);
  EXPECT_EQ(a.endValues[1], 90);
  EXPECT_EQ(b.startValues[1], 90) << "goes on from the head's movement";
  EXPECT_EQ(c.checks[1], 0);
  EXPECT_EQ(c.startValues[trackOf(c, 2, 1)], -30);
  EXPECT_EQ(c.endValues[trackOf(c, 2, 0)], 20) << "movement by an amount is that of every section";
  EXPECT_EQ(slotFlagsOf(third, 2), slotHandles);
  EXPECT_EQ(c.startValues[trackOf(c, 1, 2)], 12345) << "the filter between keeps its values";
  undo();
  EXPECT_STREQ(objects[head].name, "Mine");
  EXPECT_EQ(written(head), before);
}

TEST_F(Alias, EffectsThatDoNotBelongAreLeftOut) {
  int video = createObject(0, 0, testVideo, -1), filter = createObject(0, 1, testFilter, -1);
  int plain = createObject(0, 2, testFilterObject, -1);
  EXPECT_EQ(add("[v.0]\n_name=Blur\n", video), 0) << "of another kind";
  EXPECT_EQ(add("[ao.0]\n_name=Audio file\n", video), 0);
  EXPECT_EQ(add("[vo.0]\n_name=Video file\n", filter), 0) << "a filter effect's object has no source";
  EXPECT_EQ(add("[vo.0]\n_name=Group control\n", video), 0);
  EXPECT_EQ(add("[vo.0]\n_name=Unheard\n[vo.1]\n_name=Blur\nRange=8\n", video), 1);
  EXPECT_EQ(objects[video].startValues[trackOf(objects[video], 1, 0)], 8);
  std::string wide;
  for (int i = 0; i < 4; i++) wide += "[vo." + std::to_string(i) + "]\n_name=Wide\n";
  EXPECT_EQ(add(wide, filter), 3) << "63 tracks, a fourth does not fit";
  EXPECT_EQ(add("[v]\nlength=9\n[v.0]\n_name=Foreign\nSize=4\n_exdata=ff\n", plain), 1) << "of a whole object too";
  EXPECT_EQ(extraDataOf(plain, 1)[0], 0xFF);
  EXPECT_EQ(extraDataOf(plain, 1)[1], 8) << "the rest is the filter's own";
}

}  // namespace
}  // namespace zenlay::test
