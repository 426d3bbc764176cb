#include "cinora/desktop/player.h"

#include <algorithm>
#include <cstdint>

namespace cinora::desktop {
namespace {

constexpr int64_t second = 1000000000;

}  // namespace

Player::Player(Host& host, const PlaybackFilter& filter, std::function<bool(int)> show,
               std::function<void(int, bool)> ended, OpenSoundDevice openSound)
    : host_(host),
      filter_(filter),
      show_(std::move(show)),
      ended_(std::move(ended)),
      sound_(host, std::move(openSound)) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
}

void Player::play(int first, int last, int from) {
  if (playing_ || !host_.edit.open) return;
  first_ = first;
  last_ = last;
  shown_ = 0;
  cursor_ = host_.edit.currentFrame;
  playing_ = true;
  filter_.notify(from, playbackStart);
  start_ = std::clamp(from, first, last);
  passStart_ = clockStart_ = 0;
  if (!showFrame(start_)) return;
  sound_.start(first, last, start_, loop_);
  onSound_ = sound_.heard().has_value();
  clock_.start();
  timer_.start(0);
}

int64_t Player::elapsed() {
  if (onSound_) {
    if (std::optional<int64_t> heard = sound_.heard()) return clockStart_ = *heard;
    onSound_ = false;  // the clock goes on from there
    clock_.start();
  }
  return clockStart_ + clock_.nsecsElapsed();
}

/// May lie behind the last one: the pass is over.
int Player::frameAt(int64_t now) const {
  const ClipFormat& format = host_.edit.format;
  auto passed = static_cast<__int128>(now - passStart_) * format.rate / (format.scale * second);
  return static_cast<int>(std::min<__int128>(start_ + passed, INT32_MAX));
}

/// Nanoseconds from the frame the pass began with to its end: of the samples played, if there are any, so that however
/// many passes picture and sound stay together.
int64_t Player::passLength() const {
  const ClipFormat& format = host_.edit.format;
  int64_t frames = last_ + 1 - start_, samples = soundPosition(format, last_ + 1) - soundPosition(format, start_);
  auto length = onSound_ ? static_cast<__int128>(samples) * second / format.audioRate
                         : static_cast<__int128>(frames) * format.scale * second / format.rate;
  return std::max<int64_t>(static_cast<int64_t>(length), 1);
}

void Player::tick() {
  if (!playing_) return;
  if (!host_.edit.open) return end(false);
  if (host_.edit.currentFrame != cursor_) return end(true);
  sound_.feed(loop_);
  int64_t now = elapsed();
  int due = frameAt(now);
  for (; due > last_; due = frameAt(now)) {
    if (!loop_) return end(true);
    passStart_ += passLength();
    start_ = first_;
  }
  if (due != frame_ && !showFrame(due)) return;
  const ClipFormat& format = host_.edit.format;
  auto next = static_cast<__int128>(due - start_ + 1) * format.scale * second / format.rate;
  int64_t wait = passStart_ + static_cast<int64_t>(next) - elapsed();
  timer_.start(static_cast<int>(std::clamp<int64_t>(wait / 1000000, 0, 20)));
}

/// False when the playback is over.
bool Player::showFrame(int frame) {
  filter_.notify(frame, playbackHideAids);
  frame_ = frame;
  bool shown = show_(frame);
  filter_.notify(frame, playbackFrameShown);
  shown_ += shown;
  if (!shown) end(false);
  return playing_;
}

void Player::end(bool byItself) {
  if (!playing_) return;
  playing_ = false;
  timer_.stop();
  sound_.stop();
  filter_.notify(frame_, playbackEnd);
  filter_.notify(frame_, 0);
  ended_(frame_, byItself);
}

}  // namespace cinora::desktop
