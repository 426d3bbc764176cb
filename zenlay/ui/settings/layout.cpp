// What the window shows: the layout of an object's effects, the values read from the model.
#include <algorithm>

#include "platform/icons.h"
#include "zenlay/effects/registry.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/order.h"
#include "zenlay/model/slots.h"
#include "zenlay/render/binding.h"
#include "zenlay/render/effect_commands.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay {
namespace settings {
namespace {

using namespace platform;

constexpr int firstBlock = 28;
constexpr int blockHeader = 18;  // from a block's top to its first row
constexpr int trackHeight = 25, checkHeight = 21, emptyHeight = 2, toggleWidth = 20;

LayoutKey layoutKeyOf(int object) {
  LayoutKey key{};
  key.head = headOf(object);
  for (int slot = 0; slot < maxSlots; slot++) {
    key.effects[slot] = objects[object].slots[slot].effect;
    key.folded[slot] = slotFlagsOf(object, slot) & slotFolded;
  }
  return key;
}

void setLimits(TrackRowState& side, const EffectDefinition* d, int t) {
  side.scale = trackScale(d, t);
  side.fallback = trackDefault(d, t);
  side.minimum = trackMinimum(d, t);
  side.maximum = trackMaximum(d, t);
  bool ownBar = isBuiltIn(d) && d->track_bar_min && d->track_bar_max;
  int low = ownBar ? d->track_bar_min[t] : side.minimum, high = ownBar ? d->track_bar_max[t] : side.maximum;
  setControlRange(side.bar, low / side.multiplier, high / side.multiplier, barPage);
}

int layTracks(int slot, const EffectDefinition* d, int y, bool folded) {
  int first = objects[currentObject].slots[slot].firstTrack;
  for (int t = 0; t < d->track_count; t++) {
    TrackLine& row = state.tracks[first + t];
    setLimits(row.start, d, t);
    setLimits(row.end, d, t);
    setWindowText(row.name, d->track_names[t]);
    setControlTip(row.name, d->track_names[t]);  // the button may be too narrow
    showTrackRow(row, folded ? 0 : y);
    if (!folded) y += trackHeight;
  }
  state.trackRows += d->track_count;
  return y;
}

int layChecks(int slot, const EffectDefinition* d, int y, bool folded) {
  int first = objects[currentObject].slots[slot].firstCheck;
  int toggles = 0;  // side by side on the line above y
  for (int c = 0; c < d->check_count; c++) {
    CheckLine& row = state.checks[first + c];
    row.kind = d->check_defaults ? d->check_defaults[c] : 0;
    toggles = row.kind == checkToggle ? toggles + 1 : 0;
    if (!folded && toggles < 2) y += checkHeight;
    Point at{std::max(toggles - 1, 0) * toggleWidth, y - checkHeight};
    showCheckRow(row, folded ? nullptr : d->check_names[c], at);
    setWindowText(row.label, "");
    setControlSwatch(row.label, -1);
    if (row.kind == checkDropDown) setControlValue(row.list, -1);
  }
  state.checkRows += d->check_count;
  return y;
}

int layCustomControls(int slot, const EffectDefinition* d, int y, bool folded) {
  if (!isBuiltIn(d) || !d->show_controls) return y;
  if (folded) {
    hideEffectControls(currentObject, slot);
    return y;
  }
  return y + showEffectControls(currentObject, slot, state.window, controlsPlace, idCustom + customControls * slot, y);
}

int laySlot(int slot, int y) {
  const EffectDefinition* d = effectOf(slot);
  bool folded = slotFlagsOf(currentObject, slot) & slotFolded;
  state.slots[slot].effect = objects[currentObject].slots[slot].effect;
  showSlotRow(state.slots[slot], y, d->name);
  int top = y + blockHeader;
  y = layTracks(slot, d, top, folded);
  y = layChecks(slot, d, y, folded);
  y = layCustomControls(slot, d, y, folded);
  return y == top || d->track_count + d->check_count == 0 ? y + emptyHeight : y;
}

/// Custom controls of effects that are no longer shown.
void hideForeignControls(const LayoutKey& before) {
  for (int slot = 0; slot < maxSlots; slot++) {
    int effect = before.effects[slot];
    if (before.head < 0 || effect < 0 || effect >= effectCount || !isBuiltIn(effectList[effect])) continue;
    bool stays = false;
    if (hasObject())
      for (const EffectSlot& used : objects[currentObject].slots) stays |= used.effect == effect;
    if (!stays && effectList[effect]->hide_controls) effectList[effect]->hide_controls();
  }
}

void hideRest() {
  for (int k = state.trackRows; k < maxTracks; k++) showTrackRow(state.tracks[k], 0);
  for (int m = state.checkRows; m < maxChecks; m++) showCheckRow(state.checks[m], nullptr, {});
  for (int slot = state.usedSlots; slot < maxSlots; slot++) {
    state.slots[slot].effect = -1;
    showSlotRow(state.slots[slot], 0, nullptr);
  }
}

void readSlotFlags() {
  for (int slot = 0; slot < state.usedSlots; slot++) {
    SlotLine& row = state.slots[slot];
    row.flags = slotFlagsOf(currentObject, slot);
    setControlValue(row.enable, (row.flags & slotEnabled) != 0);
    setControlIcon(row.fold, row.flags & slotFolded ? iconFoldClosed : iconFoldOpen);
    setControlIcon(row.handles, row.flags & slotHandles ? iconHandlesSet : iconHandlesClear);
  }
}

}  // namespace

constinit State state{};

bool hasObject() { return inUse(currentObject); }

EffectDefinition* effectOf(int slot) { return hasObject() ? slotEffect(&objects[currentObject], slot) : nullptr; }

RowOwner trackOwner(int row) {
  if (!hasObject() || row < 0 || row >= state.trackRows) return {-1, 0};
  for (int slot = 0; const EffectDefinition* d = slot < maxSlots ? effectOf(slot) : nullptr; slot++) {
    int first = objects[currentObject].slots[slot].firstTrack;
    if (row >= first && row < first + d->track_count) return {slot, row - first};
  }
  return {-1, 0};
}

RowOwner checkOwner(int row) {
  if (!hasObject() || row < 0 || row >= state.checkRows) return {-1, 0};
  for (int slot = 0; const EffectDefinition* d = slot < maxSlots ? effectOf(slot) : nullptr; slot++) {
    int first = objects[currentObject].slots[slot].firstCheck;
    if (row >= first && row < first + d->check_count) return {slot, row - first};
  }
  return {-1, 0};
}

int slotAt(int y) {
  int found = -1;
  for (int slot = 0; slot < state.usedSlots && state.slots[slot].y <= y; slot++) found = slot;
  return found;
}

void readValues() {
  const ObjectRecord& object = objects[currentObject];
  for (int k = 0; k < state.trackRows; k++) {
    TrackLine& row = state.tracks[k];
    row.mode = object.modes[k];
    row.param = object.params[k];
    row.start.value = object.startValues[k];
    row.end.value = row.mode ? object.endValues[k] : row.start.value;
    showTrackValues(row);
  }
  for (int m = 0; m < state.checkRows; m++) {
    CheckLine& row = state.checks[m];
    row.value = object.checks[m];
    setControlValue(row.kind == checkToggle ? row.toggle : row.box, row.value);
  }
  readSlotFlags();
  fillEffectControls();
}

void clearLayout() {
  hideForeignControls(state.layout);
  state.trackRows = state.checkRows = state.usedSlots = 0;
  hideRest();
  state.layout = {};
}

void layoutObject() {
  Updating updating;
  LayoutKey before = state.layout;
  state.layout = layoutKeyOf(currentObject);
  hideForeignControls(before);
  state.trackRows = state.checkRows = state.usedSlots = 0;
  int y = firstBlock;
  for (; state.usedSlots < maxSlots && effectOf(state.usedSlots); state.usedSlots++) y = laySlot(state.usedSlots, y);
  hideRest();
  state.height = y;
}

}  // namespace settings

using namespace settings;

void showObject(int object) {
  endSettingsEdit();
  currentObject = objectUnderEdit = inUse(object) ? object : -1;
  if (!state.window) return;
  if (currentObject < 0) {
    platform::showWindow(state.window, false);
    clearLayout();
    return;
  }
  if (state.layout == layoutKeyOf(currentObject))
    refreshSettings();
  else
    relayoutSettings();
}

void relayoutSettings() {
  endSettingsEdit();
  if (!state.window || !hasObject()) return;
  layoutObject();
  platform::setClientSize(state.window, {windowWidth, state.height});
  refreshSettings();
}

void refreshSettings() {
  endSettingsEdit();
  if (!state.window || !hasObject()) return;
  {
    Updating updating;
    readValues();
  }
  refreshSettingsHeader();
  if (!state.saving) platform::showWindow(state.window, true, false);
}

void settingsObjectChanged(int object) {
  if (hasObject() && inUse(object) && headOf(object) == headOf(currentObject)) showObject(currentObject);
}

}  // namespace zenlay
