// Dialogs answered by what a user does to their controls.
#pragma once

#include <gtest/gtest.h>

#include <fstream>

#include "platform/dialog.h"
#include "platform/ini.h"
#include "platform/paths.h"
#include "platform/window_record.h"
#include "tests/model/fixture.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/scripted_desktop.h"
#include "zenlay/host/module_files.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/scenes.h"
#include "zenlay/ui/dialogs/color_presets.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/menus/menus.h"

namespace zenlay {

using namespace platform;
using Work = std::function<void(Window*)>;
using Texts = std::vector<std::pair<int, std::string>>;  // by the number of the control

struct Dialogs : test::Model {
  std::unique_ptr<platform::test::ScriptedDesktop> desktop;

  void SetUp() override {
    Model::SetUp();
    desktop = std::make_unique<platform::test::ScriptedDesktop>();
  }
  void TearDown() override {
    EXPECT_TRUE(desktop->dialogs.empty()) << "a dialog did not open";
    desktop.reset();
    Model::TearDown();
  }
  void answer(Work work) { desktop->dialogs.push_back(std::move(work)); }
  /// Types into the fields and ends the dialog by a button.
  void answer(int button, Texts texts) {
    answer([=](Window* dialog) {
      for (auto& [id, text] : texts) user::type(controlOf(dialog, id), text.c_str());
      user::click(controlOf(dialog, button));
    });
  }
};

inline void type(Window* dialog, int id, const char* text) { user::type(controlOf(dialog, id), text); }
inline void click(Window* dialog, int id) { user::click(controlOf(dialog, id)); }
inline std::string text(Window* dialog, int id) { return windowText(controlOf(dialog, id)); }
inline void expectTexts(Window* dialog, const Texts& texts) {
  for (auto& [id, expected] : texts) EXPECT_EQ(text(dialog, id), expected) << id;
}
inline int value(Window* dialog, int id) { return controlValue(controlOf(dialog, id)); }
inline bool enabled(Window* dialog, int id) { return windowEnabled(controlOf(dialog, id)); }
inline bool muted(Window* dialog, int id) { return controlRecord(controlOf(dialog, id))->muted; }

}  // namespace zenlay
