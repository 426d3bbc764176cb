// The window's values into the model: undo, the rest of the chain, linked coordinates, the selection.
#include <algorithm>
#include <vector>

#include "zenlay/effects/registry.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/settings/state.h"
#include "zenlay/ui/settings/window.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

using namespace settings;

constexpr intptr_t trackChanges = changedStart | changedEnd | changedMode;
constexpr intptr_t slotChanges = changedSlot | changedFold;
constexpr intptr_t indexBits = 0xFFFF;

/// One head per selected chain other than the current object's own.
std::vector<int> selectedHeads() {
  std::vector<int> heads = commandTargetHeads();
  std::erase(heads, headOf(currentObject));
  return heads;
}

/// The slot of another object that holds the same effect: the same one of several.
int sameSlot(int object, int slot) {
  const ObjectRecord& current = objects[currentObject];
  int32_t effect = current.slots[slot].effect;
  auto isSame = [effect](const EffectSlot& s) { return s.effect == effect; };
  auto before = std::count_if(current.slots, current.slots + slot, isSame);
  for (int i = 0; i < maxSlots; i++)
    if (isSame(objects[object].slots[i]) && before-- == 0) return i;
  return -1;
}

void recordForUndo(int object) {
  recordUndo(object, undoSnapshot | undoChain);
  recordLinkedCoordinates(object);
}

void recordStep(const std::vector<int>& touched) {
  beginUndoStep();
  for (int object : touched) recordForUndo(object);
  recordForUndo(currentObject);
}

/// The rows whose movement the user has changed: `row` and maybe those linked to it.
std::vector<int> changedModes(int row) {
  const ObjectRecord& object = objects[currentObject];
  std::vector<int> rows;
  for (int k = 0; k < state.trackRows; k++)
    if (k == row || state.tracks[k].mode != object.modes[k] || state.tracks[k].param != object.params[k])
      rows.push_back(k);
  return rows;
}

/// Writes values, or only tells whether that would change any.
struct Writer {
  bool writes;
  bool changes = false;
  void put(int32_t& to, int32_t value) {
    changes |= to != value;
    if (writes) to = value;
  }
  void putFlags(int object, int slot, uint8_t flags) {
    changes |= slotFlagsOf(object, slot) != flags;
    if (writes) setSlotFlags(object, slot, flags);
  }
};

/// One item of the window: a SettingsChange and its index.
struct Item {
  intptr_t change;
  int index;
  std::vector<int> modeRows;  // of changedMode
};

void writeTrack(Writer& writer, int row) {
  ObjectRecord& object = objects[currentObject];
  const TrackLine& line = state.tracks[row];
  writer.put(object.startValues[row], line.start.value);
  writer.put(object.endValues[row], line.end.value);
  writer.put(object.modes[row], line.mode);
  writer.put(object.params[row], line.param);
}

/// What the window has not changed it shows as the model has it.
void writeCurrent(Writer& writer, const Item& item) {
  if (item.change & (changedStart | changedEnd)) writeTrack(writer, item.index);
  for (int row : item.modeRows) writeTrack(writer, row);
  if (item.change == changedCheck)
    writer.put(objects[currentObject].checks[item.index], state.checks[item.index].value);
  if (item.change & slotChanges) writer.putFlags(currentObject, item.index, state.slots[item.index].flags);
}

void copyMode(Writer& writer, ObjectRecord& to, int track, const TrackLine& row) {
  int before = to.modes[track] & modeNumber, after = row.mode & modeNumber;
  writer.put(to.modes[track], row.mode);
  writer.put(to.params[track], row.param);
  if (before == modeAmount && after != modeAmount) writer.put(to.endValues[track], to.startValues[track]);
  if (before != modeAmount && after == modeAmount) writer.put(to.endValues[track], 0);
}

/// One item of the current object into every section of a selected one; a movement there stays continuous.
void copyTrackItem(Writer& writer, int head, intptr_t change, int row) {
  RowOwner owner = trackOwner(row);
  int slot = sameSlot(head, owner.slot);
  if (slot < 0) return;
  for (int section : sectionsOf(head)) {
    ObjectRecord& to = objects[section];
    int track = trackOf(to, slot, owner.index);
    if (change == changedStart) writer.put(to.startValues[track], state.tracks[row].start.value);
    if (change == changedEnd) writer.put(to.endValues[track], state.tracks[row].end.value);
    if (change == changedMode) copyMode(writer, to, track, state.tracks[row]);
    if (change != changedMode && writer.writes) syncChain(section);
  }
}

