// Check rows, slot headers and files dropped onto an effect.
#include "zenlay/effects/registry.h"
#include "zenlay/model/objects.h"
#include "zenlay/render/effect_commands.h"
#include "zenlay/ui/commands/command_ids.h"
#include "zenlay/ui/input/file_drop.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay::settings {

using namespace platform;

void checkClicked(Window* control) {
  for (int m = 0; m < state.checkRows; m++) {
    CheckLine& row = state.checks[m];
    if (row.box != control && row.toggle != control) continue;
    int32_t value = controlValue(control);
    if (value == (row.value != 0)) {
      sendCommand(commandCheckChanged, m);
      return;
    }
    row.value = value;
    endSettingsEdit();
    sendCommand(commandApplySettings, m | changedCheck);
    return;
  }
}

void slotClicked(int id) {
  int slot = id % 100;  // 4400, 4500 and 4600 + slot
  if (slot >= state.usedSlots) return;
  SlotLine& row = state.slots[slot];
  endSettingsEdit();
  switch (id - slot) {
    case idEnable:
      row.flags ^= slotEnabled;
      sendCommand(commandApplySettings, slot | changedSlot);
      break;
    case idFold:
      row.flags ^= slotFolded;
      sendCommand(commandApplySettings, slot | changedFold);
      relayoutSettings();
      return;
    case idHandles:
      row.flags ^= slotHandles;
      sendCommand(commandApplySettings, slot | changedSlot);
      break;
  }
  refreshSettings();
}

void filesDropped(const DroppedFiles& files) {
  int slot = slotAt(files.at.y);
  if (files.count < 1 || !hasObject() || slot < 0) return;
  if (sendCommand(slot << 16 | commandSetFile, reinterpret_cast<intptr_t>(files.paths[0].c_str())))
    tellOfFurtherFiles(files);
}

void fillEffectControls() {
  for (int slot = 0; slot < state.usedSlots; slot++) {
    const EffectDefinition* d = effectOf(slot);
    if (!d || !isBuiltIn(d) || !d->show_controls) continue;
    showEffectControls(currentObject, slot, state.window, controlsFill, 0, 0);
    const std::string title = windowText(state.slots[slot].enable);
    showSlotRow(state.slots[slot], state.slots[slot].y, title.c_str());
  }
}

}  // namespace zenlay::settings

namespace zenlay {

using namespace settings;

namespace {

int32_t effectCheck(EffectCommand command, RowOwner owner) { return command | owner.index << 16; }

int tellEffect(int row, EffectCommand command, intptr_t value) {
  RowOwner owner = checkOwner(row);
  return owner.slot < 0 ? 0 : callEffect(currentObject, owner.slot, effectCheck(command, owner), value);
}

}  // namespace

int pushButton(int row) { return tellEffect(row, commandPushed, 0); }

int dropDownChanged(int row) {
  if (checkOwner(row).slot < 0) return 0;
  int choice = platform::controlValue(state.checks[row].list);
  return choice < 0 ? 0 : tellEffect(row, commandDropDown, choice);
}

int checkChanged(int row) {
  return checkOwner(row).slot < 0 ? 0 : tellEffect(row, commandChecked, state.checks[row].value);
}

int setEffectFile(int slot, const char* path) {
  if (slot < 0 || slot >= maxSlots || !effectOf(slot) || !path) return 0;
  return callEffect(currentObject, slot, commandTakeFile, reinterpret_cast<intptr_t>(path));
}

int customControl(int id, int event) {
  int slot = (id - idCustom) / customControls;
  if (id < idCustom || id >= idCustomEnd || !effectOf(slot)) return 0;
  int number = (id - idCustom) % customControls;
  return callEffect(currentObject, slot, commandCustomControl | number << 16, event);
}

platform::Window* settingsControl(int object, int slot, int kind, int index) {
  if (!hasObject() || !inUse(object) || headOf(object) != headOf(currentObject)) return nullptr;
  const EffectDefinition* d = slot >= 0 && slot < state.usedSlots ? effectOf(slot) : nullptr;
  const EffectSlot* place = d ? &objects[currentObject].slots[slot] : nullptr;
  if (!d || index < 0) return nullptr;
  if (kind == slotTitle) return index == 0 ? state.slots[slot].enable : nullptr;
  if (kind >= 0 && kind < firstCheckControl && index < d->track_count) {
    const TrackLine& row = state.tracks[place->firstTrack + index];
    platform::Window* const controls[] = {row.name, row.start.box, row.end.box};
    return controls[kind];
  }
  if (kind < firstCheckControl || kind > checkToggleControl || index >= d->check_count) return nullptr;
  const CheckLine& row = state.checks[place->firstCheck + index];
  platform::Window* const controls[] = {row.box, row.label, row.button, row.list, row.toggle};
  return controls[kind - firstCheckControl];
}

bool setSettingsTrackRange(int object, int slot, int track, int minimum, int maximum, int denominator) {
  if (!settingsControl(object, slot, 0, track)) return false;
  TrackLine& row = state.tracks[objects[currentObject].slots[slot].firstTrack + track];
  Updating updating;
  for (TrackRowState* side : {&row.start, &row.end}) {
    side->minimum = minimum;
    side->maximum = maximum;
    side->scale = denominator == 0 ? 1 : denominator;
    platform::setControlRange(side->bar, minimum / side->multiplier, maximum / side->multiplier, barPage);
    platform::setControlRange(side->spin, minimum, maximum, 1);
  }
  showTrackValues(row);
  return true;
}

}  // namespace zenlay
