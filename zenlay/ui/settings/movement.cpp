// The movement of a track: its menu, its parameter, and the tracks that are linked to it.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/objects.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/menus/menus.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay {

int (*movementScriptOptions)(int script);

namespace settings {
namespace {

using namespace platform;

constexpr int accelerationItem = modeAccelerationBit + 1, decelerationItem = modeDecelerationBit + 1;
constexpr int scriptShift = 16;
constexpr int32_t speedBits = modeAccelerationBit | modeDecelerationBit;
constexpr int maxLinked = 2;

struct Movement {
  bool takesSpeed;  // the options acceleration and deceleration
  bool takesParameter;
  int32_t options;  // those it begins with
};

/// By mode number. "Acceleration movement" means to begin and end slowly.
constexpr Movement movements[] = {
    {false, false, 0},                          // none
    {true, false, 0},                           // rectilinear
    {true, false, 0},                           // curve
    {false, false, 0},                          // teleportation
    {true, false, 0},                           // ignored midpoints
    {false, false, 0},                          // specified amount
    {false, true, 0},                           // random
    {true, false, speedBits}, {true, true, 0},  // repetitive
};

Movement movementOf(int32_t mode) {
  int number = mode & modeNumber;
  if (number == modeScript) {
    int options = movementScriptOptions ? movementScriptOptions(mode >> scriptShift) : 0;
    return {(options & movementTakesSpeed) != 0, (options & movementTakesParameter) != 0, 0};
  }
  return number < static_cast<int>(std::size(movements)) ? movements[number] : Movement{};
}

/// Without the options.
int32_t modeAlone(int32_t mode) { return mode & ~speedBits; }

/// The row and those linked to it.
struct Ring {
  int rows[maxLinked + 1];
  int count = 0;
};

Ring ringOf(int row, bool alone) {
  Ring ring;
  ring.rows[ring.count++] = row;
  RowOwner owner = trackOwner(row);
  const EffectDefinition* d = owner.slot < 0 ? nullptr : effectOf(owner.slot);
  if (alone || !d || !isBuiltIn(d) || !d->track_link) return ring;
  int first = row - owner.index;
  for (int t = owner.index; ring.count <= maxLinked && d->track_link[t];) {
    t += d->track_link[t];
    if (t < 0 || t >= d->track_count || first + t == row) break;
    ring.rows[ring.count++] = first + t;
  }
  return ring;
}

bool shiftHeld() { return mouseState() & mouseShift; }

/// Switching to or from a movement by an amount, or to none, gives the end value another meaning.
void setMode(TrackLine& row, int32_t mode, int32_t param) {
  int before = row.mode & modeNumber, after = mode & modeNumber;
  row.mode = mode;
  row.param = param;
  if (after == modeNone || (before == modeAmount && after != modeAmount))
    row.end.value = row.start.value;
  else if (after == modeAmount && before != modeAmount)
    row.end.value = 0;
  Updating updating;
  showTrackValues(row);
}

void applyMode(int row, int32_t mode, int32_t param) {
  Ring ring = ringOf(row, shiftHeld());
  for (int i = 0; i < ring.count; i++) setMode(state.tracks[ring.rows[i]], mode, param);
  endSettingsEdit();
  sendCommand(commandApplySettings, row | changedMode);
}

/// Checks the mode's entry. Scripts that came since the menu was made are added.
void showMode(Menu* menu, int32_t mode) {
  auto check = [menu, mode](int32_t entry) { checkMenuItem(menu, entry + 1, modeAlone(mode) == entry); };
  for (int32_t entry = 0; entry < static_cast<int32_t>(std::size(movements)); entry++) check(entry);
  for (int script = 0; script < movementScriptCount(); script++) {
    int32_t entry = script << scriptShift | modeScript;
    const char* name = movementScriptName(script);
    if (name && !hasMenuItem(menu, entry + 1)) addMenuItem(menu, name, entry + 1);
    check(entry);
  }
}

void prepareMenu(Menu* menu, const TrackLine& row) {
  Movement movement = movementOf(row.mode);
  showMode(menu, row.mode);
  enableMenuItem(menu, accelerationItem, movement.takesSpeed);
  enableMenuItem(menu, decelerationItem, movement.takesSpeed);
  checkMenuItem(menu, accelerationItem, row.mode & modeAccelerationBit);
  checkMenuItem(menu, decelerationItem, row.mode & modeDecelerationBit);
  char text[40] = "Setting";
  if (movement.takesParameter) snprintf(text, sizeof text, "Setting [%d]", row.param);
  setMenuText(menu, settingsMovement, text);
  enableMenuItem(menu, settingsMovement, movement.takesParameter);
}

void chooseItem(int row, int id) {
  const TrackLine& track = state.tracks[row];
  if (id == accelerationItem || id == decelerationItem) {
    if (movementOf(track.mode).takesSpeed) applyMode(row, track.mode ^ (id - 1), track.param);
  } else if (id == settingsMovement) {
    postMessage(state.window, platform::messageCommand, settingsMovement, row);
  } else if (id > 0 && modeAlone(track.mode) != id - 1) {
    applyMode(row, (id - 1) | movementOf(id - 1).options, 0);
  }
}

}  // namespace

void openMovementMenu(int row) {
  if (trackOwner(row).slot < 0) return;
  if (mouseState() & mouseAlt) {
    editMovementParameter(row);
    return;
  }
  Menu* menu = contextMenu(menuMovement);
  if (!menu) return;
  prepareMenu(menu, state.tracks[row]);
  int object = currentObject, id = showMenu(menu, state.window, cursorPosition());
  if (id && object == currentObject && trackOwner(row).slot >= 0) chooseItem(row, id);
}

void editMovementParameter(int row) {
  if (trackOwner(row).slot < 0 || !movementOf(state.tracks[row].mode).takesParameter) return;
  std::string text = std::to_string(state.tracks[row].param);
  int object = currentObject;
  bool alone = shiftHeld();
  if (!askText("Move frame interval", text, textBoxSmall) || object != currentObject || trackOwner(row).slot < 0)
    return;
  Ring ring = ringOf(row, alone);
  int32_t param = atoi(text.c_str());
  for (int i = 0; i < ring.count; i++) state.tracks[ring.rows[i]].param = param;
  endSettingsEdit();
  sendCommand(commandApplySettings, row | changedMode);
}

}  // namespace settings
}  // namespace zenlay
