#include <algorithm>
#include <cstring>

#include "platform/system.h"
#include "tests/render/test_film.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/registry.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/render/handles.h"
#include "zenlay/render/targets.h"

namespace zenlay::test {
namespace {

using Bounds = std::vector<int>;

using Pipeline = Film;

TEST_F(Pipeline, DrawsLaterLayersOverEarlierOnesAndSkipsHiddenLayers) {
  int low = addObject({.layer = 3}), high = addObject({.layer = 7});
  setTrack(low, 0, solidLuma, 1000);
  setTrack(low, 0, solidWidth, 16);
  setTrack(high, 0, solidLuma, 2000);
  Frame both = renderFrame(0);
  EXPECT_EQ(both.luma(31, 24), 2000);
  EXPECT_EQ(both.luma(25, 24), 1000);
  layerTable[7].flags = layerHidden;
  EXPECT_EQ(renderFrame(0).luma(31, 24), 1000);
}

TEST_F(Pipeline, WithoutProjectOrBuffersTheFrameStaysAsItIs) {
  addObject({});
  environment.projectOpen = false;
  EXPECT_EQ(renderFrame(0, 7).bounds(7), (Bounds{64, 48, 0, 0}));
  environment.projectOpen = true;
  reserveRenderMemory = [](size_t) -> void* { return nullptr; };
  Frame f = blankFrame(0, 7);
  EXPECT_EQ(renderSceneFrame(&f.info, layersPerScene, 0, 0, 0), 0);
  EXPECT_EQ(f.bounds(7), (Bounds{64, 48, 0, 0}));
  reserveRenderMemory = platform::reserveMemory;
  EXPECT_EQ(renderFrame(0, 7).luma(31, 24), 4096);
}

TEST_F(Pipeline, AnEffectThatRefusesEndsItsObjectOnly) {
  addObject({.layer = 0, .effects = {solid, recorder, placing}});
  int other = addObject({.layer = 1});
  setTrack(other, 1, placingX, 200);
  recorderAction = [](EffectDefinition*, EffectProcessInfo*) { return 0; };
  EXPECT_EQ(renderFrame(0).bounds(), (Bounds{48, 21, 56, 27}));
  // Events: the veto holds for this frame's object alone.
  recorderAction = nullptr;
  recorderEvent = [](int code, intptr_t) { return code == eventObject; };
  EXPECT_EQ(renderFrame(0).bounds(), (Bounds{48, 21, 56, 27}));
}

TEST_F(Pipeline, SendsSceneEventsAroundTheObjects) {
  int object = addObject({.effects = {solid, recorder, placing}});
  std::string events;
  recorderEvent = [&](int code, intptr_t argument) {
    events += std::to_string(code);
    if (code == eventObject) {
      EXPECT_EQ(reinterpret_cast<ObjectRecord*>(argument), &objects[object]);
    }
    return 0;
  };
  recorderAction = [&](EffectDefinition*, EffectProcessInfo*) {
    events += "p";
    return 1;
  };
  renderFrame(0);
  EXPECT_EQ(events, "13p2");
}

TEST_F(Pipeline, DisabledSlots) {
  int object = addObject({.effects = {solid, recorder, placing}});
  objects[object].slotFlags[1] = 0;
  EXPECT_EQ(renderFrame(0).luma(31, 24), 4096);
  EXPECT_TRUE(calls.empty());
  objects[object].slotFlags[1] = slotEnabled;
  objects[object].slotFlags[0] = 0;  // without its media effect there is no object
  EXPECT_EQ(renderFrame(0).luma(31, 24), 0);
  EXPECT_TRUE(calls.empty());
}

TEST_F(Pipeline, EvaluatesChainsSectionBySection) {
  int head = addObject({.start = 10, .end = 19, .effects = {solid, recorder, placing}});
  int second = addObject({.start = 20, .end = 29, .effects = {solid, recorder, placing}, .chainHead = head});
  objects[head].slotFlags[1] = slotEnabled;
  objects[second].slotFlags[1] = 0;  // only the head's count
  setTrack(second, 0, solidLuma, 1500);
  recorderAction = [](EffectDefinition* d, EffectProcessInfo*) {
    EXPECT_EQ(d->chain_begin, 10);
    EXPECT_EQ(d->chain_end, 29);
    return 1;
  };
  EXPECT_EQ(renderFrame(19).luma(31, 24), 4096);
  EXPECT_EQ(renderFrame(20).luma(31, 24), 1500);
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].object, head);
  EXPECT_EQ(calls[1].object, second);
  EXPECT_EQ(calls[1].frameNumber, 10);  // since the chain's first frame
  EXPECT_EQ(calls[1].frameCount, 20);
}

