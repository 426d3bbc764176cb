// Media files opened for the plug-ins.
#pragma once

#include <optional>
#include <string>

#include "cinora/host/host.h"

namespace cinora {

/// Where the file is: a path that is not there is tried from the folder of the project's file, then the file's name
/// there. The path itself when it is nowhere.
std::string findMedia(const std::string& path);

/// Null when the file, where findMedia finds it, cannot be opened as asked. `info` may be null. With openAudio alone
/// nothing of the pictures is read but what the container tells of their rate and number.
zenlay::MediaHandle openMedia(const std::string& path, zenlay::HostFileInfo* info, uint32_t flags);
/// Of a clip made from the file: its pictures' size and rate, its sound's rate. Nothing when it has no pictures that
/// can be read.
std::optional<ClipFormat> formatOfMedia(const std::string& path);
/// A clip that is the film `path`: its pictures are what the filters are given, its sound, if it has any, what they add
/// to. Closed when the file has no pictures that can be read.
zenlay::HostEdit openMediaClip(const std::string& path);
/// Readers of sound are kept for a while: who shares few handles among many files opens them again and again.
void closeMedia(zenlay::MediaHandle);
/// False for a frame that cannot be decoded or is larger than a frame image.
bool readMediaFrame(Host&, zenlay::HostMedia&, int frame, zenlay::FramePixel* image);
/// Bottom-up rows padded to 4 bytes, BGRA for files opened with openAlpha that have an alpha channel, else BGR; valid
/// until the next call. Null on failure.
const void* mediaFramePixels(zenlay::HostMedia&, int frame);
/// Samples per channel of the whole sound at that rate, with that many channels; 0 when there is none.
int32_t setMediaSoundRate(zenlay::HostMedia&, int rate, int channels);
/// Sample frames read at the rate and with the channels last set.
int32_t readMediaSound(zenlay::HostMedia&, int64_t first, int count, int16_t* samples);
/// Closes the readers that are kept.
void dropKeptSound();

}  // namespace cinora
