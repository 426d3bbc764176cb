// The cache of open media files shared by every reader of video and sound.
#pragma once

#include "zenlay/effects/effect_services.h"

namespace zenlay {

inline constexpr int maxMediaHandles = 32, defaultMediaHandles = 8;

/// Flags of openMedia beyond the host's OpenMediaFlag.
enum MediaOpenFlag : uint32_t {
  mediaQuiet = 0x10000000,      // no message boxes on failure
  mediaExistence = 0x20000000,  // existence test only
};

/// Clamped to 1..32; clears all slots.
void setHandleLimit(int count);
void closeAllMedia();
/// The host's handle and (when given) the file's information; null on failure, and then reference->file is cleared.
/// With mediaExistence the result only tells existence and may not be used.
MediaHandle openMedia(MediaReference*, uint32_t flags, HostFileInfo*);
MediaHandle openMediaByPath(const char* path, uint32_t flags, HostFileInfo*);
void releaseMedia(MediaReference*);
/// The same file name in the folder of the host's project file, when `path` does not exist and that one does (at most
/// 258 characters); otherwise empty. Returned pointer valid until the next call.
const char* movedFile(const char* path);

}  // namespace zenlay