TEST_F(Pipeline, HoldsTheTimeInsideTheSection) {
  int head = addObject({.start = 10, .end = 19, .effects = {solid, recorder, placing}});
  struct Row {
    int frame, offset, subFrame, absolute, sub;
  };
  for (Row row : {Row{12, 0, 0, 12, 0}, Row{12, 0, 37, 12, 37}, Row{12, -5, 40, 10, 0}, Row{12, -2, 40, 10, 40},
                  Row{12, 50, 20, 19, 0}, Row{12, 7, 99, 19, 99}}) {
    Frame f = blankFrame(row.frame);
    calls.clear();
    renderSceneFrame(&f.info, layersPerScene, row.offset, row.subFrame, 0);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].absoluteFrame, row.absolute) << row.offset;
    EXPECT_EQ(calls[0].subFrame, row.sub) << row.offset;
  }
  // With a following section a later time reaches it; one frame past the end, to the hundredth, still belongs before
  // it.
  int second = addObject({.start = 20, .end = 29, .effects = {solid, recorder, placing}, .chainHead = head});
  for (auto [offset, sub, object] : {std::tuple{8, 0, head}, {8, 1, second}, {-3, 0, head}}) {
    Frame f = blankFrame(12);
    calls.clear();
    renderSceneFrame(&f.info, layersPerScene, offset, sub, 0);
    EXPECT_EQ(calls.at(0).object, object) << offset << "." << sub;
  }
  Frame f = blankFrame(22);
  calls.clear();
  renderSceneFrame(&f.info, layersPerScene, -10, 0, 0);
  EXPECT_EQ(calls.at(0).object, head);
  EXPECT_EQ(calls.at(0).absoluteFrame, 12);
}

TEST_F(Pipeline, OffersOpaqueImagesOnlyWhereTheyEndInTheDrawingEffect) {
  struct Row {
    std::vector<int> effects;
    bool opaque;
  };
  for (const Row& row : {Row{{solid, opaquePlacing}, true}, Row{{solid, placing}, false},
                         Row{{solid, recorder, opaquePlacing}, false}}) {
    setUpFilm();
    int object = addObject({.effects = row.effects});
    setCheck(object, 0, 0, 1);
    setTrack(object, 0, solidAlpha, 2048);  // an opaque image knows no alpha
    EXPECT_EQ(renderFrame(0).luma(31, 24), row.opaque ? 4096 : 2048);
  }
  // A filter object below works on the image, which then has to have alpha.
  setUpFilm();
  int object = addObject({.effects = {solid, opaquePlacing}});
  setCheck(object, 0, 0, 1);
  setTrack(object, 0, solidAlpha, 2048);
  addObject({.layer = 1, .effects = {recorder}});
  EXPECT_EQ(renderFrame(0).luma(31, 24), 2048);
}

TEST_F(Pipeline, RunsFilterObjectsOnTheObjectAboveAndOnTheirOwnLayer) {
  addObject({.layer = 2});
  int filter = addObject({.layer = 4, .effects = {recorder}});
  addObject({.layer = 5, .effects = {filterObject}});  // works on the frame, ends the list
  addObject({.layer = 6, .effects = {recorder}});
  renderFrame(0);
  ASSERT_EQ(calls.size(), 4u);
  EXPECT_EQ(calls[0].object, filter);
  EXPECT_TRUE(calls[0].drawable);
  EXPECT_EQ(calls[0].flags & processLaterTarget, processLaterTarget);
  EXPECT_EQ(calls[0].width, 8);
  EXPECT_EQ(calls[1].object, filter);
  EXPECT_FALSE(calls[1].drawable);
  EXPECT_EQ(calls[1].flags & processLaterTarget, 0u);
  EXPECT_FALSE(calls[2].drawable);
  EXPECT_FALSE(calls[3].drawable);
  // Refusing there ends the drawable object.
  recorderAction = [&](EffectDefinition*, EffectProcessInfo* info) { return info->drawableObject ? 0 : 1; };
  EXPECT_EQ(renderFrame(0).bounds(), (Bounds{64, 48, 0, 0}));
}

