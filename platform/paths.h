// Files and paths. `/` and `\` both separate; what the program writes uses `/`. A look-up that fails is tried again
// without regard to the case of ASCII letters. A drive prefix (a letter, `:`, a separator) is never found as it stands.
// Paths are in the code page of platform/text.h; in page 932 a `\` that ends a double-byte character separates nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The path as the file system knows it, in UTF-8: separators replaced, letter case repaired where only that differs,
/// for folders also when the file itself does not exist. Empty, which no call finds, for a drive prefix.
std::string nativePath(std::string_view path);
/// The same in the letter case given, for what is to be made: a file of a like name is another file.
std::string exactPath(std::string_view path);
bool fileExists(std::string_view path);
bool folderExists(std::string_view path);
bool isSeparator(char);
std::string_view fileName(std::string_view path);     // behind the last separator
std::string_view folderOf(std::string_view path);     // up to and including the last separator; empty when none
std::string_view extensionOf(std::string_view path);  // with the dot; empty when none
std::string_view withoutExtension(std::string_view path);
bool equalNoCase(std::string_view, std::string_view);  // ASCII letters only
/// Names (not paths) of the files in `folder` that match a pattern of `*` and `?`, letter case ignored, sorted by
/// bytes.
/// `?` stands for one character, `*.*` for every name.
std::vector<std::string> filesMatching(std::string_view folder, std::string_view pattern);
std::vector<std::string> subfolders(std::string_view folder);
bool makeFolders(std::string_view path);
bool removeFile(std::string_view path);
/// fopen on the native path; not inherited by child processes.
std::FILE* openFile(std::string_view path, const char* mode);
/// Whole file; false when it cannot be read, is larger than `limit` bytes, or is neither a regular file nor a pipe.
bool readFile(std::string_view path, std::string& out, size_t limit = SIZE_MAX);
/// Path of the running program and of the shared object that holds `address`.
std::string programPath();
std::string modulePathOf(const void* address);

/// A file written beside its target under a temporary name (with the target's extension), flushed and renamed by
/// `commit`; otherwise removed. It exists, empty and with the permissions the target has or would get, from
/// construction on; when it could not be created `temporaryPath` is empty and errno tells. A target that is a symbolic
/// link is written through; one that is a device or a pipe is written in place, its `temporaryPath` being the target
/// itself. Live files are also removed when SIGINT, SIGTERM or SIGHUP end the process; a program with handlers of its
/// own for these calls removeUncommittedFiles there.
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
  int guard_ = -1;
  bool inPlace_ = false, committed_ = false;
};
/// Async-signal-safe: unlinks every live replacement file.
void removeUncommittedFiles();

}  // namespace platform
