// Image plug-ins: shared objects named "*.spi" beside the plug-in that decode further picture formats.
//
// A plug-in exports two functions with C linkage. Strings end in NUL and are in the ANSI code page.
#pragma once

#include <string>

#include "zenlay/render/image_cache.h"

extern "C" {
/// Information number 1 (name) or 2 (file patterns separated by ";", each beginning with "*") into `buffer`, which has
/// room for `length` bytes; the number of bytes written.
using ImagePluginGetInfo = int (*)(int number, char* buffer, int length);
/// Decodes the file `name` (offset 0, flag 0: the name is a file's, not a memory block). 0 on success, and then *header
/// is the bitmap information (40 bytes, then the palette below 16 bits) and *pixels the rows, bottom-up and padded to
/// 4 bytes; both are blocks of malloc, which the caller frees.
using ImagePluginGetPicture = int (*)(const char* name, long offset, unsigned flag, void** header, void** pixels);
}

namespace zenlay {

inline constexpr int maxImagePlugins = 32;
inline constexpr char imagePluginGetInfo[] = "GetPluginInfo";
inline constexpr char imagePluginGetPicture[] = "GetPicture";

/// Asks the plug-ins that list the file's extension (or "*.*") in load order; data is null when none decodes it.
CachedImage readWithPlugins(const char* path, const char* name);
/// The pattern lists of all plug-ins joined by ";".
std::string imagePluginPatterns();

}  // namespace zenlay
