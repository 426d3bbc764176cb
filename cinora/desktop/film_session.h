// The film being worked on as a document: its file, whether it holds unsaved work, the files opened lately.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cinora/host/host.h"
#include "cinora/host/project.h"

namespace cinora::desktop {

inline constexpr size_t maxRecentFiles = 10;

class FilmSession {
 public:
  explicit FilmSession(Host&);

  bool open() const { return host_.edit.open; }
  /// Of the project file; empty until there is one.
  const std::string& path() const { return path_; }
  /// The name for the title.
  std::string name() const;

  /// Throws WrongUsage or Failure when the file cannot be a film's; what is open stays as it is.
  void check(const std::string& path) const;
  /// Opens a project, object file, backup, or any file the plug-in takes by drop as a new project with it on the first
  /// layer. Throws Failure; the project open before is then open again, unsaved work included.
  void openFile(const std::string& path);
  /// An empty project. Throws Failure.
  void create(const ClipFormat&);
  void close();
  /// A clip was opened: the project on it has no file and nothing to lose yet.
  void begin();
  /// The project that is open with its unsaved work, and back to it. There is nothing to go back to when none is open
  /// or a filter cannot tell its part.
  struct Kept {
    FilmFile film;
    std::string path, source;
    size_t saved;
    bool modified;
  };
  std::optional<Kept> keep();
  void reopen(const std::optional<Kept>&);  // throws Failure
  /// Onto the first layer of the open project, as if dropped there. Throws Failure.
  void place(const std::string& path);
  /// Whether `save` needs no other name.
  bool hasProjectFile() const { return !path_.empty(); }
  /// Where a project made from something else is saved by default.
  std::string suggestedPath() const;
  /// The project file becomes that of the session unless `path` is of another kind. Throws Failure or WrongUsage.
  void save(const std::string& path);

  /// Something may have been edited.
  void suspect() { suspect_ = true; }
  bool modified();

  const std::vector<std::string>& recentFiles() const { return recent_; }
  void forgetRecentFiles();

 private:
  void load(const std::string& path);
  void adopt(const std::string& path);
  void remember(const std::string& path);
  void storeRecentFiles();
  size_t fingerprint();

  Host& host_;
  std::string path_, source_;  // source: what an unnamed project was made from
  std::vector<std::string> recent_;
  size_t saved_ = 0;  // fingerprint of what is saved
  bool modified_ = false, suspect_ = false;
};

}  // namespace cinora::desktop
