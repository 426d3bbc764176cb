#include "cinora/sound_mixer.h"

#include "cinora/host.h"

namespace cinora {
namespace {

constexpr size_t keptBlocks = 16;  // more than a filter looks ahead
constexpr int maxBlock = 1 << 22;  // samples per channel

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
  for (const SoundBlock& made : blocks_)
    if (made.frame == frame) return made;
  static const SoundBlock none;
  if (making_) return none;
  SoundBlock block;
  if (blocks_.size() >= keptBlocks) {
    block = std::move(blocks_.front());
    blocks_.pop_front();
  }
  const ClipFormat& format = host.edit.format;
  block.frame = frame;
  block.count = soundBlockLength(format, frame);
  block.samples.assign(static_cast<size_t>(block.count) * format.audioChannels, 0);
  making_ = true;
  if (block.count > 0) runSoundFilters(host, block);
  making_ = false;
  return blocks_.emplace_back(std::move(block));
}

}  // namespace cinora
