// A random walk with the mouse, the wheel, the keys, all commands and what other rooms do meanwhile. The model stays
// sound, and what was redrawn in parts is what a full redraw shows.
#include <functional>
#include <memory>
#include <random>

#include "tests/ui/pixel_desktop.h"
#include "tests/ui/timeline_stage.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/sections.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/menus/menus.h"

namespace zenlay::test {
namespace {

constexpr int width = 640, height = 197;

class TimelineWalk : public Timeline {
 protected:
  platform::test::ScriptedDesktop scripted;
  std::mt19937 random{20260711};
  platform::Point mouse{300, 100};
  intptr_t held = 0;  // modifiers and buttons

  int pick(size_t n) { return static_cast<int>(random() % n); }
  int anyObject() { return sceneObjectCount ? indexOf(layerOrder[pick(sceneObjectCount)]) : -1; }
  platform::Point anyPoint() {
    if (pick(3) == 0) return {pick(width + 100) - 50, pick(height + 60) - 30};
    int object = anyObject();
    if (object < 0) return {64 + pick(560), rowOf(pick(5))};
    int frame = pick(2) ? objects[object].start : objects[object].end;
    return {xOf(frame) + pick(40) - 20, rowOf(objects[object].layer)};
  }
  void mouseEvent(uint32_t message) { platform::user::mouse(window, message, mouse, held); }

  void fill() {
    for (int i = 0; i < 60; i++) {
      int object = createObject(pick(900), pick(8), pick(testEffectCount), -1);
      if (object >= 0 && pick(3) == 0 && objects[object].end - objects[object].start > 10)
        addSection(object, objects[object].start + 1 + pick(objects[object].end - objects[object].start), sectionSplit);
    }
    for (int i = 0; i < 6; i++)
      if (anyObject() >= 0) groupSelection(std::vector<int>{anyObject(), anyObject()});
  }

  /// One of the whole table, or an entry of a list of effects. Its dialog gets a number.
  int anyCommand() {
    using namespace commands;
    const std::span<const Row> tables[] = {objectCommands,   selectionCommands, effectCommands,
                                           settingsCommands, layerCommands,     viewCommands};
    scripted.dialogs = {[this](platform::Window* dialog) {
      platform::user::type(platform::controlOf(dialog, 171), std::to_string(pick(200)).c_str());
      platform::user::click(platform::controlOf(dialog, 1 + pick(2)));
    }};
    if (pick(6) == 0) return menuEffect + pick(testEffectCount);
    const std::span<const Row>& table = tables[pick(std::size(tables))];
    const int id = table[pick(table.size())].id;
    return id == commandSetFile ? commandLastFrameAtCursor : id;  // its parameter is a path
  }

  /// Somewhere; not while something is dragged.
  void runAnyCommand() {
    if (timelineView.dragMode != dragNone) return;
    if (timelineView.sceneLength > 2000) timelineView.sceneLength = fakeHost.frameCount = 1000;
    clickPosition = {pick(1000), pick(12), pick(4) ? -1 : pick(objectCapacity + 1)};
    if (pick(3) == 0) currentObject = anyObject();
    for (int i = pick(4); i > 0 && sceneObjectCount; i--) selectChain(anyObject());
    send(pick(4) ? messageCommand : messageHostCommand, anyCommand(), pick(12));
    scripted.dialogs.clear();
    redrawTimeline();
  }

  void pressKey() {
    struct Stroke {
      int key;
      intptr_t modifiers;
    };
    const Stroke strokes[] = {
        {platform::keyLeft},   {platform::keyRight},  {platform::keyUp}, {platform::keyDown}, {'S'},
        {platform::keyDelete}, {platform::keyEscape}, {'C', ctrl},       {'V', ctrl},         {'Z', ctrl}};
    const Stroke& stroke = strokes[pick(std::size(strokes))];
    platform::user::press(stroke.key, stroke.modifiers);
  }

  void press(intptr_t button, uint32_t message) {
    held |= button;
    mouse = anyPoint();
    mouseEvent(message);
  }
  void release(intptr_t button, uint32_t message) {
    held &= ~button;
    if (pick(8)) mouseEvent(message);  // some are lost
  }

  /// While the menu is open a playback goes on.
  void openMenu() {
    scripted.menus = {[this](const platform::Menu*) {
      if (pick(2)) play();
      return pick(3) ? anyCommand() : 0;
    }};
    mouse = anyPoint();
    mouseEvent(platform::messageRightDown);
    scripted.menus.clear();
    scripted.dialogs.clear();
  }

