// An object's effect chain: up to 12 slots whose tracks, checks and extra data are packed in slot order.
#pragma once

#include "zenlay/model/records.h"

namespace zenlay {

/// Slot index, or -1 when a limit forbids it (the object is unchanged). Applies to every section of the chain; the new
/// slot's values are not set (setSlotDefaults).
int addEffect(int object, int effect);
/// Removes the effect from every section of the chain, after telling it; records undo. The only effect of an object
/// stays.
void removeEffect(int object, int slot);
/// Whether the effect may change places with the one `delta` slots on: slot 0 of a drawn or control object and the last
/// slot of a drawn object stay where they are.
bool canMoveSlot(int object, int from, int delta);
/// Exchanges the two slots with their flags and values in every section of the chain; records undo. 0 when the effect
/// may not move.
int moveSlot(int object, int from, int delta);
/// Recomputes first track, first check and extra-data offset of every slot and moves the values along. 0 when the
/// extra data cannot be reserved.
int repack(int object);
/// The definition's defaults: start = end = default, mode and parameter 0, checks 1 exactly when the default is 1 (a
/// toggle is off), and for a chain head the default extra data.
void setSlotDefaults(int object, int slot);
/// setSlotDefaults for every section of the chain, as behind addEffect.
void setChainSlotDefaults(int object, int slot);
/// In every section of the chain.
void setSlotFlags(int object, int slot, uint8_t flags);
int usedSlots(int object);
int lastSlot(int object);

inline int trackOf(const ObjectRecord& object, int slot, int t) { return object.slots[slot].firstTrack + t; }
inline int checkOf(const ObjectRecord& object, int slot, int c) { return object.slots[slot].firstCheck + c; }
/// The slot's extra data in the chain head's block; null when it has none.
uint8_t* extraDataOf(int object, int slot);
/// Slot flags as they count: the chain head's.
uint8_t slotFlagsOf(int object, int slot);

}  // namespace zenlay
