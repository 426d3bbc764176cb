#include "zenlay/ui/menus/menus.h"

#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/clipboard.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/menus/fill.h"
#include "zenlay/ui/menus/tables.h"
#include "zenlay/ui/timeline/frame_selection.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

platform::Menu* menus[contextMenus];

// ---- What the timeline's menus show when they open ----

struct ToggleItem {
  int id;
  int32_t* preference;
};
constexpr ToggleItem toggleItems[] = {
    {commandToggleBeatGrid, &preferences.grid.grid},        {commandToggleGrid2d, &preferences.grid.grid2d},
    {commandToggleGrid3d, &preferences.grid.grid3d},        {commandToggleOutOfArea, &preferences.grid.out_of_area},
    {commandToggleCameraGui, &preferences.camera_gui},      {commandToggleObjectRange, &preferences.object_range},
    {commandToggleTrackSelected, &preferences.config_move}, {commandToggleSnap, &preferences.object_snap},
    {commandToggleFastPreview, &preferences.fast_preview},
};

/// Of the clicked layer.
bool layerHas(uint32_t flag) { return layers[clickPosition.layer].flags & flag; }
bool firstSelectedHas(uint32_t flag) { return !selection().empty() && objects[selection().front()].flags & flag; }

struct CheckedItem {
  int id;
  bool (*checked)();
};
constexpr CheckedItem checkedItems[] = {
    {commandLockLayer, [] { return layerHas(layerLocked); }},
    {commandToggleLayer, [] { return !layerHas(layerHidden); }},
    {commandLinkCoordinates, [] { return layerHas(layerCoordinateLink); }},
    {commandClipLayer, [] { return layerHas(layerClipAbove); }},
    {commandClipObject, [] { return firstSelectedHas(objectClipAbove); }},
    {commandCameraTarget, [] { return firstSelectedHas(objectCameraTarget); }},
};

bool hasFrames() { return timelineView.sceneLength > 0; }

bool anySelected(bool (*wanted)(const ObjectRecord&)) {
  for (int object : selection())
    if (wanted(objects[object])) return true;
  return false;
}

struct GreyedItem {
  int id;
  bool (*enabled)();
};
constexpr GreyedItem greyedItems[] = {
    {commandUndo, [] { return undoSteps() > 0; }},
    {commandPaste, [] { return clipboardEntries() > 0; }},
    {commandCut, [] { return frameSelection() != noFrames; }},
    {commandRemoveMidpoint, [] { return onTimeline(clickPosition.section); }},
    {commandUngroup, [] { return anySelected([](const ObjectRecord& o) { return o.group != 0; }); }},
    {commandSpaceMidpointsByTime, [] { return anySelected([](const ObjectRecord& o) { return o.chainHead >= 0; }); }},
    {commandSceneSettings, [] { return environment.projectOpen; }},
    {commandLockLayer, hasFrames},
    {commandToggleLayer, hasFrames},
    {commandRenameLayer, hasFrames},
    {commandShowOtherLayers, hasFrames},
    {commandInsertLayer, hasFrames},
    {commandDeleteLayer, hasFrames},
    {commandLinkCoordinates, hasFrames},
    {commandClipLayer, hasFrames},
};

void showState(platform::Menu* menu) {
  for (const ToggleItem& item : toggleItems) platform::checkMenuItem(menu, item.id, *item.preference != 0);
  for (const CheckedItem& item : checkedItems) platform::checkMenuItem(menu, item.id, item.checked());
  for (const GreyedItem& item : greyedItems) platform::enableMenuItem(menu, item.id, item.enabled());
}

ContextMenu at(int menu) { return static_cast<ContextMenu>(menu); }

void makeGenerated() {
  for (int menu = 0; menu < contextMenus; menu++) {
    if (!isGenerated(at(menu))) continue;
    platform::destroyMenu(menus[menu]);
    menus[menu] = platform::createMenu(menuRows(at(menu)));
  }
  fillMenus(menus);
}

}  // namespace

void createMenus() {
  for (int menu = 0; menu < contextMenus; menu++)
    if (!menus[menu]) menus[menu] = platform::createMenu(menuRows(at(menu)));
  makeGenerated();
}

void destroyMenus() {
  for (platform::Menu*& menu : menus) {
    platform::destroyMenu(menu);
    menu = nullptr;
  }
}

void refillAliasMenus() {
  if (menus[menuRow]) makeGenerated();
}

platform::Menu* contextMenu(ContextMenu menu) { return menus[menu]; }

int showContextMenu(ContextMenu menu, platform::Window* owner, platform::Point screen) {
  showState(menus[menu]);
  return platform::showMenu(menus[menu], owner, screen);
}

ContextMenu effectMenuOf(int object) {
  uint32_t flags = objects[object].flags;
  bool mediaOrEffect = flags & (objectDrawn | objectFilterEffect);
  if (flags & objectAudio) return mediaOrEffect ? menuAudioEffects : menuAudioFilters;
  if (mediaOrEffect) return menuVideoEffects;
  return flags & objectControl ? menuCameraEffects : menuVideoFilters;
}

}  // namespace zenlay
