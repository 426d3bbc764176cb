#include <gmock/gmock.h>

#include "tests/media/effect_stage.h"
#include "tests/media/fake_media.h"
#include "zenlay/filters/synthesis_modes.h"
#include "zenlay/media/media_handles.h"
#include "zenlay/media/playback_time.h"
#include "zenlay/render/blend.h"

namespace zenlay {
extern EffectDefinition videoFilesSynthesisEffect, synthesisImageFileEffect;
}

namespace zenlay::test {
namespace {

/// An object of 6 x 3 pixels: colour (9, 9, 9), alpha 2000.
void plainObject(EffectStage& stage, int width = 6, int height = 3) {
  stage.info.objectWidth = width;
  stage.info.objectHeight = height;
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++) stage.pixel(x, y) = {9, 9, 9, 2000};
}

std::vector<int> alphas(EffectStage& stage, int y) {
  std::vector<int> list;
  for (int x = 0; x < stage.info.objectWidth; x++) list.push_back(stage.pixel(x, y).a);
  return list;
}
std::vector<int> chroma(EffectStage& stage, int y) {
  std::vector<int> list;
  for (int x = 0; x < stage.info.objectWidth; x++) list.push_back(stage.pixel(x, y).cb);
  return list;
}

struct Polygon {
  float width, height, u, v;
  uint32_t flags;
} drawn;

void recordPolygon(const ImageTarget* target, const DrawVertex* v, int count, const ImageRegion* source, int,
                   uint32_t flags) {
  EXPECT_EQ(count, 4);
  EXPECT_EQ(v[2].x, target->width);
  EXPECT_EQ(v[2].y, target->height);
  drawn = {v[2].x, v[2].y, v[2].u, v[2].v, flags};
  EXPECT_NE(source->pixels, target->pixels);
  if (flags & blendDestinationAlpha) {
    static_cast<ObjectPixel*>(target->pixels)[0] = {100, 77, 0, 4096};
  } else {
    static_cast<FramePixel*>(target->pixels)[0] = {100, 77, 0};
  }
}

std::vector<uint8_t> workBytes;

void* giveWorkMemory(ObjectRef, size_t size, bool* created) {
  workBytes.assign(size, 0);
  *created = true;
  return workBytes.data();
}

// ---- Video ----

enum { position, speed, offsetX, offsetY, zoom };
enum { loop, synchronize, tile };

struct VideoSynthesis : testing::Test {
  EffectStage stage{videoFilesSynthesisEffect, 64, 48};

