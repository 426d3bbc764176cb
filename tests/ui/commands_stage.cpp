#include "tests/ui/commands_stage.h"

#include "zenlay/entry/plugin.h"
#include "zenlay/files/alias_list.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/sections.h"
#include "zenlay/ui/input/window_procedure.h"

namespace zenlay::test {
namespace {

intptr_t forward(platform::Window* w, uint32_t message, intptr_t first, intptr_t second, void*) {
  return timelineWindowProcedure(w, message, first, second, nullptr, nullptr);
}

}  // namespace

void CommandsStage::SetUp() {
  resetFakeHost();
  desktop.emplace();
  fakeHost.intSettings = {{"zoom", 19}, {"object_snap", 0}};
  auto note = [](platform::Window*, uint32_t message, intptr_t first, intptr_t second, void* stage) -> intptr_t {
    if (message == platform::messageCommand)
      static_cast<CommandsStage*>(stage)->noted.push_back({message, first, second});
    return 0;
  };
  main = platform::createWindow(nullptr, note, this, {.style = platform::windowVisible});
  timeline = platform::createWindow(main, forward, nullptr, {.style = platform::windowVisible});
  mainFilterRecord.functions = &fakeHost.functions;
  mainFilterRecord.window = timeline;
  ASSERT_EQ(mainFilterRecord.initialise(&mainFilterRecord), 1);
  environment.pluginDirectory = folder.path() + "/";
  scanAliases();
  platform::sendMessage(timeline, messageWindowSetUp, 0, 0);
  if (!modelHooks.objectChanged) modelHooks.objectChanged = settingsObjectChanged;
  environment.projectOpen = true;
  environment.clip = fakeHost.clip;
  timelineView.sceneLength = 300;
  resetUndo();
  clearClipboard();
  clearSelection();
  click(0, 0);
}

void CommandsStage::TearDown() {
  EXPECT_EQ(modelFault(), "");
  EXPECT_TRUE(desktop->dialogs.empty()) << "a dialog did not open";
  clearSelection();
  platform::sendMessage(timeline, messageWindowClose, 0, 0);
  mainFilterRecord.exit(&mainFilterRecord);
  mainFilterRecord.window = nullptr;
  platform::user::releaseAll();
  platform::destroyWindow(main);
  desktop.reset();
  resetFakeHost();
}

int CommandsStage::createChain(int first, int last, int layer, std::initializer_list<int> points) {
  int head = create(first, last, layer), section = head;
  for (int point : points) section = addSection(section, point, sectionSplit);
  return head;
}

void CommandsStage::select(std::initializer_list<int> list) {
  clearSelection();
  for (int object : list) selectChain(object);
}

std::vector<int> CommandsStage::effectsIn(int object) {
  std::vector<int> list;
  for (int slot = 0; slot < usedSlots(object); slot++) list.push_back(objects[object].slots[slot].effect);
  return list;
}

std::string CommandsStage::modelText() {
  std::string text;
  for (int e = 0; e < objectCount; e++) {
    ObjectRecord record = *layerOrder[e];
    record.extraDataBlock = 0;  // where it lies does not matter
    text.append(reinterpret_cast<const char*>(&record), sizeof record);
    if (const uint8_t* extra = extraDataOf(indexOf(layerOrder[e]), 0))
      text.append(reinterpret_cast<const char*>(extra), 1);
  }
  for (int layer = 0; layer < layersPerScene; layer++)
    text += std::to_string(layers[layer].flags) + (layers[layer].name ? layers[layer].name : "") + ";";
  return text;
}

void CommandsStage::runUndoable(int id, intptr_t parameter, const std::function<void()>& look) {
  SCOPED_TRACE("command " + std::to_string(id));
  const std::string before = modelText();
  const int steps = undoSteps();
  EXPECT_EQ(runCommand(id, parameter), 1);
  EXPECT_EQ(modelFault(), "");
  EXPECT_EQ(undoSteps(), steps + 1);
  EXPECT_NE(modelText(), before);
  look();
  EXPECT_EQ(runCommand(commandUndo, 0), 1);
  EXPECT_EQ(modelText(), before) << "not undone";
  EXPECT_EQ(modelFault(), "");
}

void CommandsStage::expectRefused(int id, intptr_t parameter) {
  const std::string before = modelText();
  const int steps = undoSteps(), length = timelineView.sceneLength;
  EXPECT_EQ(runCommand(id, parameter), 0) << id;
  EXPECT_EQ(modelText(), before) << id;
  EXPECT_EQ(undoSteps(), steps) << id;
  EXPECT_EQ(timelineView.sceneLength, length) << id;
}

void CommandsStage::answerDialog(const std::string& text) {
  desktop->dialogs.push_back([this, text](platform::Window* dialog) {
    titles.push_back(platform::windowText(dialog));
    platform::user::type(platform::controlOf(dialog, 171), text.c_str());
    platform::user::click(platform::controlOf(dialog, 1));
  });
}

std::vector<std::string> CommandsStage::boxes() const {
  std::vector<std::string> texts;
  for (const auto& box : desktop->boxes) texts.push_back(box.text);
  return texts;
}

}  // namespace zenlay::test
