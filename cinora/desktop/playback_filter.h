// The host's own filter "Playback window": other filters hand it a callback and are told of playback.
#pragma once

#include <cstdint>
#include <vector>

#include "zenlay/host/host_interface.h"

namespace cinora::desktop {

/// Of a notification.
enum PlaybackFlag : int32_t {
  playbackHideAids = 0x1,  // a frame is about to be made that shows the film alone
  playbackFrameShown = 0x2,
  playbackStart = 0x4,
  playbackEnd = 0x8,
};
using PlaybackCallback = int (*)(int32_t frame, int32_t flags);
/// Code of the command message that brings a callback as its second parameter.
inline constexpr int playbackLink = 900;

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
  std::vector<PlaybackCallback> callbacks_;
};

}  // namespace cinora::desktop