TEST_F(Pipeline, CallsPreparatoryEffectsFirst) {
  addObject({.effects = {solid, recorder, placing}});
  effectList[recorder]->flag |= effectPreparatory;
  renderFrame(0);
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_TRUE(calls[0].flags & processPreparatory);
  EXPECT_EQ(calls[0].width, 0);
  EXPECT_FALSE(calls[1].flags & processPreparatory);
  EXPECT_EQ(calls[1].width, 8);
}

TEST_F(Pipeline, MarksTheSelectedObjectsHandles) {
  int object = addObject({.effects = {solid, recorder, placing}});
  moveTrack(object, 2, placingX, -100, 100);
  renderFrame(0);
  EXPECT_EQ(calls[0].flags & processHandles, 0u);
  EXPECT_EQ(previewHandleCount, 0);
  currentObject = object;
  renderFrame(0);
  EXPECT_TRUE(calls[1].flags & processHandles);
  ASSERT_EQ(previewHandleCount, 3);  // its box and both ends of its way
  EXPECT_EQ(previewHandles[0].x, 18);
  EXPECT_EQ(previewHandles[0].w, 8);
  EXPECT_EQ(previewHandles[1].x, 22);
  EXPECT_EQ(previewHandles[2].x, 42);
  setTrack(object, 0, solidWidth, 0);  // nothing to put a box around
  calls.pop_back();
  renderFrame(0);
  ASSERT_EQ(previewHandleCount, 2);
  EXPECT_EQ(previewHandles[0].x, 22);
  objects[object].slotFlags[1] = slotEnabled;
  layerTable[0].flags = layerLocked;
  renderFrame(0);
  EXPECT_FALSE(calls[2].flags & processHandles);
  EXPECT_EQ(previewHandleCount, 0);
}

TEST_F(Pipeline, StopsAndResumesAtReferences) {
  int object = addObject({.effects = {solid, recorder, recorder, placing}});
  struct Row {
    uint32_t stop;
    size_t calls;
    bool drawn;
  };
  for (Row row : {Row{0, 2, true}, Row{makeObjectRef(object, 2), 1, false}, Row{makeObjectRef(object, 1), 0, false},
                  Row{stopAfterSlot | makeObjectRef(object, 2), 2, false},
                  Row{startAfterSlot | makeObjectRef(object, 1), 1, true}}) {
    setTrack(object, 1, 0, 1);
    calls.clear();
    Frame f = blankFrame(0);
    bool inside = false;
    recorderEvent = [&](int code, intptr_t) {
      if (code != eventSceneEnd) return code == eventObject ? 1 : 0;
      inside = true;
      EffectProcessInfo* info = &renderLevels[0].info;
      if (row.stop & startAfterSlot) renderObject(&objects[object], info, makeObjectRef(object, 1));
      renderObject(&objects[object], info, row.stop);
      return 0;
    };
    renderSceneFrame(&f.info, layersPerScene, 0, 0, 0);
    EXPECT_TRUE(inside);
    EXPECT_EQ(calls.size(), row.calls) << row.stop;
    EXPECT_EQ(f.luma(31, 24) == 4096, row.drawn) << row.stop;
  }
}

