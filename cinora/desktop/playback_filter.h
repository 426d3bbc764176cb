// The host's own filter zenlay::playbackFilter: other filters hand it a callback and are told of playback.
#pragma once

#include <cstdint>
#include <vector>

#include "zenlay/host/host_interface.h"

namespace cinora::desktop {

using enum zenlay::PlaybackFlag;

/// One at a time.
class PlaybackFilter {
 public:
  PlaybackFilter();
  ~PlaybackFilter();
  PlaybackFilter(const PlaybackFilter&) = delete;
  PlaybackFilter& operator=(const PlaybackFilter&) = delete;

  zenlay::HostFilterRecord* record() { return &record_; }
  void notify(int frame, int flags) const;

 private:
  static int procedure(zenlay::WindowHandle, uint32_t message, intptr_t first, intptr_t second, zenlay::EditHandle,
                       zenlay::HostFilterRecord*);

  zenlay::HostFilterRecord record_{};
  std::vector<zenlay::PlaybackCallback> callbacks_;
};

}  // namespace cinora::desktop
