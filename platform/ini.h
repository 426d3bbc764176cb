// Ini files: sections in square brackets with key=value lines; section and key names ignore the case of ASCII letters.
// Lines that begin with `;` or `#` are comments; blanks around names and values don't count, quotes ("...") around a
// value keep its own. Where a section or key appears twice, the first one with the key counts. Text is in the ANSI code
// page here and UTF-8 in the file.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

class IniFile {
 public:
  /// An unreadable file, or one beyond 16 MiB, gives an empty one.
  static IniFile read(std::string_view path);
  static IniFile parse(std::string_view text);
  /// Null when the key is absent.
  const std::string* find(std::string_view section, std::string_view key) const;
  std::string get(std::string_view section, std::string_view key, std::string_view fallback) const;
  /// Decimal with optional sign, or 0x hex (up to 0xFFFFFFFF); what follows the digits is ignored, numbers beyond 32
  /// bits saturate; `fallback` when absent or no number.
  int getInt(std::string_view section, std::string_view key, int fallback) const;
  /// Line ends within the names or the value become blanks.
  void set(std::string_view section, std::string_view key, std::string_view value);
  /// Keys and values of the first section of that name in the order of the file; null when there is none.
  const std::vector<std::pair<std::string, std::string>>* section(std::string_view name) const;
  /// Written through a replacement file; comments and order are kept.
  bool write(std::string_view path) const;

 private:
  struct Section {
    std::string name;
    std::vector<std::pair<std::string, std::string>> keys;
  };
  struct Line {
    std::string text;  // as read; not used when `key` is set
    int section = -1;  // the one it belongs to, -1 above the first
    int key = -1;      // in that section's keys, -1 for headers, comments and blank lines
  };
  std::string text() const;
  std::vector<Section> sections_;
  std::vector<Line> lines_;
};

}  // namespace platform
