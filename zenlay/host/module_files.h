// What the module reads from its own files beside it: zenlay.ini (sections `platform`, whose code page is set, and
// `extension`) and zenlay.col (the palette).
#pragma once

#include <cstdint>
#include <string_view>

namespace zenlay {

inline constexpr int extensionTableBytes = 2048;
inline constexpr int paletteEntries = 32;

/// Pairs of NUL-terminated strings (extension with dot, media object name), ended by an empty string.
extern char extensionTable[extensionTableBytes];

struct PaletteEntry {
  uint8_t red, green, blue;
};
extern PaletteEntry colourPalette[paletteEntries];

/// Fills both from the files of the module at `modulePath` (its last four characters replaced); what is missing takes
/// the defaults.
void readModuleFiles(std::string_view modulePath);

}  // namespace zenlay
