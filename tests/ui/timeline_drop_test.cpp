// Files dropped on the timeline, with and without a project.
#include "platform/paths.h"
#include "tests/support/scratch_folder.h"
#include "tests/ui/timeline_stage.h"
#include "zenlay/files/object_file.h"
#include "zenlay/model/slots.h"
#include "zenlay/ui/input/file_drop.h"

namespace zenlay::test {
namespace {

class TimelineDrop : public Timeline {
 protected:
  void SetUp() override {
    Timeline::SetUp();
    acceptMedia();
  }
  int drop(const std::string& path, int frame, int layer) { return Timeline::drop(path, {xOf(frame), rowOf(layer)}); }
  static std::string fileOf(int object) { return reinterpret_cast<const char*>(extraDataOf(object, 0)); }
};

struct DropRow {
  const char* path;
  bool audio;  // of the project
  std::vector<int> effects;
  const char* message;
};

TEST_F(TimelineDrop, ExtensionsDecideWhatIsCreated) {
  const DropRow rows[] = {
      {"/films/a.avi", true, {testVideo}, nullptr},
      {"/films/A.AVI", false, {testVideo}, nullptr},
      {"/films/a.mov", true, {testVideo, testAudioFile}, nullptr},
      {"/films/a.mov", false, {testVideo}, nullptr},
      {"/films/silent.mov", true, {testVideo}, nullptr},
      {"/films/a.wav", true, {testAudioFile}, nullptr},
      {"/films/a.wav", false, {}, "No sound in the editing project"},
      {"/films/a.odd", true, {}, nullptr},
      {"/films/a.txt", true, {}, nullptr},
      {"/films/none", true, {}, nullptr},
  };
  for (const DropRow& row : rows) {
    SCOPED_TRACE(row.path);
    shownMessages().clear();
    environment.clip.flags = row.audio ? fileHasVideo | fileHasAudio : uint32_t{fileHasVideo};
    const int steps = undoSteps();
    EXPECT_EQ(drop(row.path, 100, 1), !row.effects.empty());
    EXPECT_EQ(undoSteps(), steps + !row.effects.empty());
    ASSERT_EQ(sceneObjectCount, static_cast<int>(row.effects.size()));
    for (int i = 0; i < sceneObjectCount; i++) {
      int object = objectAt(100, 1 + i);
      ASSERT_GE(object, 0);
      EXPECT_EQ(objects[object].slots[0].effect, row.effects[static_cast<size_t>(i)]);
      EXPECT_EQ(fileOf(object), row.path);
    }
    EXPECT_EQ(currentObject, row.effects.empty() ? -1 : objectAt(100, 1));
    EXPECT_EQ(shownMessages(), row.message ? std::vector<std::string>{row.message} : std::vector<std::string>{});
    if (!row.effects.empty()) undo();
    EXPECT_EQ(objectCount, 0) << "one step";
  }
}

TEST_F(TimelineDrop, FurtherObjectsJoinTheFirst) {
  drop("/films/a.mov", 100, 1);
  int first = objectAt(100, 1), second = objectAt(100, 2);
  EXPECT_EQ(objects[first].group, 1);
  EXPECT_EQ(objects[second].group, 1);
  EXPECT_EQ(objects[second].end, objects[first].end);
  create(330, 400, 3);  // in the way of the second: it is shorter than the first would make it
  drop("/films/a.mov", 300, 2);
  EXPECT_EQ(placeOf(objectAt(300, 2)), (Place{300, 350, 2}));
  EXPECT_EQ(placeOf(objectAt(300, 3)), (Place{300, 329, 3}));
  preferences.group_open = 0;
  drop("/films/a.mov", 500, 1);
  EXPECT_EQ(objects[objectAt(500, 1)].group, 0);
}

TEST_F(TimelineDrop, FilmAndSoundStayTogether) {
  create(90, 149, 1);
  drop("/films/a.mov", 100, 1);  // the film finds room behind the object only
  EXPECT_EQ(places(), (Places{{90, 149, 1}, {150, 200, 1}, {150, 200, 2}}));
  setTopLayer(95);
  drop("/films/a.mov", 990, 99);  // no layer below the last
  EXPECT_EQ(objects[objectAt(990, 99)].slots[0].effect, testVideo);
  EXPECT_EQ(objects[objectAt(990, 98)].slots[0].effect, testAudioFile);
  EXPECT_EQ(timelineView.sceneLength, 1041);
}

TEST_F(TimelineDrop, APathThatIsTooLongIsToldAndCreatesNothing) {
  const std::string longest = "/" + std::string(254, 'x') + ".mov";  // of the field's 260 bytes
  EXPECT_EQ(drop("/x" + longest.substr(1), 100, 1), 0);
  EXPECT_EQ(objectCount, 0);
  EXPECT_EQ(undoSteps(), 0);
  EXPECT_EQ(shownMessages(), std::vector<std::string>{"The path of the file is too long"});
  EXPECT_EQ(drop(longest, 100, 1), 1);
  EXPECT_EQ(fileOf(objectAt(100, 1)), longest);
  EXPECT_EQ(fileOf(objectAt(100, 2)), longest);
  EXPECT_FALSE(setSourceFile(create(100, 150, 3), 0, "/a.avi")) << "a filter takes no file";
  timelineView.sceneLength = 0;
  EXPECT_EQ(drop("/x" + longest.substr(1), 100, 1), 0) << "before a project is made for it";
  EXPECT_EQ(shownMessages().size(), 2u);
}

TEST_F(TimelineDrop, TheFirstOfSeveralFilesIsTakenAndTheOthersAreTold) {
  const std::string paths[] = {"/films/a.avi", "/films/b.avi"};
  const platform::DroppedFiles dropped{{xOf(100), rowOf(1)}, paths, 2};
  EXPECT_EQ(send(platform::messageFilesDropped, 0, reinterpret_cast<intptr_t>(&dropped)), 1);
  ASSERT_EQ(objectCount, 1);
  EXPECT_EQ(fileOf(objectAt(100, 1)), paths[0]);
  EXPECT_EQ(shownMessages(), std::vector<std::string>{"Only the first of the dropped files was taken"});
}

TEST_F(TimelineDrop, EverythingIsInsertedSnapped) {
  ::test::ScratchFolder folder;
  std::string path = folder / "one.zlo";
  int object = create(0, 40, 0);
  ASSERT_EQ(writeObjectFile(path.c_str()), 1);
  deleteObjects(std::vector<int>{object});
  preferences.object_snap = 1;
  moveCursor(200);
  EXPECT_EQ(drop(path, 205, 2), 1);
  EXPECT_EQ(placeOf(objectAt(200, 2)), (Place{200, 240, 2}));
  undo();
  EXPECT_EQ(objectCount, 0);
  drop("/films/a.avi", 207, 2);
  EXPECT_EQ(placeOf(objectAt(200, 2)), (Place{200, 250, 2}));
}

TEST_F(TimelineDrop, AnObjectFileThatHoldsNothingIsTold) {
  ::test::ScratchFolder folder;
  folder.write("empty.zlo", "garbage\n[1]\n");
  shownMessages().clear();
  EXPECT_EQ(drop(folder / "empty.zlo", 10, 0), 0);
  timelineView.sceneLength = 0;  // no project: none is made for it
  fakeHost.functions.openEdit = [](EditHandle, const char* name, uint32_t) -> int32_t {
    ADD_FAILURE() << name;
    return 0;
  };
  EXPECT_EQ(drop(folder / "empty.zlo", 10, 0), 0);
  EXPECT_EQ(shownMessages(), std::vector<std::string>(2, "The file holds neither a header nor objects"));
}

TEST_F(TimelineDrop, WhatBeginsASceneIsShownWhole) {
  timelineView.sceneLength = fakeHost.frameCount = 1;
  drop("/films/a.avi", 0, 0);
  EXPECT_EQ(timelineView.sceneLength, 51);
  EXPECT_EQ(timelineView.zoom, 75000) << "382 of 467 pixels; the next level would take 510";
  drop("/films/a.avi", 400, 1);
  EXPECT_EQ(timelineView.zoom, 75000);
  Timeline::drop("/films/a.avi", {xOf(100), rowsBottom() + 5});
  EXPECT_GE(objectAt(100, 4), 0) << "below the rows: the last one";
}

TEST_F(TimelineDrop, WithoutFramesFilesAreOpened) {
  static std::vector<std::string> opened;
  opened.clear();
  fakeHost.functions.openEdit = [](EditHandle, const char* name, uint32_t) -> int32_t {
    opened.push_back(name);
    return 1;
  };
  timelineView.sceneLength = 0;
  EXPECT_EQ(drop("/films/old.cnp", 10, 0), 1);
  EXPECT_EQ(drop("/films/film.avi", 10, 0), 0);  // the dialog is cancelled
  EXPECT_EQ(opened, (std::vector<std::string>{"/films/old.cnp", "/films/film.avi"}));
  EXPECT_TRUE(shownMessages().empty());
  EXPECT_EQ(drop("/films/one.zla", 10, 0), 0);
  fakeHost.functions.openEdit = [](EditHandle, const char*, uint32_t) -> int32_t { return 0; };
  EXPECT_EQ(drop("/films/notes.txt", 10, 0), 0);
  EXPECT_EQ(shownMessages(),
            (std::vector<std::string>{"There is no project to insert the alias into", "Failed to read the file"}));
  EXPECT_EQ(objectCount, 0);
}

}  // namespace
}  // namespace zenlay::test
