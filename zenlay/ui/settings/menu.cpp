// The window's menus, and what their entries and the header's buttons ask for.
#include <string>

#include "zenlay/files/default_settings.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/menus/tables.h"
#include "zenlay/ui/project/new_alias.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay {
namespace settings {

using namespace platform;

namespace {

constexpr int headerBottom = 31;

bool hasRoom() { return takesEffects(currentObject) && usedSlots(currentObject) < maxSlots; }

/// A choice made while the object was another's is dropped.
void runChoice(const Menu* menu, Point screen) {
  int object = currentObject, id = menu ? showMenu(menu, state.window, screen) : 0;
  if (id && object == currentObject && hasObject()) runSettingsItem(id);
}

void openSlotMenu(int slot, Point screen) {
  Menu* menu = contextMenu(effectMenuOf(currentObject));
  if (!menu) return;
  state.clickedSlot = slot;
  std::string name = std::string("< ") + effectOf(slot)->name + " >";
  setMenuText(menu, settingsEffectName, name.c_str());
  enableMenuItem(menu, settingsEffectName, false);
  enableMenuItem(menu, submenuAddEffect, hasRoom());
  enableMenuItem(menu, settingsUndo, undoSteps() > 0);
  bool shows = objects[currentObject].flags & objectDrawn && effectOf(slot)->flag & effectDrawing;
  enableMenuItem(menu, settingsRemoveEffect, slot != 0 && !shows);
  enableMenuItem(menu, settingsMoveEffectUp, canMoveSlot(currentObject, slot, -1));
  enableMenuItem(menu, settingsMoveEffectDown, canMoveSlot(currentObject, slot, 1));
  runChoice(menu, screen);
}

/// A media effect's alias takes the drawing effect along and is named after that.
void createSlotAlias() {
  bool media = state.clickedSlot == 0 && objects[currentObject].flags & objectDrawn;
  const std::string name = effectOf(media ? lastSlot(currentObject) : state.clickedSlot)->name;
  createAlias(("Creation of alias <" + name + ">").c_str(), name, currentObject, state.clickedSlot);
}

struct ItemRow {
  int id;
  void (*run)();
};

constexpr ItemRow items[] = {
    {idJumpToStart, [] { sendCommand(commandJumpToStart, objects[currentObject].start); }},
    {idJumpToEnd, [] { sendCommand(commandJumpToEnd, objects[currentObject].end); }},
    {idAddEffect, [] { openAddEffectMenu(); }},
    {idChangeSource, [] { openSourceMenu(); }},
    {settingsRestoreDefaults, [] { sendCommand(commandRestoreDefaults, state.clickedSlot); }},
    {settingsSaveDefaults, [] { writeDefaults(currentObject, state.clickedSlot); }},
    {settingsCreateAlias, createSlotAlias},
    {settingsChangeLength, [] { sendHostCommand(commandChangeLength); }},
    {settingsAddMidpoint, [] { sendCommand(commandAddMidpointAtCursor); }},
    {settingsUndo, [] { sendCommand(commandUndo); }},
    {settingsMoveEffectUp, [] { sendCommand(commandMoveEffectUp, state.clickedSlot); }},
    {settingsMoveEffectDown, [] { sendCommand(commandMoveEffectDown, state.clickedSlot); }},
    {settingsCameraTarget, [] { sendHostCommand(commandCameraTarget); }},
    {settingsClipAbove, [] { sendHostCommand(commandClipObject); }},
    {settingsSpaceMidpoints, [] { sendHostCommand(commandSpaceMidpointsByTime); }},
    {settingsRemoveEffect, [] { sendCommand(commandRemoveEffect, state.clickedSlot); }},
};

}  // namespace

void openContextMenu(Point client) {
  if (!hasObject()) return;
  Point screen = clientToScreen(state.window, client);
  if (client.y <= headerBottom)
    runChoice(contextMenu(menuSettingsHeader), screen);
  else if (int slot = slotAt(client.y); slot >= 0)
    openSlotMenu(slot, screen);
}

void openSourceMenu() {
  bool audio = objects[currentObject].flags & objectAudio;
  runChoice(contextMenu(audio ? menuAudioSource : menuVideoSource), cursorPosition());
}

bool runSettingsItem(int id) {
  if (!hasObject()) return false;
  if (id >= menuEffect && id < menuAlias) {
    sendCommand(commandAddEffect, id - menuEffect);
    return true;
  }
  if (id >= menuAlias && id < idTrackName) {
    sendCommand(commandAddAlias, id - menuAlias);
    return true;
  }
  for (const ItemRow& item : items) {
    if (item.id != id) continue;
    item.run();
    return true;
  }
  return false;
}

}  // namespace settings

using namespace settings;

void openAddEffectMenu() {
  if (!hasObject() || !hasRoom()) return;
  platform::Menu* menu = contextMenu(effectMenuOf(currentObject));
  runChoice(menu ? platform::findSubmenu(menu, textAddEffect) : nullptr, platform::cursorPosition());
}

}  // namespace zenlay
