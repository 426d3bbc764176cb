#include "tests/ui/settings_stage.h"

#include <cstring>
#include <map>

#include "zenlay/files/default_settings.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/sections.h"
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
  using Run = void (*)(int value, intptr_t parameter, int slot);
  static const std::map<int, Run> carriedOut = {
      {commandSetCursor, [](int frame, intptr_t, int) { moveCursor(frame); }},
      {commandApplySettings, [](int, intptr_t change, int) { applySettings(change); }},
      {commandUndo, [](int, intptr_t, int) { undo(); }},
      {commandPushButton, [](int row, intptr_t, int) { pushButton(row); }},
      {commandSelectSection, [](int object, intptr_t, int) { selectSection(object); }},
      {commandJumpToStart, [](int object, intptr_t, int) { jumpToStart(object); }},
      {commandJumpToEnd, [](int object, intptr_t, int) { jumpToEnd(object); }},
      {commandDropDownChanged, [](int row, intptr_t, int) { dropDownChanged(row); }},
      {commandSetFile, [](int, intptr_t path, int slot) { setEffectFile(slot, reinterpret_cast<const char*>(path)); }},
      {commandCheckChanged, [](int row, intptr_t, int) { checkChanged(row); }},
      {commandColorPicked, [](int, intptr_t color, int) { colorPicked(color); }},
      {commandRestoreDefaults, [](int slot, intptr_t, int) { restoreDefaults(slot); }},
  };
  int value = static_cast<int>(parameter);
  auto found = carriedOut.find(id & 0xFFFF);
  if (found != carriedOut.end()) return found->second(value, parameter, id >> 16);
  if (id >= settings::idCustom) customControl(id, value);
}

void SettingsStage::dragBox(Window* box, std::initializer_list<int> distances, intptr_t state) {
  using namespace platform;
  Point start{20, 8};
  user::mouse(box, messageLeftDown, start, state | mouseLeft);
  for (int x : distances) user::mouse(box, messageMouseMove, {start.x + x, start.y}, state | mouseLeft);
  user::mouse(box, messageLeftUp, {start.x + (distances.size() ? *(distances.end() - 1) : 0), start.y}, state);
}

void SettingsStage::expectMenu(std::vector<std::string>& lines, int id) {
  desktop->menus.push_back([&lines, id](const platform::Menu* menu) {
    lines = platform::test::menuLines(menu);
    return id;
  });
}

std::vector<std::string> SettingsStage::chooseAt(platform::Point at, int id) {
  std::vector<std::string> lines;
  expectMenu(lines, id);
  platform::user::mouse(settingsWindow(), platform::messageRightUp, at);
  return lines;
}

void SettingsStage::typeInto(Window* box, const char* value) {
  platform::focusWindow(box);
  platform::user::type(box, value);
}

std::pair<int, int> SettingsStage::createTwoSections(std::initializer_list<int> filters, int effect) {
  int head = create(effect, filters);
  beginUndoStep();
  int second = addSection(head, 30, sectionSplit);
  showObject(head);
  return {head, second};
}

std::vector<std::string> SettingsStage::chooseMovement(int row, int id, intptr_t state) {
  std::vector<std::string> lines;
  expectMenu(lines, id);
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
