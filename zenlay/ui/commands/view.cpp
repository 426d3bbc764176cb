// Commands that change what is shown: the cursor, zoom, grids, display toggles and preferences.
#include "platform/window.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/render/image_cache.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::commands {
namespace {

int toggle(int32_t& setting) {
  setting = !setting;
  return 1;
}

int toggleTrackSelected() {
  toggle(preferences.config_move);
  followCursor();
  return 1;
}

int setCursor(int frame) {
  moveCursor(frame);
  return 1;
}

int zoomBy(int levels) {
  setTimelineZoom(timelineView.zoomLevel + levels);
  return 0;
}

int discardCaches() {
  const HostFunctionTable* host = environment.hostFunctions;
  initialiseImageCache(host->readIntSetting(environment.mainFilter, "image_cache_max", defaultImageCacheSlots));
  return 1;
}

void sendToHost(platform::Window* host, uint32_t message, intptr_t first, intptr_t second) {
  platform::sendMessage(host, message, first, second);
}

/// Sent at once while the cursor follows the playback; otherwise it begins when the present message has been dealt
/// with.
int play() {
  HostFileInfo clip{};
  if (!environment.hostFunctions->getFileInfo(environment.edit, &clip)) return 0;
  auto send = preferences.sync_play_cursor ? sendToHost : platform::postMessage;
  send(environment.hostMainWindow, messageCommand, hostPlayFromCursor, timelineView.cursorFrame);
  return 0;
}

int undoStep() {
  if (undoSteps() == 0) return 0;
  endSettingsEdit();
  undo();
  dropUnselectable();
  return 1;
}

constexpr Row rows[] = {
    {commandSetCursor, [](const Call& call) { return setCursor(numberOf(call)); }, needsProject | anyTime},
    {commandUndo, [](const Call&) { return undoStep(); }, needsProject, showsBoth},
    {commandToggleBeatGrid, [](const Call&) { return toggle(preferences.grid.grid); }, needsNothing, showsTimeline},
    {commandPreferences, [](const Call&) { return static_cast<int>(editPreferences()); }, needsNothing, showsBoth},
    {commandToggleOutOfArea, [](const Call&) { return toggle(preferences.grid.out_of_area); }, needsNothing},
    {commandToggleTrackSelected, [](const Call&) { return toggleTrackSelected(); }, needsNothing, showsTimeline},
    {commandToggleSnap, [](const Call&) { return toggle(preferences.object_snap); }, needsNothing},
    {commandToggleCameraGui, [](const Call&) { return toggle(preferences.camera_gui); }, needsNothing},
    {commandPlay, [](const Call&) { return play(); }, needsProject},
    {commandToggleFastPreview, [](const Call&) { return toggle(preferences.fast_preview); }, needsNothing},
    {commandDiscardCaches, [](const Call&) { return discardCaches(); }, needsNothing},
    {commandZoomIn, [](const Call&) { return zoomBy(1); }, needsNothing},
    {commandZoomOut, [](const Call&) { return zoomBy(-1); }, needsNothing},
    {commandToggleGrid2d, [](const Call&) { return toggle(preferences.grid.grid2d); }, needsNothing},
    {commandToggleGrid3d, [](const Call&) { return toggle(preferences.grid.grid3d); }, needsNothing},
    {commandToggleActiveGrid,
     [](const Call& call) {
       return toggle(call.active == activeOther ? preferences.grid.grid : preferences.grid.grid2d);
     },
     needsNothing, showsTimeline},
    {commandGridSettings, [](const Call&) { return static_cast<int>(editGridSettings()); }, needsNothing,
     showsTimeline},
    {commandToggleObjectRange, [](const Call&) { return toggle(preferences.object_range); }, needsNothing,
     showsTimeline},
};

}  // namespace

const std::span<const Row> viewCommands = rows;

}  // namespace zenlay::commands
