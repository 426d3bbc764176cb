// The whole editor over the fake host, with windows but without a screen: commands run against the real model, the
// timeline and the settings window. The scene has 300 frames, zoom is one pixel a frame, snapping is off.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/user_input.h"
#include "tests/support/fake_host.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/scripted_desktop.h"
#include "tests/ui/stage.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/commands.h"
#include "zenlay/ui/menus/menus.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::test {

// Registry indices that the tests use.
inline constexpr int fxAudioFile = 2, fxGraphic = 4, fxBlurEffect = 18, fxBlurObject = 20, fxGlowEffect = 28,
                     fxVolumeFade = 89;

class CommandsStage : public Stage {
 protected:
  void SetUp() override;
  void TearDown() override;

  static int create(int first, int last, int layer, int effect = fxBlurObject) {
    return Stage::create(first, last, layer, effect);
  }
  /// The same with midpoints before these frames.
  static int createChain(int first, int last, int layer, std::initializer_list<int> points);
  static void select(std::initializer_list<int> list);
  static void click(int frame, int layer) { clickPosition = {frame, layer, -1}; }
  static std::vector<int> effectsIn(int object);
  /// Runs it and looks at what it did; the model must be sound then, and as before once the one step is undone.
  void runUndoable(int id, intptr_t parameter, const std::function<void()>& look);
  /// It answers 0 and leaves the model, the history and the scene's length alone.
  void expectRefused(int id, intptr_t parameter = 0);
  /// The next dialog is answered with this text in its only field.
  void answerDialog(const std::string& text);
  /// A copy of all records and names in use, to compare.
  static std::string modelText();

  std::vector<std::string> boxes() const;

  ::test::ScratchFolder folder;
  std::optional<platform::test::ScriptedDesktop> desktop;
  platform::Window *main = nullptr, *timeline = nullptr;
  struct Noted {
    uint32_t message;
    intptr_t first, second;
  };
  std::vector<Noted> noted;         // commands to the host's main window
  std::vector<std::string> titles;  // of the dialogs that were answered
};

}  // namespace zenlay::test
