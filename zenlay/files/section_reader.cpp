#include "zenlay/files/section_reader.h"

#include <algorithm>
#include <cstring>

#include "platform/paths.h"
#include "platform/text.h"

namespace zenlay {
namespace {

constexpr size_t maxFileBytes = size_t{1} << 30;

/// Keeps what counts of the file's text.
std::string cleaned(const std::string& raw) {
  std::string text;
  text.reserve(raw.size() + 1);
  for (unsigned char c : raw) {
    if (c == '\t') c = ' ';
    if (c >= ' ' || c == '\n') text.push_back(static_cast<char>(c));
  }
  if (!text.empty() && text.back() != '\n') text.push_back('\n');
  return text;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }
int32_t saturated(int64_t value) { return static_cast<int32_t>(std::clamp<int64_t>(value, INT32_MIN, INT32_MAX)); }

/// Digits as a number that stops growing far beyond 32 bits; moves the text behind them.
int64_t takeDigits(const char*& text) {
  constexpr int64_t enough = int64_t{1} << 40;
  int64_t value = 0;
  for (; isDigit(*text); text++) value = std::min(value * 10 + (*text - '0'), enough);
  return value;
}

/// Steps over spaces and a sign; true for a minus.
bool takeSign(const char*& text) {
  while (*text == ' ') text++;
  bool negative = *text == '-';
  if (*text == '-' || *text == '+') text++;
  return negative;
}

int hexDigit(char c) {
  if (isDigit(c)) return c - '0';
  c = static_cast<char>(c | 0x20);
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

}  // namespace

int openSectionFile(const char* path, SectionFile* file) {
  std::string bytes;
  if (!platform::readFile(path, bytes, maxFileBytes)) return 0;
  bytes.resize(std::min(bytes.find('\0'), bytes.size()));
  file->text = cleaned(platform::ansiFromFile(bytes));
  file->at = 0;
  return 1;
}

const char* readSection(SectionFile* file, std::string& buffer) {
  const std::string& text = file->text;
  while (file->at < text.size() && text[file->at] != '[') file->at = text.find('\n', file->at) + 1;
  if (file->at >= text.size()) return nullptr;
  buffer.clear();
  bool header = true;
  while (file->at < text.size() && (header || text[file->at] != '[')) {
    size_t end = text.find('\n', file->at);
    size_t equals = header ? end : std::min(text.find_first_of("=\n", file->at), end);
    if (header || equals > file->at) buffer.append(text, file->at, equals - file->at).push_back('\0');
    if (!header && equals > file->at) {
      if (equals < end) buffer.append(text, equals + 1, end - equals - 1);
      buffer.push_back('\0');
    }
    header = false;
    file->at = end + 1;
  }
  buffer.push_back('\0');
  return buffer.c_str();
}

const char* firstKey(const std::string& buffer) { return buffer.c_str() + strlen(buffer.c_str()) + 1; }

bool nextKey(const char** cursor, const char** key, const char** value) {
  if (!**cursor) return false;
  *key = *cursor;
  *value = *key + strlen(*key) + 1;
  *cursor = *value + strlen(*value) + 1;
  return true;
}

const char* valueOf(const std::string& buffer, const char* wanted) {
  const char *cursor = firstKey(buffer), *key, *value;
  while (nextKey(&cursor, &key, &value))
    if (strcmp(key, wanted) == 0) return value;
  return nullptr;
}

int32_t readInteger(const char* text) {
  bool negative = takeSign(text);
  int64_t value = takeDigits(text);
  return saturated(negative ? -value : value);
}

int32_t readScaled(const char* text, int32_t scale) {
  if (scale < 2) return readInteger(text);
  bool negative = takeSign(text);
  int64_t value = takeDigits(text) * scale;
  if (*text == '.')
    for (text++; isDigit(*text) && scale > 0; text++) value += (*text - '0') * (scale /= 10);
  return saturated(negative ? -value : value);
}

void readHex(const char* text, uint8_t* out, size_t size) {
  for (size_t i = 0; i < size; i++, text += 2) {
    int high = hexDigit(text[0]);
    int low = high >= 0 ? hexDigit(text[1]) : -1;
    if (low < 0) return;
    out[i] = static_cast<uint8_t>(high << 4 | low);
  }
}

}  // namespace zenlay
