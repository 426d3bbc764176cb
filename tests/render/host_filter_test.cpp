// Filters of the host as effects of an object.
#include <algorithm>
#include <cstring>

#include "tests/render/test_film.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/slots.h"

namespace zenlay::test {
namespace {

using HostFilters = Film;

TEST_F(HostFilters, LendsHostFiltersTheObjectsValues) {
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

TEST_F(HostFilters, FramesWithAlphaKeepItAndAreOpaqueToHostFilters) {
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
