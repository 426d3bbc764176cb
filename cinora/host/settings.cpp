#include "cinora/host/settings.h"

#include <cstdlib>

#include "platform/paths.h"

namespace cinora {

Settings::Settings(std::string path) : path_(std::move(path)) {
  if (!path_.empty()) file_ = platform::IniFile::read(path_);
}

std::string Settings::userFile() {
  const char* config = getenv("XDG_CONFIG_HOME");
  if (config && config[0] == '/') return std::string(config) + "/cinora/cinora.ini";
  const char* home = getenv("HOME");
  if (home && *home) return std::string(home) + "/.config/cinora/cinora.ini";
  return {};
}

void Settings::override(std::string_view section, std::string_view key, std::string_view value) {
  overrides_.set(section, key, value);
}

const std::string* Settings::find(std::string_view section, std::string_view key) const {
  const std::string* value = overrides_.find(section, key);
  return value ? value : file_.find(section, key);
}

std::string Settings::get(std::string_view section, std::string_view key, std::string_view fallback) const {
  const std::string* value = find(section, key);
  return value ? *value : std::string(fallback);
}

int Settings::getInt(std::string_view section, std::string_view key, int fallback) const {
  const platform::IniFile& file = overrides_.find(section, key) ? overrides_ : file_;
  return file.getInt(section, key, fallback);
}

void Settings::set(std::string_view section, std::string_view key, std::string_view value) {
  if (overrides_.find(section, key)) return;
  const std::string* old = file_.find(section, key);
  if (old && *old == value) return;
  file_.set(section, key, value);
  changed_ = true;
}

bool Settings::save() {
  if (!changed_ || path_.empty()) return true;
  if (!platform::makeFolders(platform::folderOf(path_)) || !file_.write(path_)) return false;
  changed_ = false;
  return true;
}

}  // namespace cinora
