#include "cinora/host/edit.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "platform/paths.h"

namespace cinora {
namespace {

constexpr std::string_view clipEnding = "Hz.zenlay", monoEnding = "Hz_1ch.zenlay";

/// Reads a number and the text behind it from the front of `rest`.
bool take(std::string_view& rest, int32_t& number, std::string_view behind) {
  auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
  if (error != std::errc{}) return false;
  rest.remove_prefix(end - rest.data());
  if (!rest.starts_with(behind)) return false;
  rest.remove_prefix(behind.size());
  return true;
}

bool within(int32_t value, int32_t limit) { return value >= 1 && value <= limit; }

}  // namespace

bool validFormat(const ClipFormat& f) {
  return within(f.width, maxSide) && within(f.height, maxSide) && within(f.rate, maxRate) && within(f.scale, maxRate) &&
         within(f.audioRate, maxAudioRate) && within(f.audioChannels, 2);
}

std::optional<ClipFormat> formatFromName(std::string_view name) {
  std::string_view rest = platform::fileName(name);
  ClipFormat f;
  f.scale = 1;
  if (!take(rest, f.width, "x") || !take(rest, f.height, "_")) return {};
  std::string_view both = rest;
  if (!take(rest, f.rate, "fps_")) {
    rest = both;
    if (!take(rest, f.rate, "-") || !take(rest, f.scale, "fps_")) return {};
  }
  both = rest;
  if (!take(rest, f.audioRate, clipEnding)) {
    rest = both;
    if (!take(rest, f.audioRate, monoEnding)) return {};
    f.audioChannels = 1;
  }
  if (!rest.empty() || !validFormat(f)) return {};
  return f;
}

std::string nameOfFormat(const ClipFormat& f) {
  char name[96];
  if (f.scale == 1)
    snprintf(name, sizeof name, "%dx%d_%dfps_%d", f.width, f.height, f.rate, f.audioRate);
  else
    snprintf(name, sizeof name, "%dx%d_%d-%dfps_%d", f.width, f.height, f.rate, f.scale, f.audioRate);
  return name + std::string(f.audioChannels == 1 ? monoEnding : clipEnding);
}

bool openClip(zenlay::HostEdit& edit, std::string name, const ClipFormat& format) {
  if (!validFormat(format)) return false;
  edit = {};
  edit.open = true;
  edit.name = std::move(name);
  edit.format = format;
  edit.frameCount = 1;
  return true;
}

bool resizeClip(zenlay::HostEdit& edit, int32_t frameCount) {
  if (!edit.open || !within(frameCount, maxFrameCount)) return false;
  bool whole = edit.selectionFirst == 0 && edit.selectionLast == edit.frameCount - 1;
  edit.frameCount = frameCount;
  moveTo(edit, edit.currentFrame);
  selectFrames(edit, edit.selectionFirst, whole ? frameCount - 1 : edit.selectionLast);
  if (edit.status.size() > static_cast<size_t>(frameCount)) edit.status.resize(frameCount);
  return true;
}

int32_t moveTo(zenlay::HostEdit& edit, int32_t frame) {
  return edit.currentFrame = std::clamp(frame, 0, std::max(0, edit.frameCount - 1));
}

void selectFrames(zenlay::HostEdit& edit, int32_t first, int32_t last) {
  int32_t end = std::max(0, edit.frameCount - 1);
  edit.selectionFirst = std::clamp(std::min(first, last), 0, end);
  edit.selectionLast = std::clamp(std::max(first, last), 0, end);
}

void fillFileInfo(const zenlay::HostEdit& edit, zenlay::HostFileInfo* info) {
  *info = {};
  info->flags = zenlay::fileHasVideo | (edit.hasSound ? zenlay::fileHasAudio : 0u);
  info->name = edit.name.c_str();
  info->width = edit.format.width;
  info->height = edit.format.height;
  info->rate = edit.format.rate;
  info->scale = edit.format.scale;
  info->audioRate = edit.format.audioRate;
  info->audioChannels = edit.format.audioChannels;
  info->videoBits = 24;
  info->frameCount = edit.frameCount;
  int64_t samples = int64_t{edit.frameCount} * edit.format.scale * edit.format.audioRate / edit.format.rate;
  info->audioSampleCount = static_cast<int32_t>(std::min<int64_t>(samples, INT32_MAX));
}

}  // namespace cinora
