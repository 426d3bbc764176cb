#include "cinora/host/project.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "cinora/host/project_file.h"
#include "cinora/support/failure.h"
#include "platform/paths.h"

namespace cinora {
namespace {

constexpr int64_t maxImagePixels = 8192 * 8192;  // so that a few bytes cannot ask for gigabytes
constexpr size_t headBytes = 1 << 16;
constexpr std::string_view backupMagic = "80ZL";
constexpr int32_t backupWidthAt = 12;

struct KindRow {
  const char* extension;
  ProjectKind kind;
};
constexpr KindRow kindTable[] = {
    {".cnp", ProjectKind::project}, {".zlo", ProjectKind::objectFile}, {".zenlay_backup", ProjectKind::backup}};

std::string fullPath(const std::string& path) {
  std::error_code error;
  std::filesystem::path full = std::filesystem::absolute(path, error);
  return error ? path : full.lexically_normal().string();
}

/// A pipe would keep the program waiting, a device feed it for ever.
void requireRegularFile(const std::string& path) {
  std::error_code error;
  std::filesystem::file_status status = std::filesystem::status(platform::nativePath(path), error);
  if (!std::filesystem::exists(status)) throw Failure(path + ": " + error.message());
  if (std::filesystem::is_directory(status)) throw Failure(path + " is a folder");
  if (!std::filesystem::is_regular_file(status)) throw Failure(path + " is no regular file");
}

/// The first bytes of a file.
std::string readHead(const std::string& path) {
  errno = 0;
  std::FILE* file = platform::openFile(path, "rb");
  if (!file) throw Failure(path + ": " + (errno ? strerror(errno) : "cannot be read"));
  std::string head(headBytes, '\0');
  head.resize(fread(head.data(), 1, head.size(), file));
  fclose(file);
  return head;
}

void takeSizeOfBackup(FilmFile& film) {
  std::string head = readHead(film.path);
  if (!head.starts_with(backupMagic)) throw Failure(film.path + ": not a backup of a project");
  if (head.size() < backupWidthAt + 8) return;
  memcpy(&film.width, head.data() + backupWidthAt, 4);
  memcpy(&film.height, head.data() + backupWidthAt + 4, 4);
}

void takeSizeOfObjectFile(FilmFile& film) {
  platform::IniFile ini = platform::IniFile::parse(readHead(film.path));
  film.width = ini.getInt("zenlay", "width", 0);
  film.height = ini.getInt("zenlay", "height", 0);
}

void readHostProject(FilmFile& film) {
  std::string reason = readProject(film.path, &film.project);
  if (!reason.empty()) throw Failure(film.path + ": " + reason);
  film.width = film.project.format.width;
  film.height = film.project.format.height;
}

/// The message that tells most: filters speak first of the cause.
[[noreturn]] void failWithMessage(Host& host, const std::string& path, const char* fallback) {
  std::vector<std::string> messages = host.takeMessages();
  const std::string message = messages.empty() ? fallback : messages.front();
  throw Failure(message.starts_with(path) ? message : path + ": " + message);
}

Filter& editorOf(Host& host) {
  Filter* editor = host.plugins.editor();
  if (editor) return *editor;
  std::vector<std::string> messages = host.takeMessages();  // of one that refused to start
  throw Failure(messages.empty() ? host.plugins.whyNoEditor() : messages.front());
}

/// Gives the editor a command whose file dialog answers with the path. The command's result.
intptr_t commandWithFile(Host& host, int command, const std::string& path, std::string DialogAnswers::*dialog) {
  if (path.size() >= fileNameBytes) throw Failure(pathTooLong(path));
  host.dialogs.*dialog = path;
  intptr_t result = platform::sendMessage(editorOf(host).window, zenlay::messageCommand, command, 0);
  host.dialogs = {};
  return result;
}

/// False when the editor does not know the query.
bool ask(Host& host, zenlay::PluginQuery query, zenlay::QueryRequest& request) {
  return platform::sendMessage(editorOf(host).window, zenlay::messageQuery, query,
                               reinterpret_cast<intptr_t>(&request)) == 1;
}

/// Adds the editor's word on what an object file could not hold, or could not give, to the messages.
void takeLeftOut(Host& host, const std::string& path) {
  zenlay::QueryRequest request{};
  if (ask(host, zenlay::queryLeftOut, request) && request.answer) host.addMessage(path + ": " + request.answer);
}

void openHostProject(Host& host, const std::string& path, const ProjectFile& project) {
  // Who edits can bring the film back or work on without it; a render without it would be a wrong film.
  const ClipFormat* absentAs = host.desktop.mainWindow ? &project.format : nullptr;
  if (!host.openEdit(project.clipName, absentAs)) failWithMessage(host, path, "the clip cannot be opened");
  host.setFrameCount(project.frameCount);
  moveTo(host.edit, project.currentFrame);
  selectFrames(host.edit, project.selectionFirst, project.selectionLast);
  for (const FilterBlock& block : project.filters) {
    const auto& filters = host.plugins.filters();
    auto found = std::find_if(filters.begin(), filters.end(), [&](const auto& filter) {
      return filter->record->name == block.name && filter->record->projectLoad;
    });
    if (found == filters.end()) {
      host.addMessage("the project has data of a filter that is not loaded: " + block.name);
      host.absentFilters.push_back(block);
      continue;
    }
    zenlay::HostFilterRecord* record = (*found)->record;
    int size = static_cast<int>(std::min<size_t>(block.data.size(), INT32_MAX));
    if (record->projectLoad(record, host.editHandle(), block.data.data(), size) != 1)
      failWithMessage(host, path, "a filter's data in the project cannot be read");
  }
  host.plugins.broadcast(zenlay::messageUpdate);
  host.noteChange(true);
}

void saveHostProject(Host& host, const std::string& path) {
  std::string reason = writeProject(path, takeProject(host, path));
  if (!reason.empty()) throw Failure(path + ": " + reason);
}

void saveBackup(Host& host, const std::string& path) {
  platform::ReplacementFile file(path);
  if (file.temporaryPath().empty()) throw Failure(path + ": " + strerror(errno));
  zenlay::QueryRequest request{file.temporaryPath().c_str(), nullptr};
  if (!ask(host, zenlay::queryWriteBackup, request)) throw Failure(path + ": the editing plug-in writes no backups");
  if (request.answer) throw Failure(path + ": " + request.answer);
  if (!file.commit()) throw Failure(path + ": " + strerror(errno));
}

void saveObjectFile(Host& host, const std::string& path) {
  platform::ReplacementFile file(path);
  if (file.temporaryPath().empty()) throw Failure(path + ": " + strerror(errno));
  host.takeMessages();
  commandWithFile(host, zenlay::commandSaveObjectFile, file.temporaryPath(), &DialogAnswers::save);
  std::error_code error;
  bool written = std::filesystem::file_size(file.temporaryPath(), error) > 0 && !error;
  if (!written) failWithMessage(host, path, "the object file could not be written");
  if (std::vector<std::string> messages = host.takeMessages(); !messages.empty())
    throw Failure(path + ": " + messages.front());
  if (!file.commit()) throw Failure(path + ": " + strerror(errno));
  takeLeftOut(host, path);
}

}  // namespace

ProjectKind projectKind(const std::string& path) {
  for (const KindRow& row : kindTable)
    if (platform::equalNoCase(platform::extensionOf(path), row.extension)) return row.kind;
  throw WrongUsage(path + ": a project (.cnp), an object file (.zlo) or a backup (.zenlay_backup) is wanted");
}

FilmFile readFilmFile(const std::string& path) {
  FilmFile film{.path = path, .kind = projectKind(path), .project = {}};
  requireRegularFile(path);
  switch (film.kind) {
    case ProjectKind::project:
      readHostProject(film);
      break;
    case ProjectKind::backup:
      takeSizeOfBackup(film);
      break;
    case ProjectKind::objectFile:
      takeSizeOfObjectFile(film);
      break;
  }
  if (film.width > maxSide || film.height > maxSide || int64_t{film.width} * film.height > maxImagePixels)
    throw Failure(path + ": an image of " + std::to_string(film.width) + "x" + std::to_string(film.height) +
                  " is larger than can be made");
  return film;
}

ProjectFile takeProject(Host& host, const std::string& name) {
  ProjectFile project{.clipName = host.edit.name,
                      .format = host.edit.format,
                      .frameCount = host.edit.frameCount,
                      .currentFrame = host.edit.currentFrame,
                      .selectionFirst = host.edit.selectionFirst,
                      .selectionLast = host.edit.selectionLast,
                      .filters = {}};
  for (const auto& filter : host.plugins.filters()) {
    zenlay::HostFilterRecord* record = filter->record;
    int32_t size = 0;
    if (!record->projectSave || record->projectSave(record, host.editHandle(), nullptr, &size) != 1 || size < 0)
      continue;
    std::string data(size, '\0');
    if (record->projectSave(record, host.editHandle(), data.data(), &size) != 1)
      failWithMessage(host, name, "a filter could not save its data");
    data.resize(std::min<size_t>(data.size(), size));
    project.filters.push_back({record->name, std::move(data)});
  }
  project.filters.insert(project.filters.end(), host.absentFilters.begin(), host.absentFilters.end());
  return project;
}

void openProject(Host& host, const FilmFile& film) {
  MessageRecorder recorder;
  host.closeEdit();
  host.projectFile = fullPath(film.path);
  if (film.kind == ProjectKind::project) {
    openHostProject(host, film.path, film.project);
  } else {
    int command = film.kind == ProjectKind::backup ? zenlay::commandOpenBackup : zenlay::commandOpenObjectFile;
    if (commandWithFile(host, command, film.path, &DialogAnswers::load) != 1) host.closeEdit();
  }
  if (!host.edit.open) failWithMessage(host, film.path, "the file cannot be opened");
  if (film.kind == ProjectKind::objectFile) takeLeftOut(host, film.path);
}

void saveProject(Host& host, const std::string& path) {
  MessageRecorder recorder;
  switch (projectKind(path)) {
    case ProjectKind::project:
      saveHostProject(host, path);
      break;
    case ProjectKind::backup:
      saveBackup(host, path);
      break;
    case ProjectKind::objectFile:
      saveObjectFile(host, path);
      break;
  }
}

void rescueProject(Host& host) {
  zenlay::QueryRequest request{};
  if (!ask(host, zenlay::queryWriteBackup, request)) throw Failure("the editing plug-in writes no backups");
  if (request.answer) throw Failure(request.answer);
}

std::string askEditor(Host& host, zenlay::PluginQuery query, const char* argument) {
  zenlay::QueryRequest request{argument, nullptr};
  if (!ask(host, query, request) || !request.answer) throw Failure("the editing plug-in does not answer");
  return request.answer;
}

}  // namespace cinora
