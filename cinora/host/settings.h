// The host's settings store: an ini file with one section a filter.
#pragma once

#include <string>
#include <string_view>

#include "platform/ini.h"

namespace cinora {

class Settings {
 public:
  Settings() = default;
  explicit Settings(std::string path);  // empty: of no file

  /// $XDG_CONFIG_HOME/cinora/cinora.ini, or under ~/.config; empty when there is no home.
  static std::string userFile();

  /// Holds for this run only: wins over the file, is not touched by set, and never reaches the file.
  void override(std::string_view section, std::string_view key, std::string_view value);
  /// Null when the key is absent.
  const std::string* find(std::string_view section, std::string_view key) const;
  std::string get(std::string_view section, std::string_view key, std::string_view fallback) const;
  /// Decimal with optional sign, or 0x hex; `fallback` when absent or no number. Beyond 32 bits it saturates.
  int getInt(std::string_view section, std::string_view key, int fallback) const;
  void set(std::string_view section, std::string_view key, std::string_view value);
  /// Writes the file when something was set that differs from it. True when the file holds what was set, or there is
  /// none.
  bool save();
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  platform::IniFile file_;
  platform::IniFile overrides_;
  bool changed_ = false;
};

}  // namespace cinora
