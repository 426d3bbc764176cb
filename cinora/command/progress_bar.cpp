#include "cinora/command/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace cinora {
namespace {

constexpr int barWidth = 30;
constexpr double secondsBetweenDraws = 0.1;

}  // namespace

std::string progressLine(int done, int total, double seconds) {
  int filled = static_cast<int>(static_cast<int64_t>(done) * barWidth / std::max(total, 1));
  double rate = seconds > 0 ? done / seconds : 0;
  char line[160], left[32] = "";
  if (rate > 0) {
    int64_t rest = static_cast<int64_t>((total - done) / rate + 0.5);
    if (rest >= 3600)
      snprintf(left, sizeof left, "%d:%02d:%02d left", static_cast<int>(rest / 3600), static_cast<int>(rest / 60 % 60),
               static_cast<int>(rest % 60));
    else
      snprintf(left, sizeof left, "%d:%02d left", static_cast<int>(rest / 60), static_cast<int>(rest % 60));
  }
  snprintf(line, sizeof line, "[%s%s] %d/%d  %3d%%  %.1f fps  %s", std::string(filled, '#').c_str(),
           std::string(barWidth - filled, '-').c_str(), done, total,
           static_cast<int>(static_cast<int64_t>(done) * 100 / std::max(total, 1)), rate, left);
  return line;
}

ProgressBar::ProgressBar(bool quiet) : visible_(!quiet && isatty(STDERR_FILENO)) {}

ProgressBar::~ProgressBar() {
  if (drawn_) fputc('\n', stderr);
}

void ProgressBar::show(int done, int total) {
  Clock::time_point now = Clock::now();
  if (!visible_ || (done < total && std::chrono::duration<double>(now - last_).count() < secondsBetweenDraws)) return;
  last_ = now;
  drawn_ = true;
  fprintf(stderr, "\r%s\x1b[K", progressLine(done, total, std::chrono::duration<double>(now - start_).count()).c_str());
}

}  // namespace cinora
