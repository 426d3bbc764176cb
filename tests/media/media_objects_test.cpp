#include <gmock/gmock.h>

#include "tests/media/effect_stage.h"
#include "tests/media/fake_media.h"
#include "zenlay/media/media_handles.h"
#include "zenlay/media/playback_time.h"
#include "zenlay/media/video_picture.h"

namespace zenlay {
extern EffectDefinition videoFileMedia, imageFileMedia, previousObjectMedia, frameBufferMedia, sceneMedia;
}

namespace zenlay::test {
namespace {

int64_t integral;
int32_t headSpeed;

struct VideoFile : testing::Test {
  EffectStage stage{videoFileMedia, 64, 48};

  void SetUp() override {
    installFakeMedia();
    setHandleLimit(8);
    fakeMedia.files["clip"] = videoInfo(40, 30);
    stage.setText(0, "clip");
    integral = 0;
    headSpeed = normalSpeed;
    lastVideoFrame = 0;
    stage.services.openMedia = openMedia;
    stage.services.trackIntegral = [](EffectDefinition*, EffectProcessInfo*, int track) {
      EXPECT_EQ(track, 1);
      return integral;
    };
    stage.services.getObjectData = [](ObjectRef, ObjectData* data) {
      static int32_t values[2];
      values[1] = headSpeed;
      data->startValues = values;
      return 1;
    };
    stage.services.convertRgb = [](ObjectPixel* d, const void* bitmap, int w, int h, int bits) {
      EXPECT_EQ(bits, 32);
      for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++) {
          Bgra p = static_cast<const Bgra*>(bitmap)[(h - 1 - y) * w + x];
          d[y * environment.workStride + x] = {p.r, p.g, p.b, p.a};
        }
    };
  }
  void TearDown() override { closeAllMedia(); }
};

TEST_F(VideoFile, DeliversOpaqueRowsWhereTheyAreTaken) {
  stage.info.host.flags = processTakesOpaque;
  integral = 7 * 100000;
  stage.object[40] = {-9, -9, -9, -9};
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(stage.info.opaqueImage, 1);
  EXPECT_EQ(stage.info.objectWidth, 40);
  EXPECT_EQ(stage.info.objectHeight, 30);
  EXPECT_EQ(parts(stage.opaquePixel(0, 0)), (std::vector<int>{7, 0, 0}));
  EXPECT_EQ(parts(stage.opaquePixel(39, 29)), (std::vector<int>{7, 39, 29}));
  EXPECT_EQ(stage.object[40].y, -9);
  EXPECT_EQ(lastVideoFrame, 7);

  stage.info.host.flags = 0;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(stage.info.opaqueImage, 0);
  EXPECT_EQ(parts(stage.pixel(39, 29)), (std::vector<int>{7, 39, 29, 4096}));
  EXPECT_THAT(fakeMedia.opened, testing::ElementsAre("clip"));
  auto& data = *reinterpret_cast<VideoData*>(stage.data);
  EXPECT_EQ(data.frameCount, 100);
  EXPECT_EQ(data.rate, 30);
}

struct DividedRow {
  int position, speed, loop, mode;
  int64_t played;  // frames at that speed before the cut
  int after;
};

TEST_F(VideoFile, ADividedObjectGoesOnWhereItWas) {
  const DividedRow rows[] = {
      {1, 1000, 0, 0, 25, 26},  {11, 1000, 0, 0, 25, 36},   {1, 1000, 0, 0, 250, 100}, {1, -1000, 0, 0, -25, 26},
      {91, 1000, 1, 0, 25, 16}, {1, -1000, 1, 0, -130, 31}, {11, 1000, 0, 1, 25, 11},
  };
  fakeHost.clip.rate = 30;
  fakeHost.clip.scale = 1;
  auto& data = *reinterpret_cast<VideoData*>(stage.data);
  data.frameCount = 100;
  data.rate = 30;
  data.scale = 1;
  stage.effect.check_values = stage.checks.data();
  for (const DividedRow& row : rows) {
    stage.beginValues[playPosition] = stage.endValues[playPosition] = row.position;
    stage.modes[playPosition] = row.mode;
    stage.checks[playLoop] = row.loop;
    headSpeed = row.speed;
    integral = row.played * 100000;
    stage.effect.window_proc(nullptr, messageEffectCommand, commandObjectEvent, objectDivided, nullptr, &stage.effect);
    EXPECT_EQ(stage.beginValues[playPosition], row.after) << row.position << " after " << row.played;
    EXPECT_EQ(stage.endValues[playPosition], row.after);
  }
}

TEST_F(VideoFile, TheChainsFirstSpeedDecidesTheDirection) {
  headSpeed = -500;
  integral = -2 * 100000;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(fakeMedia.lastFrame, 97);
  stage.modes[0] = 1;  // a moving position is the frame itself
  stage.tracks[0] = 12;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(fakeMedia.lastFrame, 11);
  stage.checks[0] = 1;
  stage.beginValues[0] = 11;
  stage.endValues[0] = 20;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(fakeMedia.lastFrame, 17);
}

TEST_F(VideoFile, AlphaComesFromTheBitmap) {
  fakeMedia.files["clip"] = videoInfo(2, 2, 32);
  fakeMedia.bitmap = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  stage.checks[1] = 1;
  stage.info.host.flags = processTakesOpaque;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(stage.info.opaqueImage, 0);
  EXPECT_EQ(parts(stage.pixel(0, 0)), (std::vector<int>{11, 10, 9, 12}));
  EXPECT_EQ(parts(stage.pixel(1, 1)), (std::vector<int>{7, 6, 5, 8}));
  EXPECT_EQ(fakeMedia.openFlags.back(), openVideo | openAlpha);
}

TEST_F(VideoFile, FailuresDrawNothing) {
  fakeMedia.failReads = true;
  EXPECT_EQ(stage.run(), 0);
  stage.setText(0, "gone");
  EXPECT_EQ(stage.run(), 0);
  EXPECT_EQ(shownMessages().size(), 1u);
  EXPECT_EQ(stage.run(), 0);
  EXPECT_EQ(shownMessages().size(), 1u) << "the name is cleared: one message, not one a frame";
}

TEST_F(VideoFile, LoadingCountsMissingFilesQuietly) {
  stage.setText(0, "gone");
  auto send = [&](intptr_t command, intptr_t value) {
    return stage.effect.window_proc(nullptr, messageEffectCommand, command, value, nullptr, &stage.effect);
  };
  EXPECT_EQ(send(commandObjectEvent, objectLoaded), 0);
  EXPECT_EQ(environment.missingFiles, 1);
  send(commandObjectEvent, objectDeleted);
  EXPECT_EQ(environment.missingFiles, 1);
  send(commandCheckFile | 3 << 16, 1);
  EXPECT_EQ(environment.missingFiles, 2);
  EXPECT_STREQ(stage.data, "gone");
  EXPECT_TRUE(shownMessages().empty() && fakeMedia.opened.empty());
}

// ---- Image file ----

int32_t pictureWidth, pictureHeight, positionX, positionY;
ImageClip loadedWindow;

struct ImageFile : testing::Test {
  EffectStage stage{imageFileMedia, 64, 48};

