// Files dropped on the timeline, with and without a project.
#include <cstring>

#include "platform/paths.h"
#include "tests/support/scratch_folder.h"
#include "tests/ui/timeline_stage.h"
#include "zenlay/files/object_file.h"
#include "zenlay/host/module_files.h"
#include "zenlay/model/slots.h"
#include "zenlay/ui/input/file_drop.h"

namespace zenlay::test {
namespace {

class TimelineDrop : public Timeline {
 protected:
  void SetUp() override {
    Timeline::SetUp();
    // Two entries for .mov, one of them sound.
    constexpr char table[] = ".avi\0Video file\0.mov\0Video file\0.MOV\0Audio file\0.wav\0Audio file\0.odd\0Nothing\0";
    memcpy(extensionTable, table, sizeof table);
    fakeHost.functions.openMediaFile = [](const char* path, HostFileInfo*, uint32_t) {
      static int anyMedia;
      return strstr(path, "silent") ? nullptr : reinterpret_cast<MediaHandle>(&anyMedia);
    };
    fakeHost.functions.closeMediaFile = [](MediaHandle) -> int32_t { return 1; };
  }
  int drop(const std::string& path, int frame, int layer) {
    DroppedFilesOf files{path};
    platform::DroppedFiles dropped{{xOf(frame), rowOf(layer)}, files.paths, 2};
    return send(platform::messageFilesDropped, 0, reinterpret_cast<intptr_t>(&dropped));
  }
  static std::string fileOf(int object) { return reinterpret_cast<const char*>(extraDataOf(object, 0)); }

 private:
  struct DroppedFilesOf {
    explicit DroppedFilesOf(const std::string& path) : paths{path, "second.avi"} {}
    std::string paths[2];  // only the first counts
  };
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
      EXPECT_EQ(objects[object].start, 100);
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

TEST_F(TimelineDrop, ANameThatIsTooLongIsNotCutOff) {
  std::string path = "/" + std::string(260, 'x') + ".avi";
  int object = create(100, 150, 0, testVideo);
  EXPECT_TRUE(setSourceFile(object, 0, "/a.avi"));
  EXPECT_FALSE(setSourceFile(object, 0, path.c_str()));
  EXPECT_EQ(fileOf(object), "/a.avi");
  EXPECT_TRUE(setSourceFile(object, 0, path.substr(0, 259).c_str()));
  EXPECT_FALSE(setSourceFile(create(100, 150, 1), 0, "/a.avi")) << "a filter takes no file";
}

TEST_F(TimelineDrop, TheSceneGrowsAndTheViewFollows) {
  setLeftFrame(533);
  drop("/films/a.avi", 990, 0);
  int object = objectAt(990, 0);
  EXPECT_EQ(objects[object].end, 1040);
  EXPECT_EQ(timelineView.sceneLength, 1041);
  create(600, 1040, 1);
  drop("/films/a.avi", 700, 1);  // behind what is there: no room within the scene
  EXPECT_EQ(sceneObjectCount, 2);
}

TEST_F(TimelineDrop, ObjectFilesAreInsertedSnapped) {
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
  EXPECT_EQ(objectCount, 0);
}

TEST_F(TimelineDrop, EndsADragFirst) {
  int object = create(100, 199, 0);
  press(xOf(150), rowOf(0));
  moveTo(xOf(170), rowOf(0));
  drop("/films/a.avi", 400, 0);
  EXPECT_EQ(timelineView.dragMode, dragNone);
  EXPECT_EQ(placeOf(object), (Place{120, 219, 0}));
  environment.saving = true;
  EXPECT_EQ(drop("/films/a.avi", 400, 3), 0);
  EXPECT_EQ(sceneObjectCount, 2);
}

}  // namespace
}  // namespace zenlay::test
