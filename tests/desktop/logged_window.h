// A window on the desktop that writes its messages down.
#pragma once

#include "tests/platform/message_log.h"
#include "tests/support/qt/events.h"

namespace platform::test {

using Lines = std::vector<std::string>;

struct LoggedWindow : testing::Test {
  MessageLog log;
  Window* window;

  explicit LoggedWindow(const WindowOptions& options) : window(createWindow(nullptr, logMessage, &log, options)) {
    showActive(window);
    log.lines.clear();
  }
  ~LoggedWindow() override {
    destroyWindow(window);
    settle();
  }
  Window* add(ControlKind kind, int id, Rect place, const char* text = "", uint32_t style = 0) {
    Window* control = createControl(window, kind, id, place, text, style);
    settle();
    log.lines.clear();
    return control;
  }
};

}  // namespace platform::test
