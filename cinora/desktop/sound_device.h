// Where the film's sound goes while it plays.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace cinora::desktop {

/// Counts sample frames of the film's sound.
class SoundDevice {
 public:
  virtual ~SoundDevice() = default;
  /// What can be written now.
  virtual int64_t room() = 0;
  /// At most what there is room for.
  virtual void write(const int16_t* samples, int64_t count) = 0;
  /// What has been heard since it was opened, as far as the device tells.
  virtual int64_t heard() = 0;
};

using OpenSoundDevice = std::function<std::unique_ptr<SoundDevice>(int rate, int channels)>;

/// The system's own, converting what it does not take as it is. Null when there is none that works.
std::unique_ptr<SoundDevice> openSystemSound(int rate, int channels);

}  // namespace cinora::desktop
