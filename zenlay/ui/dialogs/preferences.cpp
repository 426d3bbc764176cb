// The dialog "Preferences".
#include "zenlay/host/preferences.h"

#include <algorithm>
#include <iterator>

#include "zenlay/host/environment.h"
#include "zenlay/media/media_handles.h"
#include "zenlay/render/image_cache.h"
#include "zenlay/ui/dialogs/controls.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/project/backup.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {

using namespace platform;

namespace {

enum : int {
  versionLabel = 170,
  handlesEdit = 173,
  imagesEdit,
  maxWidthEdit,
  maxHeightEdit,
  shadowEdit,
  backupCountEdit,
  backupMinutesEdit,
  followPlayback = 201,
  autoScroll,
  findMoved,
  autoSave,
  groupDropped,
  saturate,
  showMiddle,
  rulerFrames,
  rulerTime,
  labelFrames,
  labelTime,
  layersLarge,
  layersMedium,
  layersSmall,
  divideGroups,
  midpointAtCursor,
  pairMove,
};

constexpr DialogItem items[] = {
    {controlLabel, versionLabel, {7, 7, 120, 10}},

    {controlGroupBox, 0, {7, 21, 120, 44}, "Time unit of the timeline"},
    {controlRadioButton, rulerFrames, {15, 35, 106, 12}, "Frame", controlGroupStart},
    {controlRadioButton, rulerTime, {15, 48, 106, 12}, "Hour:minute:second"},
    {controlGroupBox, 0, {7, 71, 120, 44}, "Time unit of the settings window"},
    {controlRadioButton, labelFrames, {15, 85, 106, 12}, "Frame", controlGroupStart},
    {controlRadioButton, labelTime, {15, 98, 106, 12}, "Hour:minute:second"},
    {controlGroupBox, 0, {7, 121, 120, 59}, "Layer height"},
    {controlRadioButton, layersLarge, {15, 135, 106, 12}, "Large", controlGroupStart},
    {controlRadioButton, layersMedium, {15, 148, 106, 12}, "Medium"},
    {controlRadioButton, layersSmall, {15, 161, 106, 12}, "Small"},

    {controlGroupBox, 0, {135, 21, 218, 70}, "Timeline"},
    {controlCheckBox, followPlayback, {143, 35, 204, 12}, "Move the edit cursor with playback"},
    {controlCheckBox, autoScroll, {143, 48, 204, 12}, "Scroll the timeline with the cursor"},
    {controlCheckBox, groupDropped, {143, 61, 204, 12}, "Group the objects created by one file drop"},
    {controlCheckBox, findMoved, {143, 74, 204, 12}, "Look for moved media files in the project's folder"},
    {controlGroupBox, 0, {135, 97, 218, 83}, "Editing"},
    {controlCheckBox, showMiddle, {143, 111, 204, 12}, "Show the middle value at new midpoints and cuts"},
    {controlCheckBox, midpointAtCursor, {143, 124, 204, 12}, "Add midpoints and split always at the cursor"},
    {controlCheckBox, pairMove, {143, 137, 204, 12}, "Drag the edges of touching objects together"},
    {controlCheckBox, divideGroups, {143, 150, 204, 12}, "Make split pieces separate groups"},
    {controlCheckBox, saturate, {143, 163, 204, 12}, "Saturate in the RGB color space"},

    {controlGroupBox, 0, {7, 186, 120, 86}, "Backup"},
    {controlCheckBox, autoSave, {15, 202, 106, 12}, "Automatic backup"},
    {controlLabel, 0, {15, 220, 64, 10}, "Interval (minutes)"},
    {controlEdit, backupMinutesEdit, {81, 218, 38, 14}, "", controlNumber},
    {controlLabel, 0, {15, 237, 64, 10}, "Number of files"},
    {controlEdit, backupCountEdit, {81, 235, 38, 14}, "", controlNumber},

    {controlGroupBox, 0, {135, 186, 218, 86}, "Memory"},
    {controlLabel, 0, {143, 203, 110, 10}, "Open video file handles"},
    {controlEdit, handlesEdit, {257, 201, 38, 14}, "", controlNumber},
    {controlLabel, 0, {143, 220, 110, 10}, "Cached images"},
    {controlEdit, imagesEdit, {257, 218, 38, 14}, "", controlNumber},
    {controlLabel, 0, {143, 237, 110, 10}, "Largest image *"},
    {controlEdit, maxWidthEdit, {257, 235, 38, 14}, "", controlNumber},
    {controlLabel, 0, {295, 237, 12, 10}, "\u00D7", controlCentred},
    {controlEdit, maxHeightEdit, {307, 235, 38, 14}, "", controlNumber},
    {controlLabel, 0, {143, 254, 110, 10}, "Shadow map size *"},
    {controlEdit, shadowEdit, {257, 252, 38, 14}, "", controlNumber},

    {controlLabel, 0, {7, 282, 230, 10}, "* takes effect at the next start"},
    {controlButton, dialogOk, {249, 280, 50, 14}, "OK", controlDefault},
    {controlButton, dialogCancel, {303, 280, 50, 14}, "Cancel"},
};
constexpr DialogTable table{"Preferences", {360, 301}, items};

struct CheckRow {
  int id;
  int32_t Preferences::*value;
};
constexpr CheckRow checks[] = {
    {followPlayback, &Preferences::sync_play_cursor},
    {autoScroll, &Preferences::auto_scroll},
    {groupDropped, &Preferences::group_open},
    {findMoved, &Preferences::path_modify},
    {showMiddle, &Preferences::divide_mode},
    {midpointAtCursor, &Preferences::add_pt_mode},
    {pairMove, &Preferences::pair_move},
    {divideGroups, &Preferences::divide_group},
    {saturate, &Preferences::saturation},
    {autoSave, &Preferences::auto_save},
};

struct RadioRow {
  int firstId, count;
  int32_t Preferences::*value;
};
constexpr RadioRow radios[] = {
    {rulerFrames, 2, &Preferences::edit_time_type},
    {labelFrames, 2, &Preferences::config_time_type},
    {layersLarge, 3, &Preferences::small_layer},
};

/// Kept in the store alone, under `key`.
struct StoredRow {
  int id;
  const char* key;
  int fallback;
};
constexpr StoredRow videoHandles{handlesEdit, "avi_handle_max", defaultMediaHandles};
constexpr StoredRow cachedImages{imagesEdit, "image_cache_max", defaultImageCacheSlots};
constexpr StoredRow maxWidth{maxWidthEdit, "max_w", 0}, maxHeight{maxHeightEdit, "max_h", 0};
constexpr StoredRow shadowMap{shadowEdit, "shadow_max", defaultShadowMax};

constexpr int firstBuildFindingMoved = 9930;  // of the host
constexpr int maxBackups = 1000, maxMinutes = 10000;

int stored(const StoredRow& row) {
  return environment.hostFunctions->readIntSetting(environment.mainFilter, row.key, row.fallback);
}

/// Whether the value is new.
bool store(const StoredRow& row, int value) {
  if (value == stored(row)) return false;
  environment.hostFunctions->writeIntSetting(environment.mainFilter, row.key, value);
  return true;
}

int choiceOf(const RadioRow& row) {
  int value = preferences.*row.value % row.count;
  return value < 0 ? value + row.count : value;
}

void fill(Window* dialog) {
  setWindowText(controlOf(dialog, versionLabel), "Zenlay version 0.92");
  for (const RadioRow& row : radios) tick(dialog, row.firstId + choiceOf(row), true);
  for (const CheckRow& row : checks) tick(dialog, row.id, preferences.*row.value != 0);
  enableWindow(controlOf(dialog, findMoved), environment.hostBuild >= firstBuildFindingMoved);
  showNumber(dialog, backupMinutesEdit, preferences.auto_save_time);
  showNumber(dialog, backupCountEdit, preferences.auto_save_num);
  for (const StoredRow& row : {videoHandles, cachedImages, shadowMap}) showNumber(dialog, row.id, stored(row));
  if (stored(maxWidth) == 0 || stored(maxHeight) == 0) return;
  showNumber(dialog, maxWidthEdit, stored(maxWidth));
  showNumber(dialog, maxHeightEdit, stored(maxHeight));
}

void takeMemory(Window* dialog) {
  int handles = std::clamp(numberIn(dialog, handlesEdit), 1, maxMediaHandles);
  if (store(videoHandles, handles)) setHandleLimit(handles);
  int images = std::clamp(numberIn(dialog, imagesEdit), 0, maxCacheSlots);
  if (store(cachedImages, images)) initialiseImageCache(images);
  int width = std::max(numberIn(dialog, maxWidthEdit), 0), height = std::max(numberIn(dialog, maxHeightEdit), 0);
  if (width == 0 || height == 0) width = height = 0;
  store(maxWidth, width);
  store(maxHeight, height);
  store(shadowMap, std::max(numberIn(dialog, shadowEdit), 0));
}

void take(Window* dialog) {
  const int layerHeight = preferences.small_layer;
  for (const CheckRow& row : checks) preferences.*row.value = isTicked(dialog, row.id);
  for (const RadioRow& row : radios)
    for (int i = 0; i < row.count; i++)
      if (isTicked(dialog, row.firstId + i)) preferences.*row.value = i;
  preferences.auto_save_num = std::clamp(numberIn(dialog, backupCountEdit), 0, maxBackups);
  preferences.auto_save_time = std::clamp(numberIn(dialog, backupMinutesEdit), 1, maxMinutes);
  configureBackups();
  pruneBackups();
  takeMemory(dialog);
  if (preferences.small_layer != layerHeight) applyLayerHeight();
  redrawTimeline();
  relayoutSettings();
}

intptr_t procedure(Window* dialog, uint32_t message, intptr_t first, intptr_t, void*) {
  if (message == messageDialogOpened) fill(dialog);
  if (isPress(message, first, dialogOk)) take(dialog);
  return 0;
}

}  // namespace

bool editPreferences() { return runDialog(table, dialogOwner(), {}, procedure, nullptr) == dialogOk; }

}  // namespace zenlay
