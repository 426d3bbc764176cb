// Fonts: faces found by fontconfig (the nearest match when a face is missing), glyphs drawn by FreeType.
#pragma once

#include <cstdint>
#include <vector>

namespace platform {

struct Font;  // one face at one size

/// Grey coverage 0..64, `width` bytes a row, top-down.
struct Glyph {
  int width = 0, height = 0;
  int left = 0, top = 0;  // of the bitmap from the pen position; top counts up from the base line
  int advance = 0;        // pixels
  std::vector<uint8_t> coverage;
};

/// `size` in pixels (em height), weight 400 or 700. Never null as long as any font is installed.
Font* openFont(const char* face, int size, int weight, bool italic);
void closeFont(Font*);
/// A fall-back face draws characters that the face lacks. False when there is no glyph.
bool drawGlyph(Font*, char32_t character, Glyph*);
struct FontMetrics {
  int ascent, descent, lineHeight, maxAdvance;  // pixels
};
FontMetrics fontMetrics(Font*);

}  // namespace platform