  void SetUp() override {
    installFakeMedia();
    setHandleLimit(8);
    fakeMedia.files["clip"] = videoInfo(4, 2);
    stage.setText(0, "clip");
    stage.services.openMedia = openMedia;
    stage.services.trackIntegral = [](EffectDefinition*, EffectProcessInfo*, int) -> int64_t { return 50 * 100000; };
    stage.services.drawPolygon = recordPolygon;
    stage.services.workMemory = giveWorkMemory;
    plainObject(stage);
  }
  void TearDown() override { closeAllMedia(); }
  void setMode(int32_t mode) { stage.setData(280, &mode, 4); }
};

TEST_F(VideoSynthesis, ColourIsReplacedInsideThePictureAndAlphaClearedOutside) {
  stage.tracks[offsetX] = 1;
  stage.tracks[offsetY] = 1;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_THAT(alphas(stage, 0), testing::ElementsAre(0, 0, 0, 0, 0, 0));
  EXPECT_THAT(alphas(stage, 1), testing::ElementsAre(0, 2000, 2000, 2000, 2000, 0));
  EXPECT_THAT(alphas(stage, 2), testing::ElementsAre(0, 2000, 2000, 2000, 2000, 0));
  EXPECT_THAT(chroma(stage, 1), testing::ElementsAre(9, 0, 1, 2, 3, 9));
  EXPECT_EQ(parts(stage.pixel(4, 2)), (std::vector<int>{50, 3, 1, 2000}));
}

TEST_F(VideoSynthesis, PlacesOutsideTheObjectLeaveNothing) {
  for (auto [x, y] : {std::pair{6, 0}, {-4, 0}, {0, 3}, {0, -2}, {-2000, 2000}}) {
    plainObject(stage);
    stage.tracks[offsetX] = x;
    stage.tracks[offsetY] = y;
    ASSERT_EQ(stage.run(), 1);
    for (int row = 0; row < 3; row++)
      EXPECT_THAT(alphas(stage, row), testing::Each(0)) << x << "," << y << " row " << row;
  }
}

TEST_F(VideoSynthesis, LumaBecomesOrScalesTheAlpha) {
  lastVideoFrame = 0;
  stage.checks[synchronize] = 1;
  fakeMedia.files["clip"].frameCount = 6000;
  struct Row {
    int mode, luma, alpha;
  } rows[] = {{1, 1024, 1024}, {1, 5000, 4096}, {2, 1024, 500}, {2, 5000, 2000}, {2, 0, 0}};
  for (const Row& row : rows) {
    closeAllMedia();
    plainObject(stage);
    setMode(row.mode);
    stage.tracks[position] = row.luma;  // the fake host's luma is the frame number
    ASSERT_EQ(stage.run(), 1);
    EXPECT_EQ(parts(stage.pixel(0, 0)), (std::vector<int>{9, 9, 9, row.alpha})) << row.mode << " " << row.luma;
  }
}

TEST_F(VideoSynthesis, TilesStartAtTheOffset) {
  stage.checks[tile] = 1;
  stage.tracks[offsetX] = -10;
  stage.tracks[offsetY] = 3;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_THAT(chroma(stage, 0), testing::ElementsAre(2, 3, 0, 1, 2, 3));
  std::vector<int> rows;
  for (int y = 0; y < 3; y++) rows.push_back(stage.pixel(0, y).cr);
  EXPECT_THAT(rows, testing::ElementsAre(1, 0, 1));
  EXPECT_THAT(alphas(stage, 2), testing::Each(2000));
}

TEST_F(VideoSynthesis, FollowsTheLastVideoObject) {
  stage.checks[synchronize] = 1;
  struct Row {
    int last, offset, looped, expected;
  } rows[] = {{40, 5, 0, 45}, {40, -100, 0, 0}, {40, 3600, 0, 99}, {40, 65, 1, 5}, {40, -50, 1, 90}};
  for (const Row& row : rows) {
    lastVideoFrame = row.last;
    stage.tracks[position] = row.offset;
    stage.checks[loop] = row.looped;
    ASSERT_EQ(stage.run(), 1);
    EXPECT_EQ(fakeMedia.lastFrame, row.expected);
    EXPECT_EQ(lastVideoFrame, row.last);
  }
}

TEST_F(VideoSynthesis, ZoomScalesToWholePixels) {
  struct Row {
    int zoom, width, height;
  } rows[] = {{500, 2, 1}, {0, 1, 1}, {400, 1, 1}, {1499, 5, 2}, {8000, 32, 16}};
  for (const Row& row : rows) {
    stage.tracks[zoom] = row.zoom;
    plainObject(stage);
    ASSERT_EQ(stage.run(), 1);
    EXPECT_EQ(drawn.width, row.width) << row.zoom;
    EXPECT_EQ(drawn.height, row.height) << row.zoom;
    EXPECT_EQ(drawn.u, 4);
    EXPECT_EQ(drawn.flags, 0u);
    EXPECT_EQ(stage.pixel(0, 0).cb, 77);
  }
  fakeMedia.files["clip"] = videoInfo(40, 40);
  closeAllMedia();
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(drawn.width, 64);
  EXPECT_EQ(drawn.height, 48);
}

TEST_F(VideoSynthesis, AFailureChangesNothing) {
  std::vector<ObjectPixel> before = stage.object;
  fakeMedia.failReads = true;
  EXPECT_EQ(stage.run(), 1);
  stage.setText(0, "gone");
  EXPECT_EQ(stage.run(), 1);
  EXPECT_EQ(memcmp(before.data(), stage.object.data(), before.size() * sizeof(ObjectPixel)), 0);
  EXPECT_THAT(shownMessages(), testing::ElementsAre("Failed to read the video file\nFile not found"));
}

TEST_F(VideoSynthesis, WorkersCombineTheSamePixels) {
  std::vector<ObjectPixel> results[2];
  for (int run = 0; run < 2; run++) {
    EffectStage big{videoFilesSynthesisEffect, 90, 90};
    installFakeMedia();
    fakeMedia.files["clip"] = videoInfo(20, 12);
    setHandleLimit(8);
    big.services = stage.services;
    big.setText(0, "clip");
    fakeHost.threads = run ? 4 : 1;
    plainObject(big, 90, 90);
    big.checks[tile] = 1;
    big.tracks[offsetX] = 7;
    ASSERT_EQ(big.run(), 1);
    results[run] = big.object;
  }
  EXPECT_EQ(memcmp(results[0].data(), results[1].data(), results[0].size() * sizeof(ObjectPixel)), 0);
}

// ---- Image ----

struct Copy {
  int x, y, sx, sy, w, h;
  bool operator==(const Copy&) const = default;
};
std::vector<Copy> copies;
uint32_t copyFlags;

struct ImageSynthesis : testing::Test {
  EffectStage stage{synthesisImageFileEffect, 64, 48};
  enum { trackX, trackY, trackZoom };