TEST_F(Pipeline, DrawsIndividualObjectsThroughTheRestOfTheChain) {
  addObject({.effects = {solid, recorder, recorder, placing}});
  recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) {
    if (slotOfRef(d->object_ref) == 2) return 1;
    for (int i = 0; i < 2; i++) {
      info->ox = (i * 20 - 10) * subPixel;
      info->index = i;
      d->services->drawObject(info);
      EXPECT_EQ(info->objectWidth, 8);
    }
    EXPECT_EQ(slotOfRef(d->object_ref), 1);  // the same definition ran for slot 2 meanwhile
    return 0;
  };
  Frame f = renderFrame(0);
  EXPECT_EQ(f.bounds(), (Bounds{18, 21, 46, 27}));
  EXPECT_EQ(f.luma(31, 24), 0);
  EXPECT_EQ(calls.size(), 3u);
}

TEST_F(Pipeline, KeepsWhatIsUnderASmallerHostFrame) {
  setUpFilm(64, 48);
  environment.clip.width = 40;
  environment.clip.height = 30;
  scenes[0].flags = sceneSetUp;
  scenes[0].width = 60;
  scenes[0].height = 40;
  int object = addObject({});
  setTrack(object, 1, placingX, -200);  // at 60/2 - 20 - 4 = 6 of the scene: 6 - 10 = -4 of the host's frame
  Frame f = renderFrame(0, 300);
  EXPECT_EQ(f.info.width, 40);
  EXPECT_EQ(f.info.height, 30);
  EXPECT_EQ(f.bounds(300), (Bounds{0, 12, 4, 18}));
  // A scene smaller than the host's frame makes the output smaller.
  scenes[0].width = 32;
  scenes[0].height = 20;
  setTrack(object, 1, placingX, 0);
  f = renderFrame(0, 300);
  EXPECT_EQ(f.info.width, 32);
  EXPECT_EQ(f.info.height, 20);
  EXPECT_EQ(f.bounds(300), (Bounds{12, 7, 20, 13}));
}

TEST_F(Pipeline, FastPreviewIsOffWhileSaving) {
  addObject({.effects = {solid, recorder, placing}});
  preferences.fast_preview = 1;
  renderFrame(0);
  environment.saving = true;
  renderFrame(0);
  EXPECT_TRUE(calls[0].flags & processFastPreview);
  EXPECT_FALSE(calls[1].flags & processFastPreview);
}

TEST_F(Pipeline, DrawsTheGridOnlyWhileEditing) {
  preferences.grid.grid2d = 1;
  preferences.grid.grid2d_w = 50;
  preferences.grid.grid2d_h = 20;
  addObject({.start = 50});
  Frame f = renderFrame(0);
  // Columns at 32, rows at 4, 24 and 44: 2048 * 0xC00 / 0x1000.
  EXPECT_EQ(f.luma(32, 0), 1536);
  EXPECT_EQ(f.luma(31, 0), 0);
  for (int y : {4, 24, 44}) EXPECT_EQ(f.luma(0, y), 1536) << y;
  EXPECT_EQ(f.luma(0, 5), 0);
  environment.saving = true;
  EXPECT_EQ(renderFrame(0).luma(32, 0), 0);
  environment.saving = false;
  environment.playing = true;
  EXPECT_EQ(renderFrame(0).luma(32, 0), 0);
}

TEST_F(Pipeline, ShowsTheFrameZoomedOut) {
  static int sizes[4];
  setUpFilm(320, 240);
  fakeHost.functions.resizeImage = [](FramePixel* to, int32_t w, int32_t h, const FramePixel*, int32_t, int32_t,
                                      int32_t sw, int32_t sh) -> int32_t {
    sizes[0] = w, sizes[1] = h, sizes[2] = sw, sizes[3] = sh;
    for (int y = 0; y < h; y++) std::fill_n(to + y * environment.bufferWidth, w, FramePixel{999, 0, 0});
    return 1;
  };
  addObject({.start = 50});
  preferences.grid.out_of_area = 1;
  struct Row {
    int stored, width, height;
  };
  for (Row row : {Row{18, 213, 160}, Row{36, 106, 80}, Row{3, 213, 160}}) {
    preferences.grid.out_of_scale = row.stored;
    Frame f = renderFrame(0, 50);
    EXPECT_EQ(std::vector<int>(sizes, sizes + 4), (std::vector<int>{row.width, row.height, 320, 240}));
    EXPECT_EQ(f.luma((320 - row.width) / 2, (240 - row.height) / 2), 999);
    EXPECT_EQ(f.luma((320 - row.width) / 2 - 1, 120), 0);
    // Buttons of 40x24 at the lower left; the one in force stands out.
    EXPECT_EQ(f.luma(0, 239), 0);
    EXPECT_NE(f.luma(45, 220), f.luma(85, 220));
    EXPECT_EQ(f.luma(125, 220), 0);
  }
  preferences.grid.out_of_scale = 12;
  sizes[0] = 0;
  EXPECT_EQ(renderFrame(0, 50).luma(0, 0), 50);
  EXPECT_EQ(sizes[0], 0);
}

