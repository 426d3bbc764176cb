// Ini files: sections in square brackets with key=value lines; section and key names ignore letter case.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

class IniFile {
 public:
  /// An unreadable file gives an empty one.
  static IniFile read(std::string_view path);
  static IniFile parse(std::string_view text);
  /// Null when the key is absent.
  const std::string* find(std::string_view section, std::string_view key) const;
  std::string get(std::string_view section, std::string_view key, std::string_view fallback) const;
  /// Decimal with optional sign, or 0x hex; `fallback` when absent.
  int getInt(std::string_view section, std::string_view key, int fallback) const;
  void set(std::string_view section, std::string_view key, std::string_view value);
  const std::vector<std::pair<std::string, std::string>>* section(std::string_view name) const;
  /// Written through a replacement file; comments and order are kept.
  bool write(std::string_view path) const;

 private:
  struct Section {
    std::string name;
    std::vector<std::pair<std::string, std::string>> keys;
  };
  std::vector<Section> sections_;
};

}  // namespace platform
