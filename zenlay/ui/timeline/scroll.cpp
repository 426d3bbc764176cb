#include "zenlay/ui/timeline/scroll.h"

#include <algorithm>

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/timeline/layout.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

using platform::Window;

namespace {

constexpr int minWidth = 128;
constexpr int standardWidth = 640, standardRows = 5;
constexpr int linePixels = 16;  // of the horizontal bar's arrows

struct LayerSize {
  int layerHeight, markHeight;
};
constexpr LayerSize sizes[layerSizes] = {{31, 4}, {26, 3}, {22, 3}};  // by small_layer

Window* horizontalBar;
Window* verticalBar;

void takeLayerSize() {
  const LayerSize& size = sizes[preferences.small_layer];
  timelineView.layerHeight = size.layerHeight;
  timelineView.markHeight = size.markHeight;
}

void updateRightFrame() {
  timelineView.rightFrame = timelineView.leftFrame + framesIn(timelineView.clientWidth - headerWidth);
}

int lastLeftFrame() {
  int shown = framesIn(timelineView.clientWidth - headerWidth - sceneEndRoom);
  return std::max(timelineView.sceneLength - shown, 0);
}

int rowsIn(int height) { return std::clamp((height - rowsTop) / timelineView.layerHeight, 1, layersPerScene); }

}  // namespace

void createTimelineControls() {
  takeLayerSize();
  Window* window = environment.timelineWindow;
  if (!window) return;
  horizontalBar = platform::createControl(window, platform::controlHorizontalScrollBar, scrollBarId, {}, "");
  verticalBar = platform::createControl(window, platform::controlVerticalScrollBar, scrollBarId, {}, "");
  if (preferences.w > 0 && preferences.h > 0) {
    platform::Rect place = platform::windowPlace(window);
    platform::setWindowPlace(window, {place.x, place.y, preferences.w, preferences.h});
  } else {
    platform::setClientSize(window, {standardWidth, standardRows * timelineView.layerHeight + rowsTop});
  }
  layOutTimeline();
}

void forgetTimelineControls() { horizontalBar = verticalBar = nullptr; }

void layOutTimeline() {
  platform::Size size = platform::clientSize(environment.timelineWindow);
  timelineView.clientWidth = std::max(size.width - barSide, headerWidth + 1);
  timelineView.clientHeight = std::max(size.height, rowsTop);
  timelineView.visibleRows =
      std::clamp((timelineView.clientHeight - rowsTop) / timelineView.layerHeight, 0, layersPerScene);
  platform::setWindowPlace(horizontalBar, {headerWidth - 1, 0, std::max(size.width - headerWidth + 1, 1), barSide});
  platform::setWindowPlace(verticalBar, {size.width - barSide, barSide, barSide, std::max(size.height - barSide, 1)});
  setTopLayer(timelineView.topLayer);
  setLeftFrame(timelineView.leftFrame);
  updateScrollBars();
  redrawTimeline();
}

void limitTimelineSize(platform::Rect* outer) {
  Window* window = environment.timelineWindow;
  platform::Size client = platform::clientSize(window);
  int frame = platform::windowPlace(window).height - client.height;
  outer->width = std::max(outer->width, minWidth);
  outer->height = rowsTop + rowsIn(outer->height - frame) * timelineView.layerHeight + frame;
}

void applyLayerHeight() {
  int rows = timelineView.visibleRows;
  takeLayerSize();
  Window* window = environment.timelineWindow;
  if (!window) return;
  platform::setClientSize(window, {platform::clientSize(window).width, rowsTop + rows * timelineView.layerHeight});
  layOutTimeline();
}

void updateScrollBars() {
  timelineView.leftFrame = std::min(timelineView.leftFrame, lastLeftFrame());
  updateRightFrame();
  int page = framesIn(timelineView.clientWidth - headerWidth);
  int margin = page - framesIn(timelineView.clientWidth - headerWidth - sceneEndRoom);
  platform::setControlRange(horizontalBar, 0, margin + timelineView.sceneLength, page);
  platform::setControlValue(horizontalBar, timelineView.leftFrame);
  platform::enableWindow(horizontalBar, timelineView.sceneLength > 0);
  platform::setControlRange(verticalBar, 0, layersPerScene - 1, timelineView.visibleRows);
  platform::setControlValue(verticalBar, timelineView.topLayer);
}

void setLeftFrame(int frame) {
  frame = std::clamp(frame, 0, lastLeftFrame());
  bool changed = frame != timelineView.leftFrame;
  timelineView.leftFrame = frame;
  updateRightFrame();
  platform::setControlValue(horizontalBar, frame);
  if (changed) redrawTimeline();
}

void setTopLayer(int layer) {
  layer = std::clamp(layer, 0, layersPerScene - timelineView.visibleRows);
  bool changed = layer != timelineView.topLayer;
  timelineView.topLayer = layer;
  platform::setControlValue(verticalBar, layer);
  if (changed) redrawTimeline();
}

void setTimelineZoom(int level) {
  level = std::clamp(level, 0, zoomLevels - 1);
  if (level == timelineView.zoomLevel) return;
  int x = xOfFrame(timelineView.cursorFrame);
  setZoomLevel(level);
  updateScrollBars();
  int64_t frames = (int64_t{x} - headerWidth) * 10000 / timelineView.zoom;
  setLeftFrame(static_cast<int>(std::clamp<int64_t>(timelineView.cursorFrame - frames, 0, INT32_MAX)));
  redrawTimeline();
}

void centreCursor() {
  int cursor = timelineView.cursorFrame;
  if (cursor < timelineView.leftFrame || cursor > timelineView.rightFrame)
    setLeftFrame(cursor - (timelineView.rightFrame - timelineView.leftFrame) / 2);
}

void zoomToFit() {
  int64_t room = std::max(timelineView.clientWidth - headerWidth - sceneEndRoom, 1);
  int level = zoomLevels - 1;
  while (level > 0 && int64_t{timelineView.sceneLength} * zoomTable[level] > room * 10000) level--;
  setTimelineZoom(level);
  setLeftFrame(0);
}

void revealObject(int object) {
  if (!onTimeline(object)) return;
  const ObjectRecord& o = objects[object];
  if (o.start < timelineView.leftFrame || o.start > timelineView.rightFrame) setLeftFrame(o.start);
  if (o.layer < timelineView.topLayer)
    setTopLayer(o.layer);
  else if (!layerVisible(o.layer))
    setTopLayer(o.layer - timelineView.visibleRows + 1);
}

void scrollTimeline(platform::ScrollAction action, Window* bar) {
  if (action == platform::scrollEnd) return;
  if (bar == verticalBar) {
    setTopLayer(platform::controlValue(bar));
    return;
  }
  int line = std::max(framesIn(linePixels), 1);
  if (action == platform::scrollLineBack || action == platform::scrollLineForward)
    setLeftFrame(timelineView.leftFrame + (action == platform::scrollLineBack ? -line : line));
  else
    setLeftFrame(platform::controlValue(bar));
}

bool setSceneLength(int frames) {
  if (!environment.hostFunctions->setFrameCount(environment.edit, frames)) {
    showMessage("The length of the scene could not be changed", boxWarning);
    return false;
  }
  timelineView.sceneLength = frames;
  updateScrollBars();
  redrawTimeline();
  return true;
}

void extendScene(int lastFrame) {
  int length = std::min(lastFrame < INT32_MAX ? lastFrame + 1 : lastFrame, environment.maxFrames);
  if (length > timelineView.sceneLength) setSceneLength(length);
}

}  // namespace zenlay
