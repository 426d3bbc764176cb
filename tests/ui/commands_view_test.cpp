// Commands on layers, the selection, the view, the scene and the project.
#include <cstring>

#include "platform/dialog.h"
#include "tests/ui/commands_stage.h"
#include "zenlay/host/host_interface.h"

namespace zenlay::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ViewCommands : public CommandsStage {};

// ---- Layers ----

TEST_F(ViewCommands, FlagsOfTheClickedLayer) {
  click(0, 4);
  EXPECT_EQ(runHostCommand(commandToggleLayer, 0), 0) << "the host's is for the current object's layer";
  const struct {
    int command;
    uint32_t flag;
  } rows[] = {{commandToggleLayer, layerHidden},
              {commandLockLayer, layerLocked},
              {commandLinkCoordinates, layerCoordinateLink},
              {commandClipLayer, layerClipAbove}};
  for (auto& row : rows) {
    for (uint32_t set : {row.flag, 0u}) {
      EXPECT_EQ(runCommand(row.command, 0), 1);
      EXPECT_EQ(layers[4].flags, set) << row.command;
    }
  }
  showObject(create(0, 9, 2));
  EXPECT_EQ(runHostCommand(commandToggleLayer, 0), 1);
  EXPECT_EQ(layers[2].flags, layerHidden);
  EXPECT_EQ(layers[4].flags, 0u);
}

TEST_F(ViewCommands, NothingOnALockedLayerStaysSelected) {
  int a = create(0, 9, 0), b = create(0, 9, 1);
  select({a, b});
  click(0, 0);
  runCommand(commandLockLayer, 0);
  EXPECT_THAT(selected(), ElementsAre(b));
}

TEST_F(ViewCommands, LinkedCoordinatesAreAlignedAndUndone) {
  int a = create(0, 49, 4, fxGraphic), b = create(50, 99, 4, fxGraphic);
  int x = trackOf(objects[a], 1, 0);
  objects[a].startValues[x] = objects[a].endValues[x] = 500;
  click(0, 4);
  runUndoable(commandLinkCoordinates, 0, [&] { EXPECT_EQ(objects[b].startValues[x], 500); });
}

TEST_F(ViewCommands, InsertingAndDeletingLayers) {
  for (int layer : {1, 2, 99}) create(0, 9, layer);
  click(0, 2);
  runUndoable(commandInsertLayer, 0, [] { EXPECT_EQ(places(), (Places{{0, 9, 1}, {0, 9, 2}, {0, 9, 3}})); });
  runUndoable(commandDeleteLayer, 0, [] { EXPECT_EQ(places(), (Places{{0, 9, 1}, {0, 9, 98}})); });
}

TEST_F(ViewCommands, RenamingALayer) {
  click(0, 3);
  answerDialog("sky");
  runUndoable(commandRenameLayer, 0, [&] { EXPECT_STREQ(layers[3].name, "sky"); });
  setLayerName(0, 3, "sea");
  desktop->dialogs.push_back(
      [](platform::Window* dialog) { EXPECT_EQ(platform::windowText(platform::controlOf(dialog, 171)), "sea"); });
  expectRefused(commandRenameLayer);
  answerDialog("");
  runUndoable(commandRenameLayer, 0, [&] { EXPECT_EQ(layers[3].name, nullptr); });
  answerDialog(std::string(61, 'x') + "\xe7\xa9\xba");  // 64 bytes: the last character does not fit
  runUndoable(commandRenameLayer, 0, [&] { EXPECT_EQ(layers[3].name, std::string(61, 'x')); });
}

TEST_F(ViewCommands, TheOtherLayers) {
  click(0, 5);
  layers[5].flags = layerHidden | layerLocked;
  EXPECT_EQ(runCommand(commandShowOtherLayers, 0), 1);
  for (int layer = 0; layer < layersPerScene; layer++)
    EXPECT_EQ(layers[layer].flags, layer == 5 ? layerLocked : layerHidden);
  layers[8].flags = 0;
  EXPECT_EQ(runCommand(commandShowOtherLayers, 0), 1);
  for (int layer = 0; layer < layersPerScene; layer++) EXPECT_EQ(layers[layer].flags & layerHidden, 0u);
}