TEST_F(Pipeline, RendersNestedScenesUpToFourLevels) {
  static int innermost;
  static bool sawAlpha;
  for (int scene = 1; scene < 6; scene++) {
    scenes[scene].flags = sceneSetUp;
    scenes[scene].width = 20;
    scenes[scene].height = 10;
  }
  scenes[2].flags |= sceneHasAlpha;
  for (int scene = 0; scene < 6; scene++) addObject({.scene = scene, .effects = {solid, recorder, placing}});
  innermost = -1;
  recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) {
    int32_t width, height, line;
    bool alpha;
    int scene = d->scene;
    innermost = std::max(innermost, scene);
    EXPECT_EQ(info->depth, scene);
    EXPECT_EQ(info->hostFrame, 7);
    EXPECT_EQ((info->host.flags & processNested) != 0, scene > 0);
    const void* picture = d->services->renderScene(info, scene + 1, 5, 0, &width, &height, &line, &alpha);
    EXPECT_EQ(d->scene, scene);  // bound to this slot again
    if (!picture) return 1;
    EXPECT_EQ(width, 20);
    EXPECT_EQ(height, 10);
    if (alpha) {
      sawAlpha = true;
      auto at = [&](int x, int y) {
        return reinterpret_cast<const ObjectPixel*>(static_cast<const uint8_t*>(picture) + y * line)[x];
      };
      EXPECT_EQ(at(0, 0).a, 0);
      EXPECT_EQ(at(10, 5).a, 4096);
      EXPECT_EQ(at(10, 5).y, 4096);
    } else {
      auto at = [&](int x, int y) {
        return reinterpret_cast<const FramePixel*>(static_cast<const uint8_t*>(picture) + y * line)[x];
      };
      EXPECT_EQ(at(0, 0).y, 0);
      EXPECT_EQ(at(10, 5).y, 4096);
    }
    return 1;
  };
  for (int repeat = 0; repeat < 2; repeat++) {
    sawAlpha = false;
    EXPECT_EQ(renderFrame(7).bounds(), (Bounds{28, 21, 36, 27}));
    EXPECT_EQ(innermost, 3);  // depths 0..3
    EXPECT_TRUE(sawAlpha);
  }
  EXPECT_EQ(sceneDepth, -1);
}

/// What renderLayersBelow gave; compares copies, as the picture is gone with the next call.
struct Below {
  std::vector<uint8_t> bytes;
  int line;
  int luma(int x, int y, size_t pixel = sizeof(FramePixel)) const {
    return reinterpret_cast<const FramePixel*>(&bytes[y * line + x * pixel])->y;
  }
  int alpha(int x, int y) const { return reinterpret_cast<const ObjectPixel*>(&bytes[y * line])[x].a; }
};
std::vector<Below> below;

int keepLayersBelow(EffectDefinition* d, EffectProcessInfo* info) {
  int32_t line = 0;
  if (const void* picture = d->services->renderLayersBelow(info, 9, &line)) {
    const auto* first = static_cast<const uint8_t*>(picture);
    below.push_back({{first, first + info->host.height * line}, line});
  }
  return 1;
}

