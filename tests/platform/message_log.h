// Window messages as readable lines.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "platform/control.h"

namespace platform::test {

struct MessageLog {
  std::vector<std::string> lines;
  std::string prefix;
  MessageLog* target = this;
  int widest = 0;  // messageSizing narrows to it
  std::deque<MessageLog> others;

  /// A log that writes here, with a prefix.
  MessageLog* named(const char* text) {
    MessageLog& other = others.emplace_back();
    other.prefix = text;
    other.target = this;
    return &other;
  }
};

/// For a MessageLog as `user`.
intptr_t logMessage(Window*, uint32_t message, intptr_t first, intptr_t second, void* user);

}  // namespace platform::test