void copyCheck(Writer& writer, int head, int row) {
  RowOwner owner = checkOwner(row);
  int slot = sameSlot(head, owner.slot);
  if (slot < 0) return;
  for (int section : sectionsOf(head))
    writer.put(objects[section].checks[checkOf(objects[section], slot, owner.index)], state.checks[row].value);
}

void copySlotFlags(Writer& writer, int head, intptr_t change, int slot) {
  if (slot >= usedSlots(head)) return;
  uint8_t bits = change == changedFold ? slotFolded : slotEnabled | slotHandles;
  writer.putFlags(head, slot,
                  static_cast<uint8_t>((slotFlagsOf(head, slot) & ~bits) | (state.slots[slot].flags & bits)));
}

void copyItem(Writer& writer, int head, const Item& item) {
  if (item.change == changedMode)
    for (int row : item.modeRows) copyTrackItem(writer, head, item.change, row);
  else if (item.change & trackChanges)
    copyTrackItem(writer, head, item.change, item.index);
  else if (item.change == changedCheck)
    copyCheck(writer, head, item.index);
  else
    copySlotFlags(writer, head, item.change, item.index);
}

bool changesAnything(const Item& item, const std::vector<int>& selected) {
  Writer look{false};
  writeCurrent(look, item);
  for (int head : selected) copyItem(look, head, item);
  return look.changes;
}

void write(const Item& item, const std::vector<int>& selected) {
  Writer writer{true};
  const bool tracks = item.change & trackChanges;
  writeCurrent(writer, item);
  syncChain(currentObject);
  if (tracks) followLinkedCoordinates(currentObject, false);
  for (int head : selected) {
    copyItem(writer, head, item);
    syncChain(head);
    if (tracks) followLinkedCoordinates(head, false);
    redrawChain(head);
  }
}

/// Whether that changed a track of the slot.
bool writeDefaultTracks(int slot, const EffectDefinition* d) {
  ObjectRecord& object = objects[currentObject];
  Writer writer{true};
  for (int t = 0; t < d->track_count; t++) {
    const int track = trackOf(object, slot, t), value = trackDefault(d, t);
    writer.put(object.startValues[track], value);
    writer.put(object.endValues[track], value);
    writer.put(object.modes[track], modeNone);
    writer.put(object.params[track], 0);
  }
  return writer.changes;
}

bool hasItem(intptr_t change, int index) {
  switch (change) {
    case changedStart:
    case changedEnd:
    case changedMode:
      return trackOwner(index).slot >= 0;
    case changedCheck:
      return checkOwner(index).slot >= 0;
    case changedSlot:
    case changedFold:
      return index < state.usedSlots;
    default:
      return false;
  }
}

}  // namespace

int applySettings(intptr_t parameter) {
  intptr_t change = parameter & ~indexBits;
  int index = static_cast<int>(parameter & indexBits);
  if (!hasObject() || !hasItem(change, index)) return 0;
  Item item{change, index, change == changedMode ? changedModes(index) : std::vector<int>{}};
  const std::vector<int> selected = selectedHeads();
  if (!changesAnything(item, selected)) return 0;
  if (state.lastObject != currentObject || state.lastParameter != parameter) recordStep(selected);
  state.lastObject = currentObject;
  state.lastParameter = parameter;

  write(item, selected);
  if (change & trackChanges) return trackChanged();
  if (change == changedCheck) checkChanged(index);
  redrawChain(currentObject);
  return change != changedFold;
}

void endSettingsEdit() { state.lastObject = -1; }

int trackChanged() {
  if (!hasObject()) return 0;
  redrawChain(currentObject);
  return 1;
}

int restoreDefaults(int slot) {
  const EffectDefinition* d = slot >= 0 && slot < maxSlots ? effectOf(slot) : nullptr;
  if (!d) return 0;
  return commands::inOneStep([=] {
    recordForUndo(currentObject);
    if (!writeDefaultTracks(slot, d)) return 0;
    syncChain(currentObject);
    followLinkedCoordinates(currentObject, false);
    refreshSettings();
    return trackChanged();
  });
}

}  // namespace zenlay