  void SetUp() override {
    copies.clear();
    stage.setText(4, "picture");
    stage.services.loadImage = [](ObjectPixel* d, const char* path, int32_t* w, int32_t* h, const ImageClip*,
                                  uint32_t) {
      if (strcmp(path, "picture") != 0) return 0;
      *w = 4;
      *h = 2;
      for (int y = 0; y < 2; y++)
        for (int16_t x = 0; x < 4; x++) d[y * environment.workStride + x] = {2048, x, 0, 1};
      return 1;
    };
    stage.services.blendCopy = [](void*, int x, int y, const void*, int sx, int sy, int w, int h, int, uint32_t flags) {
      copies.push_back({x, y, sx, sy, w, h});
      copyFlags = flags;
    };
    stage.services.drawPolygon = recordPolygon;
    stage.services.workMemory = giveWorkMemory;
    plainObject(stage);
  }
  void setMode(int32_t mode) { stage.setData(0, &mode, 4); }
};

TEST_F(ImageSynthesis, MixesInFrontAndBehindWithinTheObject) {
  stage.tracks[trackX] = -1;
  stage.tracks[trackY] = 2;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(copies, (std::vector<Copy>{{0, 2, 1, 0, 3, 1}}));
  EXPECT_EQ(copyFlags, blendSourceAlpha | blendDestinationAlpha);
  setMode(1);
  stage.run();
  EXPECT_EQ(blendModeOf(copyFlags), blendBehind);
  copies.clear();
  stage.tracks[trackX] = 6;
  stage.run();
  EXPECT_TRUE(copies.empty());

  stage.checks[0] = 1;  // tiles cover the object without gap or overlap
  for (int x : {-10, 0, 3, 1000}) {
    copies.clear();
    stage.tracks[trackX] = x;
    stage.tracks[trackY] = -1;
    stage.run();
    std::vector<int> covered(18);
    for (const Copy& c : copies)
      for (int j = 0; j < c.h; j++)
        for (int i = 0; i < c.w; i++) {
          covered[(c.y + j) * 6 + c.x + i]++;
          EXPECT_EQ((c.sx + i) & 3, (c.x + i - x) & 3) << x;
          EXPECT_EQ((c.sy + j) & 1, (c.y + j + 1) & 1);
        }
    EXPECT_THAT(covered, testing::Each(1)) << x;
  }
}

TEST_F(ImageSynthesis, CombinesPixels) {
  struct Row {
    int mode;
    std::vector<int> first;
  } rows[] = {{2, {2048, 0, 0, 2000}}, {3, {9, 9, 9, 2048}}, {4, {9, 9, 9, 1000}}};
  for (const Row& row : rows) {
    plainObject(stage);
    setMode(row.mode);
    ASSERT_EQ(stage.run(), 1);
    EXPECT_EQ(parts(stage.pixel(0, 0)), row.first) << row.mode;
    EXPECT_EQ(stage.pixel(4, 0).a, 0);
    EXPECT_EQ(stage.pixel(0, 2).a, 0);
  }
  EXPECT_TRUE(copies.empty());
  setMode(-7);  // an unknown mode mixes in front
  stage.run();
  EXPECT_EQ(copies.size(), 1u);
}

TEST_F(ImageSynthesis, ZoomZeroIsOnePixel) {
  stage.tracks[trackZoom] = 0;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(copies, (std::vector<Copy>{{0, 0, 0, 0, 1, 1}}));
  EXPECT_EQ(drawn.flags, blendSourceAlpha | blendDestinationAlpha);
}

TEST_F(ImageSynthesis, WithoutAPictureNothingChanges) {
  std::vector<ObjectPixel> before = stage.object;
  for (const char* file : {"", "gone"}) {
    stage.setText(4, file);
    EXPECT_EQ(stage.run(), 1);
  }
  EXPECT_TRUE(copies.empty());
  EXPECT_EQ(memcmp(before.data(), stage.object.data(), before.size() * sizeof(ObjectPixel)), 0);
}

}  // namespace
}  // namespace zenlay::test