// ---- Selection and current object ----

TEST_F(ViewCommands, SelectingByTheCursorWhileCtrlIsHeld) {
  int a = createChain(0, 49, 0, {20}), b = create(50, 99, 0), c = create(50, 60, 1);
  create(0, 9, 2);
  layers[2].flags = layerLocked;
  moveCursor(50);
  for (int id : {commandSelectAll, commandSelectAfterCursor, commandSelectBeforeCursor}) {
    runCommand(id, 0);
    EXPECT_THAT(selected(), IsEmpty());
  }
  platform::user::key(platform::keyCtrl, true);
  const struct {
    int command;
    int cursor;
    std::vector<int> found;
  } rows[] = {
      {commandSelectAll, 0, {a, objectAt(20, 0), b, c}},
      {commandSelectAfterCursor, 50, {b, c}},
      {commandSelectAfterCursor, 20, {b, c}},
      {commandSelectBeforeCursor, 49, {a, objectAt(20, 0)}},
      {commandSelectBeforeCursor, 60, {a, objectAt(20, 0), c}},
  };
  for (auto& row : rows) {
    clearSelection();
    moveCursor(row.cursor);
    EXPECT_EQ(runCommand(row.command, 0), 0);
    EXPECT_EQ(selected(), row.found) << row.command << " at " << row.cursor;
  }
  platform::user::key(platform::keyCtrl, false);
}

TEST_F(ViewCommands, TheObjectAtTheCursor) {
  int a = create(0, 99, 1), b = create(0, 99, 4), c = create(0, 99, 7), d = create(100, 199, 7);
  expectRefused(commandObjectAtCursor);
  showObject(d);
  moveCursor(50);
  showObject(d);
  runCommand(commandObjectAtCursor, 0);
  EXPECT_EQ(currentObject, a);
  runCommand(commandObjectAtCursor, 0);
  EXPECT_EQ(currentObject, b);
  platform::user::key(platform::keyShift, true);
  runCommand(commandObjectAtCursor, 0);
  EXPECT_EQ(currentObject, c);
  runCommand(commandObjectAtCursor, 0);
  EXPECT_EQ(currentObject, b);
  platform::user::key(platform::keyShift, false);
}

TEST_F(ViewCommands, NextAndPreviousGoRound) {
  int a = create(10, 19, 1), b = create(20, 29, 1), c = create(200, 209, 1);
  create(15, 25, 2);
  showObject(a);
  for (int next : {b, c, a}) {
    EXPECT_EQ(runCommand(commandNextObject, 0), 1);
    EXPECT_EQ(currentObject, next);
    EXPECT_EQ(timelineView.cursorFrame, objects[next].start);
    EXPECT_EQ(fakeHost.currentFrame, objects[next].start);
  }
  for (int previous : {c, b, a}) {
    EXPECT_EQ(runCommand(commandPreviousObject, 0), 1);
    EXPECT_EQ(currentObject, previous);
  }
}

TEST_F(ViewCommands, TheObjectMenuShowsWhatTheSelectionIs) {
  int plain = create(0, 9, 0), chain = createChain(0, 9, 1, {5});
  objects[plain].flags |= objectClipAbove;
  select({chain});
  runCommand(commandGroup, 0);
  auto linesFor = [&](int object) {
    std::vector<std::string> lines;
    select({object});
    desktop->menus.push_back([&](const platform::Menu* menu) {
      lines = platform::test::menuLines(menu);
      return 0;
    });
    showContextMenu(menuObject, timeline, {});
    return lines;
  };
  EXPECT_THAT(linesFor(plain), testing::IsSupersetOf({"[x] Clip with the object above", "(Ungroup)",
                                                      "(Evenly space midpoint by time)", "(Remove midpoint)"}));
  EXPECT_THAT(linesFor(chain),
              testing::IsSupersetOf({"Clip with the object above", "Ungroup", "Evenly space midpoint by time"}));
}

// ---- View ----

