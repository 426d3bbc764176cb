#include "platform/ini.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>

#include "platform/paths.h"
#include "platform/text.h"

namespace platform {
namespace {

constexpr size_t maxFile = 16 << 20;

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view trim(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool quoted(std::string_view value) { return value.size() >= 2 && value.front() == '"' && value.back() == '"'; }

std::string oneLine(std::string_view text) {
  std::string line(text);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r' || c == '\0'; }, ' ');
  return line;
}

std::string keyLine(const std::pair<std::string, std::string>& entry) {
  const std::string& value = entry.second;
  bool needsQuotes = quoted(value) || trim(value).size() != value.size();
  return entry.first + '=' + (needsQuotes ? '"' + value + '"' : value);
}

int digitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return 16;
}

}  // namespace

IniFile IniFile::read(std::string_view path) {
  std::string bytes;
  if (!readFile(path, bytes, maxFile)) return {};
  return parse(ansiFromFile(bytes));
}

IniFile IniFile::parse(std::string_view text) {
  IniFile ini;
  while (!text.empty()) {
    size_t end = std::min(text.find('\n'), text.size());
    std::string_view raw = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);

    std::string_view line = trim(raw);
    size_t equals = line.find('=');
    Line kept{std::string(raw), static_cast<int>(ini.sections_.size()) - 1, -1};
    if (!line.empty() && line.front() == '[' && line.rfind(']') != std::string_view::npos) {
      ini.sections_.push_back({std::string(trim(line.substr(1, line.rfind(']') - 1))), {}});
      kept.section++;
    } else if (!line.empty() && line.front() != ';' && line.front() != '#' && equals != std::string_view::npos) {
      if (ini.sections_.empty()) {
        ini.sections_.push_back({});  // keys above the first header belong to the section without a name
        kept.section = 0;
      }
      std::string_view value = trim(line.substr(equals + 1));
      if (quoted(value)) value = value.substr(1, value.size() - 2);
      auto& keys = ini.sections_.back().keys;
      kept.key = static_cast<int>(keys.size());
      kept.text.clear();
      keys.emplace_back(trim(line.substr(0, equals)), value);
    }
    ini.lines_.push_back(std::move(kept));
  }
  return ini;
}

const std::string* IniFile::find(std::string_view section, std::string_view key) const {
  for (const Section& candidate : sections_) {
    if (!equalNoCase(candidate.name, section)) continue;
    for (const auto& entry : candidate.keys)
      if (equalNoCase(entry.first, key)) return &entry.second;
  }
  return nullptr;
}

std::string IniFile::get(std::string_view section, std::string_view key, std::string_view fallback) const {
  const std::string* value = find(section, key);
  return value ? *value : std::string(fallback);
}

int IniFile::getInt(std::string_view section, std::string_view key, int fallback) const {
  const std::string* value = find(section, key);
  if (!value) return fallback;
  std::string_view text = trim(*value);
  bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  int base = 10;
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') && digitOf(text[2]) < 16) {
    base = 16;
    text.remove_prefix(2);
  }
  if (text.empty() || digitOf(text.front()) >= base) return fallback;
  int64_t number = 0;
  for (char c : text) {
    if (digitOf(c) >= base) break;
    number = std::min<int64_t>(number * base + digitOf(c), int64_t{UINT32_MAX} + 1);
  }
  if (base == 16 && !negative && number <= int64_t{UINT32_MAX}) return static_cast<int>(static_cast<uint32_t>(number));
  return static_cast<int>(std::clamp<int64_t>(negative ? -number : number, INT_MIN, INT_MAX));
}

void IniFile::set(std::string_view section, std::string_view key, std::string_view value) {
  if (const std::string* known = find(section, key)) {
    *const_cast<std::string*>(known) = oneLine(value);
    return;
  }
  std::string name = oneLine(trim(section));
  auto found = std::find_if(sections_.begin(), sections_.end(),
                            [&](const Section& candidate) { return equalNoCase(candidate.name, name); });
  int at = static_cast<int>(found - sections_.begin());
  if (found == sections_.end()) {
    sections_.push_back({name, {}});
    bool needsGap = !lines_.empty() && (lines_.back().key >= 0 || !trim(lines_.back().text).empty());
    if (needsGap) lines_.push_back({"", at - 1, -1});
    lines_.push_back({'[' + name + ']', at, -1});
  }
  auto& keys = sections_[at].keys;
  // Behind the section's last key; comments below it may speak of the next section.
  auto place = lines_.end();
  for (auto line = lines_.begin(); line != lines_.end(); ++line)
    if (line->section == at && (line->key >= 0 || place == lines_.end())) place = line + 1;
  keys.emplace_back(oneLine(trim(key)), oneLine(value));
  lines_.insert(place, {"", at, static_cast<int>(keys.size()) - 1});
}

const std::vector<std::pair<std::string, std::string>>* IniFile::section(std::string_view name) const {
  for (const Section& candidate : sections_)
    if (equalNoCase(candidate.name, name)) return &candidate.keys;
  return nullptr;
}

std::string IniFile::text() const {
  std::string out;
  for (const Line& line : lines_) {
    out += line.key < 0 ? line.text : keyLine(sections_[line.section].keys[line.key]);
    out += '\n';
  }
  return out;
}

bool IniFile::write(std::string_view path) const {
  ReplacementFile file(path);
  std::FILE* out = file.temporaryPath().empty() ? nullptr : std::fopen(file.temporaryPath().c_str(), "wbe");
  if (!out) return false;
  std::string bytes = utf8FromAnsi(text());
  bool good = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
  good = std::fclose(out) == 0 && good;
  return good && file.commit();
}

}  // namespace platform
