// Which objects a frame is drawn from, and what each of their effects is given.
#include <cstring>

#include "platform/system.h"
#include "tests/render/test_film.h"
#include "zenlay/effects/definitions.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/slots.h"
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

}  // namespace
}  // namespace zenlay::test
