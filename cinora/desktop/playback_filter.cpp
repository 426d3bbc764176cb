#include "cinora/desktop/playback_filter.h"

#include <algorithm>

namespace cinora::desktop {
namespace {

PlaybackFilter* living = nullptr;

}  // namespace

PlaybackFilter::PlaybackFilter() {
  living = this;
  record_.name = zenlay::playbackFilter;
  record_.windowProcedure = procedure;
}

PlaybackFilter::~PlaybackFilter() { living = nullptr; }

void PlaybackFilter::notify(int frame, int flags) const {
  for (zenlay::PlaybackCallback callback : callbacks_) callback(frame, flags);
}

int PlaybackFilter::procedure(zenlay::WindowHandle, uint32_t message, intptr_t first, intptr_t second,
                              zenlay::EditHandle, zenlay::HostFilterRecord*) {
  if (!living || message != zenlay::messageCommand || first != zenlay::playbackLink || !second) return 0;
  auto callback = reinterpret_cast<zenlay::PlaybackCallback>(second);
  std::vector<zenlay::PlaybackCallback>& known = living->callbacks_;
  if (std::find(known.begin(), known.end(), callback) == known.end()) known.push_back(callback);
  return 0;
}

}  // namespace cinora::desktop