  void SetUp() override {
    stage.setText(4, "picture.png");
    positionX = positionY = 0;
    stage.services.findNextSlot = [](ObjectRef ref, const char*, uint32_t filter) -> ObjectRef {
      return filter == findDrawing ? ref | 1 << 16 : 0;
    };
    stage.services.getTrackValues = [](ObjectRef, int, int, int32_t* values, intptr_t which) {
      *values = which == 1 ? positionX : positionY;
      return 1;
    };
    stage.services.loadImage = [](ObjectPixel* d, const char*, int32_t* w, int32_t* h, const ImageClip* clip,
                                  uint32_t) {
      if (d) loadedWindow = *clip;
      *w = d ? clip->right - clip->left : pictureWidth;
      *h = d ? clip->bottom - clip->top : pictureHeight;
      return 1;
    };
  }
};

TEST_F(ImageFile, OfALargePictureTheNearestPartIsShown) {
  struct Row {
    int width, height, x, y, left, top, cx, cy;
  } rows[] = {
      {64, 48, 500, 500, 0, 0, 0, 0},       {164, 48, 0, 0, 50, 0, 0, 0},        {164, 48, 200, 0, 30, 0, 20, 0},
      {164, 48, 5000, 0, 0, 0, 50, 0},      {164, 48, -5000, 0, 100, 0, -50, 0}, {64, 148, 0, 100, 0, 40, 0, 10},
      {164, 148, -70, -70, 57, 57, -7, -7},
  };
  for (const Row& row : rows) {
    pictureWidth = row.width;
    pictureHeight = row.height;
    positionX = row.x;  // tenths of a pixel
    positionY = row.y;
    stage.info.cx = stage.info.cy = 0;
    ASSERT_EQ(stage.run(), 1);
    EXPECT_EQ(std::tuple(loadedWindow.left, loadedWindow.top, stage.info.cx, stage.info.cy),
              std::tuple(row.left, row.top, row.cx * 4096, row.cy * 4096))
        << row.width << "x" << row.height << " at " << row.x;
    EXPECT_EQ(stage.info.objectWidth, 64);
    EXPECT_EQ(stage.info.objectHeight, 48);
  }
}

size_t askedLength;

TEST_F(ImageFile, AnUnterminatedNameEndsInItsField) {
  memset(stage.data, 'x', stageBytes);
  stage.services.loadImage = [](ObjectPixel*, const char* path, int32_t*, int32_t*, const ImageClip*, uint32_t) {
    askedLength = strlen(path);
    return 0;
  };
  EXPECT_EQ(stage.run(), 0);
  EXPECT_EQ(askedLength, 255u);
}

TEST_F(ImageFile, WithoutAPictureNothingIsDrawn) {
  stage.setText(4, "");
  EXPECT_EQ(stage.run(), 0);
  stage.setText(4, "gone");
  stage.services.loadImage = [](ObjectPixel*, const char*, int32_t*, int32_t*, const ImageClip*, uint32_t) {
    return 0;
  };
  EXPECT_EQ(stage.run(), 0);
  EXPECT_STREQ(stage.data + 4, "gone");
}

// ---- Previous object, frame buffer ----

int shownFrame, shownHundredths;

TEST(SceneMedia, ShowsTheSceneAtHundredthsOfItsFrames) {
  EffectStage stage(sceneMedia);
  stage.services.sceneLength = [](int) { return 50; };
  stage.services.trackIntegral = [](EffectDefinition*, EffectProcessInfo*, int) { return integral; };
  stage.services.renderScene = [](EffectProcessInfo*, int, int frame, int hundredths, int32_t*, int32_t*, int32_t*,
                                  bool*) -> const void* {
    shownFrame = frame;
    shownHundredths = hundredths;
    return nullptr;
  };
  stage.effect.frame_begin = 100;
  stage.effect.frame_end = 110;
  struct Row {
    int position, speed, loop, mode, end;
    int64_t frames;  // passed
    int expected;    // hundredths
  } rows[] = {
      {1, 1000, 0, 0, 1, 7, 700},        {1, 333, 0, 0, 1, 2, 66},      {11, 1000, 0, 0, 11, 60, 4900},
      {1, -1000, 0, 0, 1, 0, 4900},      {1, -250, 0, 0, 1, 1, 4875},   {1, -1000, 1, 0, 1, 50, 4900},
      {1, 500, 1, 0, 1, 101, 50},        {11, 1000, 1, 1, 20, 9, 1900}, {11, 1000, 1, 1, 20, 10, 1000},
      {11, 1000, 0, 1, 16, 3, 1150},     {16, 0, 0, 1, 11, 3, 1350},    {1, 0, 0, 1, 800, 3, 4900},
      {11, 0, 0, 1 | 0x40, 16, 3, 1000},  // the value alone
  };
  for (const Row& row : rows) {
    stage.tracks[playPosition] = stage.beginValues[playPosition] = row.position;
    stage.endValues[playPosition] = row.end;
    stage.beginValues[playSpeed] = row.speed;
    stage.modes[playPosition] = row.mode;
    stage.checks[playLoop] = row.loop;
    stage.info.absoluteFrame = 100 + static_cast<int>(row.frames);
    integral = row.frames * row.speed * 100;
    EXPECT_EQ(stage.run(), 0);
    EXPECT_EQ(shownFrame * 100 + shownHundredths, row.expected) << row.position << " after " << row.frames;
  }
}

TEST(PreviousObjectMedia, TakesImageAndPlacement) {
  EffectStage stage{previousObjectMedia, 8, 8};
  static PreviousObject previous;
  stage.services.previousObject = [] { return static_cast<const PreviousObject*>(&previous); };
  previous = {};
  EXPECT_EQ(stage.run(), 0) << "nothing was drawn before";

  std::vector<ObjectPixel> image(stage.object.size());
  image[0] = {1, 2, 3, 4};
  image[stage.info.bufferLine + 1] = {5, 6, 7, 8};
  previous = {image.data(), 2, 2, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(parts(stage.pixel(1, 1)), (std::vector<int>{5, 6, 7, 8}));
  const EffectProcessInfo& i = stage.info;
  EXPECT_THAT(
      (std::vector<int>{i.ox, i.oy, i.oz, i.rx, i.ry, i.rz, i.cx, i.cy, i.cz, i.zoom, i.aspect, i.transparency}),
      testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));

  previous.opaqueImage = 1;  // the bytes of (0, 0) and the next: FramePixels {1,2,3} {4,..}
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(parts(stage.pixel(0, 0)), (std::vector<int>{1, 2, 3, 4096}));
  stage.info.host.flags = processTakesOpaque;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_TRUE(stage.info.opaqueImage);
}

TEST(FrameBufferMedia, CopiesAndClearsTheFrame) {
  EffectStage stage{frameBufferMedia, 16, 8};
  std::vector<FramePixel> frame(20 * 8, FramePixel{100, 20, -30});
  stage.info.host.frame = frame.data();
  stage.info.host.lineBytes = 20 * sizeof(FramePixel);
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(stage.info.objectWidth, 16);
  EXPECT_EQ(parts(stage.pixel(15, 7)), (std::vector<int>{100, 20, -30, 4096}));
  EXPECT_EQ(frame[0].y, 100);
  stage.checks[0] = 1;
  stage.info.host.flags = processTakesOpaque;
  ASSERT_EQ(stage.run(), 1);
  EXPECT_EQ(parts(stage.opaquePixel(15, 7)), (std::vector<int>{100, 20, -30}));
  EXPECT_EQ(frame[7 * 20 + 15].y, 0);
  EXPECT_EQ(frame[7 * 20 + 16].y, 100) << "the padding is not the frame";

  std::vector<ObjectPixel> layers(20 * 8, ObjectPixel{100, 20, -30, 50});
  stage.info.host.frame = reinterpret_cast<FramePixel*>(layers.data());
  stage.info.host.flags |= processFlattening;
  stage.info.host.lineBytes = 20 * sizeof(ObjectPixel);
  ASSERT_EQ(stage.run(), 1);
  EXPECT_FALSE(stage.info.opaqueImage);
  EXPECT_EQ(stage.pixel(15, 7).a, 50);
  EXPECT_EQ(layers[0].a, 0);
}

}  // namespace
}  // namespace zenlay::test
