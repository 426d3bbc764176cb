#include "cinora/desktop/film_session.h"

#include <algorithm>
#include <filesystem>
#include <functional>

#include "cinora/host/media_files.h"
#include "cinora/host/project.h"
#include "cinora/support/failure.h"
#include "platform/paths.h"

namespace cinora::desktop {
namespace {

constexpr char section[] = "desktop";
constexpr ClipFormat formatOfSound{1920, 1080, 30, 1, 48000, 2};  // of a project begun with a file without pictures
/// Where the plug-in's window takes a file for the first frame in view of its first layer.
constexpr platform::Point firstLayerAt{64, 44};

std::string recentKey(size_t index) { return "recent" + std::to_string(index); }

std::string fullPath(const std::string& path) {
  std::error_code error;
  std::filesystem::path full = std::filesystem::absolute(platform::nativePath(path), error);
  return error ? path : full.lexically_normal().string();
}

bool isFilmFile(const std::string& path) {
  try {
    projectKind(path);
    return true;
  } catch (const WrongUsage&) {
    return false;
  }
}

bool isProject(const std::string& path) { return isFilmFile(path) && projectKind(path) == ProjectKind::project; }

}  // namespace

FilmSession::FilmSession(Host& host) : host_(host) {
  for (size_t i = 0; i < maxRecentFiles; i++)
    if (std::string path = host.settings.get(section, recentKey(i), ""); !path.empty()) recent_.push_back(path);
}

std::string FilmSession::name() const {
  const std::string& file = path_.empty() ? source_ : path_;
  return file.empty() ? "Untitled" : std::string(platform::fileName(file));
}

void FilmSession::check(const std::string& path) const {
  if (isFilmFile(path)) {
    readFilmFile(path);
    return;
  }
  zenlay::MediaHandle media = openMedia(path, nullptr, 0);
  if (!media) throw Failure(path + " is neither a film nor a media file that can be read");
  closeMedia(media);
}

void FilmSession::place(const std::string& path) {
  Filter* editor = host_.plugins.editor();
  if (!editor) throw Failure(host_.plugins.whyNoEditor());
  MessageRecorder recorder;
  platform::DroppedFiles files{firstLayerAt, &path, 1};
  if (platform::sendMessage(editor->window, platform::messageFilesDropped, 0, reinterpret_cast<intptr_t>(&files)))
    return;
  std::vector<std::string> messages = host_.takeMessages();
  throw Failure(messages.empty() ? path + " finds no place on the timeline" : messages.back());
}

void FilmSession::load(const std::string& path) {
  if (isFilmFile(path)) return openProject(host_, readFilmFile(path));
  host_.projectFile.clear();
  create(formatOfMedia(path).value_or(formatOfSound));
  place(path);
}

void FilmSession::openFile(const std::string& given) {
  std::string path = fullPath(given);
  check(path);
  std::optional<Kept> before = keep();
  try {
    load(path);
  } catch (...) {
    close();
    try {
      reopen(before);
    } catch (const std::exception&) {  // what is told is why the new file did not open
    }
    throw;
  }
  adopt(path);
}

std::optional<FilmSession::Kept> FilmSession::keep() {
  if (!open()) return {};
  bool unsaved = modified();
  try {
    FilmFile film{.path = host_.projectFile, .kind = ProjectKind::project, .project = takeProject(host_, name())};
    return Kept{std::move(film), path_, source_, saved_, unsaved};
  } catch (const Failure&) {
    return {};
  }
}

void FilmSession::reopen(const std::optional<Kept>& kept) {
  if (!kept) return;
  openProject(host_, kept->film);
  path_ = kept->path;
  source_ = kept->source;
  saved_ = kept->modified ? kept->saved : fingerprint();
  modified_ = kept->modified;
  suspect_ = false;
}

void FilmSession::adopt(const std::string& path) {
  path_ = isProject(path) ? path : "";
  source_ = path;
  remember(path);
  saved_ = fingerprint();
  modified_ = suspect_ = false;
}

void FilmSession::create(const ClipFormat& format) {
  MessageRecorder recorder;
  host_.takeMessages();
  host_.projectFile.clear();
  if (!host_.openEdit(nameOfFormat(format))) {
    std::vector<std::string> messages = host_.takeMessages();
    throw Failure(messages.empty() ? "the project cannot be made" : messages.front());
  }
}

void FilmSession::begin() {
  path_.clear();
  source_.clear();
  saved_ = fingerprint();
  modified_ = suspect_ = false;
}

void FilmSession::close() {
  host_.closeEdit();
  host_.projectFile.clear();
  path_.clear();
  source_.clear();
  modified_ = suspect_ = false;
}

std::string FilmSession::suggestedPath() const {
  if (!path_.empty()) return path_;
  return source_.empty() ? "untitled.cnp" : std::string(platform::withoutExtension(source_)) + ".cnp";
}

void FilmSession::save(const std::string& given) {
  std::string path = std::filesystem::absolute(platform::exactPath(given)).lexically_normal().string();
  saveProject(host_, path);
  if (!isProject(path)) return;
  path_ = source_ = path;
  host_.projectFile = path;
  remember(path);
  saved_ = fingerprint();
  modified_ = suspect_ = false;
}

/// Of everything that is edited, without what is only looked at: views, the cursor, the selection.
size_t FilmSession::fingerprint() {
  try {
    return std::hash<std::string>{}(askEditor(host_, zenlay::queryProject, nullptr));
  } catch (const Failure&) {
    return 0;
  }
}

bool FilmSession::modified() {
  if (suspect_ && !modified_ && host_.edit.open) modified_ = fingerprint() != saved_;
  suspect_ = false;
  return modified_ && host_.edit.open;
}

void FilmSession::remember(const std::string& path) {
  std::erase(recent_, path);
  recent_.insert(recent_.begin(), path);
  if (recent_.size() > maxRecentFiles) recent_.resize(maxRecentFiles);
  storeRecentFiles();
}

void FilmSession::forgetRecentFiles() {
  recent_.clear();
  storeRecentFiles();
}

void FilmSession::storeRecentFiles() {
  for (size_t i = 0; i < maxRecentFiles; i++)
    host_.settings.set(section, recentKey(i), i < recent_.size() ? recent_[i] : "");
}

}  // namespace cinora::desktop
