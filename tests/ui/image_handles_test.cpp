// What the image's messages reach beside the object's own box: handles of effects, buttons, other objects, a colour.
#include "tests/ui/image_stage.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/preferences.h"
#include "zenlay/render/preview_overlay.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay::test {
namespace {

using ImageHandles = ImageEditing;

TEST_F(ImageHandles, TheZoomedOutDisplay) {
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

TEST_F(ImageHandles, ASceneLargerThanTheFrame) {
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

TEST_F(ImageHandles, AnEffectsOwnHandles) {
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

TEST_F(ImageHandles, EffectsTakePart) {
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

TEST_F(ImageHandles, TheHandleOfAGroupControl) {
  int control = addObject({.layer = 2, .effects = {group}});
  rebuildOrder();
  currentObject = control;
  renderFrame(0);
  ASSERT_EQ(previewHandleCount, 1);
  EXPECT_EQ(drag({321, 240}, {331, 260}), 1);
  EXPECT_EQ(objects[control].startValues[0], 100);
  EXPECT_EQ(objects[control].startValues[1], 200);
}

TEST_F(ImageHandles, ADoubleClickChooses) {
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

TEST_F(ImageHandles, AClickGivesAWaitingEffectTheColorBelowTheHandles) {
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

TEST_F(ImageHandles, TheHandlesAreDrawn) {
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
}  // namespace zenlay::test
