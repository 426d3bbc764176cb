#include "tests/ui/settings_stage.h"

#include <cstring>

#include "zenlay/files/default_settings.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/menus/menus.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::test {

using platform::Window;

void SettingsStage::SetUp() {
  resetFakeHost();
  desktop.emplace();
  main = platform::createWindow(nullptr, mainProcedure, this,
                                {.place = {0, 0, 800, 600}, .style = platform::windowVisible});
  timeline = platform::createWindow(main, timelineProcedure, this,
                                    {.place = {0, 600, 800, 300}, .style = platform::windowVisible});
  mainFilterRecord.functions = &fakeHost.functions;
  mainFilterRecord.window = timeline;
  ASSERT_EQ(mainFilterRecord.initialise(&mainFilterRecord), 1);
  environment.projectOpen = true;
  environment.clip = fakeHost.clip;
  timelineView.sceneLength = 300;
  environment.outputWidth = 320;
  environment.outputHeight = 240;
  createMenus();
  if (!settingsWindow()) createSettingsWindow();
  clearSelection();
  resetUndo();
}

void SettingsStage::TearDown() {
  EXPECT_EQ(modelFault(), "");
  EXPECT_THAT(desktop->boxes, testing::IsEmpty());
  clearSelection();
  destroySettingsWindow();
  destroyMenus();
  mainFilterRecord.exit(&mainFilterRecord);
  mainFilterRecord.window = nullptr;
  platform::destroyWindow(main);
}

int SettingsStage::create(int effect, std::initializer_list<int> filters, int layer) {
  int object = createObjectWithDefaults(10, layer, effect);
  if (object < 0) return object;
  for (int filter : filters) EXPECT_GE(addEffectWithDefaults(object, filter), 0);
  setSectionLength(object, 50);
  return object;
}

intptr_t SettingsStage::mainProcedure(Window*, uint32_t message, intptr_t first, intptr_t second, void* stage) {
  auto& keys = static_cast<SettingsStage*>(stage)->keys;
  if (message == platform::messageKeyDown) keys.push_back("down " + std::to_string(first));
  if (message == platform::messageKeyUp) keys.push_back("up " + std::to_string(first));
  if (message == platform::messageCommand && first == hostSizeMove)
    keys.push_back("move " + std::to_string(reinterpret_cast<const SizeMoveNotice*>(second)->message));
  return 0;
}

intptr_t SettingsStage::timelineProcedure(Window*, uint32_t message, intptr_t first, intptr_t second, void* user) {
  SettingsStage& stage = *static_cast<SettingsStage*>(user);
  char line[64];
  bool host = message == messageHostCommand;
  if (message == platform::messageKeyUp) stage.keys.push_back("timeline up " + std::to_string(first));
  if (message != platform::messageCommand && !host) return 0;
  bool path = (first & 0xFFFF) == commandSetFile;
  snprintf(line, sizeof line, "%s%d 0x%llX", host ? "host " : "", static_cast<int>(first),
           path ? 0ull : static_cast<unsigned long long>(second));
  stage.commands.push_back(line);
  if (!host) stage.run(static_cast<int>(first), second);
  return 0;
}

void SettingsStage::run(int id, intptr_t parameter) {
  int value = static_cast<int>(parameter);
  switch (id & 0xFFFF) {
    case commandSetCursor:
      moveCursor(value);
      return;
    case commandApplySettings:
      applySettings(parameter);
      return;
    case commandUndo:
      undo();
      return;
    case commandPushButton:
      pushButton(value);
      return;
    case commandSelectSection:
      selectSection(value);
      return;
    case commandJumpToStart:
      jumpToStart(value);
      return;
    case commandJumpToEnd:
      jumpToEnd(value);
      return;
    case commandDropDownChanged:
      dropDownChanged(value);
      return;
    case commandSetFile:
      setEffectFile(id >> 16, reinterpret_cast<const char*>(parameter));
      return;
    case commandCheckChanged:
      checkChanged(value);
      return;
    case commandColorPicked:
      colorPicked(parameter);
      return;
    case commandRestoreDefaults:
      restoreDefaults(value);
      return;
  }
  if (id >= settings::idCustom) customControl(id, value);
}

void SettingsStage::dragBox(Window* box, std::initializer_list<int> distances, intptr_t state) {
  using namespace platform;
  Point start{20, 8};
  user::mouse(box, messageLeftDown, start, state | mouseLeft);
  for (int x : distances) user::mouse(box, messageMouseMove, {start.x + x, start.y}, state | mouseLeft);
  user::mouse(box, messageLeftUp, {start.x + (distances.size() ? *(distances.end() - 1) : 0), start.y}, state);
}

std::vector<std::string> SettingsStage::chooseMovement(int row, int id, intptr_t state) {
  std::vector<std::string> lines;
  desktop->menus.push_back([&](const platform::Menu* menu) {
    lines = platform::test::menuLines(menu);
    return id;
  });
  platform::user::mouse(settingsWindow(), platform::messageMouseMove, {1, 1}, state);
  platform::user::click(settings::state.tracks[row].name);
  platform::runPostedMessages();
  platform::user::mouse(settingsWindow(), platform::messageMouseMove, {1, 1}, 0);
  return lines;
}

int SettingsStage::undoSteps() {
  for (int steps = 0;; steps++) {
    ObjectRecord before = current();
    undo();
    if (memcmp(&before, &current(), sizeof before) == 0) return steps;
  }
}

}  // namespace zenlay::test
