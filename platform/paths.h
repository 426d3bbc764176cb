// Files and paths. `/` and `\` both separate; what the program writes uses `/`. A look-up that fails is tried again
// without regard to case. A drive prefix is never found as it stands. Paths are in the code page of platform/text.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The path as the file system knows it: separators replaced, letter case repaired where only that differs.
std::string nativePath(std::string_view path);
bool fileExists(std::string_view path);
bool folderExists(std::string_view path);
bool isSeparator(char);
std::string_view fileName(std::string_view path);        // behind the last separator
std::string_view folderOf(std::string_view path);        // up to and including the last separator; empty when none
std::string_view extensionOf(std::string_view path);     // with the dot; empty when none
std::string_view withoutExtension(std::string_view path);
bool equalNoCase(std::string_view, std::string_view);    // ASCII letters only
/// Names (not paths) in `folder` that match a pattern of `*` and `?`, letter case ignored, sorted by bytes.
std::vector<std::string> filesMatching(std::string_view folder, std::string_view pattern);
std::vector<std::string> subfolders(std::string_view folder);
bool makeFolders(std::string_view path);
bool removeFile(std::string_view path);
/// fopen on the native path.
std::FILE* openFile(std::string_view path, const char* mode);
/// Whole file; false when it cannot be read or is larger than `limit` bytes.
bool readFile(std::string_view path, std::string& out, size_t limit = SIZE_MAX);
/// Path of the running program and of the shared object that holds `address`.
std::string programPath();
std::string modulePathOf(const void* address);

/// A file written beside its target under a temporary name, flushed and renamed by `commit`; otherwise removed. Live
/// files are also removed when the process is ended by SIGINT, SIGTERM or SIGHUP (see removeUncommittedFiles).
class ReplacementFile {
 public:
  explicit ReplacementFile(std::string_view target);
  ~ReplacementFile();
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;
  const std::string& temporaryPath() const { return temporary_; }
  bool commit();  // flush to disk, rename; false on failure (errno tells)

 private:
  std::string target_, temporary_;
  bool committed_ = false;
};
/// Async-signal-safe: unlinks every live replacement file.
void removeUncommittedFiles();

}  // namespace platform
