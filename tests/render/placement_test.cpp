#include "zenlay/render/placement.h"

#include "tests/render/test_film.h"
#include "zenlay/effects/registry.h"

namespace zenlay::test {
namespace {

using Bounds = std::vector<int>;

TEST(Placement, TurnUnits) {
  // v * 65536 / 36000 of the remainder, truncated towards zero.
  for (auto [v, units] : {std::pair{36000, 0},
                          {-9000, -16384},
                          {9000, 16384},
                          {1, 1},
                          {-1, -1},
                          {100, 182},
                          {35999, 65534},
                          {-36001, -1},
                          {360000, 0},
                          {INT32_MAX, (INT32_MAX % 36000) * 65536LL / 36000}})
    EXPECT_EQ(turnUnits(static_cast<int>(v)), units) << v;
}

TEST(Placement, ZoomAndAspectAreTwoScales) {
  struct Row {
    int zoom, aspect, x, y;
  };
  for (Row row : {Row{65536, 0, 65536, 65536}, Row{65536, 32768, 32768, 65536}, Row{65536, -32768, 65536, 32768},
                  Row{131072, 16384, 98304, 131072}, Row{3276800, 6553, 2949150, 3276800}, Row{0, 32768, 0, 0}}) {
    Scales s = decodeZoom(row.zoom, row.aspect);
    EXPECT_EQ(s.x, row.x);
    EXPECT_EQ(s.y, row.y);
  }
  int32_t zoom, aspect;
  encodeZoom({32768, 65536}, &zoom, &aspect);
  EXPECT_EQ(zoom, 65536);
  EXPECT_EQ(aspect, 32768);
  encodeZoom({65536, 16384}, &zoom, &aspect);
  EXPECT_EQ(aspect, -49152);
  encodeZoom({0, 0}, &zoom, &aspect);
  EXPECT_EQ(zoom, 0);
  EXPECT_EQ(aspect, 0);
}

TEST(Placement, TransparenciesMultiplyAsOpacities) {
  EXPECT_EQ(combineTransparency(0, 0), 0);
  EXPECT_EQ(combineTransparency(2048, 2048), 3072);
  EXPECT_EQ(combineTransparency(4096, 7), 4096);
  EXPECT_EQ(combineTransparency(1, 1), 2);
}

TEST(Placement, ReadsTheMappedTracks) {
  setUpFilm();
  EffectDefinition* d = effectList[placing];
  int32_t tracks[] = {-15, 999999, 7, 12345, 333, -9000};
  d->track = tracks;
  ImagePlacement p;
  readPlacement(d, &p);
  EXPECT_EQ(p.x, -6144);
  EXPECT_EQ(p.y, 409599590);
  EXPECT_EQ(p.z, 2867);      // 7 * 4096 / 10, truncated
  EXPECT_EQ(p.zoom, 80904);  // 12345 * 65536 / 10000
  EXPECT_EQ(p.transparency, 1363);
  EXPECT_EQ(p.rz, -16384);
  EXPECT_EQ(p.rx, 0);
  EXPECT_EQ(p.aspect, 0);
}

using Placing = Film;

TEST_F(Placing, ParityNeverResamples) {
  for (auto [frameWidth, width, left] : {std::tuple{64, 8, 28}, {64, 9, 28}, {63, 8, 27}, {63, 9, 27}}) {
    setUpFilm(64, 48);
    environment.clip.width = frameWidth;
    int object = addObject({.effects = {solid, placing}});
    setTrack(object, 0, solidWidth, width);
    Frame f = renderFrame(0);
    EXPECT_EQ(f.bounds(), (Bounds{left, 21, left + width, 27})) << frameWidth << " " << width;
    for (int x = left; x < left + width; x++) EXPECT_EQ(f.luma(x, 23), 4096);
  }
}

TEST_F(Placing, TheCentreOffsetMovesAnUnturnedPicture) {
  addObject({.effects = {solid, recorder, placing}});
  recorderAction = [](EffectDefinition*, EffectProcessInfo* info) {
    info->cx = 3 * subPixel;
    info->cy = -2 * subPixel;
    return 1;
  };
  EXPECT_EQ(renderFrame(0).bounds(), (Bounds{25, 23, 33, 29}));
}

TEST_F(Placing, AddsWhatEffectsDid) {
  int object = addObject({.effects = {solid, recorder, placing}});
  setTrack(object, 2, placingX, 50);
  setTrack(object, 2, placingZoom, 5000);
  recorderAction = [](EffectDefinition*, EffectProcessInfo* info) {
    info->ox = 2 * subPixel;
    info->zoom = 4 * zoomOne;
    info->aspect = zoomOne / 2;  // half as wide
    info->transparency = 2048;
    return 1;
  };
  // 8x6 becomes 8x12 around (32 + 7, 24).
  Frame f = renderFrame(0);
  EXPECT_EQ(f.bounds(), (Bounds{35, 18, 43, 30}));
  EXPECT_EQ(f.luma(39, 24), 2048);
  recorderAction = [](EffectDefinition*, EffectProcessInfo* info) {
    info->rz = 1234;
    info->zoom = 3 * zoomOne;
    info->state |= stateFlat;  // drops rotation and zoom, those of the tracks too
    return 1;
  };
  EXPECT_EQ(renderFrame(0).bounds(), (Bounds{33, 21, 41, 27}));
}

}  // namespace
}  // namespace zenlay::test
