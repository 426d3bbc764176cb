// Command messages from the model to the effects of an object.
#pragma once

#include <cstdint>

#include "platform/window.h"

namespace zenlay {

/// Sends messageEffectCommand to the built-in effect of the slot, bound as for rendering but without evaluated tracks.
/// For ModelHooks::sendCommand.
void sendEffectCommand(int object, int slot, int command, intptr_t value);
/// The same with the answer, 0 without a handler. `command` may carry a check in its high word.
int callEffect(int object, int slot, int command, intptr_t value);

/// Calls the built-in effect's show_controls, bound likewise; 0 without it.
int showEffectControls(int object, int slot, platform::Window* settings, uint32_t message, intptr_t wparam,
                       intptr_t lparam);

/// Offers a key message (`message` as the platform numbers it) to the object's built-in effects, bound likewise, until
/// one of them takes it by answering 1.
bool offerKey(int object, uint32_t message, int key);

/// Calls the built-in effect's hide_controls, bound likewise. For ModelHooks::hideControls.
void hideEffectControls(int object, int slot);

}  // namespace zenlay
