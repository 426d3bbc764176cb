#include "platform/paths.h"

#include <dirent.h>
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <exception>

#include "platform/text.h"

namespace platform {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool isLetter(char c) { return lower(c) >= 'a' && lower(c) <= 'z'; }

/// characterBytes for text that need not end in NUL.
size_t characterLength(std::string_view text) {
  char head[5] = {};
  memcpy(head, text.data(), std::min<size_t>(text.size(), 4));
  return std::min<size_t>(text.size(), characterBytes(head));
}

/// Position of the last separator, or npos.
size_t lastSeparator(std::string_view path) {
  size_t found = std::string_view::npos;
  for (size_t i = 0; i < path.size(); i += characterLength(path.substr(i)))
    if (isSeparator(path[i])) found = i;
  return found;
}

bool hasDrivePrefix(std::string_view path) {
  return path.size() >= 3 && isLetter(path[0]) && path[1] == ':' && isSeparator(path[2]);
}

/// In UTF-8 with `/` only.
std::string withSlashes(std::string_view path) {
  std::string out(path);
  for (size_t i = 0; i < out.size(); i += characterLength(std::string_view(out).substr(i)))
    if (out[i] == '\\') out[i] = '/';
  return utf8FromAnsi(out);
}

bool exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

/// Calls visit(name, type) for every entry but "." and ".."; names as the file system has them.
template <typename Visit>
void visitFolder(const std::string& folder, Visit visit) {
  DIR* directory = opendir(folder.empty() ? "." : folder.c_str());
  if (!directory) return;
  while (const dirent* entry = readdir(directory)) {
    std::string_view name = entry->d_name;
    if (name != "." && name != "..") visit(name, entry->d_type);
  }
  closedir(directory);
}

/// The entry of `folder` that differs from `name` in letter case only, the first by bytes; empty when there is none.
std::string entryNoCase(const std::string& folder, std::string_view name) {
  std::string best;
  visitFolder(folder, [&](std::string_view entry, int) {
    if (equalNoCase(entry, name) && (best.empty() || entry < best)) best = entry;
  });
  return best;
}

/// Walks down from the left; from the first part that no entry matches on, the rest stays as it is.
std::string repairCase(const std::string& path) {
  std::string known;
  size_t at = 0;
  while (at < path.size()) {
    size_t end = std::min(path.find('/', at), path.size());
    std::string part = path.substr(at, end - at);
    if (!part.empty() && !exists(known + part)) {
      std::string entry = entryNoCase(known, part);
      if (entry.empty()) return known + path.substr(at);
      part = entry;
    }
    known += part;
    if (end < path.size()) known += '/';
    at = end + 1;
  }
  return known;
}

bool statusOf(std::string_view path, struct stat& status) {
  std::string native = nativePath(path);
  return !native.empty() && stat(native.c_str(), &status) == 0;
}

bool matches(std::string_view name, std::string_view pattern) {
  size_t n = 0, p = 0, starName = 0, star = std::string_view::npos;
  while (n < name.size()) {
    size_t length = characterLength(name.substr(n));
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      starName = n;
    } else if (p < pattern.size() && pattern[p] == '?') {
      p++;
      n += length;
    } else if (p + length <= pattern.size() && equalNoCase(name.substr(n, length), pattern.substr(p, length))) {
      p += length;
      n += length;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      starName += characterLength(name.substr(starName));
      n = starName;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') p++;
  return p == pattern.size();
}

/// Sorted names in `folder` of regular files, or of folders; links count as what they point to.
std::vector<std::string> entriesOf(std::string_view folder, bool folders) {
  std::vector<std::string> names;
  std::string native = nativePath(folder);
  if (native.empty() && !folder.empty()) return names;
  std::string base = native.empty() || native.back() == '/' ? native : native + '/';
  visitFolder(native, [&](std::string_view name, int type) {
    if (type == DT_LNK || type == DT_UNKNOWN) {
      struct stat status;
      if (stat((base + std::string(name)).c_str(), &status) != 0) return;
      type = S_ISDIR(status.st_mode) ? DT_DIR : S_ISREG(status.st_mode) ? DT_REG : DT_UNKNOWN;
    }
    if (type == (folders ? DT_DIR : DT_REG)) names.push_back(ansiFromUtf8(name));
  });
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

bool isSeparator(char c) { return c == '/' || c == '\\'; }

std::string exactPath(std::string_view path) {
  if (path.empty() || hasDrivePrefix(path) || path.find('\0') != std::string_view::npos) return {};
  return withSlashes(path);
}

std::string nativePath(std::string_view path) {
  std::string native = exactPath(path);
  return native.empty() || exists(native) ? native : repairCase(native);
}

bool fileExists(std::string_view path) {
  struct stat status;
  return statusOf(path, status) && !S_ISDIR(status.st_mode);
}

bool folderExists(std::string_view path) {
  struct stat status;
  return statusOf(path, status) && S_ISDIR(status.st_mode);
}

std::string_view fileName(std::string_view path) {
  size_t at = lastSeparator(path);
  return at == std::string_view::npos ? path : path.substr(at + 1);
}

std::string_view folderOf(std::string_view path) {
  size_t at = lastSeparator(path);
  return at == std::string_view::npos ? std::string_view{} : path.substr(0, at + 1);
}

std::string_view extensionOf(std::string_view path) {
  std::string_view name = fileName(path);
  size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? std::string_view{} : name.substr(dot);
}

std::string_view withoutExtension(std::string_view path) {
  return path.substr(0, path.size() - extensionOf(path).size());
}

bool equalNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

std::vector<std::string> filesMatching(std::string_view folder, std::string_view pattern) {
  std::vector<std::string> names = entriesOf(folder, false);
  if (pattern == "*.*") return names;
  std::erase_if(names, [&](const std::string& name) { return !matches(name, pattern); });
  return names;
}

std::vector<std::string> subfolders(std::string_view folder) { return entriesOf(folder, true); }

bool makeFolders(std::string_view path) {
  std::string native = nativePath(path);
  if (native.empty()) return false;
  for (size_t end = 1; end <= native.size(); end++) {
    if (end < native.size() && native[end] != '/') continue;
    if (mkdir(native.substr(0, end).c_str(), 0777) != 0 && errno != EEXIST && errno != EISDIR) {
      // A folder above that can be passed but not written to (or a read-only mount) is no failure while it exists.
      struct stat status;
      if (stat(native.substr(0, end).c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return false;
    }
  }
  return folderExists(path);
}

bool removeFile(std::string_view path) {
  std::string native = nativePath(path);
  return !native.empty() && unlink(native.c_str()) == 0;
}

std::FILE* openFile(std::string_view path, const char* mode) {
  std::string native = nativePath(path);
  if (native.empty()) {
    errno = ENOENT;
    return nullptr;
  }
  return std::fopen(native.c_str(), (std::string(mode) + 'e').c_str());
}

bool readFile(std::string_view path, std::string& out, size_t limit) {
  out.clear();
  std::FILE* file = openFile(path, "rb");
  if (!file) return false;
  struct stat status;
  bool good = fstat(fileno(file), &status) == 0 && (S_ISREG(status.st_mode) || S_ISFIFO(status.st_mode)) &&
              static_cast<uint64_t>(status.st_size) <= limit;
  try {
    // One byte more than the size says, so that the end of the file shows in the first round.
    size_t chunk = good ? static_cast<size_t>(status.st_size) + 1 : 0;
    for (size_t got = chunk; good && got == chunk;) {
      size_t before = out.size();
      out.resize(before + chunk);
      got = std::fread(out.data() + before, 1, chunk, file);
      out.resize(before + got);
      good = !std::ferror(file) && out.size() <= limit;
      if (got == chunk) got = chunk = std::clamp<size_t>(out.size(), 4096, 1 << 24);
    }
  } catch (const std::exception&) {  // more than memory or a string holds
    good = false;
  }
  std::fclose(file);
  if (!good) out.clear();
  return good;
}

std::string programPath() {
  char buffer[PATH_MAX];
  ssize_t length = readlink("/proc/self/exe", buffer, sizeof buffer);
  return length > 0 ? ansiFromUtf8(std::string_view(buffer, length)) : std::string{};
}

std::string modulePathOf(const void* address) {
  Dl_info info;
  if (!dladdr(address, &info) || !info.dli_fname || !info.dli_fname[0]) return {};
  // The main program is listed by the name it was called with.
  char resolved[PATH_MAX];
  if (info.dli_fname[0] != '/') return realpath(info.dli_fname, resolved) ? ansiFromUtf8(resolved) : programPath();
  return ansiFromUtf8(info.dli_fname);
}

}  // namespace platform
