// What an effect's window procedure is told about its object.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

/// The low word of `wparam` is the command, the high word may carry a slot.
inline bool isCommand(uint32_t message, intptr_t wparam, EffectCommand command) {
  return message == messageEffectCommand && (wparam & 0xFFFF) == command;
}

inline bool isObjectEvent(uint32_t message, intptr_t wparam, intptr_t lparam, ObjectEvent event) {
  return isCommand(message, wparam, commandObjectEvent) && lparam == event;
}

/// The object was loaded, or its file is to be checked silently.
inline bool asksForFileCheck(uint32_t message, intptr_t wparam, intptr_t lparam) {
  return isObjectEvent(message, wparam, lparam, objectLoaded) || isCommand(message, wparam, commandCheckFile);
}

}  // namespace zenlay
