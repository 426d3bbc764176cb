// Calls into effects: everything between deciding that a slot runs and having its result.
#pragma once

#include "zenlay/render/targets.h"

namespace zenlay {

/// The definition in a slot; null when the slot is empty or its effect unknown.
EffectDefinition* slotEffect(const ObjectRecord*, int slot);
/// Binds the slot, calls `proc` with effectRunning set, unbinds. The definition may be running already (nested scenes,
/// individual objects): the outer call's binding is then put back. The proc's result; 1 without a proc.
int runSlot(ObjectRecord*, int slot, EffectProcessInfo*);
/// Sends an event to one definition: its result, 0 without a handler.
int sendEvent(EffectDefinition*, int32_t code, intptr_t argument, EffectProcessInfo*);
/// Scene events, to every visual built-in with a handler.
void broadcastEvent(int32_t code, EffectProcessInfo*);

}  // namespace zenlay
