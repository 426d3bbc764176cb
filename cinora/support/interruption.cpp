#include "cinora/support/interruption.h"

#include <signal.h>
#include <string.h>
#include <unistd.h>

#include "platform/paths.h"

namespace cinora {
namespace {

constexpr int failedStatus = 1;
constexpr unsigned secondsOfPatience = 5;  // for what cannot be asked: a file that never answers, a last slow flush
constexpr char farewell[] = "\ncinora: interrupted\n";

volatile sig_atomic_t asked = 0;
volatile sig_atomic_t onTerminal = 0;  // where a progress bar may stand in the line

void endAtOnce(int) {
  platform::removeUncommittedFiles();
  const char* line = onTerminal ? farewell : farewell + 1;
  [[maybe_unused]] ssize_t written = write(STDERR_FILENO, line, strlen(line));
  _exit(failedStatus);
}

void onSignal(int signal) {
  if (asked) endAtOnce(signal);
  asked = 1;
  alarm(secondsOfPatience);
}

}  // namespace

void makeWriteSignalsErrors() {
  signal(SIGXFSZ, SIG_IGN);
  signal(SIGPIPE, SIG_IGN);
}

void watchForInterruption() {
  onTerminal = isatty(STDERR_FILENO);
  signal(SIGALRM, endAtOnce);
  struct sigaction action {};
  action.sa_handler = onSignal;
  action.sa_flags = SA_RESTART;
  for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before;
    sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);  // nohup and background jobs stay so
  }
}

bool interrupted() { return asked; }

}  // namespace cinora
