// What the dialogs share: filling and reading their controls. Texts of the model are in the ANSI code page, those of
// windows in UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "platform/dialog.h"

namespace zenlay {

inline constexpr size_t dialogTextBytes = 259;  // of a text taken from a dialog, without the terminator

/// The window a dialog belongs to: the active one, else the timeline window.
platform::Window* dialogOwner();

/// As many whole characters as fit.
std::string textIn(platform::Window* dialog, int id, size_t bytes = dialogTextBytes);
void showText(platform::Window* dialog, int id, std::string_view text);
/// A signed decimal behind blanks, what follows it ignored: 0 without digits, saturated at 32 bits.
int parseNumber(const char* text);
int numberIn(platform::Window* dialog, int id);
void showNumber(platform::Window* dialog, int id, int value);
/// Empty for 0.
void showNumberOrNothing(platform::Window* dialog, int id, int value);
bool isTicked(platform::Window* dialog, int id);
void tick(platform::Window* dialog, int id, bool ticked);
/// Whether the message is the user's press of that button.
bool isPress(uint32_t message, intptr_t first, int id);

}  // namespace zenlay