TEST_F(Pipeline, RendersTheLayersBelowAnObjectAtAnotherFrame) {
  below.clear();
  setTrack(addObject({.layer = 0, .start = 0, .end = 9}), 0, solidLuma, 1000);
  setTrack(addObject({.layer = 1, .start = 10, .end = 99}), 0, solidLuma, 2000);
  addObject({.layer = 2, .start = 0, .end = 99, .effects = {filterObject}});
  setTrack(addObject({.layer = 3, .start = 0, .end = 99}), 0, solidWidth, 2);
  recorderAction = keepLayersBelow;
  Frame now = renderFrame(12, 7);
  ASSERT_EQ(below.size(), 1u);
  EXPECT_EQ(below[0].luma(29, 24), 1000);  // as at frame 9, without the layers above, over a host that shows nothing
  EXPECT_EQ(below[0].luma(32, 24), 1000);
  EXPECT_EQ(below[0].luma(0, 0), 0);
  EXPECT_EQ(now.luma(29, 24), 2000);
  EXPECT_EQ(now.luma(32, 24), 4096);
  EXPECT_EQ(now.luma(0, 0), 7);

  static std::vector<FramePixel> before;
  before.assign(static_cast<size_t>(environment.bufferWidth) * environment.bufferHeight, {500, 0, 0});
  fakeHost.functions.getFrameBeforeFilter = [](HostFilterRecord* filter, EditHandle, int32_t frame, int32_t) {
    EXPECT_EQ(filter, environment.mainFilter);
    before[environment.bufferWidth + 1].y = static_cast<int16_t>(600 + frame);
    return before.data();
  };
  renderFrame(12);
  ASSERT_EQ(below.size(), 2u);
  EXPECT_EQ(below[1].luma(1, 1), 609);
  EXPECT_EQ(below[1].luma(63, 47), 500);
  EXPECT_EQ(below[1].luma(32, 24), 1000);
  fakeHost.functions.getFrameBeforeFilter = nullptr;
  renderFrame(12);
  EXPECT_EQ(below[2].luma(1, 1), 0);
}

TEST_F(Pipeline, LayersBelowKeepTheAlphaOfTheirScene) {
  below.clear();
  scenes[1].flags = sceneSetUp | sceneHasAlpha;
  scenes[1].width = 20;
  scenes[1].height = 10;
  setTrack(addObject({.layer = 0, .start = 0, .end = 9, .scene = 1}), 0, solidAlpha, 1024);
  addObject({.layer = 1, .scene = 1, .effects = {filterObject}});
  addObject({.effects = {solid, recorder, placing}});
  recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) {
    if (info->depth > 0) return keepLayersBelow(d, info);
    int32_t width, height, line;
    bool alpha;
    EXPECT_NE(d->services->renderScene(info, 1, 50, 0, &width, &height, &line, &alpha), nullptr);
    return 1;
  };
  renderFrame(0);
  ASSERT_EQ(below.size(), 1u);
  EXPECT_EQ(below[0].alpha(10, 5), 1024);
  EXPECT_EQ(below[0].luma(10, 5, sizeof(ObjectPixel)), 4096);
  EXPECT_EQ(below[0].alpha(0, 0), 0);
}

TEST_F(Pipeline, LayersBelowEndAtTheDeepestLevel) {
  below.clear();
  for (int layer = 0; layer < 6; layer++) addObject({.layer = layer, .effects = {filterObject}});
  recorderAction = keepLayersBelow;
  renderFrame(0);
  // A picture for every object, at depth 1 for every pair and at depth 2 for every three; below that none is made.
  EXPECT_EQ(below.size(), 6u + 15u + 20u);
  EXPECT_EQ(sceneDepth, -1);
}

