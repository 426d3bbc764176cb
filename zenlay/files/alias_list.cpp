#include "zenlay/files/alias_list.h"

#include <cstring>

#include "platform/paths.h"
#include "platform/text.h"
#include "platform/window.h"
#include "zenlay/host/environment.h"

namespace zenlay {

std::vector<AliasEntry> aliasList;
std::vector<std::string> objectTemplates;

namespace {

constexpr char aliasExtension[] = ".zla", templateExtension[] = ".zlo";
constexpr uint32_t boxQuestion = 0x42021;  // OK and Cancel, question icon, task-modal, topmost

size_t bytesOf(std::string_view subfolder, std::string_view name) {
  return subfolder.size() + 1 + name.size() + 1;  // the separator and the terminator
}

/// False when the list is full.
bool registerFolder(const std::string& subfolder) {
  std::string folder = environment.pluginDirectory + subfolder;
  for (const std::string& file : platform::filesMatching(folder, std::string("*") + aliasExtension))
    if (!registerAlias(subfolder, platform::withoutExtension(file), firstAliasCommand)) return false;
  return true;
}

}  // namespace

void scanAliases() {
  aliasList.clear();
  objectTemplates.clear();
  const std::string& folder = environment.pluginDirectory;
  for (const std::string& file : platform::filesMatching(folder, std::string("*") + templateExtension))
    objectTemplates.emplace_back(platform::withoutExtension(file));
  if (!registerFolder("")) return;
  for (const std::string& subfolder : platform::subfolders(folder))
    if (!registerFolder(subfolder)) return;
}

int registerAlias(std::string_view subfolder, std::string_view name, int base) {
  size_t used = bytesOf(subfolder, name);
  for (size_t i = 0; i < aliasList.size(); i++) {
    const AliasEntry& entry = aliasList[i];
    if (entry.subfolder == subfolder && entry.name == name) return -(base + static_cast<int>(i));
    used += bytesOf(entry.subfolder, entry.name);
  }
  if (used > aliasListBytes) {
    showMessage("Unable to add more alias", boxWarning);
    return 0;
  }
  aliasList.push_back({std::string(subfolder), std::string(name)});
  return base + static_cast<int>(aliasList.size()) - 1;
}

std::string aliasPath(std::string_view subfolder, std::string_view name) {
  std::string path = environment.pluginDirectory;
  if (!subfolder.empty()) path.append(subfolder).append("/");
  return path.append(name).append(aliasExtension);
}

std::string templatePath(std::string_view name) {
  return (environment.pluginDirectory + std::string(name)).append(templateExtension);
}

int checkAliasName(const char* text) {
  for (int bytes; *text; text += bytes) {
    bytes = platform::characterBytes(text);
    if (bytes > 1 || !strchr("\\/:,;*?<>|.\"", *text)) continue;
    showMessage("The following characters cannot be used\n\\ / . : , ; * ? < > |", boxWarning);
    return 0;
  }
  return 1;
}

std::string newAliasPath(const char* name, const char* subfolder) {
  if (!*name || !checkAliasName(name) || !checkAliasName(subfolder)) return "";
  std::string path = aliasPath(subfolder, name);
  if (platform::fileExists(path)) {
    int answer = platform::messageBox(nullptr, "Alias with the same name is present\nDo you want to overwrite it?",
                                      "Zenlay", boxQuestion);
    return answer == platform::boxOk ? path : "";
  }
  if (*subfolder) platform::makeFolders(platform::folderOf(path));
  return path;
}

}  // namespace zenlay
