#include "tests/end_to_end/editor_on_display.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

namespace cinora::test {

pid_t EditorOnDisplay::start(std::vector<std::string> words, const std::string& output) {
  pid_t child = fork();
  if (child != 0) return child;
  words.insert(words.begin(), {"env", "QT_QPA_PLATFORM=xcb", "QT_SCALE_FACTOR=1", "XDG_CONFIG_HOME=" + folder.path()});
  if (!display.empty()) words.insert(words.begin() + 1, display);
  std::vector<char*> pointers;
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  std::string path = folder / output, errors = path + "_errors";
  if (!freopen(path.c_str(), "a", stdout) || !freopen(errors.c_str(), "a", stderr)) _exit(126);
  execvp(pointers[0], pointers.data());
  _exit(127);
}

void EditorOnDisplay::SetUp() {
  if (runProgram({"sh", "-c", "command -v Xvfb && command -v xdotool"}).status != 0)
    GTEST_SKIP() << "Xvfb and xdotool are not installed";
  others.push_back(
      start({"Xvfb", "-displayfd", "1", "-screen", "0", "1800x1000x24", "-nolisten", "tcp", "-noreset"}, "display"));
  ASSERT_TRUE(waitFor([&] { return contentsOf(folder / "display").find('\n') != std::string::npos; }));
  std::string number = contentsOf(folder / "display");
  display = "DISPLAY=:" + number.substr(0, number.find('\n'));
}

void EditorOnDisplay::TearDown() {
  others.insert(others.begin(), editor);
  for (pid_t child : others)  // a display that is asked to end takes its lock and socket away
    if (child > 0) kill(child, child == editor ? SIGKILL : SIGTERM), waitpid(child, nullptr, 0);
}

void EditorOnDisplay::open(const std::vector<std::string>& files) {
  std::vector<std::string> words{BINARY_DIR "/bin/cinora"};
  words.insert(words.end(), files.begin(), files.end());
  editor = start(words, "editor");
}

Outcome EditorOnDisplay::xdotool(std::vector<std::string> words) {
  words.insert(words.begin(), {"env", display, "xdotool"});
  return runProgram(words);
}

std::string EditorOnDisplay::windowNamed(const std::string& title) {
  std::string found = xdotool({"search", "--onlyvisible", "--name", title}).output;
  return found.substr(0, found.find('\n'));
}

void EditorOnDisplay::take(const Step& step) {
  SCOPED_TRACE(std::string(step.window) + " " + step.keys + step.text);
  ASSERT_TRUE(waitFor([&] { return !windowNamed(step.window).empty(); })) << contentsOf(folder / "editor_errors");
  xdotool({"windowfocus", "--sync", windowNamed(step.window)});
  if (!step.text.empty()) xdotool({"type", "--delay", "5", step.text});
  if (*step.keys) xdotool({"key", "--delay", "20", step.keys});
  ASSERT_TRUE(waitFor([&] { return !*step.shows || !windowNamed(step.shows).empty(); }));
  ASSERT_TRUE(waitFor([&] { return step.written.empty() || std::filesystem::exists(step.written); }));
  ASSERT_TRUE(waitFor([&] { return !*step.leaves || windowNamed(step.leaves).empty(); }));
}

void EditorOnDisplay::takeAll(const std::vector<Step>& steps) {
  for (const Step& step : steps) ASSERT_NO_FATAL_FAILURE(take(step));
}

void EditorOnDisplay::expectQuit() {
  int status = -1;
  ASSERT_TRUE(waitFor([&] { return waitpid(editor, &status, WNOHANG) == editor; }));
  editor = -1;
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(contentsOf(folder / "editor") + contentsOf(folder / "editor_errors"), "");
}

}  // namespace cinora::test
