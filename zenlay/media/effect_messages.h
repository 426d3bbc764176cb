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

/// Takes the chosen item of a drop-down list into the extra data after one undo step; 1 when the message was that.
inline int takeDropDown(EffectDefinition* effect, uint32_t message, intptr_t wparam, intptr_t lparam, int32_t* field) {
  if (!isCommand(message, wparam, commandDropDown)) return 0;
  effect->services->recordUndo(effect->object_ref);
  *field = static_cast<int32_t>(lparam);
  effect->services->objectChanged(effect->object_ref);
  return 1;
}

/// The window procedure of an effect whose only command is the choice from its list.
template <class Data, int32_t Data::*field>
int storeDropDown(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition* effect) {
  return takeDropDown(effect, message, wparam, lparam, &(extraData<Data>(effect).*field));
}

}  // namespace zenlay
