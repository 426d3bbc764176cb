// The alias files and object-file templates beside the plug-in, as the menus list them, and the names of new aliases.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zenlay {

inline constexpr int firstAliasCommand = 3000;  // of the first alias; the others follow
inline constexpr int firstTemplateCommand = 5000;
inline constexpr int aliasListBytes = 65536;  // of "folder\name", each with its terminator

struct AliasEntry {
  std::string subfolder;  // of the plug-in's folder, or empty
  std::string name;       // without extension
};

extern std::vector<AliasEntry> aliasList;
/// Names, without extension, of the object files in the plug-in's folder.
extern std::vector<std::string> objectTemplates;

/// Fills both lists from the plug-in's folder, aliases also from its first-level subfolders.
void scanAliases();
/// base + the index of the new entry, -(base + index) of the one that has that name already, or 0 with a message when
/// the list is full.
int registerAlias(std::string_view subfolder, std::string_view name, int base);
/// Where the alias of that name lies, and an object-file template.
std::string aliasPath(std::string_view subfolder, std::string_view name);
std::string templatePath(std::string_view name);
/// Whether the text of an alias's name or folder is free of characters that paths cannot have; 0 with a message.
/// An empty text passes.
int checkAliasName(const char* text);
/// What the dialog "New Alias" does with its texts: checks both, makes the folder and asks before an alias is
/// overwritten. The path to write to; empty when the dialog stays open.
std::string newAliasPath(const char* name, const char* subfolder);

}  // namespace zenlay
