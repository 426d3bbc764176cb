#include "cinora/export/media_guard.h"

#include <sys/stat.h>

#include <map>
#include <utility>

#include "cinora/host/description.h"
#include "cinora/host/media_files.h"
#include "cinora/host/project.h"
#include "cinora/support/failure.h"
#include "platform/paths.h"

namespace cinora {
namespace {

using FileId = std::pair<dev_t, ino_t>;

std::optional<FileId> fileId(const std::string& nativePath) {
  struct stat status;
  if (stat(nativePath.c_str(), &status) != 0) return {};
  return FileId(status.st_dev, status.st_ino);
}

/// What each file is to the film. Any text of the project may name one, that of a figure picture behind a star.
std::map<FileId, const char*> filesOf(Host& host) {
  std::map<FileId, const char*> files;
  auto add = [&](const std::string& name, const char* what) {
    if (auto id = fileId(platform::nativePath(findMedia(name)))) files.emplace(*id, what);
  };
  if (host.edit.media) add(host.edit.name, " is the film being edited");
  for (const std::string& text : textsOf(askEditor(host, zenlay::queryTexts, nullptr)))
    add(text.starts_with('*') ? text.substr(1) : text, " is a file the film is made of");
  return files;
}

}  // namespace

void keepMedia(Host& host, const ExportRequest& request) {
  std::map<FileId, const char*> files;
  const std::string& path = request.output.path;
  const int last = numberedName(path, 1) ? request.last : request.first;
  for (int frame = request.first; frame <= last; frame++) {
    const std::string name = numberedName(path, frame + 1).value_or(path);
    const std::optional<FileId> id = fileId(platform::exactPath(name));
    if (!id) continue;
    if (files.empty()) files = filesOf(host);
    if (auto found = files.find(*id); found != files.end()) throw WrongUsage(name + found->second);
  }
}

}  // namespace cinora
