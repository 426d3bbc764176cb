// The editor in the hands of a user: real X events through xdotool on a display of its own.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "tests/end_to_end/run_program.h"

namespace cinora::test {
namespace {

namespace fs = std::filesystem;

pid_t start(const std::vector<std::string>& words, const std::string& output) {
  pid_t child = fork();
  if (child != 0) return child;
  std::vector<char*> pointers;
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  if (!freopen(output.c_str(), "w", stdout) || !freopen(output.c_str(), "a", stderr)) _exit(126);
  execvp(pointers[0], pointers.data());
  _exit(127);
}

template <class Condition>
bool waitFor(Condition holds, int seconds = 20) {
  for (int i = 0; i < seconds * 20; i++) {
    if (holds()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

/// What the user does next: keys for the window with this title, or text typed there, until `shows` is a window's title
/// or `written` a file.
struct Step {
  const char* window;
  const char* keys = "";
  std::string text = "";
  const char* shows = "";
  std::string written = "";
};

struct EditorOnDisplay : testing::Test {
  ::test::ScratchFolder folder;
  std::string display;
  pid_t server = -1, editor = -1;

  void SetUp() override {
    if (runProgram({"sh", "-c", "command -v Xvfb && command -v xdotool"}).status != 0)
      GTEST_SKIP() << "Xvfb and xdotool are not installed";
    server = start({"Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp"}, folder / "display");
    ASSERT_TRUE(waitFor([&] { return contentsOf(folder / "display").find('\n') != std::string::npos; }));
    std::string number = contentsOf(folder / "display");
    display = "DISPLAY=:" + number.substr(0, number.find('\n'));
  }
  void TearDown() override {
    for (pid_t child : {editor, server})
      if (child > 0) kill(child, SIGKILL), waitpid(child, nullptr, 0);
  }
  void open(const std::string& file) {
    editor = start(
        {"env", display, "QT_QPA_PLATFORM=xcb", "XDG_CONFIG_HOME=" + folder.path(), BINARY_DIR "/bin/cinora", file},
        folder / "output");
  }
  Outcome xdotool(std::vector<std::string> words) {
    words.insert(words.begin(), {"env", display, "xdotool"});
    return runProgram(words);
  }
  std::string windowNamed(const std::string& title) {
    std::string found = xdotool({"search", "--onlyvisible", "--name", title}).output;
    return found.substr(0, found.find('\n'));
  }
  void take(const Step& step) {
    SCOPED_TRACE(std::string(step.window) + " " + step.keys + step.text);
    ASSERT_TRUE(waitFor([&] { return !windowNamed(step.window).empty(); })) << contentsOf(folder / "output");
    xdotool({"windowfocus", "--sync", windowNamed(step.window)});
    if (!step.text.empty()) xdotool({"type", "--delay", "5", step.text});
    if (*step.keys) xdotool({"key", "--delay", "20", step.keys});
    ASSERT_TRUE(waitFor([&] { return !*step.shows || !windowNamed(step.shows).empty(); }));
    ASSERT_TRUE(waitFor([&] { return step.written.empty() || fs::exists(step.written); }));
  }
};

TEST_F(EditorOnDisplay, AFilmIsOpenedSavedExportedAndLeft) {
  folder.write("film.zlo",
               "[zenlay]\nwidth=64\nheight=48\nrate=25\nscale=1\nlength=10\naudio_rate=44100\naudio_ch=2\n"
               "[0]\nstart=1\nend=10\nlayer=1\noverlay=1\ncamera=0\n[0.0]\n_name=Graphic\nSize=20\ntype=2\n"
               "color=ffffff\n[0.1]\n_name=Standard drawing\n");
  open(folder / "film.zlo");
  std::string project = folder / "work.cnp", film = folder / "work.mp4";
  const Step steps[] = {
      {.window = "film.zlo", .keys = "Right"},
      {.window = "film.zlo", .keys = "ctrl+shift+s", .shows = "Save As"},
      {.window = "Save As", .keys = "ctrl+a"},
      {.window = "Save As", .keys = "Return", .text = project, .shows = "work.cnp", .written = project},
      {.window = "work.cnp", .keys = "ctrl+e", .shows = "Export Film"},
      {.window = "Export Film", .keys = "Return", .written = film},
      {.window = "work.cnp", .keys = "ctrl+q"},
  };
  for (const Step& step : steps) {
    take(step);
    if (HasFatalFailure()) return;
  }
  int status = -1;
  ASSERT_TRUE(waitFor([&] { return waitpid(editor, &status, WNOHANG) == editor; }));
  editor = -1;
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(contentsOf(folder / "output"), "");
  std::vector<std::string> frames = decodeFilm(film, "gray", 64 * 48);
  ASSERT_EQ(frames.size(), 10u);
  EXPECT_GT(static_cast<uint8_t>(frames[4][24 * 64 + 32]), 225);
  EXPECT_LT(static_cast<uint8_t>(frames[4][4 * 64 + 4]), 20);
}

}  // namespace
}  // namespace cinora::test
