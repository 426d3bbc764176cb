// Scales, scrolling, cursor, playback, scenes and what the host tells the timeline.
#include "platform/window_record.h"
#include "tests/ui/timeline_stage.h"
#include "zenlay/render/handles.h"
#include "zenlay/ui/commands/commands.h"
#include "zenlay/ui/project/describe.h"
#include "zenlay/ui/timeline/beat_grid.h"
#include "zenlay/ui/timeline/paint.h"
#include "zenlay/ui/timeline/scroll.h"

namespace zenlay::test {
namespace {

class TimelineWindow : public Timeline {
 protected:
  /// The first frame and layer in view.
  static void expectView(int frame, int layer) {
    EXPECT_EQ(timelineView.leftFrame, frame);
    EXPECT_EQ(timelineView.topLayer, layer);
  }
  platform::Window* bar(bool vertical) const {
    for (platform::Window* child : window->children)
      if (child->lives && (child->control->kind == platform::controlVerticalScrollBar) == vertical) return child;
    return nullptr;
  }
};

struct ScaleRow {
  int level, left, frame, x;
  int frameAt;  // of x
};

TEST_F(TimelineWindow, FramesAndPixels) {
  const ScaleRow rows[] = {
      {19, 0, 0, 64, 0},    {19, 0, 100, 164, 100}, {19, 30, 100, 134, 100}, {19, 100, 30, -5, 31},
      {26, 0, 5, 114, 5},   {26, 0, -1, 54, -1},    {0, 0, 250, 65, 500},    {0, 0, 249, 64, 0},
      {0, 0, 749, 65, 500}, {0, 0, 750, 66, 1000},  {14, 0, 2, 64, 0},       {14, 0, 3, 65, 5},
      {14, 10, 10, 64, 10}, {14, 10, 9, 64, 10},
  };
  for (const ScaleRow& row : rows) {
    SCOPED_TRACE(testing::Message() << row.level << " " << row.left << " " << row.frame);
    setZoomLevel(row.level);
    timelineView.leftFrame = row.left;
    EXPECT_EQ(xOfFrame(row.frame), row.x);
    EXPECT_EQ(frameAtX(row.x), row.frameAt);
  }
  timelineView.leftFrame = 0;
  EXPECT_EQ(clampedFrameAtX(0), 0);
  EXPECT_GT(xOfFrame(INT32_MAX), 1 << 20);
}

TEST_F(TimelineWindow, LayersAndPixels) {
  EXPECT_EQ(layerAtY(72), 0);
  EXPECT_EQ(layerAtY(73), 1);
  EXPECT_EQ(layerAtY(-500), 0);
  EXPECT_EQ(layerAtY(50000), 99);
  timelineView.topLayer = 10;
  EXPECT_EQ(layerAtY(73), 11);
  EXPECT_EQ(visibleLayerAtY(50000), 14);
  EXPECT_EQ(visibleLayerAtY(0), 10);
}

TEST_F(TimelineWindow, OpensWithFiveRowsAndKeepsItsSize) {
  EXPECT_EQ(platform::clientSize(window), (platform::Size{640, 5 * 31 + 42}));
  EXPECT_EQ(timelineView.clientWidth, 627);
  EXPECT_EQ(timelineView.visibleRows, 5);
  EXPECT_EQ(platform::windowPlace(bar(false)), (platform::Rect{63, 0, 577, 13}));
  EXPECT_EQ(platform::windowPlace(bar(true)), (platform::Rect{627, 13, 13, 184}));
  platform::user::resize(window, {800, 42 + 7 * 31 + 20});
  EXPECT_EQ(platform::clientSize(window), (platform::Size{800, 42 + 7 * 31}));
  EXPECT_EQ(timelineView.visibleRows, 7);
  platform::user::resize(window, {10, 10});
  EXPECT_EQ(platform::clientSize(window), (platform::Size{128, 42 + 31}));
  platform::user::resize(window, {700, 50000});
  EXPECT_EQ(timelineView.visibleRows, 100);
  platform::user::resize(window, {700, 42 + 6 * 31});
  preferences.small_layer = 2;
  applyLayerHeight();
  EXPECT_EQ(timelineView.layerHeight, 22);
  EXPECT_EQ(timelineView.markHeight, 3);
  EXPECT_EQ(platform::clientSize(window), (platform::Size{700, 42 + 6 * 22}));
  setTimelineZoom(21);
  send(messageWindowClose);
  EXPECT_EQ(fakeHost.intSettings["w"], 700);
  EXPECT_EQ(fakeHost.intSettings["h"], 42 + 6 * 22);
  EXPECT_EQ(fakeHost.intSettings["zoom"], 21);
  send(messageWindowSetUp);
  EXPECT_EQ(timelineView.visibleRows, 6);
  EXPECT_EQ(timelineView.zoomLevel, 21);
}

TEST_F(TimelineWindow, ScrollsWithinTheScene) {
  setLeftFrame(5000);
  EXPECT_EQ(timelineView.leftFrame, 1000 - (627 - 160));
  EXPECT_EQ(timelineView.rightFrame, 533 + 563);
  EXPECT_EQ(platform::controlValue(bar(false)), 533);
  setLeftFrame(-5);
  EXPECT_EQ(timelineView.leftFrame, 0);
  setTopLayer(99);
  EXPECT_EQ(timelineView.topLayer, 95);
  EXPECT_EQ(platform::controlValue(bar(true)), 95);
  platform::user::dragTo(bar(false), 200);
  EXPECT_EQ(timelineView.leftFrame, 200);
  platform::user::dragTo(bar(true), 7);
  EXPECT_EQ(timelineView.topLayer, 7);
  timelineView.sceneLength = 0;
  updateScrollBars();
  updateTitle();
  EXPECT_FALSE(platform::windowEnabled(bar(false)));
  EXPECT_EQ(platform::windowText(window), "Zenlay");
}

TEST_F(TimelineWindow, WheelAndPan) {
  platform::user::wheel(window, {300, 100}, -1);
  EXPECT_EQ(timelineView.leftFrame, 100);
  platform::user::wheel(window, {300, 100}, 1);
  EXPECT_EQ(timelineView.leftFrame, 0);
  platform::user::wheel(window, {300, 100}, -2, alt);
  EXPECT_EQ(timelineView.topLayer, 2);
  setLeftFrame(200);
  press(300, 100, alt);
  EXPECT_EQ(timelineView.dragMode, dragView);
  moveTo(250, 100 - 62, alt);
  expectView(250, 4);
  moveTo(310, 100, alt);
  expectView(190, 2);
  release(310, 100);
  EXPECT_EQ(timelineView.dragMode, dragNone);
  auto middle = [&](uint32_t message, int x, intptr_t state) {
    platform::user::mouse(window, message, {x, 100}, state);
  };
  middle(platform::messageMiddleDown, 300, platform::mouseMiddle);
  middle(platform::messageMouseMove, 280, platform::mouseMiddle);
  EXPECT_EQ(timelineView.leftFrame, 210);
  middle(platform::messageMiddleUp, 280, 0);
  middle(platform::messageMouseMove, 200, 0);
  EXPECT_EQ(timelineView.leftFrame, 210);
}

TEST_F(TimelineWindow, WhatIsMadeComesIntoView) {
  struct Row {
    const char* what;
    int layer, left, top;  // of an object over 400..450 in a view of 563 frames and 5 rows from 500 and layer 10 on
  };
  for (const Row& row :
       {Row{"left and above", 3, 400, 3}, Row{"left and below", 20, 400, 16}, Row{"in view", 12, 0, 10}}) {
    SCOPED_TRACE(row.what);
    setLeftFrame(row.left ? 500 : 0);
    setTopLayer(10);
    revealObject(create(400, 450, row.layer));
    expectView(row.left, row.top);
  }
  zoomToFit();  // 467 pixels for 1000 frames: 0.4 a frame
  EXPECT_EQ(timelineView.zoom, 4000);
}

TEST_F(TimelineWindow, ZoomKeepsTheCursorInPlace) {
  moveCursor(300);
  setLeftFrame(200);
  platform::user::wheel(window, {0, 0}, 1, ctrl);  // 1.5 pixels a frame
  EXPECT_EQ(timelineView.zoomLevel, 20);
  EXPECT_EQ(timelineView.leftFrame, 300 - 66);
  platform::user::wheel(window, {0, 0}, -20, ctrl);
  EXPECT_EQ(timelineView.zoomLevel, 0);
  EXPECT_EQ(timelineView.leftFrame, 0);
  // The gauge: bar i stands at x = 5 + 2 i.
  press(5 + 2 * 18, 30);
  EXPECT_EQ(timelineView.dragMode, dragGauge);
  EXPECT_EQ(timelineView.zoomLevel, 19);
  moveTo(200, 30);
  EXPECT_EQ(timelineView.zoomLevel, 26);
  moveTo(-20, 30);
  EXPECT_EQ(timelineView.zoomLevel, 0);
  release(-20, 30);
}

TEST_F(TimelineWindow, TheCursorFollowsTheMouse) {
  EXPECT_EQ(press(xOf(250), 30), 1);
  EXPECT_EQ(timelineView.cursorFrame, 250);
  EXPECT_EQ(fakeHost.currentFrame, 250);
  EXPECT_EQ(platform::windowText(window), "Zenlay [00:00:08.33] [251/1000]");
  moveTo(10, 30);
  EXPECT_EQ(timelineView.cursorFrame, 0);
  moveTo(627 - 96 + 40, 30);  // 40 pixels into the margin
  EXPECT_EQ(timelineView.leftFrame, 40);
  EXPECT_EQ(timelineView.cursorFrame, 627 - 96 + 40 - 64);
  release(627 - 96 + 40, 30);
  setLeftFrame(300);
  press(30 + 64, rowOf(2));  // empty row space
  moveTo(44, rowOf(2));      // 20 frames left of the view
  EXPECT_EQ(timelineView.leftFrame, 280);
  EXPECT_EQ(timelineView.cursorFrame, 280);
  release(44, rowOf(2));
  moveCursor(5000);
  EXPECT_EQ(timelineView.cursorFrame, 999);
}

TEST_F(TimelineWindow, TheViewFollowsTheCursor) {
  setCursorFrame(700);  // right frame 563
  EXPECT_EQ(timelineView.leftFrame, 533) << "699, held at the scene's end";
  timelineView.leftFrame = 0;
  updateScrollBars();
  setCursorFrame(563);
  EXPECT_EQ(timelineView.leftFrame, 0);
  setLeftFrame(500);
  setCursorFrame(480);
  EXPECT_EQ(timelineView.leftFrame, 0) << "480 - 563";
  preferences.auto_scroll = 0;
  setCursorFrame(900);
  EXPECT_EQ(timelineView.leftFrame, 0);
}

TEST_F(TimelineWindow, TheCurrentObjectFollowsTheCursor) {
  int a = create(100, 199, 0), b = create(200, 299, 0);
  create(0, 400, 1);
  currentObject = a;
  setCursorFrame(250);
  EXPECT_EQ(currentObject, b);
  setCursorFrame(350);
  EXPECT_EQ(currentObject, b);
  preferences.config_move = 0;
  setCursorFrame(150);
  EXPECT_EQ(currentObject, b);
}

TEST_F(TimelineWindow, PlaybackMovesItsMarkerAndComesBack) {
  preferences.sync_play_cursor = 0;
  setCursorFrame(120);
  setLeftFrame(100);
  playbackNotification(120, 4 | 2);
  EXPECT_TRUE(environment.playing);
  EXPECT_EQ(timelineView.playbackFrame, 120);
  playbackNotification(700, 2);  // out of view: right frame 663
  EXPECT_EQ(timelineView.playbackFrame, 700);
  EXPECT_EQ(timelineView.leftFrame, 533);
  EXPECT_EQ(timelineView.cursorFrame, 120);
  playbackNotification(700, 8);
  EXPECT_FALSE(environment.playing);
  EXPECT_EQ(timelineView.playbackFrame, -1);
  EXPECT_EQ(timelineView.leftFrame, 100);
  playbackNotification(0, 1);
  EXPECT_TRUE(imageAidsHidden);
  playbackNotification(0, 2);
  EXPECT_FALSE(imageAidsHidden);
}

TEST_F(TimelineWindow, PlaybackLeavesTheViewToADrag) {
  int object = create(100, 199, 1);
  preferences.sync_play_cursor = 0;
  playbackNotification(120, 4 | 2);
  press(xOf(150), rowOf(1));
  moveTo(xOf(160), rowOf(1));
  playbackNotification(700, 2);
  EXPECT_EQ(timelineView.playbackFrame, 700);
  EXPECT_EQ(timelineView.leftFrame, 0);
  moveTo(xOf(161), rowOf(1));
  EXPECT_EQ(objects[object].start, 111);
  release(xOf(161), rowOf(1));
  playbackNotification(700, 2);
  EXPECT_EQ(timelineView.leftFrame, 533);
}

TEST_F(TimelineWindow, PlaybackGoesOnInAnotherScene) {
  preferences.sync_play_cursor = 0;
  setCursorFrame(120);
  setLeftFrame(100);
  playbackNotification(120, 4 | 2);
  playbackNotification(700, 2);
  enterScene(3);
  EXPECT_EQ(scenes[0].viewFrame, 100) << "where it was before the playback";
  extendScene(5000);
  setLeftFrame(2000);
  playbackNotification(300, 2);
  playbackNotification(300, 8);
  EXPECT_EQ(timelineView.leftFrame, 0);
  timelineView.sceneLength = 0;
  playbackNotification(300, 2);
  EXPECT_EQ(timelineView.playbackFrame, -1) << "nothing is open any more";
  timelineView.sceneLength = 5001;
  enterScene(0);
}

TEST_F(TimelineWindow, PlaybackMayMoveTheCursor) {
  preferences.sync_play_cursor = 0;
  playbackNotification(5, 4 | 2);
  preferences.sync_play_cursor = 1;  // meanwhile
  playbackNotification(10, 2);
  EXPECT_EQ(timelineView.cursorFrame, 10);
  EXPECT_EQ(timelineView.playbackFrame, -1);
  int a = create(0, 50, 0), b = create(51, 99, 0);
  currentObject = a;
  preferences.config_move = 0;
  playbackNotification(60, 2);
  preferences.config_move = 1;
  playbackNotification(60, 8);
  EXPECT_EQ(currentObject, b);
}

TEST_F(TimelineWindow, ALengthThatTheHostRefusesIsToldAndNotShown) {
  const auto granted = fakeHost.functions.setFrameCount;
  fakeHost.functions.setFrameCount = [](EditHandle, int32_t) -> int32_t { return 0; };
  moveCursor(500);
  EXPECT_EQ(runCommand(commandLastFrameAtCursor, 0), 0);
  EXPECT_EQ(shownMessages().size(), 1u);
  extendScene(2000);
  EXPECT_EQ(shownMessages(), std::vector<std::string>(2, "The length of the scene could not be changed"));
  EXPECT_EQ(timelineView.sceneLength, 1000);
  fakeHost.functions.setFrameCount = granted;
  EXPECT_EQ(runCommand(commandLastFrameAtCursor, 0), 1);
  EXPECT_EQ(timelineView.sceneLength, 501);
}

TEST_F(TimelineWindow, LookingAtAnotherSceneIsNoChangeOfTheFilm) {
  create(100, 199, 5);
  enterScene(2);
  extendScene(29);
  create(0, 29, 1);
  enterScene(0);
  auto description = [] {
    QueryRequest request{};
    EXPECT_EQ(answerQuery(queryProject, &request), 1);
    return std::string(request.answer);
  };
  const std::string before = description();
  EXPECT_NE(before.find("\"length\":1000,\"audio_rate\""), before.npos) << "of the film, not of what is shown";
  for (int scene : {2, 7, 0, 2}) {
    enterScene(scene);
    EXPECT_EQ(description(), before) << scene;
  }
  extendScene(30);
  EXPECT_NE(description(), before);
  enterScene(0);
  EXPECT_NE(description(), before);
}

TEST_F(TimelineWindow, EveryScenesViewIsItsOwn) {
  int object = create(100, 199, 2);
  create(200, 299, 2);
  setTimelineZoom(20);
  fakeHost.selectionFirst = 10, fakeHost.selectionLast = 20;
  preferences.grid.grid_tempo = 1200000;
  // As the host does, which tells of every frame it shows; an object under the cursor is not the current one.
  fakeHost.functions.setCurrentFrame = [](EditHandle, int32_t frame) -> int32_t {
    fakeHost.currentFrame = frame;
    platform::sendMessage(environment.timelineWindow, messageUpdate, 0, 0);
    return frame;
  };
  moveCursor(250);
  setLeftFrame(90);
  setTopLayer(2);
  currentObject = object;
  addToSelection(object);
  enterScene(4);
  EXPECT_TRUE(selected().empty());
  EXPECT_EQ(timelineView.zoomLevel, 20);
  expectView(0, 0);
  EXPECT_EQ(platform::windowText(window), "Zenlay [00:00:00.00] [1/1]");
  setTimelineZoom(10);
  preferences.grid.grid_tempo = 900000;
  enterScene(0);
  EXPECT_EQ(currentObject, object);
  EXPECT_EQ(timelineView.zoomLevel, 20);
  expectView(90, 2);
  EXPECT_EQ(timelineView.cursorFrame, 250);
  EXPECT_EQ(fakeHost.selectionLast, 20);
  EXPECT_EQ(preferences.grid.grid_tempo, 1200000);
}

TEST_F(TimelineWindow, FollowsTheHost) {
  moveCursor(700);
  fakeHost.frameCount = 500;
  send(messageUpdate);
  EXPECT_EQ(timelineView.sceneLength, 500);
  EXPECT_EQ(timelineView.cursorFrame, 499);
  fakeHost.currentFrame = 42;
  send(messageUpdate);
  EXPECT_EQ(timelineView.cursorFrame, 42);
  EXPECT_EQ(platform::windowText(window), "Zenlay [00:00:01.40] [43/500]");
}

TEST_F(TimelineWindow, AdoptsAndDropsTheHostsClip) {
  fakeHost.clip.name = "640x480_30fps_44100Hz.zenlay";
  fakeHost.clip.rate = 25;
  fakeHost.frameCount = 200;
  send(messageFileOpen);
  EXPECT_TRUE(environment.projectOpen);
  EXPECT_EQ(timelineView.sceneLength, 200);
  EXPECT_EQ(environment.clip.rate, 25);
  fakeHost.clip.rate = 50;
  send(messageClipChanged);
  EXPECT_EQ(environment.clip.rate, 50);
  fakeHost.clip.name = "film.avi";
  send(messageFileOpen);
  EXPECT_FALSE(environment.projectOpen);

  int object = create(100, 150, 0);
  addToSelection(object);
  currentObject = object;
  setPlaybackFrame(20);
  fakeHost.frameCount = 0;
  send(messageFileClose);
  EXPECT_EQ(objectCount, 0);
  EXPECT_TRUE(selected().empty());
  EXPECT_EQ(currentObject, -1);
  EXPECT_EQ(timelineView.sceneLength, 0);
  EXPECT_EQ(timelineView.cursorFrame, 0);
  EXPECT_EQ(timelineView.playbackFrame, -1);
  EXPECT_EQ(platform::windowText(window), "Zenlay");
}

TEST_F(TimelineWindow, BeatsAndBars) {
  preferences.grid = {.grid = 1, .grid_tempo = 1205000, .grid_base = 11, .grid_time = 3};
  // 120.5 BPM at 30 frames per second: 14.938 frames a beat, from frame 10 on.
  for (auto [frame, index] : {std::pair{9, -1}, {10, 0}, {24, 0}, {25, 1}}) EXPECT_EQ(beatIndex(frame), index);
  for (auto [frame, index] : {std::pair{9, -1}, {54, 0}, {55, 1}}) EXPECT_EQ(barIndex(frame), index);
  for (auto [frame, beat] : {std::pair{16, 10}, {18, 25}, {3, -4}}) EXPECT_EQ(nearestBeat(frame, false), beat);
  preferences.grid.grid_tempo = 1;  // a beat in 18 million frames
  EXPECT_EQ(nearestBeat(16, false), 10);
  environment.clip.rate = 1000000;
  EXPECT_EQ(nearestBeat(1000000, true), 10);
  environment.clip.rate = 30;
  preferences.grid.grid_tempo = 1205000;
  EXPECT_EQ(beatLines(), beatLinesBeats);
  setZoomLevel(14);  // 40 frames in 8 pixels: 2.7 beats
  EXPECT_EQ(beatLines(), beatLinesBars);
  preferences.grid.grid_time = 2;
  EXPECT_EQ(beatLines(), beatLinesNone);
  preferences.grid.grid = 0;
  setZoomLevel(19);
  EXPECT_EQ(beatLines(), beatLinesNone);
}

TEST_F(TimelineWindow, TimesAreTruncated) {
  struct Row {
    int rate, scale, frame;
    const char* text;
  };
  for (const Row& row : {Row{30, 1, 0, "00:00:00.00"}, Row{30, 1, 29, "00:00:00.96"}, Row{30, 1, 30, "00:00:01.00"},
                         Row{30000, 1001, 30, "00:00:01.00"}, Row{30000, 1001, 1800, "00:01:00.06"},
                         Row{25, 1, 90000, "01:00:00.00"}, Row{24, 1, 320000, "03:42:13.33"}}) {
    environment.clip.rate = row.rate;
    environment.clip.scale = row.scale;
    EXPECT_EQ(timeText(row.frame), row.text);
  }
}

}  // namespace
}  // namespace zenlay::test