TEST_F(Pipeline, TimeControlChangesTheTimeOfTheLayersInItsRange) {
  int control = addObject({.layer = 0, .start = 100, .end = 200, .effects = {time}});
  moveTrack(control, 0, 0, 0, 10000);
  setRange(control, 1);
  for (int layer : {1, 2}) addObject({.layer = layer, .start = 0, .end = 300, .effects = {solid, recorder, placing}});
  struct Row {
    int frame, repeat, decimation, expected, subFrame;
  };
  for (Row row : {Row{150, 1, 1, 150, 0}, Row{120, 2, 1, 140, 0}, Row{150, 2, 1, 200, 0}, Row{151, 2, 1, 102, 0},
                  Row{104, 1, 3, 103, 0}, Row{105, 1, 3, 103, 0}, Row{106, 1, 3, 106, 0}}) {
    setTrack(control, 0, 1, row.repeat);
    setTrack(control, 0, 2, row.decimation);
    calls.clear();
    renderFrame(row.frame);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].absoluteFrame, row.expected) << row.frame;
    EXPECT_EQ(calls[0].subFrame, row.subFrame);
    EXPECT_EQ(calls[1].absoluteFrame, row.frame);
  }
  objects[control].modes[0] = 0;
  setTrack(control, 0, 1, 1);
  setTrack(control, 0, 2, 1);
  for (auto [position, frames, at, sub] :
       {std::tuple{5000, 0, 150, 0}, {1234, 1, 112, 34}, {10000, 1, 200, 0}, {33, 0, 100, 33}}) {
    setTrack(control, 0, 0, position);
    setCheck(control, 0, 0, frames);
    calls.clear();
    renderFrame(130);
    EXPECT_EQ(calls.at(0).absoluteFrame, at);
    EXPECT_EQ(calls.at(0).subFrame, sub);
  }
  objects[control].slotFlags[0] = 0;
  calls.clear();
  renderFrame(130);
  EXPECT_EQ(calls.at(0).absoluteFrame, 130);
}

TEST_F(Pipeline, TimeControlFindsObjectsAliveAtItsOwnTime) {
  int control = addObject({.layer = 0, .start = 0, .end = 100, .effects = {time}});
  setTrack(control, 0, 0, 9000);
  addObject({.layer = 1, .start = 10, .end = 20});  // alive on the scene frame only
  int shown = addObject({.layer = 1, .start = 85, .end = 95});
  setTrack(shown, 0, solidLuma, 700);
  EXPECT_EQ(renderFrame(15).luma(31, 24), 700);
}

TEST_F(Pipeline, FindsTheOneAliveAmongMany) {
  // The look-up must find the right one of many, at both ends of their ranges.
  for (int i = 0; i < 50; i++) {
    int object = addObject({.layer = 5, .start = i * 10, .end = i * 10 + 8});
    setTrack(object, 0, solidLuma, 100 + i);
  }
  for (int i : {0, 1, 24, 49, 0, 48, 49, 25, 24}) {
    EXPECT_EQ(renderFrame(i * 10).luma(31, 24), 100 + i);
    EXPECT_EQ(renderFrame(i * 10 + 8).luma(31, 24), 100 + i);
    EXPECT_EQ(renderFrame(i * 10 + 9).luma(31, 24), 0);
  }
}

TEST_F(Pipeline, KeepsThePreviousObject) {
  int first = addObject({.layer = 0});
  setTrack(first, 0, solidLuma, 1234);
  addObject({.layer = 1, .effects = {filterObject}});  // draws nothing of its own
  int second = addObject({.layer = 2, .effects = {recorder, placing}});
  objects[second].flags |= objectDrawn;
  recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) {
    const PreviousObject* previous = d->services->previousObject();
    if (!info->drawableObject) {
      memset(info->objectImage, 0x55, 1000);  // its own images, not the previous object's
      return 1;
    }
    EXPECT_EQ(previous->width, 8);
    EXPECT_EQ(previous->zoom, zoomOne);
    EXPECT_EQ(static_cast<const ObjectPixel*>(previous->image)->y, 1234);
    return 0;
  };
  renderFrame(0);
  EXPECT_EQ(calls.size(), 2u);
}

TEST_F(Pipeline, ThePreviousObjectIsTheOneDrawn) {
  // An object that ends before it is drawn has an image of its own.
  previousObjectMedia.services = &effectServices;
  previousObjectMedia.host_functions = &fakeHost.functions;
  previousObjectMedia.flag |= effectBuiltIn;
  for (int between : {1, 2, 3}) {
    setUpFilm();
    effectList[filterObject] = &previousObjectMedia;
    int first = addObject({.layer = 0});
    setTrack(first, 0, solidLuma, 1234);
    for (int layer = 1; layer <= between; layer++) addObject({.layer = layer, .effects = {solid, recorder, placing}});
    int again = addObject({.layer = 9, .effects = {filterObject, placing}});
    setTrack(again, 1, placingX, 100);
    recorderAction = [](EffectDefinition*, EffectProcessInfo*) { return 0; };
    EXPECT_EQ(renderFrame(0).luma(41, 24), 1234) << between;
  }
}

