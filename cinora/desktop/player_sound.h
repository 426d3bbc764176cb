// The film's sound while it plays: finished blocks to the sound device, and the clock they give.
#pragma once

#include <QElapsedTimer>
#include <memory>
#include <optional>
#include <vector>

#include "cinora/desktop/sound_clock.h"
#include "cinora/desktop/sound_device.h"
#include "cinora/host/host.h"

namespace cinora::desktop {

class PlayerSound {
 public:
  PlayerSound(Host&, OpenSoundDevice);

  /// Plays from frame `from` to `last`, and when it loops again from `first` on. Silent without a device, and for a
  /// film without sound.
  void start(int first, int last, int from, bool loop);
  void stop() { device_.reset(); }
  /// Keeps the device supplied; often enough is once a frame.
  void feed(bool loop);
  /// Nanoseconds of sound heard since start; nothing when there is no sound to go by, or no longer.
  std::optional<int64_t> heard();

 private:
  bool nextBlock(bool loop);
  void fill();

  Host& host_;
  OpenSoundDevice open_;
  std::unique_ptr<SoundDevice> device_;  // null: silent
  int rate_ = 0, channels_ = 0;
  int first_ = 0, last_ = -1, next_ = 0;  // frames
  std::vector<int16_t> block_;            // of the frame before `next_`
  size_t written_ = 0;                    // samples of it
  int64_t given_ = 0;                     // sample frames since start
  bool allGiven_ = false;
  QElapsedTimer timer_;
  int64_t suppliedAt_ = 0;  // when the device was last given sound after it had none
  SoundClock clock_;
};

}  // namespace cinora::desktop
