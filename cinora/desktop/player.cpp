#include "cinora/desktop/player.h"

#include <algorithm>

namespace cinora::desktop {
namespace {

constexpr int64_t second = 1000000000;

}  // namespace

Player::Player(Host& host, const PlaybackFilter& filter, std::function<bool(int)> show,
               std::function<void(int, bool)> ended)
    : host_(host), filter_(filter), show_(std::move(show)), ended_(std::move(ended)), sound_(host) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
}

void Player::play(int first, int last, int from) {
  if (playing_ || !host_.edit.open) return;
  first_ = first;
  last_ = last;
  shown_ = 0;
  playing_ = true;
  filter_.notify(from, playbackStart);
  begin(std::clamp(from, first, last));
}

void Player::begin(int from) {
  start_ = frame_ = from;
  if (!showFrame(from)) return;
  sound_.start(from, last_);
  onSound_ = sound_.heard().has_value();
  clockStart_ = 0;
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

void Player::tick() {
  if (!playing_) return;
  sound_.feed();
  const ClipFormat& format = host_.edit.format;
  int64_t now = elapsed();
  int64_t due = start_ + static_cast<int64_t>(static_cast<__int128>(now) * format.rate / (format.scale * second));
  if (due > last_) return loop_ ? begin(first_) : end(true);
  if (due != frame_ && !showFrame(static_cast<int>(due))) return;
  int64_t next = static_cast<int64_t>(static_cast<__int128>(due - start_ + 1) * format.scale * second / format.rate);
  timer_.start(static_cast<int>(std::clamp<int64_t>((next - elapsed()) / 1000000, 0, 20)));
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
