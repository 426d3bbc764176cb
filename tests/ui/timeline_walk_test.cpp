// A random walk with the mouse, the wheel, the keys and what other rooms do meanwhile. The model stays sound, and what
// was redrawn in parts is what a full redraw shows.
#include <memory>
#include <random>

#include "tests/ui/pixel_desktop.h"
#include "tests/ui/timeline_stage.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/groups.h"
#include "zenlay/model/sections.h"
#include "zenlay/ui/commands/command_ids.h"

namespace zenlay::test {
namespace {

constexpr int width = 640, height = 197;

class TimelineWalk : public Timeline {
 protected:
  std::mt19937 random{20260711};
  platform::Point mouse{300, 100};
  intptr_t held = 0;  // modifiers and buttons

  int pick(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
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

  void userStep() {
    switch (pick(12)) {
      case 0:
        held |= platform::mouseLeft;
        mouse = anyPoint();
        return mouseEvent(platform::messageLeftDown);
      case 1:
        held &= ~intptr_t{platform::mouseLeft};
        return mouseEvent(platform::messageLeftUp);
      case 2:
        return mouseEvent(platform::messageLeftDoubleClick);
      case 3:
        mouse = anyPoint();
        return pick(4) ? void() : mouseEvent(platform::messageRightDown);
      case 4: {
        struct Stroke {
          int key;
          intptr_t modifiers;
        };
        const Stroke strokes[] = {
            {platform::keyLeft},   {platform::keyRight}, {platform::keyUp}, {platform::keyDown}, {'S'},
            {platform::keyDelete}, {'C', ctrl},          {'V', ctrl},       {'Z', ctrl}};
        const Stroke& stroke = strokes[pick(9)];
        platform::user::press(stroke.key, stroke.modifiers);
        return;
      }
      case 5: {
        const intptr_t modifiers[] = {0, 0, ctrl, shift, ctrl | shift, alt};
        held = (held & platform::mouseLeft) | modifiers[pick(6)];
        if (!(held & ctrl)) platform::user::key(platform::keyCtrl, false);
        return;
      }
      case 6:
        platform::user::wheel(window, mouse, pick(3) - 1, held);
        return;
      default:
        mouse = {mouse.x + pick(60) - 30, mouse.y + pick(40) - 20};
        return mouseEvent(platform::messageMouseMove);
    }
  }

  /// Edits that arrive by other ways than the mouse.
  void foreignStep() {
    int object = anyObject();
    std::vector<int> list = object < 0 ? std::vector<int>{} : std::vector<int>{object};
    beginUndoStep();
    switch (pick(9)) {
      case 8: {
        const int commands[] = {commandSplit,
                                commandAddMidpoint,
                                commandRemoveMidpoint,
                                commandGroup,
                                commandInsertLayer,
                                commandDeleteLayer,
                                commandDuplicate,
                                commandLockLayer,
                                commandNextObject,
                                commandShowOtherLayers,
                                commandZoomIn,
                                commandUndo,
                                commandCursorIsLastFrame,
                                commandToggleObjectRange};
        send(messageCommand, commands[pick(14)]);
        break;
      }
      case 0:
        deleteObjects(list);
        break;
      case 1:
        undo();
        break;
      case 2:
        if (object >= 0) splitObject(object, objects[object].start + pick(20));
        break;
      case 3:
        createObject(pick(900), pick(8), pick(testEffectCount), -1);
        break;
      case 4:
        layers[pick(8)].flags ^= pick(2) ? layerLocked : layerHidden;
        break;
      case 5:
        enterScene(pick(3) ? 0 : 2);
        break;
      case 6:
        environment.saving = !environment.saving;
        break;
      case 7:
        if (pick(4) == 0) environment.saving = false, timelineView.sceneLength = fakeHost.frameCount = 1000, fill();
        break;
    }
    redrawTimeline();
  }

  void expectSound(int step) {
    ASSERT_EQ(modelFault(), "") << "step " << step;
    for (int object : selection()) ASSERT_TRUE(onTimeline(object)) << "step " << step;
    ASSERT_EQ(platform::mouseCapture() == window, timelineView.dragMode != dragNone) << "step " << step;
  }
};

TEST_F(TimelineWalk, StaysSoundAndShowsWhatThereIs) {
  preferences.object_snap = 1;
  preferences.grid.grid = 1;
  auto desktop = std::make_unique<PixelDesktop>(window, platform::Size{width, height});
  fill();
  send(platform::messagePaint);
  for (int step = 0; step < 20000; step++) {
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
