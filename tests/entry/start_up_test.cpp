#include <gtest/gtest.h>

#include "platform/system.h"
#include "platform/window.h"
#include "tests/support/fake_host.h"
#include "zenlay/effects/registry.h"
#include "zenlay/entry/plugin.h"
#include "zenlay/entry/render_service.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"

namespace zenlay {
namespace {

using test::fakeHost;

struct StartUp : testing::Test {
  void SetUp() override {
    test::resetFakeHost();
    mainFilterRecord.functions = &fakeHost.functions;
    fakeHost.filters = {&mainFilterRecord};
  }
  void TearDown() override {
    if (started) mainFilterRecord.exit(&mainFilterRecord);
  }
  int start() {
    started = mainFilterRecord.initialise(&mainFilterRecord) == 1;
    return started;
  }
  bool started = false;
};

TEST_F(StartUp, RefusesWhatItCannotWorkWith) {
  fakeHost.system.flags = 0x2;
  EXPECT_EQ(start(), 0);
  EXPECT_TRUE(test::shownMessages().empty());
  EXPECT_EQ(audioFilterRecord.initialise(&mainFilterRecord), 0);
  fakeHost.system.flags = 0;
  fakeHost.system.build = 9932;
  EXPECT_EQ(start(), 0);
  ASSERT_EQ(test::shownMessages().size(), 1u);
  EXPECT_EQ(test::shownMessages()[0], "It does not work in this version of Cinora");
  fakeHost.system.build = 9933;
  EXPECT_EQ(start(), 1);
  EXPECT_EQ(audioFilterRecord.initialise(&mainFilterRecord), 1);
}

TEST_F(StartUp, AdoptsQualifyingFiltersInOrder) {
  auto process = [](HostFilterRecord*, FrameProcessInfo*) { return 1; };
  HostFilterRecord good{.name = "Good", .process = process}, fits{.name = "Fits", .process = process};
  HostFilterRecord idle{.name = "Idle"};
  char copyName[] = "Zenlay";
  HostFilterRecord copy{.name = copyName, .process = process};
  fakeHost.filters = {&mainFilterRecord, &good, &idle, &fits, &copy};
  ASSERT_EQ(start(), 1);
  ASSERT_EQ(effectCount, registryCount + 2);
  EXPECT_STREQ(effectList[100]->name, "Good");
  EXPECT_STREQ(effectList[101]->name, "Fits");
  ASSERT_EQ(test::shownMessages().size(), 1u);
  EXPECT_EQ(test::shownMessages()[0].substr(0, 45), "Multiple Zenlay plug-ins have been registered");
}

struct Posted {
  int code = 0;
  intptr_t callback = 0;
};

TEST_F(StartUp, HandsThePlaybackWindowItsCallback) {
  Posted posted;
  WindowHandle window = platform::createWindow(
      nullptr,
      [](platform::Window*, uint32_t message, intptr_t first, intptr_t second, void* user) -> intptr_t {
        if (message == messageCommand) *static_cast<Posted*>(user) = {static_cast<int>(first), second};
        return 0;
      },
      &posted);
  HostFilterRecord playback{.name = "Playback window", .window = window};
  fakeHost.filters.push_back(&playback);
  ASSERT_EQ(start(), 1);
  EXPECT_EQ(posted.code, 0);  // posted, not sent
  platform::runPostedMessages();
  EXPECT_EQ(posted.code, 900);
  ASSERT_NE(posted.callback, 0);
  timelineView.sceneLength = 100;
  auto notify = reinterpret_cast<int (*)(int32_t, int32_t)>(posted.callback);
  notify(12, 4 | 2);
  EXPECT_TRUE(environment.playing);
  EXPECT_EQ(timelineView.playbackFrame, 12);
  notify(13, 8);
  EXPECT_FALSE(environment.playing);
  EXPECT_EQ(timelineView.playbackFrame, -1);
  platform::destroyWindow(window);
}

TEST_F(StartUp, PublishesTheRenderServiceUntilShutDown) {
  ASSERT_EQ(start(), 1);
  std::string name = "zenlay_12337_" + std::to_string(platform::processId());
  platform::SharedMemory* mapping = platform::openSharedMemory(name.c_str());
  ASSERT_NE(mapping, nullptr);
  auto* service = static_cast<RenderService*>(platform::mapSharedMemory(mapping));
  ASSERT_NE(service, nullptr);
  int32_t values[6] = {};
  timelineView.sceneLength = 0;
  EXPECT_EQ(service->beginRender(values), 0);
  timelineView.sceneLength = 10;
  environment.outputWidth = 64;
  environment.outputHeight = 48;
  environment.clip = fakeHost.clip;
  EXPECT_EQ(service->beginRender(values), 1);
  EXPECT_EQ(values[2], 64);
  EXPECT_EQ(values[3], 48);
  EXPECT_EQ(values[4], 30);
  EXPECT_NE(service->renderFrame(3), nullptr);
  EXPECT_EQ(service->endRender(), 1);
  EXPECT_EQ(service->renderFrame(3), nullptr);
  platform::unmapSharedMemory(mapping);
  platform::closeSharedMemory(mapping);
  mainFilterRecord.exit(&mainFilterRecord);
  started = false;
  EXPECT_EQ(platform::openSharedMemory(name.c_str()), nullptr);
}

TEST_F(StartUp, LeavesTheFrameAloneWithoutObjects) {
  ASSERT_EQ(start(), 1);
  FramePixel pixel{1, 2, 3};
  FrameProcessInfo info{};
  info.frame = &pixel;
  info.width = info.height = 1;
  EXPECT_EQ(mainFilterRecord.process(&mainFilterRecord, &info), 1);
  EXPECT_EQ(pixel.y, 1);
  EXPECT_EQ(pixel.cr, 3);
}

}  // namespace
}  // namespace zenlay
