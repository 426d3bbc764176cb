#include "cinora/desktop/player_sound.h"

#include <algorithm>

namespace cinora::desktop {
namespace {

constexpr int64_t second = 1000000000;
constexpr int64_t patience = second / 2;  // after which a device that plays nothing is done without
constexpr int starvedParts = 50;          // of a second: a device with less left has run dry

}  // namespace

PlayerSound::PlayerSound(Host& host, OpenSoundDevice open) : host_(host), open_(std::move(open)) {}

void PlayerSound::start(int first, int last, int from, bool loop) {
  stop();
  const ClipFormat& format = host_.edit.format;
  if (!host_.edit.hasSound || soundBlockLength(format, from) < 1) return;
  device_ = open_(format.audioRate, format.audioChannels);
  rate_ = format.audioRate;
  channels_ = format.audioChannels;
  first_ = first;
  last_ = last;
  next_ = from;
  block_.clear();
  written_ = 0;
  given_ = 0;
  timer_.start();
  clock_.start(0);
  feed(loop);
}

bool PlayerSound::nextBlock(bool loop) {
  allGiven_ = next_ > last_ && !loop;
  if (allGiven_) return false;
  if (next_ > last_) next_ = first_;
  block_ = host_.sound.block(host_, next_++).samples;
  written_ = 0;
  return true;
}

void PlayerSound::feed(bool loop) {
  if (!device_) return;
  while (written_ < block_.size() || nextBlock(loop)) {
    int64_t count = std::min<int64_t>(device_->room(), static_cast<int64_t>(block_.size() - written_) / channels_);
    if (count < 1 && written_ < block_.size()) return;
    if (given_ - device_->heard() < rate_ / starvedParts) suppliedAt_ = timer_.nsecsElapsed();
    device_->write(block_.data() + written_, count);
    written_ += static_cast<size_t>(count * channels_);
    given_ += count;
  }
  if (allGiven_ && !clock_.begun()) fill();
}

/// A device begins when it is full; a short sound does not fill it.
void PlayerSound::fill() {
  std::vector<int16_t> silence;
  for (int64_t room = device_->room(); room > 0; room = device_->room()) {
    silence.resize(static_cast<size_t>(room) * channels_);
    device_->write(silence.data(), room);
  }
}

std::optional<int64_t> PlayerSound::heard() {
  if (!device_) return {};
  int64_t now = timer_.nsecsElapsed();
  int64_t heard = clock_.read(now, device_->heard() * second / rate_, allGiven_);
  bool ending = allGiven_ && clock_.begun();
  if (ending || now - std::max(clock_.toldAt(), suppliedAt_) <= patience) return heard;
  stop();
  return {};
}

}  // namespace cinora::desktop
