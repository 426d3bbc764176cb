// An even clock beside a sound device, which tells in steps what it has played.
#pragma once

#include <cstdint>

namespace cinora::desktop {

/// All times in nanoseconds; `now` is that of a steady clock.
class SoundClock {
 public:
  void start(int64_t now);
  /// What is heard at `now` when the device tells `played`. 0 until it has begun; never runs back, and ahead of the
  /// device only when it was given the `last` there is.
  int64_t read(int64_t now, int64_t played, bool last);
  bool begun() const { return played_ > 0; }
  /// When the device last told something new.
  int64_t toldAt() const { return toldAt_; }

 private:
  int64_t value_ = 0, readAt_ = 0;
  int64_t played_ = 0, toldAt_ = 0;
};

}  // namespace cinora::desktop