TEST_F(ViewCommands, Toggles) {
  const struct {
    int command;
    int32_t* preference;
  } rows[] = {
      {commandToggleBeatGrid, &preferences.grid.grid},        {commandToggleOutOfArea, &preferences.grid.out_of_area},
      {commandToggleTrackSelected, &preferences.config_move}, {commandToggleSnap, &preferences.object_snap},
      {commandToggleCameraGui, &preferences.camera_gui},      {commandToggleFastPreview, &preferences.fast_preview},
      {commandToggleGrid2d, &preferences.grid.grid2d},        {commandToggleGrid3d, &preferences.grid.grid3d},
      {commandToggleObjectRange, &preferences.object_range},  {commandToggleActiveGrid, &preferences.grid.grid},
  };
  for (auto& row : rows) {
    for (int32_t value : {!*row.preference, !!*row.preference}) {
      EXPECT_EQ(runCommand(row.command, 0), 1) << row.command;
      EXPECT_EQ(*row.preference, value) << row.command;
    }
  }
}

TEST_F(ViewCommands, TheGridOfTheActiveWindow) {
  for (platform::Window* window : {main, settingsWindow()}) {
    platform::showWindow(window, true);
    platform::focusWindow(window);
    preferences.grid.grid = preferences.grid.grid2d = 0;
    runHostCommand(commandToggleActiveGrid, 0);
    EXPECT_EQ(preferences.grid.grid2d, 1);
    EXPECT_EQ(preferences.grid.grid, 0);
  }
  platform::focusWindow(timeline);
  runHostCommand(commandToggleActiveGrid, 0);
  EXPECT_EQ(preferences.grid.grid, 1);
}

TEST_F(ViewCommands, ZoomAndCursor) {
  runCommand(commandZoomIn, 0);
  EXPECT_EQ(timelineView.zoomLevel, 20);
  runCommand(commandZoomOut, 0);
  runCommand(commandZoomOut, 0);
  EXPECT_EQ(timelineView.zoomLevel, 18);
  EXPECT_EQ(runCommand(commandSetCursor, 123), 1);
  EXPECT_EQ(fakeHost.currentFrame, 123);
  EXPECT_EQ(timelineView.cursorFrame, 123);
}

TEST_F(ViewCommands, TheHostPlaysFromTheCursor) {
  moveCursor(40);
  runCommand(commandPlay, 0);
  EXPECT_EQ(noted.size(), 0u);
  platform::runPostedMessages();
  ASSERT_EQ(noted.size(), 1u);
  EXPECT_EQ(noted[0].first, hostPlayFromCursor);
  EXPECT_EQ(noted[0].second, 40);
  preferences.sync_play_cursor = 1;
  runCommand(commandPlay, 0);
  EXPECT_EQ(noted.size(), 2u);
  fakeHost.clipOpen = false;
  runCommand(commandPlay, 0);
  EXPECT_EQ(noted.size(), 2u);
}

// ---- Scene and project ----

TEST_F(ViewCommands, TheLastFrame) {
  create(0, 149, 3);
  moveCursor(199);
  for (int id : {commandLastFrameAtCursor, commandCursorIsLastFrame}) {
    timelineView.sceneLength = fakeHost.frameCount = 300;
    EXPECT_EQ(runCommand(id, 0), 1);
    EXPECT_EQ(timelineView.sceneLength, 200);
    EXPECT_EQ(fakeHost.frameCount, 200);
    expectRefused(id);
  }
  EXPECT_EQ(runCommand(commandLastObjectIsLastFrame, 0), 1);
  EXPECT_EQ(fakeHost.frameCount, 150);
  EXPECT_EQ(timelineView.cursorFrame, 149);
  deleteAllObjects();
  expectRefused(commandLastObjectIsLastFrame);
}

TEST_F(ViewCommands, ImportIsOneStep) {
  folder.write("two.zlo",
               "[zenlay]\r\n[0]\r\nstart=1\r\nend=20\r\nlayer=1\r\n[0.0]\r\n_name=Blur\r\n"
               "[1]\r\nstart=21\r\nend=400\r\nlayer=2\r\n[1.0]\r\n_name=Blur\r\n");
  moveCursor(100);
  expectRefused(commandImport);  // cancelled
  fakeHost.fileName = folder / "two.zlo";
  runUndoable(commandImport, 0, [&] { EXPECT_EQ(places(), (Places{{100, 119, 0}, {120, 499, 1}})); });
  EXPECT_EQ(timelineView.sceneLength, 500);
  fakeHost.fileName = folder / "none.zlo";
  expectRefused(commandImport);
  EXPECT_THAT(boxes(), ElementsAre("Failed to read the file"));
  EXPECT_TRUE(platform::windowEnabled(timeline));
}

