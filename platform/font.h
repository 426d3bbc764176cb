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

/// `size` in pixels (em height, 1..4096, clamped), weight 400 or 700. A face without that weight or slant is thickened
/// or slanted. Never null as long as any font is installed. `face` in the ANSI code page.
Font* openFont(const char* face, int size, int weight, bool italic);
void closeFont(Font*);
/// A fall-back face draws characters that the face lacks. False when there is no glyph. A blank has an empty bitmap.
bool drawGlyph(Font*, char32_t character, Glyph*);
struct FontMetrics {
  int ascent, descent, lineHeight, maxAdvance;  // pixels; descent counts down from the base line
};
FontMetrics fontMetrics(Font*);

}  // namespace platform
