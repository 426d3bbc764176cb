// Text files of sections: header lines in square brackets, each followed by key=value lines.
//
// Lines end at LF; a tab becomes a space, other bytes below 32 are dropped, a NUL byte ends the file, empty lines are
// ignored. Text is in the ANSI code page.
#pragma once

#include <cstdint>
#include <string>

namespace zenlay {

struct SectionFile {
  std::string text;  // cleaned: lines of bytes from 32 up, each ended by LF
  size_t at = 0;     // where the next section is looked for
};

/// 0 when the file cannot be read.
int openSectionFile(const char* path, SectionFile*);
/// The header line of the next section, null at the end of the file. `buffer` then holds the header and the section's
/// lines as pairs of NUL-terminated key and value, ended by an empty key; lines without a key are left out.
const char* readSection(SectionFile*, std::string& buffer);
/// Where the lines of a section in `buffer` begin, for nextKey.
const char* firstKey(const std::string& buffer);
/// Takes the next pair; false at the end.
bool nextKey(const char** cursor, const char** key, const char** value);
/// The value of the first line with that key, or null.
const char* valueOf(const std::string& buffer, const char* key);

/// A decimal number with an optional sign up to the first other character; numbers beyond 32 bits saturate.
int32_t readInteger(const char* text);
/// [-]integer[.digits] in units of 1 / scale, up to the next comma; digits beyond the scale's precision add nothing.
int32_t readScaled(const char* text, int32_t scale);
/// Fills at most `size` bytes from pairs of hexadecimal digits.
void readHex(const char* text, uint8_t* out, size_t size);

}  // namespace zenlay