TEST_F(Pipeline, LendsHostFiltersTheObjectsValues) {
  static int seen[3];
  static int own[2] = {77, 88};
  static char ownExtra[4] = {'o', 'w', 'n', 0};
  static HostFilterRecord filter;
  filter = {};
  filter.name = "Foreign";
  filter.flags = filterHasExtraData;
  filter.trackCount = filter.checkCount = 1;
  filter.trackDefaults = filter.checkDefaults = own;
  filter.trackValues = &own[0];
  filter.checkValues = &own[1];
  filter.extraData = ownExtra;
  filter.extraDataSize = sizeof ownExtra;
  filter.process = [](HostFilterRecord* f, FrameProcessInfo* info) {
    seen[0] = f->trackValues[0], seen[1] = f->checkValues[0], seen[2] = info->frameNumber;
    EXPECT_TRUE(f->flags & effectRunning);
    EXPECT_STREQ(static_cast<char*>(f->extraData), "obj");
    strcpy(static_cast<char*>(f->extraData), "new");
    info->frame[0].y = 4000;
    return 1;
  };
  int effect = effectCount++;
  effectList[effect] = reinterpret_cast<EffectDefinition*>(&filter);
  int object = addObject({.start = 5, .effects = {effect}});
  moveTrack(object, 0, 0, 10, 10 + 94);
  setCheck(object, 0, 0, 9);
  char* extra = reinterpret_cast<char*>(extraDataOf(object, 0));
  strcpy(extra, "obj");
  EXPECT_EQ(renderFrame(7).luma(0, 0), 4000);
  EXPECT_EQ(seen[0], 12);
  EXPECT_EQ(seen[1], 9);
  EXPECT_EQ(seen[2], 2);
  EXPECT_EQ(own[0], 77);
  EXPECT_EQ(own[1], 88);
  EXPECT_STREQ(ownExtra, "own");
  EXPECT_STREQ(extra, "new");
  EXPECT_FALSE(filter.flags & effectRunning);
}

TEST_F(Pipeline, FramesWithAlphaKeepItAndAreOpaqueToHostFilters) {
  int object = addObject({});
  setTrack(object, 0, solidAlpha, 1024);
  static HostFilterRecord filter;
  filter = {};
  filter.name = "Foreign";
  filter.process = [](HostFilterRecord*, FrameProcessInfo* info) {
    EXPECT_FALSE(info->flags & processFlattening);
    for (int y = 0; y < info->height; y++)
      for (int x = 0; x < info->width; x++) {
        FramePixel* row = reinterpret_cast<FramePixel*>(reinterpret_cast<uint8_t*>(info->frame) + y * info->lineBytes);
        reinterpret_cast<FramePixel*>(reinterpret_cast<uint8_t*>(info->scratch) + y * info->lineBytes)[x] = {
            static_cast<int16_t>(row[x].y + 1), 2, 3};
      }
    std::swap(info->frame, info->scratch);
    return 1;
  };
  int effect = effectCount++;
  effectList[effect] = reinterpret_cast<EffectDefinition*>(&filter);
  addObject({.layer = 1, .effects = {effect}});
  std::vector<ObjectPixel> pixels(72 * 56);
  FrameProcessInfo info = blankFrame(0).info;
  info.flags = processFlattening;
  info.frame = reinterpret_cast<FramePixel*>(pixels.data());
  ASSERT_EQ(renderSceneFrame(&info, layersPerScene, 0, 0, 0), 1);
  EXPECT_EQ(info.frame, reinterpret_cast<FramePixel*>(pixels.data()));
  const ObjectPixel inside = pixels[24 * 72 + 32], outside = pixels[0];
  EXPECT_EQ(inside.a, 1024);
  EXPECT_EQ(inside.y, 4097);
  EXPECT_EQ(inside.cr, 3);
  EXPECT_EQ(outside.a, 0);
  EXPECT_EQ(outside.y, 1);
}

}  // namespace
}  // namespace zenlay::test
