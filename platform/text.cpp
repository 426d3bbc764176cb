#include "platform/text.h"

#include <iconv.h>

#include <atomic>
#include <cerrno>
#include <cstring>

namespace platform {
namespace {

std::atomic<int> currentPage{codePageUtf8};

constexpr char32_t replacement = 0xFFFD;

bool isContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }
bool isLeadByte932(unsigned char c) { return (c >= 0x81 && c <= 0x9F) || (c >= 0xE0 && c <= 0xFC); }

struct Decoded {
  char32_t character;  // `replacement` for damage
  int bytes;           // of damage, those that can't begin a character
  bool valid;
};

/// Refuses overlong forms, surrogates and what lies beyond U+10FFFF. `text` is not empty.
Decoded decodeUtf8(std::string_view text) {
  unsigned char lead = text[0];
  if (lead < 0x80) return {lead, 1, true};
  int length = lead >= 0xC2 && lead <= 0xDF ? 2 : (lead & 0xF0) == 0xE0 ? 3 : lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
  if (length == 0) return {replacement, 1, false};
  char32_t character = lead & (0x7F >> length);
  for (int i = 1; i < length; i++) {
    unsigned char c = i < static_cast<int>(text.size()) ? text[i] : 0;
    bool fits = isContinuation(c);
    if (i == 1 && fits) {
      fits = !(lead == 0xE0 && c < 0xA0) && !(lead == 0xED && c > 0x9F) && !(lead == 0xF0 && c < 0x90) &&
             !(lead == 0xF4 && c > 0x8F);
    }
    if (!fits) return {replacement, i, false};
    character = character << 6 | (c & 0x3F);
  }
  return {character, length, true};
}

void appendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += {static_cast<char>(0xC0 | c >> 6), static_cast<char>(0x80 | (c & 0x3F))};
  } else if (c < 0x10000) {
    out += {static_cast<char>(0xE0 | c >> 12), static_cast<char>(0x80 | (c >> 6 & 0x3F)),
            static_cast<char>(0x80 | (c & 0x3F))};
  } else {
    out += {static_cast<char>(0xF0 | c >> 18), static_cast<char>(0x80 | (c >> 12 & 0x3F)),
            static_cast<char>(0x80 | (c >> 6 & 0x3F)), static_cast<char>(0x80 | (c & 0x3F))};
  }
}

/// Runs `in` through iconv; what it refuses becomes "?", `step` bytes a time.
template <typename Text>
Text convert(const char* to, const char* from, std::string_view in, size_t step) {
  using Unit = typename Text::value_type;
  Text out;
  iconv_t converter = iconv_open(to, from);
  if (converter == reinterpret_cast<iconv_t>(-1)) return Text(in.size() / step, Unit('?'));
  char* source = const_cast<char*>(in.data());
  size_t left = in.size();
  while (left > 0) {
    Unit buffer[512];
    char* target = reinterpret_cast<char*>(buffer);
    size_t room = sizeof buffer;
    size_t result = iconv(converter, &source, &left, &target, &room);
    int error = result == static_cast<size_t>(-1) ? errno : 0;
    out.append(buffer, (sizeof buffer - room) / sizeof(Unit));
    if (error == 0 || error == E2BIG) continue;
    out += Unit('?');
    // A refused pair counts as one character.
    size_t skip = step;
    if (step == 1 && left >= 2 && isLeadByte932(*source) && static_cast<unsigned char>(source[1]) >= 0x40) skip = 2;
    if (step == 2 && left >= 4 && (source[1] & 0xFC) == 0xD8 && (source[3] & 0xFC) == 0xDC) skip = 4;
    skip = skip < left ? skip : left;
    source += skip;
    left -= skip;
  }
  iconv_close(converter);
  return out;
}

std::u16string utf16From932(std::string_view text) { return convert<std::u16string>("UTF-16LE", "CP932", text, 1); }

std::string from932(std::string_view text) { return utf8FromUtf16(utf16From932(text)); }

std::u16string utf16FromBytes(std::string_view bytes, bool bigEndian) {
  std::u16string out(bytes.size() / 2, 0);
  for (size_t i = 0; i < out.size(); i++) {
    unsigned char first = bytes[2 * i], second = bytes[2 * i + 1];
    out[i] = static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
  }
  return out;
}

}  // namespace

int codePage() { return currentPage; }
void setCodePage(int page) { currentPage = page == codePage932 ? codePage932 : codePageUtf8; }

bool validUtf8(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    Decoded next = decodeUtf8(text.substr(at));
    if (!next.valid) return false;
    at += next.bytes;
  }
  return true;
}

std::u16string utf16FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    Decoded next = decodeUtf8(text.substr(at));
    at += next.bytes;
    if (next.character < 0x10000) {
      out += static_cast<char16_t>(next.character);
    } else {
      out += static_cast<char16_t>(0xD800 + ((next.character - 0x10000) >> 10));
      out += static_cast<char16_t>(0xDC00 + (next.character & 0x3FF));
    }
  }
  return out;
}

std::string utf8FromUtf16(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size(); at++) {
    char32_t c = text[at];
    if (c >= 0xD800 && c < 0xE000) {
      char16_t next = at + 1 < text.size() ? text[at + 1] : 0;
      if (c < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
        c = 0x10000 + ((c - 0xD800) << 10) + (next - 0xDC00);
        at++;
      } else {
        c = replacement;
      }
    }
    appendUtf8(out, c);
  }
  return out;
}

std::u16string utf16FromAnsi(std::string_view text) {
  return codePage() == codePage932 ? utf16From932(text) : utf16FromUtf8(text);
}

std::string ansiFromUtf16(std::u16string_view text) {
  if (codePage() != codePage932) return utf8FromUtf16(text);
  std::string bytes(text.size() * 2, 0);
  for (size_t i = 0; i < text.size(); i++) {
    bytes[2 * i] = static_cast<char>(text[i]);
    bytes[2 * i + 1] = static_cast<char>(text[i] >> 8);
  }
  return convert<std::string>("CP932", "UTF-16LE", bytes, 2);
}

std::string utf8FromAnsi(std::string_view text) {
  return codePage() == codePage932 ? from932(text) : std::string(text);
}

std::string ansiFromUtf8(std::string_view text) {
  return codePage() == codePage932 ? ansiFromUtf16(utf16FromUtf8(text)) : std::string(text);
}

std::string ansiFromFile(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return ansiFromUtf16(utf16FromBytes(bytes.substr(2), false));
  if (bytes.starts_with("\xFE\xFF")) return ansiFromUtf16(utf16FromBytes(bytes.substr(2), true));
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  if (validUtf8(bytes)) return ansiFromUtf8(bytes);
  return codePage() == codePage932 ? std::string(bytes) : from932(bytes);
}

int characterBytes(const char* text) {
  unsigned char lead = text[0];
  if (lead < 0x80) return 1;
  if (codePage() == codePage932) return isLeadByte932(lead) && text[1] ? 2 : 1;
  Decoded next = decodeUtf8(std::string_view(text, strnlen(text, 4)));
  return next.valid ? next.bytes : 1;
}

int64_t takeDigits(const char*& text, int64_t most) {
  int64_t number = 0;
  for (; isDigit(*text); text++) number = number > (most - (*text - '0')) / 10 ? most : number * 10 + (*text - '0');
  return number;
}

std::string wholeCharacters(const std::string& text, size_t bytes) {
  size_t used = 0;
  while (used < text.size()) {
    size_t next = used + static_cast<size_t>(characterBytes(text.c_str() + used));
    if (next > bytes) break;
    used = next;
  }
  return text.substr(0, used);
}

}  // namespace platform
