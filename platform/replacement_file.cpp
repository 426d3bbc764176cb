#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>

#include "platform/live_files.h"
#include "platform/paths.h"

namespace platform {
namespace {

constexpr size_t maxStem = 180;  // leaves room for the number and the extension in a file name of 255 bytes

/// Of a native path, up to and including the last `/`.
size_t folderLength(const std::string& path) { return path.rfind('/') + 1; }

/// Unlike any other of this process, and telling of its maker when it is ever left behind.
std::string temporaryName(const std::string& target) {
  static std::atomic<unsigned> counter;
  std::string name = target.substr(folderLength(target));
  size_t dot = name.rfind('.');
  std::string extension = dot == std::string::npos || dot == 0 || name.size() - dot > 32 ? "" : name.substr(dot);
  name.resize(std::min(name.size() - extension.size(), maxStem));
  return target.substr(0, folderLength(target)) + '.' + name + '-' + std::to_string(getpid()) + '-' +
         std::to_string(counter++) + extension;
}

bool flushToDisk(const std::string& path, int flags) {
  int file = open(path.c_str(), flags | O_CLOEXEC);
  if (file < 0) return false;
  bool flushed = fsync(file) == 0 || errno == EINVAL || errno == EROFS;  // some file systems cannot flush
  int savedError = errno;
  close(file);
  errno = savedError;
  return flushed;
}

}  // namespace

ReplacementFile::ReplacementFile(std::string_view target) : target_(exactPath(target)) {
  if (target_.empty()) {
    errno = ENOENT;
    return;
  }
  char resolved[PATH_MAX];
  if (realpath(target_.c_str(), resolved)) target_ = resolved;
  struct stat status;
  mode_t mode = 0666;
  bool replaces = stat(target_.c_str(), &status) == 0;
  if (replaces && S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    return;
  }
  if (replaces && !S_ISREG(status.st_mode)) {
    inPlace_ = true;
    temporary_ = target_;
    return;
  }
  for (int tries = 0; tries < 100; tries++) {
    std::string name = temporaryName(target_);
    guard_ = guardLiveFile(name);  // first, so that a signal right behind the creation finds it
    int file = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file >= 0) {
      if (replaces && fchmod(file, status.st_mode & 07777) != 0) errno = 0;  // the usual permissions then
      close(file);
      temporary_ = name;
      return;
    }
    int savedError = errno;
    releaseLiveFile(guard_);
    guard_ = noLiveFile;
    errno = savedError;
    if (savedError != EEXIST) return;
  }
}

ReplacementFile::~ReplacementFile() {
  int savedError = errno;
  if (!committed_ && !inPlace_ && !temporary_.empty()) unlink(temporary_.c_str());
  releaseLiveFile(guard_);
  errno = savedError;
}

bool ReplacementFile::commit() {
  if (committed_) return true;
  if (temporary_.empty()) return false;
  if (!inPlace_) {
    if (!flushToDisk(temporary_, O_RDONLY) || rename(temporary_.c_str(), target_.c_str()) != 0) return false;
    size_t length = folderLength(target_);
    flushToDisk(length == 0 ? "." : target_.substr(0, length), O_RDONLY | O_DIRECTORY);
  }
  committed_ = true;
  return true;
}

}  // namespace platform
