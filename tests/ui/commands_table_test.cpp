// The table as a whole: every menu entry leads to a command, and nothing is begun while the
// editor is busy.
#include <cstring>
#include <set>

#include "tests/ui/commands_stage.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/timeline/drag.h"

namespace zenlay::test {
namespace {

class CommandTable : public CommandsStage {};

std::set<int> idsOfTable() {
  using namespace commands;
  std::set<int> ids;
  for (const std::span<const Row>& table : {objectCommands, selectionCommands, effectCommands, settingsCommands,
                                            layerCommands, viewCommands, projectCommands})
    for (const Row& row : table) ids.insert(row.id);
  return ids;
}

void collect(const platform::Menu* menu, std::set<int>& ids) {
  for (int i = 0; i < platform::menuEntryCount(menu); i++) {
    platform::MenuEntry entry = platform::menuEntry(menu, i);
    if (entry.id && !entry.submenu) ids.insert(entry.id);
    if (entry.submenu) collect(entry.submenu, ids);
  }
}

TEST_F(CommandTable, EveryEntryOfTheTimelinesMenusLeadsSomewhere) {
  std::set<int> ids;
  for (ContextMenu menu : {menuRow, menuNoProject, menuObject, menuLayer, menuScene}) collect(contextMenu(menu), ids);
  const std::set<int> table = idsOfTable();
  EXPECT_GT(ids.size(), 100u);
  for (int id : ids) EXPECT_TRUE(table.count(id) || (id >= menuEffect && id < menuTemplateEnd)) << id;
}

TEST_F(CommandTable, NumbersWithoutACommandDoNothing) {
  create(0, 9, 0);
  for (int id : {0, 1, 1000, 1004, 1035, 1095, 1203, 1300, 1999, 2999, 3000, 5000, 21999, 25072, 65535, -1})
    expectRefused(id);
}

/// All of them but those that only report what happened.
TEST_F(CommandTable, NothingIsBegunWhileTheEditorIsBusy) {
  int a = create(0, 99, 0, fxGraphic), b = create(0, 99, 1, fxGraphic);
  const Preferences before = preferences;
  select({a, b});
  showObject(a);
  click(50, 0);
  runCommand(commandCopy, 0);
  auto refusesAll = [&] {
    for (int id : idsOfTable())
      if (id != commandSetCursor) expectRefused(id);
    expectRefused(menuEffect + fxGraphic);
    EXPECT_EQ(memcmp(&preferences, &before, sizeof before), 0);
    EXPECT_TRUE(desktop->boxes.empty());
  };
  environment.saving = true;
  refusesAll();
  environment.saving = false;
  timelineView.dragMode = dragObjects;
  refusesAll();
  timelineView.dragMode = dragNone;
  desktop->dialogs.push_back([&](platform::Window*) { refusesAll(); });
  EXPECT_EQ(runCommand(commandRenameLayer, 0), 0);
}

TEST_F(CommandTable, WithoutAProjectNothingHappens) {
  expectRefused(commandUndo);
  timelineView.sceneLength = 0;
  environment.projectOpen = false;
  for (int id :
       std::initializer_list<int>{commandPaste, commandUndo, commandInsertLayer, commandDeleteLayer, commandRenameLayer,
                                  commandPlay, commandSelectAll, commandExport, commandExportMedia,
                                  commandSceneSettings, commandInsertEmptyFrames, menuEffect + fxGraphic})
    expectRefused(id);
}

/// A value edit after another command is a step of its own, whatever was edited before.
TEST_F(CommandTable, CommandsEndTheSettingsStep) {
  int a = create(0, 99, 0, fxGraphic);
  showObject(a);
  auto editFirstTrack = [] {
    settings::state.tracks[0].start.value++;
    runCommand(commandApplySettings, changedStart);
  };
  int steps = undoSteps();
  editFirstTrack();
  editFirstTrack();
  EXPECT_EQ(undoSteps(), steps + 1);
  moveCursor(50);
  runCommand(commandAddMidpointAtCursor, 0);
  showObject(a);
  EXPECT_EQ(undoSteps(), steps + 2);
  editFirstTrack();
  EXPECT_EQ(undoSteps(), steps + 3);
}

}  // namespace
}  // namespace zenlay::test
