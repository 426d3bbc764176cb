// Command messages from the model to the effects of an object.
#pragma once

#include <cstdint>

namespace zenlay {

/// Sends messageEffectCommand to the built-in effect of the slot, bound as for rendering but without evaluated tracks.
/// For ModelHooks::sendCommand.
void sendEffectCommand(int object, int slot, int command, intptr_t value);

/// Offers a key message (`message` as the platform numbers it) to the object's built-in effects, bound likewise, until
/// one of them takes it by answering 1.
bool offerKey(int object, uint32_t message, int key);

/// Calls the built-in effect's hide_controls, bound likewise. For ModelHooks::hideControls.
void hideEffectControls(int object, int slot);

}  // namespace zenlay