TEST_F(ViewCommands, DialogsThatAreCancelledChangeNothing) {
  const struct {
    int command;
    const char* title;
  } rows[] = {
      {commandPreferences, "Preferences"},
      {commandGridSettings, "Grid Setting"},
      {commandRenameLayer, "Layer Name"},
      {commandSceneSettings, "Scene Settings"},
      {commandCreateAlias, "New alias <all object>"},
      {commandChangeLength, "Change of length (section)"},
      {commandInsertEmptyFrames, "Insert an empty frame"},
  };
  showObject(create(0, 99, 0));
  const Preferences before = preferences;
  for (auto& row : rows) {
    std::string title;
    desktop->dialogs.push_back([&](platform::Window* dialog) { title = platform::windowText(dialog); });
    const std::string model = modelText();
    const int steps = undoSteps();
    runCommand(row.command, 0);
    EXPECT_EQ(title, row.title);
    EXPECT_EQ(modelText(), model) << row.title;
    EXPECT_EQ(undoSteps(), steps) << row.title;
    EXPECT_EQ(memcmp(&preferences, &before, sizeof before), 0) << row.title;
  }
}

std::vector<std::string> opened, exported;

TEST_F(ViewCommands, ExportGoesToTheHostUnderItsTitle) {
  exported.clear();
  fakeHost.functions.exportEdit = [](EditHandle, const char* name, uint32_t, const char* output) -> int32_t {
    exported.push_back(std::string(name) + "|" + output);
    return 1;
  };
  expectRefused(commandExportMedia);
  EXPECT_THAT(exported, IsEmpty());
  fakeHost.fileName = "/tmp/film.avi";
  expectRefused(commandExportMedia);
  EXPECT_THAT(exported, ElementsAre("/tmp/film.avi|Zenlay AVI / BMP export (RGBA)"));
}

TEST_F(ViewCommands, NewProjectsOnlyWithoutOne) {
  opened.clear();
  fakeHost.functions.openEdit = [](EditHandle, const char* name, uint32_t) -> int32_t {
    opened.push_back(name);
    environment.projectOpen = true;
    timelineView.sceneLength = fakeHost.frameCount = 1;
    return 1;
  };
  folder.write("new.zlo",
               "[zenlay]\r\nwidth=320\r\nheight=200\r\nrate=25\r\nscale=1\r\nlength=50\r\naudio_rate=48000\r\n"
               "audio_ch=1\r\n[0]\r\nstart=1\r\nend=20\r\nlayer=1\r\n[0.0]\r\n_name=Blur\r\n");
  const std::string path = folder / "new.zlo";
  const intptr_t parameter = reinterpret_cast<intptr_t>(path.c_str());
  expectRefused(commandNewFromObjectFile, parameter);
  expectRefused(commandNewProject);
  expectRefused(commandRestoreBackupPath, parameter);
  timelineView.sceneLength = 0;
  environment.projectOpen = false;
  desktop->dialogs.push_back([](platform::Window*) {});
  expectRefused(commandNewProject);  // cancelled
  desktop->dialogs.push_back(
      [](platform::Window* dialog) { platform::user::click(platform::controlOf(dialog, platform::dialogOk)); });
  EXPECT_EQ(runCommand(commandNewProject, 0), 1);
  EXPECT_THAT(opened, ElementsAre("640x480_30fps_44100Hz.zenlay"));
  opened.clear();
  timelineView.sceneLength = 0;
  environment.projectOpen = false;
  EXPECT_EQ(runCommand(commandNewFromObjectFile, parameter), 1);
  EXPECT_THAT(opened, ElementsAre("320x200_25fps_48000Hz_1ch.zenlay"));
  EXPECT_EQ(timelineView.sceneLength, 50);
  EXPECT_EQ(places(), (Places{{0, 19, 0}}));
}

}  // namespace
}  // namespace zenlay::test
