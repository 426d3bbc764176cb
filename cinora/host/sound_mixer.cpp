#include "cinora/host/sound_mixer.h"

#include <algorithm>

#include "cinora/host/host.h"
#include "cinora/host/media_files.h"

namespace cinora {
namespace {

constexpr int maxBlock = 1 << 22;           // samples per channel
constexpr int64_t maxKeptBlocks = 1 << 14;  // of films with hundreds of frames a second

struct Making {
  explicit Making(bool& flag) : flag(flag) { flag = true; }
  ~Making() { flag = false; }
  bool& flag;
};

size_t keptBlocks(const ClipFormat& format) {
  return static_cast<size_t>(std::min(int64_t{keptSeconds} * format.rate / format.scale + 2, maxKeptBlocks));
}

/// What the clip itself sounds like; silence where it is no film, or behind its end.
void readClip(const zenlay::HostEdit& edit, SoundBlock& block) {
  const ClipFormat& format = edit.format;
  if (!edit.media || !edit.hasSound || setMediaSoundRate(*edit.media, format.audioRate, format.audioChannels) < 1)
    return;
  readMediaSound(*edit.media, soundPosition(format, block.frame), block.count, block.samples.data());
}

void runSoundFilters(Host& host, SoundBlock& block) {
  zenlay::FrameProcessInfo info{};
  info.maxWidth = host.limits.maxWidth;
  info.maxHeight = host.limits.maxHeight;
  info.frameNumber = block.frame;
  info.frameCount = host.edit.frameCount;
  info.audio = block.samples.data();
  info.sampleCount = block.count;
  info.channelCount = host.edit.format.audioChannels;
  info.edit = host.editHandle();
  for (const auto& filter : host.plugins.filters()) {
    zenlay::HostFilterRecord* record = filter->record;
    if (filter->active && record->process && (record->flags & filterAudio)) record->process(record, &info);
  }
}

}  // namespace

int64_t soundPosition(const ClipFormat& format, int64_t frame) {
  return static_cast<int64_t>(static_cast<__int128>(frame) * format.scale * format.audioRate / format.rate);
}

int soundBlockLength(const ClipFormat& format, int64_t frame) {
  int64_t length = soundPosition(format, frame + 1) - soundPosition(format, frame);
  return length <= maxBlock ? static_cast<int>(length) : 0;
}

const SoundBlock& SoundMixer::block(Host& host, int frame) {
  if (auto made = blocks_.find(frame); made != blocks_.end()) return made->second;
  static const SoundBlock none;
  if (making_) return none;
  const ClipFormat& format = host.edit.format;
  SoundBlock block;
  if (order_.size() >= keptBlocks(format)) {
    block = std::move(blocks_[order_.front()]);  // for its memory
    blocks_.erase(order_.front());
    order_.pop_front();
  }
  block.frame = frame;
  block.count = soundBlockLength(format, frame);
  block.samples.assign(static_cast<size_t>(block.count) * format.audioChannels, 0);
  if (block.count > 0) {
    Making making(making_);
    readClip(host.edit, block);
    runSoundFilters(host, block);
  }
  order_.push_back(frame);
  return blocks_[frame] = std::move(block);
}

void SoundMixer::forget() {
  blocks_.clear();
  order_.clear();
}

}  // namespace cinora
