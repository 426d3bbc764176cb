#include "zenlay/render/clipping.h"

#include "platform/system.h"
#include "tests/render/test_film.h"
#include "zenlay/model/scenes.h"
#include "zenlay/render/image_cache.h"

namespace zenlay::test {
namespace {

using Bounds = std::vector<int>;

class Clipping : public ::testing::Test {
 public:
  void SetUp() override {
    setUpFilm();
    source = addObject({.layer = 0});
    object = addObject({.layer = 2});
    setTrack(object, 0, solidLuma, 3000);
    setTrack(object, 0, solidWidth, 16);
    setTrack(object, 0, solidHeight, 12);
    layerTable[2].flags = layerClipAbove;
  }
  int source, object;
};

TEST_F(Clipping, PixelArithmetic) {
  struct Row {
    int a, c, frame, expectedAlpha, expectedFrame;
  };
  // The clip image holds 1000; the source at half alpha has turned the frame into 2548.
  for (Row row : {Row{4096, 2048, 2548, 2048, 1000},  // fully taken back
                  Row{3072, 2048, 2548, 1536, 1774},  // w = 1024 * 4096 / 2048
                  Row{2048, 2048, 2548, 1024, 2548}, Row{4096, 0, 2548, 0, 2548}, Row{0, 2048, 2548, 0, 2548},
                  Row{4096, 4096, 2548, 4096, 2548}}) {
    ObjectPixel o{3000, 0, 0, static_cast<int16_t>(row.a)}, clip{1000, 0, 0, static_cast<int16_t>(row.c)};
    FramePixel frame{static_cast<int16_t>(row.frame), 0, 0};
    clipPixel(o, clip, frame);
    EXPECT_EQ(o.a, row.expectedAlpha) << row.a << " " << row.c;
    EXPECT_EQ(frame.y, row.expectedFrame) << row.a << " " << row.c;
  }
}

TEST_F(Clipping, PixelsOnAFrameWithAlpha) {
  struct Row {
    ObjectPixel frame, clip;
    int a;
    ObjectPixel expected;
  };
  for (const Row& row : {// The source alone made the frame: taken back whole, nothing is left of it.
                         Row{{4000, 10, -10, 2048}, {0, 0, 0, 2048}, 4096, {0, 0, 0, 0}},
                         // By half (w = 2048): its colour stays, with half of its alpha.
                         Row{{4000, 10, -10, 2048}, {0, 0, 0, 2048}, 3072, {4000, 10, -10, 1024}},
                         // Over a half covered frame (1000): 1/2 + 1/2 * 1/2 = 3/4, and back to 1/2 of 1000.
                         Row{{3000, 0, 0, 3072}, {1000, 20, 0, 2048}, 4096, {1000, 20, 0, 2048}},
                         // Over an opaque frame as without alpha.
                         Row{{2548, 0, 0, 4096}, {1000, 0, 0, 2048}, 3072, {1774, 0, 0, 4096}},
                         // A source that is opaque takes nothing back, whatever the object's alpha.
                         Row{{2548, 0, 0, 4096}, {1000, 0, 0, 4096}, 5000, {2548, 0, 0, 4096}}}) {
    ObjectPixel o{3000, 0, 0, static_cast<int16_t>(row.a)}, frame = row.frame;
    clipPixel(o, row.clip, frame);
    EXPECT_EQ(std::tuple(frame.y, frame.cb, frame.cr, frame.a),
              std::tuple(row.expected.y, row.expected.cb, row.expected.cr, row.expected.a))
        << row.a << " " << row.frame.a;
  }
}

TEST_F(Clipping, LimitsTheObjectToTheOneAbove) {
  for (int slots : {4, 0}) {  // also without a cache to keep the clip source in
    initialiseImageCache(slots);
    setTrack(source, 0, solidAlpha, 2048);
    setTrack(object, 0, solidAlpha, 4096);
    Frame f = renderFrame(0, 1000);
    EXPECT_EQ(f.bounds(1000), (Bounds{28, 21, 36, 27}));
    EXPECT_EQ(f.luma(30, 22), 2000);  // 1000 + (3000 - 1000) * 2048 / 4096
    setTrack(object, 0, solidAlpha, 3072);
    EXPECT_EQ(renderFrame(0, 1000).luma(30, 22), 2233);  // 1774 + (1226 * 1536 >> 12)
  }
}

TEST_F(Clipping, TheSourceOutlastsThePicturesOfTheClippedObject) {
  objects[object].flags = 0;
  object = addObject({.layer = 2, .effects = {solid, recorder, placing}});
  setTrack(object, 0, solidLuma, 3000);
  recorderAction = [](EffectDefinition* d, EffectProcessInfo*) {
    bool found;
    EXPECT_NE(d->services->effectCache(1, 200, 150, 64, 0, &found), nullptr);  // 240,000 of a slot's 262,144 bytes
    return 1;
  };
  for (int slots : {4, 2, 1, 0}) {
    initialiseImageCache(slots);
    for (int frame : {0, 1}) EXPECT_EQ(renderFrame(frame, 1000).luma(30, 22), 3000) << slots;
  }
}

TEST_F(Clipping, FollowsMovingObjectsWithoutLeavingTraces) {
  moveTrack(source, 1, placingX, -200, 200);
  setTrack(object, 0, solidWidth, 64);
  for (int frame : {0, 25, 50, 75, 99}) {
    Frame f = renderFrame(frame, 1000);
    Bounds b = f.bounds(1000);
    EXPECT_EQ(f.luma((b[0] + b[2]) / 2, 24), 3000) << frame;
    EXPECT_LE(b[2] - b[0], 10) << frame;
    EXPECT_NEAR((b[0] + b[2]) / 2.0, 32 - 20 + 40.0 * frame / 99, 1.0) << frame;
  }
}

TEST_F(Clipping, WithoutAValidSourceNothingShows) {
  struct Row {
    const char* what;
    void (*change)(Clipping*);
    bool sourceShown;
  };
  for (const Row& row :
       {Row{"hidden source", [](Clipping*) { layerTable[0].flags = layerHidden; }, false},
        Row{"disabled source", [](Clipping* t) { objects[t->source].slotFlags[0] = 0; }, false},
        Row{"source over", [](Clipping* t) { objects[t->source].end = 0, objects[t->source].start = 0; }, false},
        Row{"another kind between", [](Clipping*) { addObject({.layer = 1, .effects = {filterObject}}); }, true}}) {
    SetUp();
    row.change(this);
    Frame f = renderFrame(5, 1000);
    EXPECT_EQ(f.luma(30, 22), row.sourceShown ? 4096 : 1000) << row.what;
    EXPECT_EQ(f.luma(25, 19), 1000) << row.what;
  }
}

TEST_F(Clipping, AStaleSourceIsNotUsed) {
  // A second source that fails must not leave the first one's image in force.
  addObject({.layer = 3, .effects = {solid, recorder, placing}});
  int clippedBySecond = addObject({.layer = 4});
  layerTable[4].flags = layerClipAbove;
  setTrack(clippedBySecond, 0, solidLuma, 500);
  recorderAction = [](EffectDefinition*, EffectProcessInfo*) { return 0; };
  Frame f = renderFrame(0, 1000);
  EXPECT_EQ(f.luma(30, 22), 3000);
}

TEST_F(Clipping, FilterObjectsAndControlsDoNotSeparate) {
  addObject({.layer = 1, .effects = {recorder}});
  EXPECT_EQ(renderFrame(0, 1000).bounds(1000), (Bounds{28, 21, 36, 27}));
}

TEST_F(Clipping, TheObjectsOwnOptionAndChainsOfClips) {
  layerTable[2].flags = 0;
  objects[object].flags |= objectClipAbove;
  int third = addObject({.layer = 4});
  objects[third].flags |= objectClipAbove;
  setTrack(third, 0, solidLuma, 2000);
  setTrack(third, 1, placingX, 40);  // 32..40, of which 32..36 lie inside the clipped clip
  Frame f = renderFrame(0, 1000);
  EXPECT_EQ(f.bounds(1000), (Bounds{28, 21, 36, 27}));
  EXPECT_EQ(f.luma(31, 24), 3000);
  EXPECT_EQ(f.luma(32, 24), 2000);
}

TEST_F(Clipping, TheBlendModeActsOnceInTheFinalCopy) {
  setTrack(source, 0, solidLuma, 500);
  setTrack(object, 0, solidLuma, 300);
  setCheck(object, 1, 0, 1);  // additive
  EXPECT_EQ(renderFrame(0, 1000).luma(30, 22), 800);
  setTrack(object, 1, placingClearness, 500);
  // Transparency once: alpha 2048 takes half of the source back, (1000 - 500) ... c = 4096 is not below a.
  EXPECT_EQ(renderFrame(0, 1000).luma(30, 22), 650);
}

TEST_F(Clipping, PiecesOfOneObjectAddUpToOneSource) {
  objects[source].flags = 0;
  addObject({.layer = 0, .effects = {solid, recorder, placing}});
  recorderAction = [](EffectDefinition* d, EffectProcessInfo* info) {
    for (int i = 0; i < 2; i++) {
      info->ox = (i * 4 - 2) * subPixel;  // 26..34 and 30..38
      d->services->drawObject(info);
    }
    return 0;
  };
  setTrack(object, 0, solidWidth, 40);
  EXPECT_EQ(renderFrame(0, 1000).bounds(1000), (Bounds{26, 21, 38, 27}));
  EXPECT_EQ(renderFrame(0, 1000).luma(27, 22), 3000);
  EXPECT_EQ(renderFrame(0, 1000).luma(37, 22), 3000);
}

TEST_F(Clipping, CostsWhatIsCoveredAndNoMemoryPerFrame) {
  static int reservations;
  renderFrame(0);
  reservations = 0;
  reserveRenderMemory = [](size_t bytes) {
    reservations++;
    return platform::reserveMemory(bytes);
  };
  for (int frame = 1; frame < 4; frame++) renderFrame(frame);
  reserveRenderMemory = platform::reserveMemory;
  EXPECT_EQ(reservations, 0);
  // One of the images is known to be empty outside the last flattened object and a pixel around it.
  int smallest = INT32_MAX;
  for (const WorkImage& image : renderLevels[0].images)
    smallest = std::min(smallest, (image.used.right - image.used.left) * (image.used.bottom - image.used.top));
  EXPECT_LE(smallest, (16 + 2) * (12 + 2));
}

using OffScreen = Film;

TEST_F(OffScreen, PlacesTheObjectBeforeTheEffectsBehindIt) {
  int object = addObject({.effects = {solid, offScreen, recorder, placing}});
  setTrack(object, 3, placingX, 100);
  setTrack(object, 3, placingClearness, 500);
  recorderAction = [](EffectDefinition*, EffectProcessInfo* info) {
    EXPECT_EQ(info->objectWidth, 64);
    EXPECT_EQ(info->objectHeight, 48);
    EXPECT_EQ(info->transparency, 0);
    EXPECT_EQ(info->objectImage[22 * info->bufferLine + 39].a, 2048);
    EXPECT_EQ(info->objectImage[22 * info->bufferLine + 37].a, 0);
    info->oy = 5 * subPixel;
    return 1;
  };
  for (int repeat = 0; repeat < 3; repeat++) {
    Frame f = renderFrame(repeat);
    EXPECT_EQ(f.bounds(), (Bounds{38, 26, 46, 32}));
    EXPECT_EQ(f.luma(40, 28), 2048);
  }
}

TEST_F(OffScreen, AnEffectBehindItMayFillTheImage) {
  addObject({.effects = {solid, offScreen, recorder, placing}});
  bool fill = true;
  recorderAction = [&](EffectDefinition*, EffectProcessInfo* info) {
    if (fill) info->objectImage[0] = {4000, 0, 0, 4096};
    return 1;
  };
  EXPECT_EQ(renderFrame(0).luma(0, 0), 4000);
  fill = false;
  EXPECT_EQ(renderFrame(1).bounds(), (Bounds{28, 21, 36, 27}));  // no trace of it in the next frame
}

TEST_F(OffScreen, OpaquePicturesAndObjectsPartlyOutside) {
  int object = addObject({.effects = {solid, offScreen, opaquePlacing}});
  setTrack(object, 2, placingX, -340);
  EXPECT_EQ(renderFrame(0).bounds(), (Bounds{0, 21, 2, 27}));
  // On its own layer an object without an image has nothing to place: the chain ends.
  addObject({.layer = 1, .effects = {offScreen, recorder}});
  calls.clear();
  renderFrame(0);
  ASSERT_EQ(calls.size(), 1u);  // only as a filter object of the one above
  EXPECT_TRUE(calls[0].drawable);
}

class Grouping : public ::testing::Test {
 protected:
  void SetUp() override { setUpFilm(128, 96); }
  Bounds boundsOf(int luma) {
    Frame f = renderFrame(0);
    Bounds b{999, 999, 0, 0};
    for (int y = 0; y < 96; y++)
      for (int x = 0; x < 128; x++)
        if (f.luma(x, y) == luma) {
          b[0] = std::min(b[0], x), b[1] = std::min(b[1], y);
          b[2] = std::max(b[2], x + 1), b[3] = std::max(b[3], y + 1);
        }
    return b;
  }
};
enum { groupX, groupY, groupZ, groupZoom, groupSpinX, groupSpinY, groupSpinZ };

TEST_F(Grouping, MovesAndScalesTheLayersInItsRange) {
  int control = addObject({.layer = 0, .effects = {group}});
  setTrack(control, 0, groupX, 100);
  setTrack(control, 0, groupZoom, 20000);
  setRange(control, 2);
  int made[4];
  for (int layer = 1; layer <= 3; layer++) {
    made[layer] = addObject({.layer = layer});
    setTrack(made[layer], 0, solidLuma, 1000 * layer);
    setTrack(made[layer], 1, placingY, -200 + 100 * layer);
  }
  // Centre 64 + 10, size doubled; the Y of -10 becomes -20.
  EXPECT_EQ(boundsOf(1000), (Bounds{66, 22, 82, 34}));
  EXPECT_EQ(boundsOf(2000), (Bounds{66, 42, 82, 54}));
  EXPECT_EQ(boundsOf(3000), (Bounds{60, 55, 68, 61}));
}

TEST_F(Grouping, TakesItsOwnGroupUnlessToldOtherwise) {
  int control = addObject({.layer = 0, .effects = {group}});
  setTrack(control, 0, groupX, 100);
  int object = addObject({.layer = 1});
  for (auto [controlGroup, objectGroup, sameOnly, moved] :
       {std::tuple{0, 0, 1, true}, {3, 0, 1, false}, {0, 3, 1, false}, {3, 3, 1, true}, {3, 4, 0, true}}) {
    objects[control].group = controlGroup;
    objects[object].group = objectGroup;
    setCheck(control, 0, 1, sameOnly);
    EXPECT_EQ(boundsOf(4096)[0], moved ? 70 : 60) << controlGroup << objectGroup << sameOnly;
  }
}

TEST_F(Grouping, NestsInnermostFirstWhenAsked) {
  int outer = addObject({.layer = 0, .effects = {group}});
  setTrack(outer, 0, groupX, 50);
  setTrack(outer, 0, groupZoom, 20000);
  int inner = addObject({.layer = 1, .effects = {group}});
  setTrack(inner, 0, groupX, 100);
  setRange(inner, 1);
  addObject({.layer = 2});
  int after = addObject({.layer = 3});
  setTrack(after, 0, solidLuma, 1000);
  setTrack(after, 1, placingY, 100);
  EXPECT_EQ(boundsOf(4096), (Bounds{70, 45, 78, 51}));
  setCheck(inner, 0, 0, 1);  // 2 * 10 + 5 = 25
  EXPECT_EQ(boundsOf(4096), (Bounds{81, 42, 97, 54}));
  EXPECT_EQ(boundsOf(1000)[0], 61);  // behind the inner range: 64 + 5 - 8
  setTrack(outer, 0, groupZoom, 10000);
  setTrack(outer, 0, groupSpinZ, 9000);  // clockwise: ten to the right becomes ten down
  EXPECT_EQ(renderFrame(0).luma(69, 58), 4096);
  EXPECT_EQ(renderFrame(0).luma(79, 48), 0);
}

TEST_F(Grouping, RunsItsOtherEffectsOnTheObjects) {
  int control = addObject({.layer = 0, .effects = {group, recorder}});
  addObject({.layer = 1});
  renderFrame(0);
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].object, control);
  EXPECT_TRUE(calls[0].drawable);
  EXPECT_TRUE(calls[0].flags & processLaterTarget);
}

}  // namespace
}  // namespace zenlay::test
