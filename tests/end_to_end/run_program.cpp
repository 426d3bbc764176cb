#include "tests/end_to_end/run_program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace cinora::test {
namespace {

namespace fs = std::filesystem;
constexpr int timeLimit = 120;  // seconds

[[noreturn]] void becomeProgram(const std::vector<std::string>& words, const RunOptions& options,
                                const std::string& outputs) {
  if (!options.folder.empty() && chdir(options.folder.c_str()) != 0) _exit(126);
  int out = open((outputs + "/out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  int err = open((outputs + "/err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  int in = open("/dev/null", O_RDONLY);
  dup2(in, 0);
  dup2(out, 1);
  dup2(err, 2);
  setenv("XDG_CONFIG_HOME", (outputs + "/config").c_str(), 1);
  setenv("XDG_DATA_HOME", (outputs + "/data").c_str(), 1);
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(name);
  if (options.fileSizeLimit >= 0) {
    rlimit limit{static_cast<rlim_t>(options.fileSizeLimit), static_cast<rlim_t>(options.fileSizeLimit)};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  alarm(timeLimit);
  std::vector<char*> pointers;
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  execvp(pointers[0], pointers.data());
  _exit(127);
}

bool isThere(const std::string& place) {
  if (fs::is_regular_file(place)) return true;
  std::vector<std::string> names = namesIn(place);
  return !names.empty() && names.front().front() == '.';
}

}  // namespace

Outcome runProgram(const std::vector<std::string>& words, const RunOptions& options) {
  ::test::ScratchFolder outputs;
  pid_t child = fork();
  if (child == 0) becomeProgram(words, options, outputs.path());
  if (options.signal) {
    for (int i = 0; i < timeLimit * 100 && !isThere(options.until); i++)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::this_thread::sleep_for(std::chrono::milliseconds(options.signalAfter));
    kill(child, options.signal);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contentsOf(outputs / "out"),
          contentsOf(outputs / "err")};
}

Outcome runCinora(const std::vector<std::string>& arguments, const RunOptions& options) {
  std::vector<std::string> words{BINARY_DIR "/bin/cinora"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return runProgram(words, options);
}

std::string contentsOf(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> decodeFilm(const std::string& path, const std::string& pixelFormat, size_t bytesPerFrame) {
  std::vector<std::string> words{"ffmpeg", "-v", "error", "-i", path, "-f", "rawvideo", "-pix_fmt", pixelFormat, "-"};
  // The decoder of FFmpeg's own passes over the alpha of VP9.
  if (path.ends_with(".webm")) words.insert(words.begin() + 3, {"-c:v", "libvpx-vp9"});
  std::string bytes = runProgram(words).output;
  std::vector<std::string> frames;
  for (size_t at = 0; at + bytesPerFrame <= bytes.size(); at += bytesPerFrame)
    frames.push_back(bytes.substr(at, bytesPerFrame));
  return frames;
}

std::string probe(const std::string& path, const std::string& field) {
  std::string text = runProgram({"ffprobe", "-v", "error", "-select_streams", "v:0", "-count_frames", "-show_entries",
                                 "stream=" + field, "-of", "default=nw=1:nk=1", path})
                         .output;
  return text.substr(0, text.find('\n'));
}

}  // namespace cinora::test
