// Opening and saving what the editor works on, by driving its filter as a person would.
#pragma once

#include <string>

#include "cinora/host/host.h"
#include "cinora/host/project_file.h"

namespace cinora {

enum class ProjectKind { project, objectFile, backup };

/// By extension: .cnp, .zlo, .zenlay_backup. Throws WrongUsage for others.
ProjectKind projectKind(const std::string& path);

/// A film's file before it is opened.
struct FilmFile {
  std::string path;
  ProjectKind kind;
  int width = 0, height = 0;  // pixels the file asks for; 0 when it doesn't say
  ProjectFile project;        // of kind project; the other kinds are read when they are opened
};
/// Throws WrongUsage for other extensions; Failure when it cannot be read, is no regular file or asks for a larger
/// image than there may be.
FilmFile readFilmFile(const std::string& path);

/// What is open, as a project's file would hold it. Throws Failure, which begins with `name`.
ProjectFile takeProject(Host&, const std::string& name);
/// Throws Failure with the message of the filter, or the reason.
void openProject(Host&, const FilmFile&);
void saveProject(Host&, const std::string& path);

/// A backup of what is open among the plug-in's own, whatever its preferences. Throws Failure.
void rescueProject(Host&);

/// The JSON a query to the editor's window procedure gives. Throws Failure when there is no editor or no answer.
std::string askEditor(Host&, zenlay::PluginQuery, const char* argument);

}  // namespace cinora
