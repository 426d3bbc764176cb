// The progress of a render on a terminal.
#pragma once

#include <chrono>
#include <string>

namespace cinora {

/// "[######----]  120/300   40%   35.2 fps   0:05 left"
std::string progressLine(int done, int total, double seconds);

/// Draws at most ten times a second, on standard error, and only when that is a terminal.
class ProgressBar {
 public:
  explicit ProgressBar(bool quiet);
  ~ProgressBar();  // ends the line
  void show(int done, int total);

 private:
  using Clock = std::chrono::steady_clock;
  bool visible_, drawn_ = false;
  Clock::time_point start_ = Clock::now(), last_{};
};

}  // namespace cinora
