// The host's current edit: the clip being worked on, its frames and the selection.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zenlay/host/host_interface.h"

namespace cinora {

inline constexpr int maxSide = 16384;  // pixels, of any clip
inline constexpr int maxFrameCount = 800000;
inline constexpr int maxRate = 10000000;  // of rate and scale
inline constexpr int maxAudioRate = 768000;

struct ClipFormat {
  int32_t width = 0, height = 0;  // pixels
  int32_t rate = 0, scale = 0;    // frames per second = rate / scale
  int32_t audioRate = 0;          // samples per second
  int32_t audioChannels = 2;
  bool operator==(const ClipFormat&) const = default;
};

/// Sides 1..maxSide, rate and scale 1..maxRate, audio rate 1..maxAudioRate, 1 or 2 channels.
bool validFormat(const ClipFormat&);
/// A clip without a file is named after its format: "640x480_30fps_44100Hz.zenlay", or with rate and scale
/// "640x480_30000-1001fps_44100Hz.zenlay", in mono with "Hz_1ch" at the end. A folder before the name is passed over.
std::optional<ClipFormat> formatFromName(std::string_view name);
std::string nameOfFormat(const ClipFormat&);

struct CloseMedia {
  void operator()(zenlay::MediaHandle) const;
};
using OwnedMedia = std::unique_ptr<zenlay::HostMedia, CloseMedia>;

}  // namespace cinora

namespace zenlay {

/// What an EditHandle points to.
struct HostEdit {
  bool open = false;
  std::string name;  // full path; the file itself need not exist
  cinora::ClipFormat format;
  cinora::OwnedMedia media;  // the film the clip is; null: it is named after its format, black and silent by itself
  int32_t mediaFrames = 0;   // of it that can be shown; the clip may be longer
  bool hasSound = true;      // false: a film without sound that can be read
  int32_t frameCount = 0;
  int32_t currentFrame = 0;
  int32_t selectionFirst = 0, selectionLast = 0;
  std::vector<FrameStatus> status;       // one a frame, grown when first written
  std::vector<uint8_t> statusTables[2];  // by MediaKind, frameCount long when asked for
};

}  // namespace zenlay

namespace cinora {

/// An open edit of one frame. False when the format is not valid; then nothing changes.
bool openClip(zenlay::HostEdit&, std::string name, const ClipFormat&);
/// 1..maxFrameCount. The current frame and the selection are kept inside; a selection of the whole film stays whole.
bool resizeClip(zenlay::HostEdit&, int32_t frameCount);
/// Clamped; the frame now current.
int32_t moveTo(zenlay::HostEdit&, int32_t frame);
/// Clamped and put in order.
void selectFrames(zenlay::HostEdit&, int32_t first, int32_t last);
void fillFileInfo(const zenlay::HostEdit&, zenlay::HostFileInfo*);

}  // namespace cinora
