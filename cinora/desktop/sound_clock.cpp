#include "cinora/desktop/sound_clock.h"

#include <algorithm>
#include <cstdlib>

namespace cinora::desktop {
namespace {

constexpr int64_t millisecond = 1000000;
constexpr int64_t maxError = 100 * millisecond;  // beyond it the clock jumps
constexpr int64_t maxAhead = 80 * millisecond;   // of what the device told: longer steps are a pause
constexpr int smoothing = 8;                     // steps in which an error goes

}  // namespace

void SoundClock::start(int64_t now) {
  *this = {};
  readAt_ = toldAt_ = now;
}

int64_t SoundClock::read(int64_t now, int64_t played, bool last) {
  int64_t value = value_ + (now - readAt_);
  readAt_ = now;
  if (played > played_) {
    bool first = played_ == 0;
    played_ = played;
    toldAt_ = now;
    int64_t error = played - value;
    value += first || std::abs(error) > maxError ? error : error / smoothing;
  }
  if (!begun()) return 0;
  if (!last) value = std::min(value, played_ + maxAhead);
  return value_ = std::max(value_, value);
}

}  // namespace cinora::desktop
