// How the host's operations give up.
#pragma once

#include <stdexcept>

namespace cinora {

/// The work cannot be done; one line for the user. Exit status 1.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What was asked for makes no sense; one line for the user. Exit status 2.
struct WrongUsage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace cinora
