// A fixed walk through all commands in random states: the model stays sound whatever follows what.
#include <random>

#include "tests/ui/commands_stage.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/model/checker.h"
#include "zenlay/ui/commands/table.h"

namespace zenlay::test {
namespace {

class CommandWalk : public CommandsStage {
 protected:
  int below(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }

  void changeState() {
    click(below(320), below(12));
    moveCursor(below(timelineView.sceneLength));
    if (below(8) == 0) clickPosition.layer = layersPerScene - 1 - below(3);
    if (below(2)) clearSelection();
    for (int i = below(4); i > 0 && sceneObjectCount > 0; i--)
      selectChain(indexOf(layerOrder[below(sceneObjectCount)]));
    if (below(3) == 0) showObject(sceneObjectCount ? indexOf(layerOrder[below(sceneObjectCount)]) : -1);
    if (below(4) == 0) clickPosition.section = below(objectCapacity + 1);
    fakeHost.selectionFirst = below(100);
    fakeHost.selectionLast = fakeHost.selectionFirst + below(100);
    platform::focusWindow(below(2) ? main : timeline);
    if (timelineView.sceneLength > 2000) timelineView.sceneLength = fakeHost.frameCount = 300;
  }

  /// Objects, filters, effects, aliases, templates, or one of the table.
  int chooseCommand(const std::vector<int>& ids) {
    switch (below(8)) {
      case 0:
        return menuEffect + below(registryCount);
      case 1:
        return menuAlias + below(3);
      case 2:
        return commandAddEffect;
      default:
        return ids[static_cast<size_t>(below(static_cast<int>(ids.size())))];
    }
  }

  std::mt19937 random{20240229};
};

std::vector<int> tableIds() {
  using namespace commands;
  std::vector<int> ids;
  for (const std::span<const Row>& table :
       {objectCommands, selectionCommands, effectCommands, settingsCommands, layerCommands, viewCommands})
    for (const Row& row : table)
      if (row.id != commandSetFile) ids.push_back(row.id);  // its parameter is a path
  ids.push_back(commandLastFrameAtCursor);
  ids.push_back(commandLastObjectIsLastFrame);
  return ids;
}

TEST_F(CommandWalk, TheModelStaysSound) {
  folder.write("soft.zla", "[vo.0]\r\n_name=Blur\r\n");
  folder.write("chain.zla",
               "[vo]\r\nlength=10\r\n[vo.0]\r\n_name=Graphic\r\n[vo.1]\r\n_name=Standard drawing\r\n"
               "[vo]\r\nlength=20\r\n[vo.0]\r\n_name=Graphic\r\n[vo.1]\r\n_name=Standard drawing\r\n");
  scanAliases();
  const std::vector<int> ids = tableIds();
  int changed = 0;
  for (int step = 0; step < 5000; step++) {
    changeState();
    const int id = chooseCommand(ids);
    const int parameter = below(3) ? below(12) : below(registryCount);
    desktop->dialogs.push_back([&](platform::Window* dialog) {
      platform::user::type(platform::controlOf(dialog, 171), std::to_string(below(200)).c_str());
      platform::user::click(platform::controlOf(dialog, 1 + below(2)));
    });
    changed += below(4) ? runCommand(id, parameter) : runHostCommand(id, parameter);
    desktop->dialogs.clear();
    ASSERT_EQ(modelFault(), "") << "step " << step << ", command " << id << " " << parameter;
    ASSERT_EQ(timelineView.sceneLength, fakeHost.frameCount) << "step " << step << ", command " << id;
    for (int object : selection()) ASSERT_TRUE(onTimeline(object)) << "step " << step << ", command " << id;
    ASSERT_TRUE(currentObject < 0 || onTimeline(currentObject)) << "step " << step << ", command " << id;
  }
  EXPECT_GT(changed, 1500);
  EXPECT_GT(objectCount, 5);
}

}  // namespace
}  // namespace zenlay::test
