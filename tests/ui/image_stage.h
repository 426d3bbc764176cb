// Handles on the image, moved by the host's messages; the model tells what became of it. Frames are 640 x 480, the
// object is a picture of 200 x 100 pixels in the middle: its box is 220..420 x 190..290.
#pragma once

#include "platform/user_input.h"
#include "tests/render/test_film.h"
#include "tests/support/fake_host.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/handles.h"
#include "zenlay/ui/image/editing.h"

namespace zenlay::test {

using platform::Point;

inline constexpr int placed = 4;  // first track of the placing effect, behind those of the picture
inline constexpr Point inside{300, 230}, corner{420, 290}, knob{320, 166};

inline int send(uint32_t message, Point at, intptr_t state = 0) {
  return imageMessage(message, state, platform::packPoint(at));
}
inline int drag(Point from, Point to, intptr_t state = 0) {
  send(messageImageMouseDown, from, state | platform::mouseLeft);
  int redraw = send(messageImageMouseMove, {(from.x + to.x) / 2, (from.y + to.y) / 2}, state | platform::mouseLeft);
  redraw |= send(messageImageMouseMove, to, state | platform::mouseLeft);
  send(messageImageMouseUp, to, state);
  return redraw;
}
inline int key(int k, intptr_t state = 0, bool release = true) {
  platform::user::holdModifiers(state);
  int redraw = imageMessage(messageImageKeyDown, k, 0);
  if (release) imageMessage(messageImageKeyUp, k, 0);
  platform::user::holdModifiers(0);
  return redraw;
}

struct ImageEditing : testing::Test {
  int object = -1;

  void SetUp() override {
    setUpFilm(640, 480);
    modelHooks = {.trackValues = evaluateSlot};
    resetUndo();
    object = add({});
    currentObject = object;
    renderFrame(0);
  }
  void TearDown() override {
    send(messageImageRightDown, {0, 0});
    EXPECT_EQ(modelFault(), "");
    resetFakeHost();
  }
  static int add(const ObjectPlan& plan) {
    int added = addObject(plan);
    setTrack(added, 0, solidWidth, 200);
    setTrack(added, 0, solidHeight, 100);
    rebuildOrder();
    return added;
  }
  int32_t start(int track) const { return objects[object].startValues[placed + track]; }
  int32_t end(int track) const { return objects[object].endValues[placed + track]; }
  /// Lets X and Y run from (-100, 0) to (100, 50) pixels, and shows a frame.
  void move(int frame) {
    moveTrack(object, 1, placingX, -1000, 1000);
    moveTrack(object, 1, placingY, 0, 500);
    show(frame);
  }
  void show(int frame) {
    timelineView.cursorFrame = frame;
    renderFrame(frame);
  }
};

}  // namespace zenlay::test
