// The command line of the program.
#pragma once

#include <optional>
#include <string>

namespace cinora {

inline constexpr int statusDone = 0, statusFailed = 1, statusWrongUsage = 2;

/// Runs one command and gives the exit status; failures are one line on standard error.
int runCommandLine(int argc, const char* const* argv);

struct FrameRange {
  int first, last;  // from 1, both included
};
/// "12" or "5-120"; nothing when it is not that, or runs backwards.
std::optional<FrameRange> parseFrameRange(const std::string& text);

}  // namespace cinora
