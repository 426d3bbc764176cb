// Opening and saving what the editor works on, by driving its filter as a person would.
#pragma once

#include <string>

#include "cinora/host.h"

namespace cinora {

enum class ProjectKind { project, objectFile, backup };

/// By extension: .cnp, .zlo, .zenlay_backup. Throws WrongUsage for others.
ProjectKind projectKind(const std::string& path);

struct ImageNeed {
  int width = 0, height = 0;  // pixels; 0 when the file doesn't say
};
/// What the file says about its image size, without opening it as a project. Throws Failure when it cannot be read or
/// asks for more than an image may have.
ImageNeed imageNeed(const std::string& path);

/// Throws Failure with the message of the filter, or the reason.
void openProject(Host&, const std::string& path);
void saveProject(Host&, const std::string& path);

/// The JSON a query to the editor's window procedure gives. Throws Failure when there is no editor or no answer.
std::string askEditor(Host&, int query, const char* argument);

}  // namespace cinora
