// An object's effect chain: up to 12 slots whose tracks, checks and extra data are packed in slot order.
#pragma once

#include "zenlay/model/records.h"

namespace zenlay {

/// Slot index, or -1 when a limit forbids it (the object is unchanged). Applies to every section of the chain; the new
/// slot's values are not set (setSlotDefaults).
int addEffect(int object, int effect);
void removeEffect(int object, int slot);
/// Recomputes first track, first check and extra-data offset of every slot and moves the values along. 0 when the
/// extra data cannot be reserved.
int repack(int object);
/// The definition's defaults: start = end = default, mode and parameter 0, checks 1 exactly when the default is 1 (a
/// toggle is off), and for a chain head the default extra data.
void setSlotDefaults(int object, int slot);
int usedSlots(int object);
int lastSlot(int object);

inline int trackOf(const ObjectRecord& object, int slot, int t) { return object.slots[slot].firstTrack + t; }
inline int checkOf(const ObjectRecord& object, int slot, int c) { return object.slots[slot].firstCheck + c; }
/// The slot's extra data in the chain head's block; null when it has none.
uint8_t* extraDataOf(int object, int slot);
/// Slot flags as they count: the chain head's.
uint8_t slotFlagsOf(int object, int slot);

}  // namespace zenlay
