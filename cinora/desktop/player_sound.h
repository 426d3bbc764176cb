// The film's sound while it plays: finished blocks to the sound device, and the clock they give.
#pragma once

#include <QElapsedTimer>
#include <memory>
#include <optional>
#include <vector>

#include "cinora/host.h"

namespace cinora::desktop {

class PlayerSound {
 public:
  explicit PlayerSound(Host&);
  ~PlayerSound();

  /// Silent without a device, and for a film without sound.
  void start(int firstFrame, int lastFrame);
  void stop();
  /// Keeps the device supplied; often enough is once a frame.
  void feed();
  /// Nanoseconds of sound heard since start; nothing when there is no sound to go by, or no longer.
  std::optional<int64_t> heard();

 private:
  struct Output;
  bool makeBlock(int frame);

  Host& host_;
  std::unique_ptr<Output> output_;  // null: silent
  int next_ = 0, last_ = -1;        // frames
  std::vector<int16_t> block_;      // of the frame before `next_`
  int64_t blockBytes_ = 0, written_ = 0;
  int64_t lastHeard_ = 0;
  QElapsedTimer sinceHeard_;
};

}  // namespace cinora::desktop
