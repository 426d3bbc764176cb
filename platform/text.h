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
std::string utf8FromUtf16(std::u16string_view);
/// Characters the page lacks become "?".
std::u16string utf16FromAnsi(std::string_view);
std::string ansiFromUtf16(std::u16string_view);
/// A text file's bytes as the ANSI code page: bytes that are not valid UTF-8 are read as 932.
std::string ansiFromFile(std::string_view bytes);
/// Bytes of the character at `text`: 2 for a double-byte pair of page 932, the sequence length in UTF-8, at least 1.
int characterBytes(const char* text);

}  // namespace platform
