// Media files opened for the plug-ins.
#pragma once

#include <optional>
#include <string>

#include "cinora/host.h"

namespace cinora {

/// Null when the file cannot be opened as asked. A relative path that is not found from the current folder is tried
/// from the folder of the project file. `info` may be null.
zenlay::MediaHandle openMedia(const std::string& path, zenlay::HostFileInfo* info, uint32_t flags);
/// Of a clip made from the file: its pictures' size and rate, its sound's rate. Nothing when it has no pictures that
/// can be read.
std::optional<ClipFormat> formatOfMedia(const std::string& path, int32_t* frameCount);
void closeMedia(zenlay::MediaHandle);
/// False for a frame that cannot be decoded or is larger than a frame image.
bool readMediaFrame(Host&, zenlay::HostMedia&, int frame, zenlay::FramePixel* image);
/// Bottom-up rows padded to 4 bytes, BGRA for files opened with openAlpha that have an alpha channel, else BGR; valid
/// until the next call. Null on failure.
const void* mediaFramePixels(zenlay::HostMedia&, int frame);

}  // namespace cinora
