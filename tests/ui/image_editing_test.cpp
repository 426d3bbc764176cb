// Handles on the image, moved by the host's messages; the model tells what became of it. Frames are 640 x 480, the
// object is a picture of 200 x 100 pixels in the middle: its box is 220..420 x 190..290.
#include <gtest/gtest.h>

#include <array>

#include "platform/user_input.h"
#include "tests/render/test_film.h"
#include "tests/support/fake_host.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/checker.h"
#include "zenlay/model/order.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/handles.h"
#include "zenlay/render/preview_overlay.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/image/editing.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay {
namespace {

using namespace test;
using platform::mouseCtrl;
using platform::mouseShift;
using platform::Point;

constexpr int placed = 4;  // first track of the placing effect, behind those of the picture
constexpr Point inside{300, 230}, corner{420, 290}, knob{320, 166};

int send(uint32_t message, Point at, intptr_t state = 0) {
  return imageMessage(message, state, platform::packPoint(at));
}
int drag(Point from, Point to, intptr_t state = 0) {
  send(messageImageMouseDown, from, state | platform::mouseLeft);
  int redraw = send(messageImageMouseMove, {(from.x + to.x) / 2, (from.y + to.y) / 2}, state | platform::mouseLeft);
  redraw |= send(messageImageMouseMove, to, state | platform::mouseLeft);
  send(messageImageMouseUp, to, state);
  return redraw;
}
int key(int k, intptr_t state = 0, bool release = true) {
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

TEST_F(ImageEditing, DragsOfAStillObject) {
  struct Row {
    const char* what;
    Point from, to;
    intptr_t state;
    int x, y, zoom, turn;
  };
  const Row rows[] = {
      {"move", inside, {310, 225}, 0, 100, -50, 10000, 0},
      {"move along one axis", inside, {310, 225}, mouseShift, 100, 0, 10000, 0},
      {"the other axis", inside, {310, 260}, mouseShift, 0, 300, 10000, 0},
      {"onto the grid of 50", inside, {370, 250}, mouseCtrl, 500, 0, 10000, 0},  // 70 and 20 pixels
      {"a click on the grid", inside, inside, mouseCtrl, 0, 0, 10000, 0},
      {"beyond the limits", inside, {2000000, 230}, 0, 999999, 0, 10000, 0},
      {"twice as large", corner, {520, 340}, 0, 0, 0, 20000, 0},
      {"half as large", corner, {370, 265}, 0, 0, 0, 5000, 0},
      {"another corner", {220, 190}, {120, 140}, 0, 0, 0, 20000, 0},
      {"in steps of 10 %", corner, {434, 297}, mouseShift, 0, 0, 11000, 0},  // x 1.14
      {"largest", corner, {100420, 50290}, 0, 0, 0, 500000, 0},
      {"a quarter turn", knob, {394, 240}, 0, 0, 0, 10000, 9000},
      {"back a half", knob, {320, 314}, 0, 0, 0, 10000, 18000},
      {"in steps of 15 degrees", knob, {352, 172}, mouseShift, 0, 0, 10000, 3000},  // 25.2 degrees
      {"beside everything", {100, 100}, {200, 200}, 0, 0, 0, 10000, 0},
  };
  for (const Row& row : rows) {
    ObjectRecord before = objects[object];
    bool changes = row.x || row.y || row.zoom != 10000 || row.turn;
    EXPECT_EQ(drag(row.from, row.to, row.state), changes) << row.what;
    EXPECT_EQ((std::array{start(placingX), start(placingY), start(placingZoom), std::abs(start(placingRotation))}),
              (std::array{row.x, row.y, row.zoom, row.turn}))
        << row.what;
    EXPECT_EQ(end(placingX), row.x) << row.what;
    EXPECT_EQ(undoSteps(), changes) << row.what;
    undo();
    EXPECT_EQ(memcmp(&before, objects + object, sizeof before), 0) << row.what;
    resetUndo();
    renderFrame(0);
  }
}

TEST_F(ImageEditing, EndsOfAMovement) {
  struct Row {
    const char* what;
    int frame;
    Point from;
    std::array<int, 4> ends;  // X and Y of the start, then of the end, after 10 pixels to the right and 20 down
  };
  const Row rows[] = {
      {"first frame", 0, {200, 230}, {-900, 200, 1000, 500}},
      {"last frame", 99, {400, 280}, {-1000, 0, 1100, 700}},
      {"in between", 50, {300, 250}, {-900, 200, 1100, 700}},
      {"mark of the start", 50, {220, 240}, {-900, 200, 1000, 500}},
      {"mark of the end", 0, {420, 290}, {-1000, 0, 1100, 700}},
  };
  for (const Row& row : rows) {
    move(row.frame);
    ASSERT_EQ(previewHandleCount, 3);
    EXPECT_EQ(drag(row.from, {row.from.x + 10, row.from.y + 20}), 1) << row.what;
    EXPECT_EQ((std::array{start(placingX), start(placingY), end(placingX), end(placingY)}), row.ends) << row.what;
    EXPECT_EQ(undoSteps(), 1) << row.what;
    resetUndo();
  }
}

TEST_F(ImageEditing, SectionsStayContinuous) {
  move(0);
  int second = addSection(object, 50, sectionSplit);
  ASSERT_GE(second, 0);
  const int32_t middle = objects[second].startValues[placed];
  currentObject = second;
  show(50);
  int x = 320 + middle / 10;
  EXPECT_EQ(drag({x, 250}, {x + 10, 250}), 1);
  EXPECT_EQ(objects[second].startValues[placed], middle + 100);
  EXPECT_EQ(end(placingX), middle + 100) << "the section before ends where this one starts";
  undo();
  EXPECT_EQ(end(placingX), middle);
}

TEST_F(ImageEditing, LinkedNeighboursFollow) {
  objects[object].end = 49;
  int next = add({.start = 50, .end = 99});
  layers[0].flags |= layerCoordinateLink;
  EXPECT_EQ(drag(inside, {310, 225}), 1);
  EXPECT_EQ(start(placingX), 100);
  EXPECT_EQ(objects[next].startValues[placed + placingX], 100);
  EXPECT_EQ(objects[next].startValues[placed + placingY], -50);
  EXPECT_EQ(objects[next].startValues[placed + placingZoom], 10000);
  EXPECT_EQ(undoSteps(), 1);
  undo();
  EXPECT_EQ(start(placingX), 0);
  EXPECT_EQ(objects[next].startValues[placed + placingX], 0);
}

TEST_F(ImageEditing, TheZoomedOutDisplay) {
  struct Row {
    int value, pixels;  // of the scene for 20 of the frame
  };
  fakeHost.functions.resizeImage = [](FramePixel*, int32_t, int32_t, const FramePixel*, int32_t, int32_t, int32_t,
                                      int32_t) -> int32_t { return 1; };
  preferences.grid.out_of_area = 1;
  for (const Row& row : {Row{12, 20}, {18, 30}, {36, 60}}) {
    preferences.grid.out_of_scale = row.value;
    setTrack(object, 1, placingX, 0);
    renderFrame(0);
    EXPECT_EQ(drag({325, 245}, {345, 245}), 1);
    EXPECT_EQ(start(placingX), row.pixels * 10) << row.value;
  }
  // The buttons at the lower left: 40 x 24 each.
  const struct {
    Point at;
    int value;
  } buttons[] = {{{0, 456}, 12}, {{39, 479}, 12}, {{40, 470}, 18}, {{119, 456}, 36}, {{120, 470}, 0}, {{10, 455}, 0}};
  for (const auto& button : buttons) {
    preferences.grid.out_of_scale = 0;
    renderFrame(0);
    EXPECT_EQ(send(messageImageMouseDown, button.at), button.value != 0);
    EXPECT_EQ(preferences.grid.out_of_scale, button.value);
    EXPECT_FALSE(imageDragging() && button.value);
  }
  preferences.grid.out_of_area = 0;
  renderFrame(0);
  EXPECT_EQ(send(messageImageMouseDown, {10, 470}), 0) << "no buttons any more";
}

TEST_F(ImageEditing, ASceneLargerThanTheFrame) {
  environment.workW = environment.workStride = 1280;
  scenes[0].flags |= sceneSetUp;
  scenes[0].width = 840;
  scenes[0].height = 480;
  shownScene = {840, 480, 100, 0, 12, false};  // the frame shows columns 100..739
  EXPECT_EQ(sceneAt(0, 0).x, 100);
  EXPECT_EQ(sceneAt(639, 479).x, 739);
  shownScene.value = 36;
  EXPECT_EQ(sceneAt(320, 240).x, 420);
  EXPECT_EQ(sceneAt(330, 250).x, 450);
  EXPECT_EQ(sceneAt(330, 250).y, 270);
  EXPECT_EQ(shownAt({450, 270}).x, 430) << "of the scene's picture";
}

TEST_F(ImageEditing, KeysMoveWhatWasPressedLast) {
  EXPECT_EQ(key(platform::keyLeft), 0) << "the host's own key until a handle is pressed";
  drag(inside, inside);
  EXPECT_EQ(key(platform::keyLeft), 1);
  EXPECT_EQ(start(placingX), -10);
  EXPECT_EQ(key(platform::keyDown, mouseShift), 1);
  EXPECT_EQ(start(placingY), 100);
  EXPECT_EQ(key(platform::keyRight, mouseCtrl), 1);
  EXPECT_EQ(start(placingX), -9);
  EXPECT_EQ(key(platform::keyHome), 0);
  setTrack(object, 1, placingX, -999999);
  EXPECT_EQ(key(platform::keyLeft), 1) << "taken, though there is no way to go";
  setTrack(object, 1, placingX, -9);
  EXPECT_EQ(undoSteps(), 3);
  for (int i = 0; i < 5; i++) EXPECT_EQ(key(platform::keyUp, 0, false), 1);  // held down
  imageMessage(messageImageKeyUp, platform::keyUp, 0);
  EXPECT_EQ(start(placingY), 50);
  EXPECT_EQ(undoSteps(), 4);
  undo();
  EXPECT_EQ(start(placingY), 100);
  drag({10, 10}, {10, 10});
  EXPECT_EQ(key(platform::keyLeft), 0);
}

TEST_F(ImageEditing, DragsAreTakenBack) {
  for (bool byKey : {false, true}) {
    send(messageImageMouseDown, inside);
    send(messageImageMouseMove, {400, 300});
    EXPECT_TRUE(imageDragging());
    EXPECT_EQ(start(placingX), 1000);
    EXPECT_EQ(byKey ? key(platform::keyEscape) : send(messageImageRightDown, {400, 300}), 1);
    EXPECT_EQ(start(placingX), 0);
    EXPECT_EQ(undoSteps(), 0);
    EXPECT_EQ(send(messageImageMouseMove, {410, 300}), 0);
    EXPECT_EQ(send(messageImageMouseUp, {410, 300}), 0);
    EXPECT_EQ(start(placingX), 0);
  }
  // Another step came in between: it is not the drag's to take back.
  send(messageImageMouseDown, inside);
  send(messageImageMouseMove, {400, 300});
  beginUndoStep();
  recordUndo(object, undoPosition);
  EXPECT_EQ(send(messageImageRightDown, {400, 300}), 0);
  EXPECT_EQ(undoSteps(), 2);
  resetUndo();
  renderFrame(0);
  send(messageImageMouseDown, {400, 300});
  send(messageImageMouseMove, {410, 300});
  undo();
  EXPECT_EQ(send(messageImageMouseMove, {420, 300}), 0) << "undone meanwhile: the drag is over";
  EXPECT_EQ(undoSteps(), 0);
}

TEST_F(ImageEditing, WhatGoesAwayUnderTheMouse) {
  struct Row {
    const char* what;
    void (*happens)(int object);
  };
  const Row rows[] = {
      {"deleted", [](int o) { dropObject(o), rebuildOrder(), currentObject = -1; }},
      {"another current", [](int) { currentObject = -1; }},
      {"another scene", [](int) { selectScene(1), currentObject = -1; }},
      {"locked", [](int) { layers[0].flags |= layerLocked; }},
      {"saving", [](int) { environment.saving = true; }},
      {"playing", [](int) { environment.playing = true; }},
      {"closed", [](int) { environment.projectOpen = false; }},
      {"aids hidden", [](int) { imageAidsHidden = true; }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    TearDown();
    SetUp();
    send(messageImageMouseDown, inside);
    send(messageImageMouseMove, {310, 230});
    EXPECT_EQ(start(placingX), 100);
    row.happens(object);
    ObjectRecord before = objects[object];
    EXPECT_EQ(send(messageImageMouseMove, {330, 230}), 0);
    EXPECT_EQ(send(messageImageMouseUp, {330, 230}), 0);
    EXPECT_EQ(key(platform::keyLeft), 0);
    EXPECT_EQ(memcmp(&before, objects + object, sizeof before), 0);
    EXPECT_FALSE(imageDragging());
    imageAidsHidden = false;
  }
}

TEST_F(ImageEditing, AnEffectsOwnHandles) {
  int own = add({.layer = 1, .effects = {solid, recorder, placing}});
  currentObject = own;
  struct Row {
    int16_t parameters[4];
    int expected;  // after 7 pixels across and 3 down
  };
  const Row rows[] = {
      {{1, 0, 0, 0}, 7}, {{0, 1, 0, 0}, 3}, {{1, 0, -50, 0}, -350}, {{0, 0, 9, 9}, 0}, {{2, 0, 0, 0}, 0}};
  for (const Row& row : rows) {
    recorderAction = [&](EffectDefinition* d, EffectProcessInfo*) {
      d->services->addHandle(d->object_ref, 100, 80, 8, 8, row.parameters, 0, 0);
      return 1;
    };
    setTrack(own, 1, 0, 0);
    renderFrame(0);
    EXPECT_EQ(drag({102, 78}, {109, 81}), row.expected != 0);
    EXPECT_EQ(objects[own].startValues[4], row.expected);
    EXPECT_EQ(objects[own].startValues[5], 0) << "what lies below a handle stays";
  }
}

struct Command {
  int code, handle;
  intptr_t value;
  bool operator==(const Command&) const = default;
};
std::vector<Command> commands;

TEST_F(ImageEditing, EffectsTakePart) {
  int own = add({.layer = 1, .effects = {solid, recorder, placing}});
  currentObject = own;
  EffectDefinition* d = effectList[recorder];
  d->flag |= effectPreview;
  static int answer;
  d->window_proc = [](void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition*) {
    EXPECT_EQ(message, messageEffectCommand);
    commands.push_back({static_cast<int>(wparam & 0xFFFF), static_cast<int>(wparam >> 16), lparam});
    return answer;
  };
  recorderAction = [](EffectDefinition* effect, EffectProcessInfo*) {
    constexpr int16_t none[4] = {};
    effect->services->addFreeHandle(100, 80, 8, 8, none, 0);
    return 1;
  };
  renderFrame(0);
  ASSERT_GE(previewHandleCount, 2);

  commands.clear();
  answer = 0;
  EXPECT_EQ(drag({101, 80}, {110, 90}), 0) << "nobody wants it";
  EXPECT_EQ(commands, (std::vector<Command>{{commandPreviewPress, 1, platform::packPoint({101, 80})}}));

  commands.clear();
  answer = 1;
  EXPECT_EQ(drag({300, 230}, {310, 240}), 1);
  ASSERT_EQ(commands.size(), 5u);
  EXPECT_EQ(commands[1], (Command{commandPreviewMove, 2, platform::packPoint({305, 235})}));  // of its box
  EXPECT_EQ(commands[4], (Command{commandPreviewRelease, 2, platform::packPoint({310, 240})}));
  EXPECT_EQ(objects[own].startValues[5], 0);
  EXPECT_EQ(undoSteps(), 0);

  commands.clear();
  EXPECT_EQ(imageMessage(messageImageWheel, intptr_t{-2} * 0x10000, platform::packPoint({1, 1})), 1);
  EXPECT_EQ(imageMessage(messageImageKeyDown, 'A', 0), 1);
  EXPECT_EQ(send(messageImageRightDown, {100, 80}), 1);
  EXPECT_EQ(send(messageImageDoubleClick, {100, 80}), 1);
  const intptr_t at = platform::packPoint({100, 80});
  EXPECT_EQ(commands, (std::vector<Command>{{commandPreviewWheel, 0, -2},
                                            {commandPreviewKey, 0, 'A'},
                                            {commandPreviewRightPress, 1, at},
                                            {commandPreviewDoubleClick, 1, at}}));

  // Another object became current: what follows is not the one's affair, nor the other's.
  send(messageImageMouseDown, {300, 230});
  int other = add({.layer = 4, .effects = {solid, recorder, placing}});
  currentObject = other;
  commands.clear();
  EXPECT_EQ(send(messageImageMouseMove, {310, 230}), 0);
  EXPECT_EQ(send(messageImageMouseUp, {310, 230}), 0);
  EXPECT_TRUE(commands.empty());
  currentObject = own;

  commands.clear();
  setSlotFlags(own, 1, slotEnabled);  // its handles are off
  send(messageImageMouseDown, {300, 230});
  EXPECT_TRUE(commands.empty());
}

TEST_F(ImageEditing, TheHandleOfAGroupControl) {
  int control = addObject({.layer = 2, .effects = {group}});
  rebuildOrder();
  currentObject = control;
  renderFrame(0);
  ASSERT_EQ(previewHandleCount, 1);
  EXPECT_EQ(drag({321, 240}, {331, 260}), 1);
  EXPECT_EQ(objects[control].startValues[0], 100);
  EXPECT_EQ(objects[control].startValues[1], 200);
}

TEST_F(ImageEditing, AGroupTurnsAndScalesWhatIsDragged) {
  int control = addObject({.layer = 1, .effects = {group}});
  setRange(control, 0);
  for (auto [track, value] : {std::pair{0, 1000}, {3, 5000}, {6, 9000}}) setTrack(control, 0, track, value);
  currentObject = object = add({.layer = 2});
  move(0);
  ASSERT_EQ(previewHandleCount, 3);
  // (-100, 0) and (100, 50), halved, a quarter turn clockwise, 100 pixels to the right.
  EXPECT_EQ(std::pair(previewHandles[1].x, previewHandles[1].y), std::pair(420, 190));
  EXPECT_EQ(std::pair(previewHandles[2].x, previewHandles[2].y), std::pair(395, 290));
  EXPECT_EQ(drag({420, 190}, {420, 200}), 1);
  EXPECT_EQ(start(placingX), -800);
  EXPECT_EQ(start(placingY), 0);
  show(99);
  EXPECT_EQ(drag({390, 285}, {380, 285}), 1);  // inside the box
  EXPECT_EQ(end(placingX), 1000);
  EXPECT_EQ(end(placingY), 700);
}

TEST_F(ImageEditing, MarksStandWhereTheMovementLeads) {
  move(0);
  for (int track : {placingX, placingY}) objects[object].modes[placed + track] = modeTeleport;
  show(50);
  EXPECT_EQ(previewHandleCount, 1);  // no section follows to jump to
  EXPECT_EQ(drag({220, 240}, {230, 240}), 1);
  EXPECT_EQ(start(placingX), -900);
  EXPECT_EQ(end(placingX), 1000);
  objects[object].modes[placed + placingX] = modeAmount;
  objects[object].endValues[placed + placingX] = 20;  // 198 pixels in 99 frames
  show(0);
  ASSERT_EQ(previewHandleCount, 3);
  EXPECT_EQ(std::pair(previewHandles[2].x, previewHandles[2].y), std::pair(428, 240));
  EXPECT_EQ(drag({428, 240}, {527, 260}), 1);
  EXPECT_EQ(end(placingX), 30);
  EXPECT_EQ(end(placingY), 500);
}

TEST_F(ImageEditing, APictureOfNoSizeGrowsByItsCorner) {
  setTrack(object, 1, placingZoom, 0);
  show(0);
  EXPECT_EQ(drag({320, 240}, corner), 1);
  EXPECT_EQ(start(placingZoom), 10000);
}

TEST_F(ImageEditing, ADoubleClickChooses) {
  int above = add({.layer = 3}), aside = add({.layer = 5});
  setTrack(aside, 1, placingX, 2500);
  int locked = add({.layer = 6}), nothing = add({.layer = 7});
  setTrack(nothing, 1, placingZoom, 0);
  layers[6].flags |= layerLocked;
  currentObject = -1;
  renderFrame(0);
  const struct {
    Point at;
    int expected;
  } clicks[] = {{inside, above},     {inside, object},    {inside, above},
                {{600, 240}, aside}, {{600, 240}, aside}, {{5, 5}, aside}};
  for (const auto& click : clicks) {
    send(messageImageDoubleClick, click.at);
    EXPECT_EQ(currentObject, click.expected);
    renderFrame(0);
  }
  EXPECT_NE(currentObject, locked);
}

TEST_F(ImageEditing, AClickGivesAWaitingEffectTheColorBelowTheHandles) {
  static std::vector<intptr_t> picked;
  picked.clear();
  auto record = [](platform::Window*, uint32_t message, intptr_t first, intptr_t second, void*) -> intptr_t {
    if (message == platform::messageCommand && first == commandColorPicked) picked.push_back(second);
    return 0;
  };
  platform::Window* window = environment.timelineWindow = platform::createWindow(nullptr, record, nullptr, {});
  environment.outputWidth = 640;
  environment.outputHeight = 480;
  setTrack(object, 0, solidLuma, 2048);
  // The middle of a corner's mark lies beside the picture, its rim reaches in; and a pixel outside of the frame.
  for (Point at : {Point{419, 289}, corner, Point{700, 10}}) {
    beginColorPick(object, 0, true);
    EXPECT_EQ(send(messageImageMouseDown, at), 1);
    EXPECT_FALSE(colorPickPending());
    EXPECT_FALSE(imageDragging());
  }
  EXPECT_EQ(picked, (std::vector<intptr_t>{0x808080, 0x000000, -1}));
  preferences.grid.grid2d = preferences.grid.out_of_area = 1;  // a line runs through the middle, where the picture is
  preferences.grid.out_of_scale = 36;
  imageAidsHidden = true;
  renderFrame(0);
  shownScene.value = 36;  // a third of its size
  for (Point at : {Point{320, 240}, Point{0, 240}}) {
    beginColorPick(object, 0, true);
    EXPECT_EQ(send(messageImageMouseDown, at), 1);
  }
  imageAidsHidden = false;
  EXPECT_EQ(picked.size(), 5u);
  EXPECT_EQ(picked[3], 0x808080);
  EXPECT_EQ(picked[4], -1);
  platform::destroyWindow(window);
  environment.timelineWindow = nullptr;
}

TEST_F(ImageEditing, TheHandlesAreDrawn) {
  EXPECT_EQ(renderFrame(0).luma(420, 290), 4096);  // a corner's mark
  EXPECT_EQ(renderFrame(0).luma(423, 293), 0);     // its rim
  EXPECT_EQ(renderFrame(0, 1000).luma(423, 293), 0);
  EXPECT_NE(renderFrame(0).luma(knob.x, knob.y), 0);
  for (bool* hides : {&imageAidsHidden, &environment.saving, &environment.playing}) {
    *hides = true;
    EXPECT_EQ(renderFrame(0, 1000).bounds(1000), (std::vector<int>{220, 190, 420, 290}));
    *hides = false;
  }
  setTrack(object, 1, placingX, 999999);  // far outside, and still drawn in no time
  setTrack(object, 1, placingZoom, 500000);
  renderFrame(0);
  currentObject = -1;
  setTrack(object, 1, placingX, 0);
  setTrack(object, 1, placingZoom, 10000);
  EXPECT_EQ(renderFrame(0).bounds(), (std::vector<int>{220, 190, 420, 290}));
}

}  // namespace
}  // namespace zenlay
