// The editor in the hands of a user: the real program on a display of its own, with real X events through xdotool.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/end_to_end/run_program.h"

namespace cinora::test {

template <class Condition>
bool waitFor(Condition holds, std::chrono::seconds time = std::chrono::seconds(30)) {
  const auto end = std::chrono::steady_clock::now() + time;
  do {
    if (holds()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  } while (std::chrono::steady_clock::now() < end);
  return false;
}

/// What the user does next: keys for the window with this title, or text typed there, until `shows` is a window's title
/// or `written` a file, and no window of the title `leaves` is left.
struct Step {
  const char* window;
  const char* keys = "";
  std::string text = "";
  const char* shows = "";
  std::string written = "";
  const char* leaves = "";
};

/// Without a window manager: windows stand where they ask to, and the focus goes where it is sent. The main window has
/// 1600 by 940 pixels in the upper left corner.
struct EditorOnDisplay : testing::Test {
  ::test::ScratchFolder folder;  // the editor's settings too, and what each program tells
  std::string display;
  std::vector<pid_t> others;  // the display and what else is started
  pid_t editor = -1;

  void SetUp() override;
  void TearDown() override;
  /// Any program on the display; it prints to the file `output` of the folder, its errors to that with "_errors".
  pid_t start(std::vector<std::string> words, const std::string& output);
  void open(const std::vector<std::string>& files);
  Outcome xdotool(std::vector<std::string> words);
  /// The number of the visible window whose title matches; empty without one.
  std::string windowNamed(const std::string& title);
  void take(const Step& step);
  void takeAll(const std::vector<Step>& steps);
  /// Waits until the editor has ended by itself, with nothing to complain of.
  void expectQuit();
};

}  // namespace cinora::test
