#include "platform/live_files.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <mutex>

#include "platform/paths.h"

namespace platform {
namespace {

// The signal handler reads `path` only in state `live`, which a slot enters after its path is complete.
enum SlotState : int { slotFree, slotClaimed, slotLive };
struct Slot {
  std::atomic<int> state;
  char path[4096];
};
static_assert(std::atomic<int>::is_always_lock_free);
constexpr int slotCount = 64;
constinit Slot slots[slotCount];

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};

void endBySignal(int number) {
  removeUncommittedFiles();
  signal(number, SIG_DFL);
  raise(number);
}

void handleEndingSignals() {
  for (int number : endingSignals) {
    struct sigaction current;
    if (sigaction(number, nullptr, &current) != 0 || (current.sa_flags & SA_SIGINFO) || current.sa_handler != SIG_DFL)
      continue;
    struct sigaction ours {};
    ours.sa_handler = endBySignal;
    sigaction(number, &ours, nullptr);
  }
}

}  // namespace

int guardLiveFile(const std::string& path) {
  static std::once_flag once;
  std::call_once(once, handleEndingSignals);
  if (path.size() >= sizeof slots[0].path) return noLiveFile;
  for (int i = 0; i < slotCount; i++) {
    int expected = slotFree;
    if (!slots[i].state.compare_exchange_strong(expected, slotClaimed)) continue;
    memcpy(slots[i].path, path.c_str(), path.size() + 1);
    slots[i].state = slotLive;
    return i;
  }
  return noLiveFile;
}

void releaseLiveFile(int handle) {
  if (handle >= 0 && handle < slotCount) slots[handle].state = slotFree;
}

void removeUncommittedFiles() {
  int savedError = errno;
  for (Slot& slot : slots)
    if (slot.state == slotLive) unlink(slot.path);
  errno = savedError;
}

}  // namespace platform
