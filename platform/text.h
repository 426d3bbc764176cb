// Text encodings. The ANSI code page is UTF-8, or 932 when set (double-byte lead bytes then apply).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

enum CodePage : int { codePageUtf8 = 65001, codePage932 = 932 };
int codePage();
void setCodePage(int);

bool validUtf8(std::string_view);
/// Invalid sequences become U+FFFD.
std::u16string utf16FromUtf8(std::string_view);
std::string utf8FromUtf16(std::u16string_view);  // unpaired surrogates too
/// Characters the page lacks become "?".
std::u16string utf16FromAnsi(std::string_view);
std::string ansiFromUtf16(std::u16string_view);
/// Between the ANSI code page and UTF-8; unchanged, damage included, while the page is UTF-8.
std::string utf8FromAnsi(std::string_view);
std::string ansiFromUtf8(std::string_view);
/// A text file's bytes as the ANSI code page, without byte order mark: UTF-16 when they begin with its mark, else
/// UTF-8, and bytes that are not valid UTF-8 are read as 932.
std::string ansiFromFile(std::string_view bytes);
/// Bytes of the character at `text` (which ends in NUL): 2 for a double-byte pair of page 932, the length of a complete
/// sequence in UTF-8, otherwise 1.
int characterBytes(const char* text);
inline bool isDigit(char c) { return c >= '0' && c <= '9'; }
/// The number at `text`, which moves behind its digits: 0 without digits, at most `most`.
int64_t takeDigits(const char*& text, int64_t most);
/// The text's first whole characters that fit into so many bytes.
std::string wholeCharacters(const std::string& text, size_t bytes);

}  // namespace platform
