// The settings window over the real effects, with a timeline window that carries its commands out and writes them down.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/user_input.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_desktop.h"
#include "zenlay/effects/registry.h"
#include "zenlay/entry/plugin.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay::test {

class SettingsStage : public testing::Test {
 protected:
  std::optional<platform::test::ScriptedDesktop> desktop;  // made behind the fake host, which records boxes itself
  platform::Window *main = nullptr, *timeline = nullptr;
  std::vector<std::string> commands;  // "1003 0x10002", host commands with "host " in front
  std::vector<std::string> keys;      // of the host's main window

  void SetUp() override;
  void TearDown() override;

  /// An object with every effect's defaults over frames 10..59 of the layer, with these filter effects before its
  /// drawing effect. The project has 300 frames.
  int create(int effect, std::initializer_list<int> filters = {}, int layer = 0);
  ObjectRecord& current() { return objects[currentObject]; }
  /// Index of the track of the slot in the object's arrays.
  int track(int slot, int t) { return current().slots[slot].firstTrack + t; }
  int check(int slot, int c) { return current().slots[slot].firstCheck + c; }
  platform::Window* control(int id) { return platform::controlOf(settingsWindow(), id); }
  platform::Window* startBox(int row) { return settings::state.tracks[row].start.box; }
  platform::Window* endBox(int row) { return settings::state.tracks[row].end.box; }
  std::string text(platform::Window* window) { return platform::windowText(window); }
  /// Drags a value box; the distances are relative to the press.
  void dragBox(platform::Window* box, std::initializer_list<int> distances, intptr_t state = 0);
  /// Chooses an id from the movement menu of a row; the menu's lines as they were.
  std::vector<std::string> chooseMovement(int row, int id, intptr_t state = 0);
  /// Opens a menu at the point of the window and chooses an id; the menu's lines as they were.
  std::vector<std::string> chooseAt(platform::Point at, int id);
  /// Replaces the text of a box; the box keeps the keys.
  void typeInto(platform::Window* box, const char* value);
  /// An object of two sections, over frames 10..29 and 30..59; the first is shown.
  std::pair<int, int> createTwoSections(std::initializer_list<int> filters = {}, int effect = effectGraphic);
  std::string label(int row) { return text(settings::state.checks[row].label); }
  int undoSteps();  // how many undo commands it takes to change nothing more of the current object

 private:
  static intptr_t timelineProcedure(platform::Window*, uint32_t, intptr_t, intptr_t, void* stage);
  static intptr_t mainProcedure(platform::Window*, uint32_t, intptr_t, intptr_t, void* stage);
  void run(int id, intptr_t parameter);
  void expectMenu(std::vector<std::string>& lines, int id);
};

}  // namespace zenlay::test