  void userStep() {
    switch (pick(16)) {
      case 0:
        return press(platform::mouseLeft, platform::messageLeftDown);
      case 1:
        return release(platform::mouseLeft, platform::messageLeftUp);
      case 2:
        return mouseEvent(platform::messageLeftDoubleClick);
      case 3:
        return openMenu();
      case 4:
        return pressKey();
      case 5: {
        const intptr_t modifiers[] = {0, 0, ctrl, shift, ctrl | shift, alt};
        held = (held & (platform::mouseLeft | platform::mouseMiddle)) | modifiers[pick(6)];
        if (!(held & ctrl)) platform::user::key(platform::keyCtrl, false);
        return;
      }
      case 6:
        platform::user::wheel(window, mouse, pick(3) - 1, held);
        return;
      case 7:
        return pick(4) ? release(platform::mouseMiddle, platform::messageMiddleUp)
                       : press(platform::mouseMiddle, platform::messageMiddleDown);
      case 8:
        return platform::user::timer(window, dragTimer);
      case 9:
        return runAnyCommand();
      default:
        mouse = {mouse.x + pick(60) - 30, mouse.y + pick(40) - 20};
        return mouseEvent(platform::messageMouseMove);
    }
  }

  void play() {
    const uint32_t notes[] = {2, 2, 2, 1, 0, 4 | 2, 8, 2 | 8};
    playbackNotification(pick(1200) - 50, notes[pick(std::size(notes))]);
  }

  void changePreference() {
    int32_t* const toggles[] = {&preferences.sync_play_cursor, &preferences.auto_scroll, &preferences.config_move,
                                &preferences.pair_move,        &preferences.group_open,  &preferences.edit_time_type};
    int32_t& toggle = *toggles[pick(std::size(toggles))];
    toggle = !toggle;
    if (pick(4)) return;
    preferences.small_layer = pick(3);
    applyLayerHeight();
  }

  /// What arrives by other ways than the mouse.
  void foreignStep() {
    int object = anyObject();
    std::vector<int> list = object < 0 ? std::vector<int>{} : std::vector<int>{object};
    const char* const files[] = {"/a.avi", "/a.mov", "/silent.mov", "/a.wav", "/a.txt"};
    const std::function<void()> steps[] = {
        [&] { deleteObjects(list); },
        [&] { undo(); },
        [&] {
          if (object >= 0) splitObject(object, objects[object].start + pick(20));
        },
        [&] { createObject(pick(900), pick(8), pick(testEffectCount), -1); },
        [&] { layers[pick(8)].flags ^= pick(2) ? layerLocked : layerHidden; },
        [&] { enterScene(pick(3) ? 0 : 2); },
        [&] { environment.saving = pick(8) == 0; },
        [&] {
          if (pick(4) == 0) environment.saving = false, timelineView.sceneLength = fakeHost.frameCount = 1000, fill();
        },
        [&] { play(); },
        [&] { changePreference(); },
        [&] { drop(files[pick(std::size(files))], anyPoint()); },
    };
    beginUndoStep();
    steps[pick(std::size(steps))]();
    scripted.dialogs.clear();
    redrawTimeline();
  }

  void expectSound(int step) {
    ASSERT_EQ(modelFault(), "") << "step " << step;
    for (int object : selection()) ASSERT_TRUE(onTimeline(object)) << "step " << step;
    ASSERT_TRUE(currentObject < 0 || onTimeline(currentObject)) << "step " << step;
    ASSERT_EQ(timelineView.sceneLength, fakeHost.frameCount) << "step " << step;
    ASSERT_EQ(platform::mouseCapture() == window, timelineView.dragMode != dragNone) << "step " << step;
  }
};

TEST_F(TimelineWalk, StaysSoundAndShowsWhatThereIs) {
  preferences.object_snap = 1;
  preferences.grid.grid = 1;
  acceptMedia();
  auto desktop = std::make_unique<PixelDesktop>(window, platform::Size{width, height});
  fill();
  send(platform::messagePaint);
  for (int step = 0; step < 40000; step++) {
    pick(40) ? userStep() : foreignStep();
    if (step % 10 != 0) continue;
    ASSERT_NO_FATAL_FAILURE(expectSound(step));
    std::vector<uint32_t> inParts = desktop->pixels();
    send(platform::messagePaint);
    size_t at = 0;
    while (at < inParts.size() && inParts[at] == desktop->pixels()[at]) at++;
    ASSERT_EQ(at, inParts.size()) << "step " << step << ": x " << at % width << ", y " << at / width;
  }
  environment.saving = false;
  enterScene(0);
}

}  // namespace
}  // namespace zenlay::test
