#include "cinora/interruption.h"

#include <signal.h>
#include <unistd.h>

#include "platform/paths.h"

namespace cinora {
namespace {

constexpr int failedStatus = 1;
volatile sig_atomic_t asked = 0;

void onSignal(int) {
  if (asked) {
    platform::removeUncommittedFiles();
    _exit(failedStatus);
  }
  asked = 1;
}

}  // namespace

void watchForInterruption() {
  struct sigaction action {};
  action.sa_handler = onSignal;
  action.sa_flags = SA_RESTART;
  for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before;
    sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);  // nohup and background jobs stay so
  }
  signal(SIGXFSZ, SIG_IGN);
  signal(SIGPIPE, SIG_IGN);
}

bool interrupted() { return asked; }

}  // namespace cinora
