// Memory that effects keep from frame to frame, owned by an effect slot of an object (of its chain head).
#pragma once

#include <cstddef>

#include "zenlay/effects/effect_definition.h"

namespace zenlay {

/// `size` bytes of the slot, zeroed (and *created set) when new or of another size; null when out of memory or ref 0.
void* workMemory(ObjectRef, size_t size, bool* created);
/// A scene whose sound is played by that object's effect begins to be mixed, inside those that are. Until leavePlayer,
/// memory belongs to the slot and to the players: a scene that is heard twice sounds on twice.
void enterPlayer(ObjectRef);
void leavePlayer();
/// The object is gone: so is its memory.
void freeWorkMemoryOf(int object);
void freeWorkMemory();

}  // namespace zenlay
